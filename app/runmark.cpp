// SPDX-License-Identifier: MIT
#include "app/runmark.h"

#include "app/settings.h"

#include <QDir>
#include <QFile>

#include <fcntl.h>
#include <unistd.h>

namespace
{

QByteArray folder()
{
    const Settings *settings = Settings::instance();
    return settings != nullptr ? QFile::encodeName(settings->absoluteWorkingDirectory())
                               : QByteArray();
}

QByteArray mark()
{
    return folder() + "/stallo.running";
}

void flushFolder()
{
    const int opened = open(folder().constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (opened >= 0) {
        fsync(opened);
        close(opened);
    }
}

} // namespace

bool RunMark::isLeft()
{
    return !folder().isEmpty() && access(mark().constData(), F_OK) == 0;
}

void RunMark::set()
{
    if (folder().isEmpty()) {
        return;
    }
    const int file = open(mark().constData(), O_WRONLY | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0600);
    if (file >= 0) {
        close(file); // its name is all
        flushFolder();
    }
}

void RunMark::remove()
{
    if (!folder().isEmpty()) {
        unlink(mark().constData());
    }
}
