// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

// Bytes of the file system that a path lies on. Both are 0 where the path cannot be asked, which
// reads as a disk that has nothing to give.
struct DiskSpace {
    qint64 total = 0;
    // What this panel can still write, as an ordinary user: what the disk keeps back for the
    // administrator is free and yet not to be had, so no free space is given beside it.
    qint64 available = 0;

    // Any thread.
    static DiskSpace of(const QString &path);
};
