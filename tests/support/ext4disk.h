// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QTemporaryDir>

// A small disk over a folder as panels have them: an ext4 file system, of which a part is
// kept for the administrator, in a file. Only this process sees it, and it ends with it.
//
// Not everywhere can one be made: a test asks whyNot() and is skipped with that.
// SmallDisk::prepare() comes before.
class Ext4Disk
{
public:
    // Of the disk. More than usual: the smaller a disk, the more it takes to be more than the
    // panel's reserve.
    static constexpr int keptPercent = 25;

    Ext4Disk(const QString &folder, int megabytes);
    // The folder's own content is back.
    ~Ext4Disk();
    Ext4Disk(const Ext4Disk &) = delete;
    Ext4Disk &operator=(const Ext4Disk &) = delete;

    // Empty when the disk is there.
    QString whyNot() const { return whyNot_; }

private:
    bool run(const QString &program, const QStringList &arguments);

    QTemporaryDir place_;
    QString folder_;
    QString whyNot_;
};
