// SPDX-License-Identifier: MIT
#include "net/devicecommand.h"

#include "app/settings.h"

#include <QElapsedTimer>
#include <QHostAddress>
#include <QSemaphore>
#include <QTcpSocket>
#include <QUrl>
#include <QVector>

#include <memory>
#include <netdb.h>
#include <system_error>
#include <thread>

namespace
{

constexpr int longestWait = 3000;

struct Lookup {
    QSemaphore done;
    QVector<QHostAddress> addresses;
};

void lookUp(Lookup &lookup, const QByteArray &name)
{
    addrinfo hints = {};
    hints.ai_socktype = SOCK_STREAM;
    addrinfo *found = nullptr;
    if (getaddrinfo(name.constData(), nullptr, &hints, &found) == 0) {
        for (const addrinfo *each = found; each != nullptr; each = each->ai_next) {
            lookup.addresses.append(QHostAddress(each->ai_addr));
        }
        freeaddrinfo(found);
    }
}

// The system's look-up of a name cannot be called off, so it runs beside and is left behind when it
// takes too long. Nothing then, and when there is no such host.
QVector<QHostAddress> addressesOf(const QString &host, int msec)
{
    const QHostAddress literal(host);
    if (!literal.isNull()) {
        return {literal};
    }
    if (host.isEmpty()) {
        return {};
    }
    const auto lookup = std::make_shared<Lookup>();
    try {
        std::thread([lookup, name = QUrl::toAce(host)] {
            lookUp(*lookup, name);
            lookup->done.release();
        }).detach();
    } catch (const std::system_error &) {
        return {}; // the system gives no thread
    }
    return lookup->done.tryAcquire(1, msec) ? lookup->addresses : QVector<QHostAddress>();
}

} // namespace

QString DeviceCommand::send(const QString &host, char command)
{
    QElapsedTimer clock;
    clock.start();
    const Settings *settings = Settings::instance();
    const auto port = static_cast<quint16>(settings != nullptr ? settings->vaskParkingPort() : 0);
    QTcpSocket socket;
    QString error = QAbstractSocket::tr("Host not found");
    // A name may stand for several addresses, of which the device answers on one.
    for (const QHostAddress &address : addressesOf(host, longestWait)) {
        socket.abort();
        socket.connectToHost(address, port);
        if (socket.waitForConnected(qMax(1, longestWait - static_cast<int>(clock.elapsed())))) {
            const bool sent = socket.write(&command, 1) == 1 && socket.flush();
            error = sent ? QString() : socket.errorString();
            socket.disconnectFromHost();
            return error;
        }
        error = socket.errorString();
    }
    return error;
}
