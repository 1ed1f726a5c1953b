// SPDX-License-Identifier: MIT
#include "app/settings.h"

#include "app/processlock.h"
#include "records/scan.h"
#include "records/vasksettings.h"

#include <QCoreApplication>
#include <QDir>
#include <QEvent>
#include <QThread>

#include <atomic>

namespace
{

namespace key
{
constexpr char vaskParkingPort[] = "Global/VaskParkingPort";
constexpr char fileTransferPort[] = "Global/FileTransferPort";
constexpr char videoTimeout[] = "Global/VideoTimeout";
constexpr char videoDisconnectTimeout[] = "Global/VideoDisconnectTimeout";
constexpr char minReservedFreeSpace[] = "Global/MinReservedFreeSpace";
constexpr char workingDirectory[] = "Global/WorkingDirectory";
constexpr char archiveTempDirectory[] = "Global/ArchiveTempDirectory";
constexpr char archiveTempFile[] = "Global/ArchiveTempFile";
constexpr char sufferedTempDirectory[] = "Global/SufferedTempDirectory";
constexpr char sufferedTempFile[] = "Global/SufferedTempFile";
constexpr char onLineTempDirectory[] = "Global/OnLineTempDirectory";
constexpr char onLineTempFile[] = "Global/OnLineTempFile";
constexpr char videoTempDirectory[] = "Global/VideoTempDirectory";
constexpr char videoTempFileFormat[] = "Global/VideoTempFileFormat";
constexpr char vaskDataPath[] = "Global/VaskDataPath";
constexpr char vaskArchivePath[] = "Global/VaskArchivePath";
constexpr char vaskSufferedPath[] = "Global/VaskSufferedPath";
constexpr char vaskVideoTempFileFormat[] = "Global/vaskVideoTempFileFormat";
constexpr char vaskVideoTempFormatUnread[] = "Global/VaskVideoTempFormat";
constexpr char lastSavedArchiveFile[] = "Global/LastSavedArchiveFile";
constexpr char lastLoadedArchiveFile[] = "Global/LastLoadedArchiveFile";
constexpr char lastSavedOnLineFile[] = "Global/LastSavedOnLineFile";
constexpr char lastSavedSufferedFile[] = "Global/LastSavedSufferedFile";
constexpr char lastLoadedSufferedFile[] = "Global/LastLoadedSufferedFile";
constexpr char lastSavedPhoto[] = "Global/LastSavedPhoto";
constexpr char addresses[] = "AddressList/Addresses";
} // namespace key

constexpr int defaultVaskParkingPort = 3333;
constexpr int defaultFileTransferPort = 5058;
constexpr int defaultVideoDisconnectTimeout = 30;

std::atomic<Settings *> current{nullptr};

QString joined(const QString &directory, const QString &name)
{
    return directory + QLatin1Char('/') + name;
}

} // namespace

Settings::Settings(QSettings::Format format, QSettings::Scope scope, const QString &organization,
                   const QString &application, QObject *parent)
    : QSettings(format, scope, organization, application, parent)
{
    current = this;
}

Settings::~Settings()
{
    Settings *self = this;
    current.compare_exchange_strong(self, nullptr);
}

Settings *Settings::instance()
{
    const QCoreApplication *application = QCoreApplication::instance();
    if (application == nullptr) {
        return nullptr;
    }
    // The tree of objects belongs to the GUI thread; a worker must not walk it.
    if (QThread::currentThread() != application->thread()) {
        return current;
    }
    return application->findChild<Settings *>();
}

