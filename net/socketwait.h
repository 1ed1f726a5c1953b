// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <functional>

class QAbstractSocket;

// Waits of worker threads that end within 100 ms of being called off. Never in the GUI thread.
namespace SocketWait
{

using Cancelled = std::function<bool()>;

// Whether the current thread was asked to end.
bool interrupted();

// Sleeps; false when it was called off.
bool pause(qint64 msec, const Cancelled &cancelled);

// HungUp: the other side took the connection and reset it at once. The socket's own text tells why
// it Failed, and nothing of the others.
enum class Outcome { Connected, Failed, HungUp, TimedOut, CalledOff };

// The toolkit's text for a line that the other side closed.
QString hungUpText();

// Connects in a local event loop of the current thread, since the toolkit's own blocking wait
// cannot be called off. One connection per call and address of the host: left alone, the toolkit
// would make another one each time that the other side resets it. Unless connected, the socket is
// left unconnected.
Outcome connectToHost(QAbstractSocket &socket, const QString &host, quint16 port, int msec,
                      const Cancelled &cancelled);

// Closes gently, waiting up to msec for what is still to be sent; then breaks off.
void close(QAbstractSocket &socket, int msec, const Cancelled &cancelled);

} // namespace SocketWait
