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

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <iterator>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace
{

constexpr int mostKept = 3;
// Sorts by time, and every file system takes it.
const QString stamp = QStringLiteral("yyyy-MM-dd_hh-mm-ss");
// A start does not delay the window for longer than that; the passages do the rest.
constexpr int mostStartMsec = 1000;
// What a table gives, at the most, for the folder it is to be kept in.
constexpr int mostPhotosForFolder = 64;

bool leftInPlace = false;

QString root()
{
    return QDir(Settings::instance()->absoluteWorkingDirectory())
        .filePath(QStringLiteral("Recovered"));
}

// What a rescue is moving; renamed when all is there.
QString unfinished()
{
    return root() + QStringLiteral("/.unfinished");
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

// Without a zone, in which an hour may be missing or come twice. Invalid for names of another form,
// and for the last year of the form, behind which there would be no name.
QDateTime timeOf(const QString &name)
{
    static const QRegularExpression form(
        QStringLiteral("^\\d{4}-\\d\\d-\\d\\d_\\d\\d-\\d\\d-\\d\\d$"));
    if (!form.match(name).hasMatch()) {
        return QDateTime();
    }
    const QStringList parts = name.split(QLatin1Char('_'));
    const QDate day = QDate::fromString(parts.at(0), QStringLiteral("yyyy-MM-dd"));
    const QTime time = QTime::fromString(parts.at(1), QStringLiteral("hh-mm-ss"));
    return day.isValid() && time.isValid() && day.year() < 9999 ? QDateTime(day, time, Qt::UTC)
                                                                : QDateTime();
}

// From the oldest on.
QStringList names()
{
    QStringList all;
    if (isRealFolder(root())) {
        const QStringList folders = QDir(root()).entryList(
            QDir::Dirs | QDir::NoSymLinks | QDir::NoDotAndDotDot, QDir::Name);
        std::copy_if(folders.begin(), folders.end(), std::back_inserter(all),
                     [](const QString &name) { return timeOf(name).isValid(); });
    }
    return all;
}

// Behind the newest one in any case: a clock may have been set back.
QString nextName()
{
    const QString now = QDateTime::currentDateTime().toString(stamp);
    const QStringList all = names();
    return all.isEmpty() || now > all.constLast()
               ? now
               : timeOf(all.constLast()).addSecs(1).toString(stamp);
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
        if (!isFull() || row >= qMin(count, mostPhotosForFolder) || !rows.read(row, scan.data())) {
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

bool isFilled(const QString &folder)
{
    return isRealFolder(folder) && !QDir(folder).isEmpty();
}

// Half a copy of it.
bool isBeginningOf(const QString &table, const QString &whole)
{
    QFile one(table);
    QFile other(whole);
    if (!one.open(QIODevice::ReadOnly) || !other.open(QIODevice::ReadOnly)) {
        return false;
    }
    constexpr qint64 atOnce = 1 << 20;
    QByteArray piece;
    do {
        piece = one.read(atOnce);
    } while (!piece.isEmpty() && other.read(piece.size()) == piece);
    return piece.isEmpty();
}

// Whether a former rescue was stopped with more than a part of the live table.
bool hasUnfinished()
{
    if (!isRealFolder(root()) || !isRealFolder(unfinished())) {
        return false;
    }
    const QString table = tableIn(unfinished());
    return hasPassages(table) ? !isBeginningOf(table, liveTable())
                              : isFilled(ArchiveFiles::photosOf(table)) && isFilled(livePhotos());
}

// What has been moved, also by a start that was killed. What cannot be put back stays there.
void putBack()
{
    if (!isRealFolder(root()) || !isRealFolder(unfinished())) {
        return;
    }
    const QString table = tableIn(unfinished());
    const QString index = ScanModel::indexFileOf(liveTable());
    if (isRealFolder(ArchiveFiles::photosOf(table))) {
        rename(ArchiveFiles::photosOf(table), livePhotos());
    }
    if (!QFile::exists(index)) {
        QFile::rename(ScanModel::indexFileOf(table), index);
    }
    rmdir(QFile::encodeName(unfinished()).constData());
}

// The table last: as long as it is in its old place, the next start does the rest.
bool moveLiveTable()
{
    if (makeFolderWhereFull(root()) && makeFolderWhereFull(unfinished())) {
        const QString table = tableIn(unfinished());
        const bool photosMoved = !isRealFolder(livePhotos()) ||
                                 rename(livePhotos(), ArchiveFiles::photosOf(table)) ||
                                 errno == EXDEV || !isFilled(livePhotos());
        if (photosMoved &&
            moveFile(ScanModel::indexFileOf(liveTable()), ScanModel::indexFileOf(table)) &&
            moveFile(liveTable(), table)) {
            return true;
        }
    }
    putBack();
    return false;
}

// Its name; empty when that could not be given.
QString finish()
{
    flushFolder(unfinished());
    QString name = nextName();
    if (!rename(unfinished(), root() + QLatin1Char('/') + name)) {
        name.clear();
    }
    flushFolder(root());
    return name;
}

// A dump of that name beside the folder that the On-line page empties.
QString besideLive(const QString &name)
{
    const Settings *settings = Settings::instance();
    const QFileInfo live(liveTable());
    return QFileInfo(QDir::cleanPath(settings->absolute(settings->onLineTempDirectory())))
               .absolutePath() +
           QLatin1Char('/') +
           Settings::extended(live.baseName() + QLatin1Char('-') + name,
                              VaskSettings::passbaseSuffix());
}

// Where there is no other way to keep the table. Takes no room but for the new folder of photos:
// with all or nothing done.
bool setAside()
{
    QDateTime time = QDateTime::currentDateTime();
    time.setTimeSpec(Qt::UTC);
    QString table = besideLive(time.toString(stamp));
    while (QFile::exists(table) || QFile::exists(ScanModel::indexFileOf(table)) ||
           QFile::exists(ArchiveFiles::photosOf(table))) {
        time = time.addSecs(1);
        table = besideLive(time.toString(stamp));
    }
    const std::array<std::pair<QString, QString>, 3> moves = {
        {{livePhotos(), ArchiveFiles::photosOf(table)},
         {ScanModel::indexFileOf(liveTable()), ScanModel::indexFileOf(table)},
         {liveTable(), table}}};
    bool done = true;
    for (const auto &[from, to] : moves) {
        done = done && (!QFile::exists(from) || rename(from, to));
    }
    done = done && makeFolder(livePhotos());
    for (const auto &[from, to] : moves) {
        if (!done && QFile::exists(to)) {
            rename(to, from);
        }
    }
    flushFolder(QFileInfo(table).absolutePath());
    return done;
}

// Not where the disk cannot be asked, or could never have the reserve.
bool isReserveMissing()
{
    const Settings *settings = Settings::instance();
    const qint64 reserve = settings->minReservedFreeSpace();
    const DiskSpace disk = DiskSpace::of(settings->absoluteWorkingDirectory());
    return disk.total > reserve && disk.available < reserve;
}

} // namespace

RecoveredTables::RecoveredTables() = default;
RecoveredTables::~RecoveredTables() = default;

RecoveredTables::Rescue RecoveredTables::rescue()
{
    leftInPlace = false;
    if (Settings::instance() == nullptr) {
        return Rescue::Nothing;
    }
    const bool isUnfinished = hasUnfinished();
    const bool isLive = hasPassages(liveTable()) && isEmptiedAtStart(liveTable());
    if (!isUnfinished && !isLive) {
        return Rescue::Nothing;
    }
    QString name = isUnfinished ? finish() : QString();
    if (isLive) {
        const bool isMoved = (!isUnfinished || !name.isEmpty()) && moveLiveTable();
        name = isMoved ? finish() : QString();
        leftInPlace = !isMoved && !setAside();
    }
    RecoveredTables tables;
    tables.makeRoom(mostStartMsec);
    while (!makeFolder(livePhotos()) && isFull() && tables.removeNext()) {
    }
    return names().contains(name) ? Rescue::Done : Rescue::Failed;
}

bool RecoveredTables::isLeftInPlace()
{
    return leftInPlace;
}

void RecoveredTables::forgetLeft()
{
    leftInPlace = false;
}

QString RecoveredTables::newest()
{
    const QStringList all = Settings::instance() != nullptr ? names() : QStringList();
    return all.isEmpty() ? QString() : QStringLiteral("Recovered/") + all.constLast();
}

void RecoveredTables::makeRoom(int mostMsec)
{
    if (Settings::instance() == nullptr) {
        return;
    }
    QElapsedTimer clock;
    clock.start();
    while ((removable().size() > mostKept || isReserveMissing()) && !clock.hasExpired(mostMsec) &&
           removeNext()) {
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
    if (!QDir(folder_).removeRecursively()) {
        stuck_.append(QFileInfo(folder_).fileName());
    }
    return true;
}

QStringList RecoveredTables::removable() const
{
    QStringList all = names();
    for (const QString &name : stuck_) {
        all.removeAll(name);
    }
    return all;
}

bool RecoveredTables::openOldest()
{
    const QStringList all = removable();
    if (all.isEmpty()) {
        return false;
    }
    folder_ = root() + QLatin1Char('/') + all.constFirst();
    row_ = 0;
    rows_ = std::make_unique<RecordFile>(tableOf(folder_), Scan::size);
    rows_->open(QIODevice::ReadOnly); // without a table there are no rows, and the rest goes
    return true;
}
