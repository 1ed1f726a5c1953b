// SPDX-License-Identifier: MIT
#include "tests/support/smalldisk.h"

#include "records/diskspace.h"

#include <QFile>

#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

bool allowed = false;

bool write(const char *file, const QByteArray &text)
{
    QFile to(QString::fromLatin1(file));
    return to.open(QIODevice::WriteOnly | QIODevice::Unbuffered) && to.write(text) == text.size();
}

// Whoever is not the administrator becomes one of a world of his own, in which he owns his files.
bool leaveForOwnUsers()
{
    const QByteArray user = QByteArray::number(getuid());
    const QByteArray group = QByteArray::number(getgid());
    return unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0 && write("/proc/self/setgroups", "deny") &&
           write("/proc/self/uid_map", user + ' ' + user + " 1\n") &&
           write("/proc/self/gid_map", group + ' ' + group + " 1\n");
}

bool enterOwnWorld()
{
    return (unshare(CLONE_NEWNS) == 0 || leaveForOwnUsers()) &&
           mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

bool mountAt(const QByteArray &folder, int bytes)
{
    const QByteArray size = "size=" + QByteArray::number(bytes);
    return mount("none", folder.constData(), "tmpfs", 0, size.constData()) == 0;
}

} // namespace

void SmallDisk::prepare()
{
    // Half way is worse than nothing, so another process tries first.
    const pid_t scout = fork();
    if (scout == 0) {
        _exit(enterOwnWorld() && mountAt("/tmp", pageSize) ? 0 : 1);
    }
    int status = 1;
    allowed = scout > 0 && waitpid(scout, &status, 0) == scout && status == 0 && enterOwnWorld();
}

bool SmallDisk::isAllowed()
{
    return allowed;
}

SmallDisk::SmallDisk(const QString &folder, int pages)
    : folder_(folder)
{
    if (!mountAt(QFile::encodeName(folder), pages * pageSize)) {
        qFatal("cannot mount a small disk");
    }
}

SmallDisk::~SmallDisk()
{
    umount2(QFile::encodeName(folder_).constData(), MNT_DETACH);
}

qint64 SmallDisk::available() const
{
    return DiskSpace::of(folder_).available;
}
