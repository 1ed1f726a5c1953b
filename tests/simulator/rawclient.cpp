// SPDX-License-Identifier: MIT
#include "tests/simulator/rawclient.h"

#include <arpa/inet.h>
#include <cerrno>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

RawClient::RawClient(const QString &address, quint16 port)
{
    sockaddr_in peer{};
    peer.sin_family = AF_INET;
    peer.sin_port = htons(port);
    inet_pton(AF_INET, address.toLatin1().constData(), &peer.sin_addr);
    socket_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (connect(socket_, reinterpret_cast<sockaddr *>(&peer), sizeof peer) != 0) {
        end_ = End::Refused;
        close(socket_);
        socket_ = -1;
    }
    sinceSend_.start();
}

RawClient::~RawClient()
{
    if (socket_ >= 0) {
        close(socket_);
    }
}

void RawClient::send(const QByteArray &bytes)
{
    // A failure shows in what is received.
    [[maybe_unused]] const ssize_t sent =
        ::send(socket_, bytes.constData(), static_cast<std::size_t>(bytes.size()), MSG_NOSIGNAL);
    sinceSend_.start();
}

void RawClient::read(qint64 bytes, int msec)
{
    QByteArray buffer(65536, '\0');
    while (count_ < bytes && end_ == End::Open) {
        pollfd readable{socket_, POLLIN, 0};
        if (poll(&readable, 1, msec) == 0) {
            return;
        }
        const ssize_t size =
            recv(socket_, buffer.data(), static_cast<std::size_t>(buffer.size()), 0);
        if (size <= 0) {
            end_ = size == 0 ? End::Closed : End::Reset;
            return;
        }
        if (firstByte_ < 0) {
            firstByte_ = sinceSend_.elapsed();
        }
        count_ += size;
        if (keeps_) {
            received_.append(buffer.constData(), static_cast<int>(size));
        }
    }
}
