// SPDX-License-Identifier: MIT
#pragma once

#include "records/scan.h"
#include "simulator/devicehost.h"

#include <QByteArray>
#include <QStringList>

// The passages and photos of a simulated device as a test knows them, byte for byte. The photos are
// small, each with bytes of its own, and cheap to make. The device must outlive it.
class ArchiveDevice
{
public:
    // Of every photo: a page of memory, four blocks of a transfer.
    static constexpr int photoSize = 4096;

    // The device serves these passages from now on, one behind the other.
    ArchiveDevice(DeviceHost &device, const QByteArray &passages);

    // So many passages, the last one at noon, about a minute from one to the next.
    static QByteArray passages(int rows, bool unordered = false);

    int rows() const { return passages_.size() / static_cast<int>(Scan::size); }
    Scan passage(int row) const;
    QDateTime time(int row) const { return passage(row).dateTime(); }

    // What the panel must hold of the rows first to last, both included.
    QByteArray records(int first, int last) const;
    QByteArray index(int rows) const;
    QString photoName(int row) const;
    QString remotePhoto(int row) const;
    QByteArray photo(int row) const;

    // The photos asked for so far, in this order.
    QStringList photoRequests() const;

private:
    DeviceHost &device_;
    QByteArray passages_;
};
