// SPDX-License-Identifier: MIT
#include "net/socketwait.h"

#include <QAbstractSocket>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QSocketNotifier>
#include <QThread>
#include <QTimer>

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>

namespace
{

constexpr int pollMsec = 50;

bool isConnecting(const QAbstractSocket &socket)
{
    return socket.state() == QAbstractSocket::HostLookupState ||
           socket.state() == QAbstractSocket::ConnectingState;
}

// The toolkit learns the outcome by connecting the same descriptor once more. To the system that is
// a new connection where the first one was reset by then: in between the descriptor is closed.
bool isReset(const QAbstractSocket &socket)
{
    // A connecting socket does not tell its descriptor; the notifier that waits for it does.
    const auto *notifier = socket.findChild<QSocketNotifier *>();
    if (notifier == nullptr || socket.state() != QAbstractSocket::ConnectingState) {
        return false;
    }
    tcp_info info = {};
    socklen_t length = sizeof info;
    pollfd descriptor = {static_cast<int>(notifier->socket()), 0, 0};
    return getsockopt(descriptor.fd, IPPROTO_TCP, TCP_INFO, &info, &length) == 0 &&
           info.tcpi_state == TCP_CLOSE &&
           // An error that the toolkit has not looked at yet, such as a refusal, is its own to
           // tell.
           poll(&descriptor, 1, 0) >= 0 && (descriptor.revents & POLLERR) == 0;
}

} // namespace

bool SocketWait::interrupted()
{
    return QThread::currentThread()->isInterruptionRequested();
}

QString SocketWait::hungUpText()
{
    return QCoreApplication::translate("QNativeSocketEngine",
                                       "The remote host closed the connection");
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
    poll.start(pollMsec);
    socket.connectToHost(host, port);
    while (isConnecting(socket) && !cancelled() && !clock.hasExpired(msec)) {
        // One round at a time, so that a reset is seen before the toolkit connects anew.
        loop.processEvents(QEventLoop::WaitForMoreEvents);
        if (isReset(socket)) {
            socket.abort();
            return Outcome::HungUp;
        }
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
