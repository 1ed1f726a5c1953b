// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

// The one-byte commands of a device's on-line port, each over a connection of its own.
namespace DeviceCommand
{

constexpr char keepAlive = '\xFF';
constexpr char openBarrier = '\xFD';
constexpr char reloadAccessList = '\xEF';

// Sends one command byte. Waits at most 3 s in all for the host's address and the connection, and
// ends within 100 ms of the thread's interruption; nothing is read. Empty, or the socket's error
// text. Worker threads; see CommandSender.
QString send(const QString &host, char command);

} // namespace DeviceCommand
