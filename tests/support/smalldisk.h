// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

// A small disk over a folder, in memory, that only this process sees and that ends with it. Its
// free space is exact: whole pages of 4096 bytes, and a folder takes none.
//
// Not everywhere is a process allowed to mount: a test asks isAllowed() and is skipped otherwise.
class SmallDisk
{
public:
    static constexpr int pageSize = 4096;

    // First thing in main(), before there is a second thread.
    static void prepare();
    static bool isAllowed();

    SmallDisk(const QString &folder, int pages);
    // What was written is gone, and the folder's own content is back.
    ~SmallDisk();
    SmallDisk(const SmallDisk &) = delete;
    SmallDisk &operator=(const SmallDisk &) = delete;

    qint64 available() const;

private:
    QString folder_;
};
