// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

// How often a file service is asked that hangs up on whoever asks: once a second, by all workers
// together. Such a failure takes no time, so every loop that tries again would otherwise ask as
// fast as it can. A service that lets its askers wait, or refuses with a line, is not held to it.
//
// One memory for the process; any thread.
namespace RequestPace
{

// Whether the service may be asked now; true counts as having asked.
bool mayAsk(const QString &host, quint16 port);

// What came of it.
void hungUp(const QString &host, quint16 port);
void answered(const QString &host, quint16 port);

} // namespace RequestPace
