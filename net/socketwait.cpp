// SPDX-License-Identifier: MIT
#include "net/socketwait.h"

#include <QAbstractSocket>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QThread>
#include <QTimer>

namespace
{

constexpr int pollMsec = 50;

bool isConnecting(const QAbstractSocket &socket)
{
    return socket.state() == QAbstractSocket::HostLookupState ||
           socket.state() == QAbstractSocket::ConnectingState;
}

} // namespace

bool SocketWait::interrupted()
{
    return QThread::currentThread()->isInterruptionRequested();
}

bool SocketWait::pause(qint64 msec, const Cancelled &cancelled)
{
    QElapsedTimer clock;
    clock.start();
    for (qint64 rest = msec; rest > 0; rest = msec - clock.elapsed()) {
        if (cancelled()) {
            return false;
        }
        QThread::msleep(static_cast<unsigned long>(qMin<qint64>(rest, pollMsec)));
    }
    return !cancelled();
}

SocketWait::Outcome SocketWait::connectToHost(QAbstractSocket &socket, const QString &host,
                                              quint16 port, int msec, const Cancelled &cancelled)
{
    QEventLoop loop;
    QTimer poll;
    QElapsedTimer clock;
    clock.start();
    QObject::connect(&poll, &QTimer::timeout, &loop, &QEventLoop::quit);
    QObject::connect(&socket, &QAbstractSocket::stateChanged, &loop, &QEventLoop::quit);
    poll.start(pollMsec);
    socket.connectToHost(host, port);
    while (isConnecting(socket) && !cancelled() && !clock.hasExpired(msec)) {
        loop.exec();
    }
    if (socket.state() == QAbstractSocket::ConnectedState) {
        return Outcome::Connected;
    }
    if (!isConnecting(socket)) {
        return Outcome::Failed;
    }
    socket.abort();
    return cancelled() ? Outcome::CalledOff : Outcome::TimedOut;
}

void SocketWait::close(QAbstractSocket &socket, int msec, const Cancelled &cancelled)
{
    if (socket.state() == QAbstractSocket::UnconnectedState) {
        return;
    }
    QElapsedTimer clock;
    clock.start();
    socket.disconnectFromHost();
    while (socket.state() != QAbstractSocket::UnconnectedState && !cancelled() &&
           !clock.hasExpired(msec)) {
        socket.waitForDisconnected(pollMsec);
    }
    if (socket.state() != QAbstractSocket::UnconnectedState) {
        socket.abort();
    }
}
