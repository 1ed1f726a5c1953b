// SPDX-License-Identifier: MIT
#include "records/flush.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QMutex>
#include <QThread>
#include <QWaitCondition>

#include <cerrno>
#include <fcntl.h>
#include <memory>
#include <thread>
#include <unistd.h>

namespace
{

using Call = int (*)(int);

constexpr unsigned long sliceMsec = 50;

int repeated(Call call, int descriptor)
{
    int result = 0;
    do {
        result = call(descriptor);
    } while (result != 0 && errno == EINTR);
    return result == 0 ? 0 : errno;
}

// A call that may outlive whoever asked for it.
struct Pending {
    QMutex mutex;
    QWaitCondition ended;
    bool done = false;
    int error = 0;
};

// Nothing ends the system's call before the disk does, and a slow stick takes half a minute. So it
// runs on a thread of its own, with a handle of its own, while the worker waits; a worker that is
// asked to end leaves it to itself.
int awaited(Call call, int descriptor)
{
    const int own = ::fcntl(descriptor, F_DUPFD_CLOEXEC, 0);
    if (own < 0) {
        return errno;
    }
    const auto pending = std::make_shared<Pending>();
    std::thread([pending, call, own] {
        const int error = repeated(call, own);
        ::close(own);
        const QMutexLocker lock(&pending->mutex);
        pending->error = error;
        pending->done = true;
        pending->ended.wakeAll();
    }).detach();
    const QMutexLocker lock(&pending->mutex);
    while (!pending->done && !QThread::currentThread()->isInterruptionRequested()) {
        pending->ended.wait(&pending->mutex, sliceMsec);
    }
    return pending->done ? pending->error : ECANCELED;
}

int made(Call call, int descriptor)
{
    const QCoreApplication *program = QCoreApplication::instance();
    const bool isWorker = program != nullptr && QThread::currentThread() != program->thread();
    return isWorker ? awaited(call, descriptor) : repeated(call, descriptor);
}

QString textOf(int error)
{
    return error == 0           ? QString()
           : error == ECANCELED ? QCoreApplication::translate("WholeFile", "Interrupted")
                                : qt_error_string(error);
}

// The result of the call on the folder; also when it cannot be opened.
int onFolder(const QString &path, Call call)
{
    const int folder =
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder < 0) {
        return errno;
    }
    const int error = made(call, folder);
    ::close(folder);
    return error;
}

} // namespace

Flush::Calls Flush::calls = {::fsync, ::syncfs};

QString Flush::file(int descriptor)
{
    return textOf(made(calls.file, descriptor));
}

QString Flush::folderOf(const QString &name)
{
    const QFileInfo file(name);
    const QString real = file.canonicalFilePath();
    const int error =
        onFolder(real.isEmpty() ? file.absolutePath() : QFileInfo(real).path(), calls.file);
    return textOf(error == EINVAL ? 0 : error);
}

QString Flush::fileSystemOf(const QString &path)
{
    const QFileInfo file(path);
    return textOf(onFolder(file.isDir() ? path : file.absolutePath(), calls.fileSystem));
}
