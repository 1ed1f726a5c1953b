// SPDX-License-Identifier: MIT
#pragma once

#include <qglobal.h>

namespace PacketDrop
{
// On: every packet that comes for the socket is thrown away before the system's TCP sees it, so
// that nothing is acknowledged, no connection is taken and none is refused, as with a cable pulled.
// Connections that a listening socket accepts begin with what holds for it. What the owner writes
// still goes out. Needs no privileges. False where the system cannot do it.
bool set(qintptr socket, bool on);
} // namespace PacketDrop