void Settings::init()
{
    // In this order: later defaults are built on the values settled before them.
    settleNumber(key::vaskParkingPort, defaultVaskParkingPort);
    settleNumber(key::fileTransferPort, defaultFileTransferPort);
    settleText(key::workingDirectory, joined(QDir::homePath(), QStringLiteral("Stallo")));
    settleText(key::archiveTempDirectory,
               joined(workingDirectory(), QStringLiteral("ArchiveTemp")));
    settleText(
        key::archiveTempFile,
        joined(archiveTempDirectory(), tr("tmppassbase%1").arg(VaskSettings::passbaseSuffix())));
    settleText(key::sufferedTempDirectory,
               joined(workingDirectory(), QStringLiteral("SufferedTemp")));
    settleText(key::onLineTempDirectory, joined(workingDirectory(), QStringLiteral("OnLineTemp")));
    settleText(key::onLineTempFile, joined(onLineTempDirectory(),
                                           tr("tmponline%1").arg(VaskSettings::passbaseSuffix())));
    settleText(key::lastSavedArchiveFile, QDir::homePath());
    settleText(key::lastLoadedArchiveFile, QDir::homePath());
    settleText(key::vaskDataPath, QStringLiteral("/mnt/usb"));
    settleText(
        key::vaskArchivePath,
        joined(vaskDataPath(), QStringLiteral("passbase%1").arg(VaskSettings::passbaseSuffix())));
    settleText(key::vaskSufferedPath,
               joined(vaskDataPath(),
                      QStringLiteral("accessbase%1").arg(VaskSettings::accessbaseSuffix())));
    settleText(key::vaskVideoTempFileFormat, QStringLiteral("/tmp/video%1.jpeg"));
    settleText(key::lastSavedPhoto, QDir::homePath());
    settleText(key::lastSavedOnLineFile, QDir::homePath());
    settleText(key::lastSavedSufferedFile, QDir::homePath());
    settleText(key::lastLoadedSufferedFile, QDir::homePath());
    settleText(key::sufferedTempFile,
               joined(sufferedTempDirectory(),
                      tr("tmpaccessbase%1").arg(VaskSettings::accessbaseSuffix())));
    settleText(key::videoTempDirectory, joined(workingDirectory(), QStringLiteral("VideoTemp")));
    settleText(key::videoTempFileFormat, QStringLiteral("video%1.jpeg"));
    settleNumber(key::videoTimeout, 1000);
    settleNumber(key::videoDisconnectTimeout, defaultVideoDisconnectTimeout);
}

void Settings::store()
{
    removeAbandonedLocks();
    sync();
}

bool Settings::event(QEvent *event)
{
    if (event->type() == QEvent::UpdateRequest) {
        removeAbandonedLocks();
    }
    return QSettings::event(event);
}

// The toolkit waits half a minute for a lock file that a power cut has left empty, and the window
// with it. The second one guards the removal of the first.
void Settings::removeAbandonedLocks() const
{
    const QString lock = fileName() + QStringLiteral(".lock");
    ProcessLock::removeAbandoned(lock + QStringLiteral(".rmlock"));
    ProcessLock::removeAbandoned(lock);
}

int Settings::vaskParkingPort() const
{
    return number(key::vaskParkingPort, defaultVaskParkingPort);
}
void Settings::setVaskParkingPort(int port)
{
    put(key::vaskParkingPort, port);
}

int Settings::fileTransferPort() const
{
    return number(key::fileTransferPort, defaultFileTransferPort);
}
void Settings::setFileTransferPort(int port)
{
    put(key::fileTransferPort, port);
}

int Settings::videoTimeout() const
{
    return number(key::videoTimeout, 500);
}
void Settings::setVideoTimeout(int msec)
{
    put(key::videoTimeout, msec);
}

int Settings::videoDisconnectTimeout() const
{
    return number(key::videoDisconnectTimeout, defaultVideoDisconnectTimeout);
}
void Settings::setVideoDisconnectTimeout(int seconds)
{
    put(key::videoDisconnectTimeout, seconds);
}

qint64 Settings::minReservedFreeSpace() const
{
    constexpr qint64 fallback = 2 * 1024 * 1024;
    // Of 64 bits: disks are larger than what the other numbers can tell.
    return value(QLatin1String(key::minReservedFreeSpace), fallback).toLongLong();
}
void Settings::SetMinReservedFreeSpace(qint64 bytes)
{
    put(key::minReservedFreeSpace, bytes);
}

