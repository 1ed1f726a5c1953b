// SPDX-License-Identifier: MIT
#include "app/startup.h"

#include "app/mainwindow.h"
#include "app/settings.h"
#include "records/vasksettings.h"

#include <QDir>
#include <QGuiApplication>
#include <QLockFile>
#include <QScreen>

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <thread>

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

void makeTempDirectory(const QString &path, bool withPictures)
{
    const QDir directory(Settings::instance()->absolute(path));
    makeDirectory(directory.path());
    if (withPictures && directory.exists()) {
        makeDirectory(directory.filePath(VaskSettings::picFileDir()));
    }
}

const QScreen *screenNumber(int number)
{
    return QGuiApplication::screens().value(number, QGuiApplication::primaryScreen());
}

} // namespace

void Startup::initTempDirectories()
{
    const Settings *settings = Settings::instance();
    if (settings == nullptr) {
        return;
    }
    makeDirectory(settings->absoluteWorkingDirectory());
    makeTempDirectory(settings->archiveTempDirectory(), true);
    makeTempDirectory(settings->sufferedTempDirectory(), false);
    makeTempDirectory(settings->onLineTempDirectory(), true);
    makeTempDirectory(settings->videoTempDirectory(), false);
}

std::unique_ptr<QLockFile> Startup::lockWorkingDirectory()
{
    const Settings *settings = Settings::instance();
    const QDir directory =
        settings != nullptr ? QDir(settings->absoluteWorkingDirectory()) : QDir::home();
    auto lock = std::make_unique<QLockFile>(directory.filePath(QStringLiteral("stallo.lock")));
    lock->setStaleLockTime(0);
    if (!lock->tryLock(0) && lock->error() == QLockFile::LockFailedError) {
        return nullptr;
    }
    return lock;
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
        settings->sync();
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
