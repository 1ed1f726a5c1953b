// SPDX-License-Identifier: MIT
#include "tests/support/ext4disk.h"

#include "tests/support/smalldisk.h"

#include <QFile>
#include <QProcess>
#include <QStandardPaths>

#include <sys/mount.h>
#include <unistd.h>

Ext4Disk::Ext4Disk(const QString &folder, int megabytes)
    : folder_(folder)
{
    if (!SmallDisk::isAllowed() || geteuid() != 0) {
        whyNot_ = QStringLiteral("this process may not mount a disk");
        return;
    }
    const QString name = place_.filePath(QStringLiteral("disk"));
    QFile image(name);
    if (!image.open(QIODevice::WriteOnly) || !image.resize(qint64(megabytes) << 20)) {
        whyNot_ = image.errorString();
        return;
    }
    image.close();
    // mount lets go of the loop device when the disk is unmounted.
    if (run(QStringLiteral("mkfs.ext4"),
            {QStringLiteral("-qF"), QStringLiteral("-m%1").arg(keptPercent), name})) {
        run(QStringLiteral("mount"), {QStringLiteral("-oloop"), name, folder});
    }
}

Ext4Disk::~Ext4Disk()
{
    if (whyNot_.isEmpty()) {
        umount2(QFile::encodeName(folder_).constData(), MNT_DETACH);
    }
}

bool Ext4Disk::run(const QString &program, const QStringList &arguments)
{
    QString path = QStandardPaths::findExecutable(program);
    if (path.isEmpty()) {
        path = QStandardPaths::findExecutable(
            program, {QStringLiteral("/usr/sbin"), QStringLiteral("/sbin")});
    }
    QProcess process;
    process.start(path, arguments);
    if (path.isEmpty() || !process.waitForFinished() || process.exitCode() != 0) {
        whyNot_ = program + QStringLiteral(": ") +
                  (path.isEmpty() ? QStringLiteral("not installed")
                                  : QString::fromLocal8Bit(process.readAllStandardError()));
    }
    return whyNot_.isEmpty();
}
