// SPDX-License-Identifier: MIT
#include "records/diskspace.h"

#include <QFile>

#include <sys/vfs.h>

DiskSpace DiskSpace::of(const QString &path)
{
    struct statfs information = {};
    if (statfs(QFile::encodeName(path).constData(), &information) != 0) {
        return {};
    }
    const auto bytes = [&information](auto blocks) {
        return static_cast<qint64>(information.f_bsize) * static_cast<qint64>(blocks);
    };
    return {bytes(information.f_blocks), bytes(information.f_bavail)};
}
