// SPDX-License-Identifier: MIT
#include "app/startup.h"

#include "app/errorbrowser.h"
#include "app/mainwindow.h"
#include "app/runmark.h"
#include "app/settings.h"
#include "pages/recoveredtables.h"
#include "pages/temporarydata.h"
#include "records/vasksettings.h"

#include <QCoreApplication>
#include <QDir>
#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace
{

constexpr char positionKey[] = "LastWindowPosition";
// Read as "Size", written as "size": installations rely on a size that is set by hand and stays.
constexpr char readSizeKey[] = "LastWindowSize";
constexpr char writtenSizeKey[] = "LastWindowsize";
constexpr char screenKey[] = "LastWindowScreen";
constexpr char maximizedKey[] = "WindowMaximized";

// How far the corner of a window may lie beyond the screen's right and bottom.
constexpr int tolerance = 100;

void makeDirectory(const QString &path)
{
    if (!QFileInfo::exists(path)) {
        QDir().mkdir(path);
    }
}

// Takes the rights of all others away where the folder belongs to the user; links are left alone.
void closeToOthers(const QString &path)
{
    constexpr mode_t others = S_IRWXG | S_IRWXO;
    const int folder = open(QFile::encodeName(path).constData(),
                            O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (folder < 0) {
        return;
    }
    struct stat is = {};
    if (fstat(folder, &is) == 0 && is.st_uid == geteuid() && (is.st_mode & others) != 0) {
        fchmod(folder, is.st_mode & ~others & 07777);
    }
    close(folder);
}

// The settings may name any folder. One directly below the root, and one that the home directory
// lies in, are not ours.
bool isOwnWorkingDirectory(const QString &path)
{
    const QString real = QFileInfo(path).canonicalFilePath() + QLatin1Char('/');
    const QString home = QDir::home().canonicalPath() + QLatin1Char('/');
    return real.count(QLatin1Char('/')) > 2 && !home.startsWith(real);
}

void makeTempDirectory(const QString &path, bool withPictures)
{
    const QDir directory(Settings::instance()->absolute(path));
    makeDirectory(directory.path());
    const bool own = TemporaryData::isFolderOfItsOwn(directory.path());
    if (own) {
        closeToOthers(directory.path());
    }
    if (withPictures && directory.exists()) {
        const QString pictures = directory.filePath(VaskSettings::picFileDir());
        makeDirectory(pictures);
        if (own) {
            closeToOthers(pictures);
        }
    }
}

bool isUsable(const QString &folder)
{
    return QFileInfo(folder).isDir() && faccessat(AT_FDCWD, QFile::encodeName(folder).constData(),
                                                  R_OK | W_OK | X_OK, AT_EACCESS) == 0;
}

const QScreen *screenNumber(int number)
{
    return QGuiApplication::screens().value(number, QGuiApplication::primaryScreen());
}

} // namespace

void Startup::keepToItself()
{
    umask(S_IRWXG | S_IRWXO);
    // The bus's library would start "dbus-launch", which outlives the panel. It asks the session's
    // own socket itself when there is one.
    const QByteArray socket = qgetenv("XDG_RUNTIME_DIR") + "/bus";
    if (qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS") &&
        access(socket.constData(), F_OK) != 0) {
        qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent");
    }
}

void Startup::initTempDirectories()
{
    const Settings *settings = Settings::instance();
    if (settings == nullptr) {
        return;
    }
    makeDirectory(settings->absoluteWorkingDirectory());
    if (isOwnWorkingDirectory(settings->absoluteWorkingDirectory())) {
        closeToOthers(settings->absoluteWorkingDirectory());
    }
    makeTempDirectory(settings->archiveTempDirectory(), true);
    makeTempDirectory(settings->sufferedTempDirectory(), false);
    makeTempDirectory(settings->onLineTempDirectory(), true);
    makeTempDirectory(settings->videoTempDirectory(), false);
}

QStringList Startup::unusableDirectories()
{
    const Settings *settings = Settings::instance();
    if (settings == nullptr) {
        return {};
    }
    const QString working = settings->absoluteWorkingDirectory();
    if (!isUsable(working)) {
        return {working};
    }
    const QString pictures = QLatin1Char('/') + VaskSettings::picFileDir();
    QStringList folders = {
        settings->archiveTempDirectory(),           settings->archiveTempDirectory() + pictures,
        settings->sufferedTempDirectory(),          settings->onLineTempDirectory(),
        settings->onLineTempDirectory() + pictures, settings->videoTempDirectory()};
    for (QString &folder : folders) {
        folder = settings->absolute(folder);
    }
    folders.removeDuplicates();
    folders.erase(std::remove_if(folders.begin(), folders.end(), isUsable), folders.end());
    return folders;
}

void Startup::tellUnusableDirectories(QWidget *frame)
{
    const QStringList folders = unusableDirectories();
    if (folders.isEmpty()) {
        return;
    }
    const QString text =
        QCoreApplication::translate("Startup", "Nothing can be stored in these folders:");
    QMetaObject::invokeMethod(
        frame,
        [frame, lines = QStringList(text) + folders] {
            ErrorBrowser::error(QCoreApplication::translate("Startup", "Error"), lines, frame);
        },
        Qt::QueuedConnection);
}

std::unique_ptr<ProcessLock> Startup::lockWorkingDirectory()
{
    const Settings *settings = Settings::instance();
    const QDir directory =
        settings != nullptr ? QDir(settings->absoluteWorkingDirectory()) : QDir::home();
    auto lock = std::make_unique<ProcessLock>(directory.filePath(QStringLiteral("stallo.lock")));
    if (lock->isRefused()) {
        return nullptr;
    }
    return lock;
}

QString Startup::settleFormerRun()
{
    const Settings *settings = Settings::instance();
    if (settings == nullptr) {
        return QString();
    }
    const auto rescue =
        RunMark::isLeft() ? RecoveredTables::rescue() : RecoveredTables::Rescue::Nothing;
    RunMark::set();
    for (const QString &folder :
         {settings->archiveTempDirectory(), settings->sufferedTempDirectory(),
          settings->videoTempDirectory()}) {
        TemporaryData::removeTransfers(settings->absolute(folder));
    }
    TemporaryData::removeLeftBeside(settings->absolute(settings->sufferedTempFile()));
    switch (rescue) {
    case RecoveredTables::Rescue::Done:
        return QCoreApplication::translate("Startup", "The former table was kept:") +
               QLatin1Char(' ') + RecoveredTables::newest();
    case RecoveredTables::Rescue::Failed:
        return QCoreApplication::translate("Startup", "The former table could not be kept.");
    case RecoveredTables::Rescue::Nothing:
        break;
    }
    return QString();
}

void Startup::markCleanEnd()
{
    if (!RecoveredTables::isLeftInPlace()) {
        RunMark::remove();
    }
}

void Startup::restoreGeometry(QWidget &frame)
{
    const Settings *settings = Settings::instance();
    if (settings == nullptr) {
        frame.show();
        return;
    }
    const auto stored = [settings](const char *key) { return settings->value(QLatin1String(key)); };
    QRect geometry(stored(positionKey).toPoint(), stored(readSizeKey).toSize());
    geometry.setSize(geometry.size().boundedTo(QGuiApplication::primaryScreen()->virtualSize()));
    const QRect screen = screenNumber(stored(screenKey).toInt())->geometry();
    if (!screen.adjusted(0, 0, tolerance, tolerance).contains(geometry.topLeft())) {
        geometry.moveTo(0, 0);
    }
    if (stored(maximizedKey).toBool()) {
        frame.move(geometry.topLeft());
        frame.showMaximized();
    } else {
        frame.setGeometry(geometry);
        frame.show();
    }
}

void Startup::storeGeometry(const QWidget &frame)
{
    Settings *settings = Settings::instance();
    if (settings == nullptr) {
        return;
    }
    // The corner may lie a little outside of every screen; the window then is on the one it fills.
    QScreen *screen = QGuiApplication::screenAt(frame.pos());
    const int number =
        QGuiApplication::screens().indexOf(screen != nullptr ? screen : frame.screen());
    settings->setValue(QLatin1String(writtenSizeKey), frame.size());
    settings->setValue(QLatin1String(positionKey), frame.pos());
    settings->setValue(QLatin1String(screenKey), qMax(0, number));
    settings->setValue(QLatin1String(maximizedKey), frame.isMaximized());
}

void Startup::parseCmdLine(int argc, char **argv)
{
    auto selector = MainWindow::OnLineTab;
    QString target;
    for (int place = 1; place < argc; ++place) {
        const char *argument = argv[place];
        if (argument[0] != '-') {
            target = QString::fromLatin1(argument);
        } else if (std::strcmp(argument, "--archive") == 0) {
            selector = MainWindow::ArchiveTab;
        } else if (std::strcmp(argument, "--sufferred") == 0) {
            selector = MainWindow::SufferedTab;
        } else if (std::strcmp(argument, "--online") == 0) {
            selector = MainWindow::OnLineTab;
        }
    }
    if (!target.isEmpty() && MainWindow::activeWindow() != nullptr) {
        MainWindow::activeWindow()->selectTab(selector, target);
    }
}

void Startup::BoundedEnd::arm()
{
    if (Settings *settings = Settings::instance()) {
        settings->store();
    }
    std::thread([over = over_] {
        std::this_thread::sleep_for(std::chrono::milliseconds(1500));
        if (!*over) {
            std::_Exit(0);
        }
    }).detach();
}

Startup::BoundedEnd::~BoundedEnd()
{
    *over_ = true;
}
