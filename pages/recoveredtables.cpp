// SPDX-License-Identifier: MIT
#include "pages/recoveredtables.h"

#include "app/settings.h"
#include "pages/archivefiles.h"
#include "pages/temporarydata.h"
#include "records/diskspace.h"
#include "records/recordfile.h"
#include "records/scan.h"
#include "records/scanmodel.h"
#include "records/vasksettings.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

#include <cerrno>
#include <fcntl.h>
#include <limits>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

constexpr int mostKept = 3;
// Sorts by time, and every file system takes it.
const QString stamp = QStringLiteral("yyyy-MM-dd_hh-mm-ss");
// What a rescue is moving; renamed when all is there.
const QString unfinished = QStringLiteral(".unfinished");

QString root()
{
    return QDir(Settings::instance()->absoluteWorkingDirectory())
        .filePath(QStringLiteral("Recovered"));
}

QString liveTable()
{
    const Settings *settings = Settings::instance();
    return settings->absolute(settings->onLineTempFile());
}

QString livePhotos()
{
    return QFileInfo(liveTable()).absolutePath() + QLatin1Char('/') + VaskSettings::picFileDir();
}

// The same name with the ending by which the file dialog finds dumps.
QString tableIn(const QString &folder)
{
    return folder + QLatin1Char('/') +
           Settings::extended(QFileInfo(liveTable()).fileName(), VaskSettings::passbaseSuffix());
}

QString tableOf(const QString &folder)
{
    const QStringList tables = QDir(folder).entryList(
        {QLatin1Char('*') + VaskSettings::passbaseSuffix()}, QDir::Files | QDir::NoSymLinks);
    return tables.isEmpty() ? QString() : folder + QLatin1Char('/') + tables.first();
}

bool isRealFolder(const QString &path)
{
    const QFileInfo folder(path);
    return folder.isDir() && !folder.isSymLink();
}

// From the oldest on.
QStringList names()
{
    static const QRegularExpression form(
        QStringLiteral("^\\d{4}-\\d\\d-\\d\\d_\\d\\d-\\d\\d-\\d\\d$"));
    return isRealFolder(root())
               ? QDir(root())
                     .entryList(QDir::Dirs | QDir::NoSymLinks | QDir::NoDotAndDotDot, QDir::Name)
                     .filter(form)
               : QStringList();
}

// Behind the newest one in any case: a clock may have been set back.
QString nextName()
{
    const QString now = QDateTime::currentDateTime().toString(stamp);
    const QString newest = names().isEmpty() ? QString() : names().constLast();
    if (now > newest) {
        return now;
    }
    QDateTime behind = QDateTime::fromString(newest, stamp);
    behind.setTimeSpec(Qt::UTC); // no hour is missing there, and none comes twice
    return behind.addSecs(1).toString(stamp);
}

bool rename(const QString &from, const QString &to)
{
    return ::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0;
}

void flushFolder(const QString &folder)
{
    const int opened =
        open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (opened >= 0) {
        fsync(opened);
        close(opened);
    }
}

// Whether the On-line page would delete the table when it is made.
bool isEmptiedAtStart(const QString &table)
{
    const Settings *settings = Settings::instance();
    const QString folder = settings->absolute(settings->onLineTempDirectory());
    const QString place = QFileInfo(table).canonicalPath();
    const QString emptied = QFileInfo(folder).canonicalFilePath();
    return TemporaryData::isFolderOfItsOwn(folder) &&
           (place == emptied || QFileInfo(place).path() == emptied);
}

bool hasPassages(const QString &table)
{
    const QFileInfo file(table);
    return file.isFile() && !file.isSymLink() && file.size() >= qint64{Scan::size};
}

// After a call that failed.
bool isFull()
{
    return errno == ENOSPC || errno == EDQUOT;
}

bool makeFolder(const QString &path)
{
    return mkdir(QFile::encodeName(path).constData(), 0700) == 0 ||
           (errno == EEXIST && isRealFolder(path));
}

