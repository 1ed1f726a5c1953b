// SPDX-License-Identifier: MIT
#pragma once

#include <QDateTime>
#include <QFile>
#include <QString>

#include <ctime>

// The time zone of a test program, which it may change between two test functions. A zone that the
// system does not know would be taken for UTC, so it is an error.
namespace Zone
{

inline void set(const QByteArray &name)
{
    if (name.contains('/') &&
        !QFile::exists(QStringLiteral("/usr/share/zoneinfo/") + QString::fromLatin1(name))) {
        qFatal("the zone %s is not installed", name.constData());
    }
    if (name.isEmpty()) {
        qunsetenv("TZ");
    } else {
        qputenv("TZ", name);
    }
    tzset();
}

// A date and a time, such as "2026-03-29 02:30:00".
inline QDateTime utc(const QString &text)
{
    return QDateTime(QDate::fromString(text.left(10), Qt::ISODate),
                     QTime::fromString(text.mid(11), QStringLiteral("hh:mm:ss")), Qt::UTC);
}

} // namespace Zone
