// SPDX-License-Identifier: MIT
#include "tests/support/archivedevice.h"

#include "app/settings.h"
#include "records/deviceindex.h"
#include "records/vasksettings.h"
#include "simulator/archive.h"
#include "tests/support/onlinepage.h"

#include <algorithm>

namespace
{

constexpr int stepSeconds = 60;
constexpr int residents = 40;
constexpr quint32 seed = 7;

QByteArray photoOf(const QString &remotePath)
{
    static const QByteArray picture = OnlinePage::jpeg(32, 24);
    // What stands behind the end of a picture does not disturb its readers.
    const QByteArray name = remotePath.toLatin1() + '\n';
    const int missing = ArchiveDevice::photoSize - picture.size();
    return picture + name.repeated(missing / name.size() + 1).left(missing);
}

} // namespace

ArchiveDevice::ArchiveDevice(DeviceHost &device, const QByteArray &passages)
    : device_(device)
    , passages_(passages)
{
    device_.files().setMaker(DevicePaths::archive(),
                             [passages](const QString &) { return FileTree::contentOf(passages); });
    device_.files().setMaker(DevicePaths::photoFolder(), [](const QString &path) {
        return FileTree::contentOf(photoOf(path));
    });
}

QByteArray ArchiveDevice::passages(int rows, bool unordered)
{
    const QDateTime noon(QDate(2025, 6, 15), QTime(12, 0), Qt::UTC);
    const Archive archive(rows, noon.toSecsSinceEpoch(), stepSeconds, seed, residents, unordered);
    return archive.read(0, archive.size());
}

Scan ArchiveDevice::passage(int row) const
{
    Scan scan;
    std::copy_n(passages_.constData() + qint64(row) * Scan::size, Scan::size, scan.data());
    return scan;
}

QByteArray ArchiveDevice::records(int first, int last) const
{
    constexpr int size = Scan::size;
    return passages_.mid(first * size, (last - first + 1) * size);
}

QByteArray ArchiveDevice::index(int rows) const
{
    return DeviceIndex::entry(device_.deviceId()).repeated(rows);
}

QString ArchiveDevice::photoName(int row) const
{
    return VaskSettings::picFileName(passage(row));
}

QString ArchiveDevice::remotePhoto(int row) const
{
    return Settings::instance()->vaskArchivePhotoPath(passage(row));
}

QByteArray ArchiveDevice::photo(int row) const
{
    return photoOf(remotePhoto(row));
}

QStringList ArchiveDevice::photoRequests() const
{
    QStringList result;
    const auto requests = device_.journal().entries(JournalEntry::Kind::Request);
    for (const JournalEntry &each : requests) {
        if (each.text.startsWith(DevicePaths::photoFolder())) {
            result += each.text;
        }
    }
    return result;
}
