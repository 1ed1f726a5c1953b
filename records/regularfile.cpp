// SPDX-License-Identifier: MIT
#include "records/regularfile.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

constexpr mode_t readAndWrite = 0666; // less what the umask takes away

int flagsOf(QIODevice::OpenMode mode)
{
    // Without waiting for the other end of a pipe; regular files know no such waiting.
    const int flags = O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
    if (!mode.testFlag(QIODevice::WriteOnly)) {
        return flags | O_RDONLY;
    }
    return flags | O_RDWR | (mode.testFlag(QIODevice::ExistingOnly) ? 0 : O_CREAT);
}

} // namespace

QString RegularFile::open(QFile &file, QIODevice::OpenMode mode)
{
    const QString otherKind = tr("This is not a regular file");
    const QByteArray name = QFile::encodeName(file.fileName());
    struct stat found = {};
    // A device may do something when it is opened.
    if (stat(name.constData(), &found) == 0 && !S_ISREG(found.st_mode)) {
        return otherKind;
    }
    const int handle = ::open(name.constData(), flagsOf(mode), readAndWrite);
    if (handle < 0) {
        return qt_error_string(errno);
    }
    QString error;
    if (fstat(handle, &found) != 0 || !S_ISREG(found.st_mode)) {
        error = otherKind;
    } else if (!file.open(handle, mode & ~QIODevice::OpenMode(QIODevice::ExistingOnly),
                          QFileDevice::AutoCloseHandle)) {
        error = file.errorString();
    }
    if (!error.isEmpty()) {
        ::close(handle);
    }
    return error;
}
