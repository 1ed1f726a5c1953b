// SPDX-License-Identifier: MIT
#include "net/tcpclient.h"

#include "app/settings.h"
#include "net/events.h"

#include <QCoreApplication>
#include <QMutexLocker>

TcpClient::TcpClient(QObject *parent)
    : QThread(parent)
    , settings_(Settings::instance())
    , receiver_(parent)
{
}

TcpClient::~TcpClient()
{
    stopAndWait();
}

void TcpClient::connectToHost(const QString &host)
{
    const QMutexLocker lock(&mutex_);
    host_ = host;
    hostChanged_ = true;
}

void TcpClient::disconnectFromHost()
{
    setQuit(true);
}

QString TcpClient::hostName() const
{
    const QMutexLocker lock(&mutex_);
    return host_;
}

void TcpClient::setQuit(bool quit)
{
    const QMutexLocker lock(&mutex_);
    quit_ = quit;
}

bool TcpClient::quit() const
{
    const QMutexLocker lock(&mutex_);
    return quit_;
}

void TcpClient::setConnected(bool connected)
{
    const QMutexLocker lock(&mutex_);
    connected_ = connected;
}

bool TcpClient::isConnected() const
{
    const QMutexLocker lock(&mutex_);
    return connected_;
}

void TcpClient::connected()
{
    setConnected(true);
}

void TcpClient::disconnected()
{
    QMutexLocker lock(&mutex_);
    const int state = lossState_;
    const QString message = lossMessage_;
    lock.unlock();
    postPipe(state, message, -1);
    setQuit(false);
    setConnected(false);
}

void TcpClient::stopAndWait()
{
    setQuit(true);
    requestInterruption();
    wait();
}

bool TcpClient::stopRequested() const
{
    return quit() || isInterruptionRequested();
}

bool TcpClient::hostChanged() const
{
    const QMutexLocker lock(&mutex_);
    return hostChanged_;
}

QString TcpClient::takeHost()
{
    const QMutexLocker lock(&mutex_);
    hostChanged_ = false;
    return host_;
}

void TcpClient::forgetConnected()
{
    setConnected(false);
    QMetaObject::invokeMethod(
        this, [this] { setConnected(false); }, Qt::QueuedConnection);
}

void TcpClient::reportLoss(int state, const QString &message)
{
    {
        const QMutexLocker lock(&mutex_);
        lossState_ = state;
        lossMessage_ = message;
    }
    QMetaObject::invokeMethod(this, &TcpClient::disconnected, Qt::QueuedConnection);
}

void TcpClient::post(QEvent *event) const
{
    QCoreApplication::postEvent(receiver_, event);
}

void TcpClient::postPipe(int state, const QString &message, int channel, const QString &host) const
{
    auto *event = new PipeEvent;
    event->state = state;
    event->message = message;
    event->channel = channel;
    event->hostName = host;
    post(event);
}
