// SPDX-License-Identifier: MIT
#include "records/photoowners.h"

#include "records/deviceindex.h"
#include "records/localtext.h"
#include "records/photoname.h"
#include "records/recordfile.h"

PhotoOwners::PhotoOwners(const QString &recordFile, const QString &indexFile, int rows,
                         const QString &vaskId)
{
    RecordFile records(recordFile, Scan::size);
    RecordFile index(indexFile, DeviceIndex::entrySize);
    if (rows == 0 || !records.open(QIODevice::ReadOnly)) {
        return;
    }
    index.open(QIODevice::ReadOnly); // without it there are no entries
    const QString own = PhotoName::storedId(vaskId);
    Scan scan;
    for (int row = 0; row < rows && records.read(row, scan.data()); ++row) {
        char entry[DeviceIndex::entrySize] = {};
        const QString id = index.read(row, entry)
                               ? LocalText::decoded(entry, DeviceIndex::entrySize).trimmed()
                               : QString();
        const QByteArray name = key(scan);
        if (!id.isEmpty() && !ofAnother_.contains(name)) {
            ofAnother_.insert(name, id != own);
        }
    }
}

bool PhotoOwners::isOfAnother(const Scan &scan) const
{
    return ofAnother_.value(key(scan), false);
}

// What the name is made of, without the cost of making it.
QByteArray PhotoOwners::key(const Scan &scan)
{
    const QByteArray time(scan.data() + ScanLayout::dateTime.offset,
                          static_cast<int>(ScanLayout::dateTime.size));
    return time + LocalText::fieldBytes(scan.data() + ScanLayout::number.offset,
                                        static_cast<int>(ScanLayout::number.size))
                      .replace('?', '-')
                      .replace('*', '-');
}
