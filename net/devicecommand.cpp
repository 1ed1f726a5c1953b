// SPDX-License-Identifier: MIT
#include "net/devicecommand.h"

#include "app/settings.h"

#include <QElapsedTimer>
#include <QHostAddress>
#include <QSemaphore>
#include <QTcpSocket>

#include <memory>
#include <netdb.h>
#include <thread>

namespace
{

constexpr int longestWait = 3000;

struct Lookup {
    QSemaphore done;
    QHostAddress address;
};

// The system's look-up of a name cannot be called off, so it runs beside and is left behind when it
// takes too long. Null then, and when there is no such host.
QHostAddress addressOf(const QString &host, int msec)
{
    const QHostAddress literal(host);
    if (!literal.isNull() || host.isEmpty()) {
        return literal;
    }
    const auto lookup = std::make_shared<Lookup>();
    std::thread([lookup, name = host.toStdString()] {
        addrinfo *found = nullptr;
        if (getaddrinfo(name.c_str(), nullptr, nullptr, &found) == 0 && found != nullptr) {
            lookup->address = QHostAddress(found->ai_addr);
            freeaddrinfo(found);
        }
        lookup->done.release();
    }).detach();
    return lookup->done.tryAcquire(1, msec) ? lookup->address : QHostAddress();
}

} // namespace

QString DeviceCommand::send(const QString &host, char command)
{
    QElapsedTimer clock;
    clock.start();
    const QHostAddress address = addressOf(host, longestWait);
    if (address.isNull()) {
        return QAbstractSocket::tr("Host not found");
    }
    const Settings *settings = Settings::instance();
    QTcpSocket socket;
    socket.connectToHost(
        address, static_cast<quint16>(settings != nullptr ? settings->vaskParkingPort() : 0));
    if (!socket.waitForConnected(qMax(1, longestWait - static_cast<int>(clock.elapsed())))) {
        return socket.errorString();
    }
    const bool sent = socket.write(&command, 1) == 1 && socket.flush();
    const QString error = sent ? QString() : socket.errorString();
    socket.disconnectFromHost();
    return error;
}
