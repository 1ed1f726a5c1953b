// SPDX-License-Identifier: MIT
#pragma once

#include <QFile>

// The writer of an index file: beside a record file of passages, one entry of 32 bytes per row, the
// identifier of the device that reported the passage as zero-terminated local 8-bit text. Tables
// only read it.
//
// Used by one thread at a time. A write that fails leaves the file without a partial entry.
class DeviceIndex
{
public:
    static constexpr int entrySize = 32;

    // An identifier as an entry holds it: cut to 31 bytes between characters, padded with zeros.
    static QByteArray entry(const QString &deviceId);

    // mode as for QFile: write only empties the file, append keeps it.
    bool open(const QString &name, QIODevice::OpenMode mode);
    bool isOpen() const;
    void close();
    QString errorString() const;

    // Entry number row, written through at once. A shorter file is padded with empty entries first,
    // so that entries and rows stay in step.
    bool write(int row, const QString &deviceId);
    // Keeps the entries of the first rows and drops the rest.
    bool cut(int rows);

private:
    QFile file_;
};
