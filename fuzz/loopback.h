// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

// The kernel's sockets on 127.0.0.1, without the toolkit's buffers and events. None of them blocks,
// and a socket of -1 is none. A process without sockets cannot be fuzzed: that ends it.
namespace Loopback
{

// A listening socket on a free port.
int listen(quint16 *port);

// -1 where nobody has connected.
int accept(int listener);

// What there is at the moment; none as well when the other end has closed.
QByteArray receive(int socket);

// False when not all was taken.
bool send(int socket, const QByteArray &bytes);

// The other end reads what was sent, and then the end.
void endSending(int socket);

// At once and without the minute that the kernel would keep the port for.
void closeWithoutTrace(int socket);

} // namespace Loopback
