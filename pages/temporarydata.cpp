// SPDX-License-Identifier: MIT
#include "pages/temporarydata.h"

#include "app/settings.h"
#include "net/socketwait.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

namespace
{

bool isAtOrAbove(const QString &folder, const QString &other)
{
    return !other.isEmpty() && (other == folder || other.startsWith(folder + QLatin1Char('/')));
}

void deleteFiles(const QDir &folder)
{
    const QStringList files =
        folder.entryList(QDir::Files | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot);
    for (const QString &file : files) {
        if (SocketWait::interrupted()) {
            return;
        }
        QFile::remove(folder.filePath(file));
    }
}

} // namespace

bool TemporaryData::isFolderOfItsOwn(const QString &path)
{
    // A slash behind its name would hide that it is a link.
    const QFileInfo folder(QDir::cleanPath(path));
    if (folder.isRelative() || !folder.isDir() || folder.isSymLink()) {
        return false;
    }
    const QString real = folder.canonicalFilePath();
    if (real == QLatin1String("/") || isAtOrAbove(real, QDir::home().canonicalPath())) {
        return false;
    }
    const Settings *settings = Settings::instance();
    if (settings == nullptr) {
        return false;
    }
    return !isAtOrAbove(real, QFileInfo(settings->absoluteWorkingDirectory()).canonicalFilePath());
}

void TemporaryData::clear(const QString &path)
{
    if (!isFolderOfItsOwn(path)) {
        return;
    }
    const QDir folder(QDir::cleanPath(path));
    deleteFiles(folder);
    const QFileInfoList inner =
        folder.entryInfoList(QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot | QDir::NoSymLinks);
    for (const QFileInfo &each : inner) {
        deleteFiles(QDir(each.filePath()));
    }
}

void TemporaryData::removeTransfers(const QString &path)
{
    if (!isFolderOfItsOwn(path)) {
        return;
    }
    const QDir folder(QDir::cleanPath(path));
    const QFileInfoList left =
        folder.entryInfoList({QStringLiteral("stallo-transfer-??????")},
                             QDir::Dirs | QDir::Files | QDir::System | QDir::NoSymLinks);
    for (const QFileInfo &each : left) {
        if (each.isDir()) {
            deleteFiles(QDir(each.filePath()));
            folder.rmdir(each.fileName());
        } else {
            QFile::remove(each.filePath());
        }
    }
}

void TemporaryData::removeLeftBeside(const QString &file)
{
    const QFileInfo own(file);
    if (!isFolderOfItsOwn(own.path())) {
        return;
    }
    const QRegularExpression leftName(QLatin1Char('^') +
                                      QRegularExpression::escape(own.fileName()) +
                                      QStringLiteral("\\.(?=.*[a-z])(?=.*[A-Z])[A-Za-z0-9]{6}\\z"));
    const QDir folder(own.path());
    const QStringList files =
        folder.entryList(QDir::Files | QDir::Hidden | QDir::NoDotAndDotDot | QDir::NoSymLinks);
    for (const QString &each : files) {
        if (leftName.match(each).hasMatch()) {
            QFile::remove(folder.filePath(each));
        }
    }
}
