// SPDX-License-Identifier: MIT
#include "net/deadpeer.h"

#include <QAbstractSocket>

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

namespace
{

// Seconds without a byte before the system asks by itself, between its questions, and how many of
// them may go unanswered.
constexpr int quietBeforeProbes = 5;
constexpr int betweenProbes = 2;
constexpr int mostProbes = 2;
// Leaves the second between two questions of isGone().
constexpr unsigned goneAfter = DeadPeer::longestSilence - 1500;

int descriptor(const QAbstractSocket &socket)
{
    return static_cast<int>(socket.socketDescriptor());
}

// A system that does not know an option leaves the line as it would be without it.
void set(const QAbstractSocket &socket, int level, int option, int value)
{
    setsockopt(descriptor(socket), level, option, &value, sizeof value);
}

} // namespace

void DeadPeer::watchTransfer(QAbstractSocket &socket)
{
    set(socket, IPPROTO_TCP, TCP_USER_TIMEOUT, longestSilence);
}

void DeadPeer::watchLine(QAbstractSocket &socket)
{
    watchTransfer(socket);
    set(socket, IPPROTO_TCP, TCP_KEEPIDLE, quietBeforeProbes);
    set(socket, IPPROTO_TCP, TCP_KEEPINTVL, betweenProbes);
    set(socket, IPPROTO_TCP, TCP_KEEPCNT, mostProbes);
    set(socket, SOL_SOCKET, SO_KEEPALIVE, 1);
}

bool DeadPeer::isGone(const QAbstractSocket &socket)
{
    tcp_info info = {};
    socklen_t length = sizeof info;
    if (getsockopt(descriptor(socket), IPPROTO_TCP, TCP_INFO, &info, &length) != 0) {
        return false;
    }
    // The system may have given the line up, with bytes of it still to be read.
    const bool asked =
        info.tcpi_unacked > 0 || info.tcpi_probes > 0 || info.tcpi_state == TCP_CLOSE;
    return asked && info.tcpi_last_ack_recv >= goneAfter && info.tcpi_last_data_recv >= goneAfter;
}