QString Settings::workingDirectory() const
{
    return text(key::workingDirectory, joined(QDir::homePath(), QStringLiteral("Stallo")));
}
void Settings::setWorkingDirectory(const QString &path)
{
    put(key::workingDirectory, path);
}

QString Settings::archiveTempDirectory() const
{
    return text(key::archiveTempDirectory,
                joined(workingDirectory(), QStringLiteral("ArchiveTemp")));
}
void Settings::setArchiveTempDirectory(const QString &path)
{
    put(key::archiveTempDirectory, path);
}

QString Settings::archiveTempFile() const
{
    // Not the name that init() stores.
    return text(key::archiveTempFile, joined(archiveTempDirectory(),
                                             tr("passbase%1").arg(VaskSettings::passbaseSuffix())));
}
void Settings::setArchiveTempFile(const QString &path)
{
    put(key::archiveTempFile, path);
}

QString Settings::sufferedTempDirectory() const
{
    return text(key::sufferedTempDirectory,
                joined(workingDirectory(), QStringLiteral("SufferedTemp")));
}
void Settings::setSufferedTempDirectory(const QString &path)
{
    put(key::sufferedTempDirectory, path);
}

QString Settings::sufferedTempFile() const
{
    return text(key::sufferedTempFile,
                joined(sufferedTempDirectory(),
                       tr("tmpaccessbase%1").arg(VaskSettings::accessbaseSuffix())));
}
void Settings::setSufferedTempFile(const QString &path)
{
    put(key::sufferedTempFile, path);
}

QString Settings::onLineTempDirectory() const
{
    return text(key::onLineTempDirectory, joined(workingDirectory(), QStringLiteral("OnLineTemp")));
}
void Settings::setOnLineTempDirectory(const QString &path)
{
    put(key::onLineTempDirectory, path);
}

QString Settings::onLineTempFile() const
{
    return text(key::onLineTempFile, joined(onLineTempDirectory(),
                                            tr("tmponline%1").arg(VaskSettings::passbaseSuffix())));
}
void Settings::setOnLineTempFile(const QString &path)
{
    put(key::onLineTempFile, path);
}

QString Settings::videoTempDirectory() const
{
    return text(key::videoTempDirectory, joined(workingDirectory(), QStringLiteral("VideoTemp")));
}
void Settings::setVideoTempDirectory(const QString &path)
{
    put(key::videoTempDirectory, path);
}

QString Settings::videoTempFileFormat() const
{
    return text(key::videoTempFileFormat, QStringLiteral("video%1.jpeg"));
}
void Settings::setVideoTempFileFormat(const QString &format)
{
    put(key::videoTempFileFormat, format);
}

QString Settings::vaskDataPath() const
{
    return text(key::vaskDataPath, QStringLiteral("/mnt/usb"));
}
void Settings::setVaskDataPath(const QString &path)
{
    put(key::vaskDataPath, path);
}

QString Settings::vaskArchivePath() const
{
    return text(
        key::vaskArchivePath,
        joined(vaskDataPath(), QStringLiteral("passbase%1").arg(VaskSettings::passbaseSuffix())));
}
void Settings::setVaskArchivePath(const QString &path)
{
    put(key::vaskArchivePath, path);
}

QString Settings::vaskSufferedPath() const
{
    // Not the path that init() stores, which lies under the device's data directory.
    return text(key::vaskSufferedPath,
                QStringLiteral("/tmp/accessbase%1").arg(VaskSettings::accessbaseSuffix()));
}
void Settings::setVaskSufferedPath(const QString &path)
{
    put(key::vaskSufferedPath, path);
}

QString Settings::vaskVideoTempFileFormat() const
{
    return text(key::vaskVideoTempFileFormat, QStringLiteral("/tmp/video%1.jpeg"));
}
void Settings::setVaskVideoTempFileFormat(const QString &format)
{
    put(key::vaskVideoTempFormatUnread, format);
}

