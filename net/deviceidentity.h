// SPDX-License-Identifier: MIT
#pragma once

#include "net/socketwait.h"

#include <QByteArray>
#include <QString>

// Who a device is: the key "common/deviceid" of its "/etc/streams.ini".
namespace DeviceIdentity
{

// A file that a device calls its configuration is not longer.
constexpr int largestFile = 256 * 1024;

// For how long to ask again, and the pause after each failure.
struct Patience {
    int totalMsec;
    int pauseMsec;
};

// The identifier in the text of the file; fallback where it is not told. Text in the encoding of
// the locale; a list ("a, b") is joined. Files that are too large, or that would have the toolkit's
// reader build objects out of their values, tell nothing.
QString parse(const QByteArray &file, const QString &fallback);

// Fetches the file until it succeeds, the patience ends or it is called off. Blocks; worker
// threads.
QString fetch(const QString &host, Patience patience, const QString &fallback,
              const SocketWait::Cancelled &cancelled);

} // namespace DeviceIdentity
