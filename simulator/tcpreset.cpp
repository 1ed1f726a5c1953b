// SPDX-License-Identifier: MIT
#include "simulator/tcpreset.h"

#include <QTcpSocket>

#include <sys/socket.h>

void TcpReset::reset(QTcpSocket *socket)
{
    const linger noWait{1, 0};
    setsockopt(static_cast<int>(socket->socketDescriptor()), SOL_SOCKET, SO_LINGER, &noWait,
               sizeof noWait);
    socket->abort();
}