// A folder takes room, of which a full disk gets some from the oldest photos of the table.
bool makeFolderWhereFull(const QString &path)
{
    RecordFile rows(liveTable(), Scan::size);
    const int count = rows.open(QIODevice::ReadOnly) ? rows.count() : 0;
    for (int row = 0; !makeFolder(path); ++row) {
        Scan scan;
        if (!isFull() || row >= count || !rows.read(row, scan.data())) {
            return false;
        }
        QFile::remove(livePhotos() + QLatin1Char('/') + VaskSettings::picFileName(scan));
    }
    return true;
}

// By the toolkit, which copies to another disk; the photos stay behind then. True where there is
// none.
bool moveFile(const QString &from, const QString &to)
{
    if (!QFile::exists(from)) {
        return true;
    }
    QFile::remove(to); // half a copy of a rescue that was killed
    return QFile::rename(from, to);
}

// The table last: as long as it is in its old place, the next start does the rest.
bool moveInto(const QString &folder)
{
    const QString table = tableIn(folder);
    if (isRealFolder(livePhotos())) {
        rename(livePhotos(), ArchiveFiles::photosOf(table));
    }
    return moveFile(ScanModel::indexFileOf(liveTable()), ScanModel::indexFileOf(table)) &&
           moveFile(liveTable(), table);
}

} // namespace

RecoveredTables::RecoveredTables() = default;
RecoveredTables::~RecoveredTables() = default;

RecoveredTables::Rescue RecoveredTables::rescue()
{
    if (Settings::instance() == nullptr) {
        return Rescue::Nothing;
    }
    const QString folder = root() + QLatin1Char('/') + unfinished;
    const bool isMoved = isRealFolder(root()) && isRealFolder(folder) &&
                         hasPassages(tableIn(folder)) && !hasPassages(liveTable());
    if (!isMoved) {
        if (!hasPassages(liveTable()) || !isEmptiedAtStart(liveTable())) {
            return Rescue::Nothing;
        }
        if (!makeFolderWhereFull(root()) || !makeFolderWhereFull(folder) || !moveInto(folder)) {
            QDir(folder).removeRecursively();
            return Rescue::Failed;
        }
    }
    flushFolder(folder);
    const QString name = nextName();
    if (!rename(folder, root() + QLatin1Char('/') + name)) {
        return Rescue::Failed;
    }
    flushFolder(root());
    while (names().size() > mostKept) {
        QDir(root() + QLatin1Char('/') + names().constFirst()).removeRecursively();
    }
    RecoveredTables tables;
    tables.makeRoom(std::numeric_limits<int>::max());
    while (!makeFolder(livePhotos()) && isFull() && tables.removeNext()) {
    }
    return names().contains(name) ? Rescue::Done : Rescue::Failed;
}

QString RecoveredTables::newest()
{
    const QStringList all = Settings::instance() != nullptr ? names() : QStringList();
    return all.isEmpty() ? QString() : QStringLiteral("Recovered/") + all.constLast();
}

void RecoveredTables::makeRoom(int mostMsec)
{
    const Settings *settings = Settings::instance();
    if (settings == nullptr) {
        return;
    }
    const qint64 reserve = settings->minReservedFreeSpace();
    QElapsedTimer clock;
    clock.start();
    while (DiskSpace::of(settings->absoluteWorkingDirectory()).available < reserve &&
           !clock.hasExpired(mostMsec) && removeNext()) {
    }
}

bool RecoveredTables::removeNext()
{
    if (!rows_ && !openOldest()) {
        return false;
    }
    Scan scan;
    if (row_ < rows_->count() && rows_->read(row_, scan.data())) {
        // That of another device with the same name goes with the rest.
        QFile::remove(ArchiveFiles::photosOf(rows_->fileName()) + QLatin1Char('/') +
                      VaskSettings::picFileName(scan));
        ++row_;
        return true;
    }
    rows_.reset();
    return QDir(folder_).removeRecursively();
}

bool RecoveredTables::openOldest()
{
    const QStringList all = names();
    if (all.isEmpty()) {
        return false;
    }
    folder_ = root() + QLatin1Char('/') + all.constFirst();
    row_ = 0;
    rows_ = std::make_unique<RecordFile>(tableOf(folder_), Scan::size);
    rows_->open(QIODevice::ReadOnly); // without a table there are no rows, and the rest goes
    return true;
}
