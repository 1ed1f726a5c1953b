// SPDX-License-Identifier: MIT
#pragma once

#include "tests/soak/tablecomparison.h"

#include <QFile>

// The journal file of a simulated device, read while it is written: the passages that were sent
// since it was read last. Lines that are not yet whole are left for the next time.
class DeviceJournal
{
public:
    explicit DeviceJournal(const QString &file);

    // False with the reason in error when the file cannot be read or has a line that is none of a
    // journal; nothing may be passed over here.
    bool readOn(QVector<SentPassage> *sent, QString *error);

    // The row that a record of 192 bytes has to become, by the offsets of the two layouts alone:
    // made without the code that the panel makes it with. Empty for any other number of bytes.
    static QByteArray passageOf(const QByteArray &record);

private:
    QFile file_;
};
