// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

// By which the panel is known to whoever hands out addresses in its network. Any thread.
namespace HardwareAddress
{

// That of the first network interface that is not the loopback, in the system's order. Empty where
// there is none, or where it has none.
QString ofFirstInterface();

} // namespace HardwareAddress
