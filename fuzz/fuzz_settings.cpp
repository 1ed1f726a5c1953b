// SPDX-License-Identifier: MIT
// The settings file, read at a start and through every getter, and written back.
#include "app/settings.h"
#include "app/startup.h"
#include "fuzz/fuzztarget.h"
#include "records/scan.h"

#include <QApplication>
#include <QDir>
#include <QWidget>

namespace
{

// The toolkit remembers files by name, size and time: each input gets a name of its own.
QString newName()
{
    static int number = 0;
    return QStringLiteral("Stallo%1").arg(++number);
}

void readAll(Settings &settings)
{
    settings.init();
    settings.vaskParkingPort();
    settings.fileTransferPort();
    settings.videoTimeout();
    settings.videoDisconnectTimeout();
    settings.minReservedFreeSpace();
    settings.archiveTempFile();
    settings.sufferedTempFile();
    settings.onLineTempFile();
    settings.videoTempFile(0);
    settings.vaskVideoTempFile(1);
    settings.vaskArchivePath();
    settings.vaskSufferedPath();
    settings.vaskArchivePhotoPath(Scan());
    settings.archivePhotoPath(Scan(), QString());
    settings.lastSavedPhoto();
    settings.setAddressList(settings.addressList());
    FuzzTarget::require(QDir::isAbsolutePath(settings.absoluteWorkingDirectory()),
                        "the working directory has a whole path");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const bool ready = [] {
        delete Settings::instance(); // the surroundings' own
        return QDir().mkpath(FuzzTarget::scratch(QStringLiteral(".config/Dorvel Ltd")));
    }();
    FuzzTarget::require(ready, "there is a folder for settings");
    const QString name = newName();
    const QString file = FuzzTarget::write(QStringLiteral(".config/Dorvel Ltd/%1.conf").arg(name),
                                           FuzzTarget::bytes(data, size));
    {
        Settings settings(QSettings::NativeFormat, QSettings::UserScope,
                          QStringLiteral("Dorvel Ltd"), name, qApp);
        FuzzTarget::require(settings.fileName() == file, "this is the file");
        readAll(settings);
        QWidget frame;
        Startup::restoreGeometry(frame);
        Startup::storeGeometry(frame);
    }
    QFile::remove(file);
    return 0;
}
