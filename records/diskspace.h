// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

// Bytes of the file system that a path lies on. Both are 0 where the path cannot be asked, which
// reads as a disk that has nothing to give.
struct DiskSpace {
    qint64 total = 0;
    qint64 free = 0;
    // What an unprivileged program can still take.
    qint64 available = 0;

    // Any thread.
    static DiskSpace of(const QString &path);
};
