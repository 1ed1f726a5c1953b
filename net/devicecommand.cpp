// SPDX-License-Identifier: MIT
#include "net/devicecommand.h"

#include "app/settings.h"
#include "net/socketwait.h"

#include <QTcpSocket>

namespace
{

constexpr int longestWait = 3000;

} // namespace

QString DeviceCommand::send(const QString &host, char command)
{
    const Settings *settings = Settings::instance();
    const auto port = static_cast<quint16>(settings != nullptr ? settings->vaskParkingPort() : 0);
    QTcpSocket socket;
    switch (SocketWait::connectToHost(socket, host, port, longestWait, SocketWait::interrupted)) {
    case SocketWait::Outcome::Connected:
        break;
    case SocketWait::Outcome::HungUp:
        return SocketWait::hungUpText();
    case SocketWait::Outcome::Failed:
        return socket.errorString();
    case SocketWait::Outcome::TimedOut:
    case SocketWait::Outcome::CalledOff:
        return QAbstractSocket::tr("Socket operation timed out");
    }
    if (socket.write(&command, 1) != 1 || !socket.flush()) {
        return socket.errorString();
    }
    socket.disconnectFromHost();
    return QString();
}
