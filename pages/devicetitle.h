// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

// The rich text in the middle of the title bar: the page's name and the devices that it works with.
// What comes from outside is escaped.
namespace DeviceTitle
{

// The page's name alone.
QString plain(const QString &page);

// With the device that the page's table came from.
QString device(const QString &page, const QString &device);

// Grey while no device is connected; an empty host is not named.
QString onLine(const QString &page, const QString &firstHost, const QString &secondHost,
               bool connected);

} // namespace DeviceTitle
