// SPDX-License-Identifier: MIT
#include "net/devicecommand.h"

#include "app/settings.h"

#include <QTcpSocket>

QString DeviceCommand::send(const QString &host, char command)
{
    constexpr int connectTimeout = 3000;
    const Settings *settings = Settings::instance();
    QTcpSocket socket;
    socket.connectToHost(
        host, static_cast<quint16>(settings != nullptr ? settings->vaskParkingPort() : 0));
    if (!socket.waitForConnected(connectTimeout)) {
        return socket.errorString();
    }
    const bool sent = socket.write(&command, 1) == 1 && socket.flush();
    const QString error = sent ? QString() : socket.errorString();
    socket.disconnectFromHost();
    return error;
}