QString Settings::lastSavedArchiveFile() const
{
    return text(key::lastSavedArchiveFile, joined(QDir::homePath(), tr("passbase")));
}
void Settings::setLastSavedArchiveFile(const QString &path)
{
    put(key::lastSavedArchiveFile, path);
}

QString Settings::lastLoadedArchiveFile() const
{
    return text(key::lastLoadedArchiveFile, QDir::homePath());
}
void Settings::setLastLoadedArchiveFile(const QString &path)
{
    put(key::lastLoadedArchiveFile, path);
}

QString Settings::lastSavedOnLineFile() const
{
    return text(key::lastSavedOnLineFile, joined(QDir::homePath(), tr("on-line")));
}
void Settings::setLastSavedOnLineFile(const QString &path)
{
    put(key::lastSavedOnLineFile, path);
}

QString Settings::lastSavedSufferedFile() const
{
    return text(key::lastSavedSufferedFile, joined(QDir::homePath(), tr("accessbase")));
}
void Settings::setLastSavedSufferedFile(const QString &path)
{
    put(key::lastSavedSufferedFile, path);
}

QString Settings::lastLoadedSufferedFile() const
{
    return text(key::lastLoadedSufferedFile, QDir::homePath());
}
void Settings::setLastLoadedSufferedFile(const QString &path)
{
    put(key::lastLoadedSufferedFile, path);
}

QString Settings::lastSavedPhoto() const
{
    return text(key::lastSavedPhoto, QDir::homePath());
}
void Settings::setLastSavedPhoto(const QString &path)
{
    put(key::lastSavedPhoto, path);
}

QStringList Settings::addressList() const
{
    return value(QLatin1String(key::addresses), QStringList()).toStringList();
}
bool Settings::setAddressList(const QStringList &addresses)
{
    put(key::addresses, addresses);
    removeAbandonedLocks(); // the new object writes when it is made
    // Of all objects on one file each writes what is not in it yet, and each keeps its first error;
    // a fresh one has none.
    QSettings writer(fileName(), format());
    writer.sync();
    return writer.status() == QSettings::NoError;
}

QString Settings::videoTempFile(int n) const
{
    return joined(videoTempDirectory(), videoTempFileFormat().arg(n));
}

QString Settings::vaskVideoTempFile(int n) const
{
    return vaskVideoTempFileFormat().arg(n);
}

QString Settings::archivePhotoPath(const Scan &scan, const QString &number) const
{
    return joined(joined(archiveTempDirectory(), VaskSettings::picFileDir(number)),
                  VaskSettings::picFileName(scan));
}

QString Settings::vaskArchivePhotoPath(const Scan &scan) const
{
    return joined(joined(vaskDataPath(), VaskSettings::picFileDir()),
                  VaskSettings::picFileName(scan));
}

QString Settings::absoluteWorkingDirectory() const
{
    return QDir::home().absoluteFilePath(workingDirectory());
}

QString Settings::absolute(const QString &path) const
{
    return QDir(absoluteWorkingDirectory()).absoluteFilePath(path);
}

QString Settings::transferTemplate(const QString &directory) const
{
    return joined(absolute(directory), QStringLiteral("stallo-transfer-XXXXXX"));
}

QString Settings::extended(const QString &name, const QString &ending)
{
    return name.endsWith(ending) ? name : name + ending;
}

QString Settings::text(const char *key, const QString &fallback) const
{
    return value(QLatin1String(key), fallback).toString();
}

int Settings::number(const char *key, int fallback) const
{
    return value(QLatin1String(key), fallback).toInt();
}

void Settings::put(const char *key, const QVariant &value)
{
    setValue(QLatin1String(key), value);
}

void Settings::settleNumber(const char *key, int fallback)
{
    if (number(key, 0) == 0) {
        put(key, fallback);
    }
}

void Settings::settleText(const char *key, const QString &fallback)
{
    if (text(key, QString()).isEmpty()) {
        put(key, fallback);
    }
}
