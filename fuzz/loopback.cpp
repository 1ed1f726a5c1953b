// SPDX-License-Identifier: MIT
#include "fuzz/loopback.h"

#include "fuzz/fuzztarget.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

int Loopback::listen(quint16 *port)
{
    const int listener = socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    auto *name = reinterpret_cast<sockaddr *>(&address);
    FuzzTarget::require(bind(listener, name, length) == 0 && ::listen(listener, 64) == 0 &&
                            getsockname(listener, name, &length) == 0,
                        "there is a port to listen on");
    *port = ntohs(address.sin_port);
    return listener;
}

int Loopback::accept(int listener)
{
    const int line = accept4(listener, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
    if (line >= 0) {
        const int on = 1;
        setsockopt(line, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    }
    return line;
}

QByteArray Loopback::receive(int socket)
{
    QByteArray bytes;
    char piece[16384];
    for (ssize_t size = 1; socket >= 0 && size > 0;) {
        size = recv(socket, piece, sizeof piece, MSG_DONTWAIT);
        if (size > 0) {
            bytes.append(piece, static_cast<int>(size));
        }
    }
    return bytes;
}

bool Loopback::send(int socket, const QByteArray &bytes)
{
    const auto size = static_cast<std::size_t>(bytes.size());
    return ::send(socket, bytes.constData(), size, MSG_NOSIGNAL | MSG_DONTWAIT) == bytes.size();
}

void Loopback::endSending(int socket)
{
    shutdown(socket, SHUT_WR);
}

void Loopback::closeWithoutTrace(int socket)
{
    if (socket >= 0) {
        const linger now{1, 0};
        setsockopt(socket, SOL_SOCKET, SO_LINGER, &now, sizeof now);
        close(socket);
    }
}
