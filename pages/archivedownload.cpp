// SPDX-License-Identifier: MIT
#include "pages/archivedownload.h"

#include "app/settings.h"
#include "net/deviceidentity.h"
#include "net/getfile.h"
#include "net/onlinepictureloader.h"
#include "net/socketwait.h"
#include "pages/archivefiles.h"
#include "records/deviceindex.h"
#include "records/diskspace.h"
#include "records/filewrite.h"
#include "records/photoname.h"
#include "records/photoowners.h"
#include "records/recordfile.h"
#include "records/scanmodel.h"
#include "records/vasksettings.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace
{

// How long to ask a device for its identifier, and the pause after a failure.
constexpr DeviceIdentity::Patience identityPatience{10000, 20};
constexpr int rowsAtOnce = 512;

} // namespace

ArchiveDownload::ArchiveDownload(const ArchiveRequest &request)
    : request_(request)
    , downloads_(ArchiveFiles::transferTemplate())
{
}

QString ArchiveDownload::archiveFile() const
{
    return downloads_.filePath(QStringLiteral("archive") + VaskSettings::passbaseSuffix());
}

QString ArchiveDownload::fetch()
{
    if (!downloads_.isValid()) {
        return downloads_.errorString();
    }
    deviceId_ = DeviceIdentity::fetch(request_.host, identityPatience, tr("Not defined"),
                                      SocketWait::interrupted);
    GetFile get(request_.host, archiveFile(), nullptr);
    const bool fetched = !SocketWait::interrupted() && get(Settings::instance()->vaskArchivePath());
    if (SocketWait::interrupted()) {
        return QString();
    }
    if (!fetched) {
        return get.transferError();
    }
    chooseRows();
    return QString();
}

void ArchiveDownload::chooseRows()
{
    const ScanModel archive(archiveFile(), nullptr);
    if (request_.wholeArchive) {
        first_ = 0;
        last_ = archive.rowCount() - 1;
        return;
    }
    // The passages are in the order of their times. If a device's clock was set back they are not:
    // the choice is then somewhat off, but still one of its rows.
    first_ = std::lower_bound(archive.begin(), archive.end(), request_.from, indexLessThanDateTime)
                 .row();
    const auto behind =
        std::upper_bound(archive.begin(), archive.end(), request_.to, dateTimeLessThanIndex);
    const bool ends = behind != archive.end() && isIndexEqualDateTime(*behind, request_.to);
    last_ = qMax(first_ - 1, ends ? behind.row() : behind.row() - 1);
}

QString ArchiveDownload::append()
{
    const qint64 oldRecords = qint64(request_.rows) * Scan::size;
    const qint64 oldIndex = qint64(request_.rows) * DeviceIndex::entrySize;
    QFile records(request_.recordFile);
    QFile index(ScanModel::indexFileOf(request_.recordFile));
    for (QFile *file : {&records, &index}) {
        // Unbuffered, so that a full disk is noticed here.
        if (!file->open(QIODevice::Append | QIODevice::Unbuffered)) {
            return file->errorString();
        }
    }
    // Half a record at the end would shift all that follow; an index of another length would give
    // them the names of other devices.
    if (!records.resize(oldRecords)) {
        return records.errorString();
    }
    if (!index.resize(oldIndex)) {
        return index.errorString();
    }
    const QString error = appendTo(records, index);
    if (!error.isEmpty() || SocketWait::interrupted()) {
        records.resize(oldRecords);
        index.resize(oldIndex);
        last_ = first_ - 1;
    }
    downloads_.remove(); // the photos may take long, and need the room
    return error;
}

QString ArchiveDownload::appendTo(QFile &records, QFile &index) const
{
    QFile archive(archiveFile());
    if (!archive.open(QIODevice::ReadOnly) || !archive.seek(qint64(first_) * Scan::size)) {
        return archive.errorString();
    }
    const QByteArray entry = DeviceIndex::entry(deviceId_);
    for (int left = added(); left > 0 && !SocketWait::interrupted();) {
        const int rows = qMin(left, rowsAtOnce);
        const QByteArray passages = archive.read(qint64(rows) * Scan::size);
        if (passages.size() != rows * static_cast<int>(Scan::size)) {
            return archive.errorString();
        }
        if (!FileWrite::all(records, passages)) {
            return records.errorString();
        }
        if (!FileWrite::all(index, entry.repeated(rows))) {
            return index.errorString();
        }
        left -= rows;
    }
    return QString();
}

// Of passages whose photo name belongs to another device, before any photo comes: the download may
// end before theirs.
void ArchiveDownload::reservePhotos(RecordFile &records, const PhotoOwners &owners,
                                    const QString &folder) const
{
    Scan scan;
    for (int row = request_.rows; request_.rows > 0 && row < request_.rows + added(); ++row) {
        if (records.read(row, scan.data()) && owners.isOfAnother(scan)) {
            PhotoName::reserve(photoPath(scan, owners, folder));
        }
    }
}

QString ArchiveDownload::photoPath(const Scan &scan, const PhotoOwners &owners,
                                   const QString &folder) const
{
    const QString picture = VaskSettings::picFileName(scan);
    return folder + QLatin1Char('/') +
           (owners.isOfAnother(scan) ? PhotoName::ofDevice(picture, deviceId_) : picture);
}

bool ArchiveDownload::photos(const QString &folder, const std::function<void(int)> &progress) const
{
    constexpr double allButFirst = 99.0;
    const Settings *settings = Settings::instance();
    RecordFile records(request_.recordFile, Scan::size);
    const int count = records.open(QIODevice::ReadOnly) ? added() : 0;
    const qint64 reserve = settings->minReservedFreeSpace();
    const PhotoOwners owners(request_.recordFile, ScanModel::indexFileOf(request_.recordFile),
                             request_.rows, deviceId_);
    reservePhotos(records, owners, folder);
    int shown = 0;
    progress(shown + 1);
    for (int done = 1; done <= count && !SocketWait::interrupted(); ++done) {
        if (DiskSpace::of(request_.recordFile).available <= reserve) {
            return false;
        }
        Scan scan;
        if (records.read(request_.rows + count - done, scan.data())) {
            GetFile get(request_.host, QString(), nullptr);
            get.setSpared(reserve);
            OnlinePictureLoader::fetch(get, settings->vaskArchivePhotoPath(scan),
                                       photoPath(scan, owners, folder));
            if (get.hadNoRoom()) {
                return false; // nor would the others fit, which are as large
            }
        }
        const int percent = qRound(allButFirst * done / count);
        if (percent != shown) {
            shown = percent;
            progress(shown + 1);
        }
    }
    return true;
}
