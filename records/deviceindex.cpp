// SPDX-License-Identifier: MIT
#include "records/deviceindex.h"

#include "records/localtext.h"

QByteArray DeviceIndex::entry(const QString &deviceId)
{
    QByteArray bytes = LocalText::encoded(deviceId, entrySize - 1);
    return bytes.append(entrySize - bytes.size(), '\0');
}

bool DeviceIndex::open(const QString &name, QIODevice::OpenMode mode)
{
    file_.close();
    file_.setFileName(name);
    return file_.open(mode | QIODevice::Unbuffered);
}

bool DeviceIndex::isOpen() const
{
    return file_.isOpen();
}

void DeviceIndex::close()
{
    file_.close();
}

QString DeviceIndex::errorString() const
{
    return file_.errorString();
}

bool DeviceIndex::write(int row, const QString &deviceId)
{
    const qint64 place = qint64(row) * entrySize;
    if (file_.size() != place && !file_.resize(place)) {
        return false;
    }
    if (file_.seek(place) && file_.write(entry(deviceId)) == entrySize) {
        return true;
    }
    file_.resize(place);
    return false;
}

bool DeviceIndex::cut(int rows)
{
    return file_.resize(qint64(rows) * entrySize);
}
