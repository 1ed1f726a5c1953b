// SPDX-License-Identifier: MIT
#include "app/processlock.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QSysInfo>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

// Between opening and locking, the former holder may delete the file; so often is it tried anew.
constexpr int mostTries = 100;

int openLock(const QByteArray &path, int further)
{
    // A pipe in its place must not block.
    constexpr int flags = O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
    int file = open(path.constData(), flags | further, 0600);
    if (file < 0 && errno == EACCES && chmod(path.constData(), 0600) == 0) {
        file = open(path.constData(), flags | further, 0600);
    }
    return file;
}

bool isStillThere(int file, const QByteArray &path)
{
    struct stat opened = {};
    struct stat named = {};
    return fstat(file, &opened) == 0 && lstat(path.constData(), &named) == 0 &&
           opened.st_dev == named.st_dev && opened.st_ino == named.st_ino;
}

} // namespace

ProcessLock::ProcessLock(const QString &path)
    : path_(QFile::encodeName(path))
{
    for (int tries = 0; tries < mostTries && take() == Try::Again; ++tries) {
    }
    if (isLocked()) {
        nameHolder();
    }
}

ProcessLock::~ProcessLock()
{
    if (isLocked()) {
        unlink(path_.constData()); // before the next one can have it
        close(file_);
    }
}

ProcessLock::Try ProcessLock::take()
{
    const int file = openLock(path_, O_CREAT);
    if (file < 0) {
        return Try::Done;
    }
    const bool locked = flock(file, LOCK_EX | LOCK_NB) == 0;
    refused_ = !locked && errno == EWOULDBLOCK;
    if (locked && isStillThere(file, path_)) {
        file_ = file;
        return Try::Done;
    }
    close(file);
    return locked ? Try::Again : Try::Done;
}

void ProcessLock::nameHolder() const
{
    const QByteArray holder =
        QByteArray::number(QCoreApplication::applicationPid()) + '\n' +
        QFileInfo(QCoreApplication::applicationFilePath()).fileName().toUtf8() + '\n' +
        QSysInfo::machineHostName().toUtf8() + '\n';
    // On a full disk it stays empty, and locks all the same.
    if (ftruncate(file_, 0) == 0) {
        const ssize_t ignored = write(file_, holder.constData(), size_t(holder.size()));
        static_cast<void>(ignored);
    }
}

void ProcessLock::removeAbandoned(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    const int file = openLock(name, 0);
    if (file < 0) {
        rmdir(name.constData()); // an empty folder of this name would be waited for without end
        return;
    }
    if (flock(file, LOCK_EX | LOCK_NB) == 0 && isStillThere(file, name)) {
        unlink(name.constData());
    }
    close(file);
}
