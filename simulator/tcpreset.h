// SPDX-License-Identifier: MIT
#pragma once

class QTcpSocket;

namespace TcpReset
{
// Ends a connection with a TCP reset, as a device does that loses its power and comes back, and not
// with an orderly close. What has not gone out yet is lost.
void reset(QTcpSocket *socket);
} // namespace TcpReset
