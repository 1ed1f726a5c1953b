// SPDX-License-Identifier: MIT
#include "records/flush.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace
{

int repeated(int (*call)(int), int descriptor)
{
    int result = 0;
    do {
        result = call(descriptor);
    } while (result != 0 && errno == EINTR);
    return result == 0 ? 0 : errno;
}

QString textOf(int error)
{
    return error == 0 ? QString() : qt_error_string(error);
}

// The result of the call on the folder; also when it cannot be opened.
int onFolder(const QString &path, int (*call)(int))
{
    const int folder =
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder < 0) {
        return errno;
    }
    const int error = repeated(call, folder);
    ::close(folder);
    return error;
}

} // namespace

Flush::Calls Flush::calls = {::fsync, ::syncfs};

QString Flush::file(int descriptor)
{
    return textOf(repeated(calls.file, descriptor));
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
