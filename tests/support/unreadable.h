// SPDX-License-Identifier: MIT
#pragma once

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <unistd.h>

// A disk that no longer gives or takes, from then on, for the handles that this process has on a
// file; its size can still be asked. Handles that are opened afterwards do everything. For good: a
// test of the page closes them.
class Unreadable
{
public:
    // Nothing more can be read through them, writing goes on. How many handles there were.
    static int make(const QString &file) { return replace(file, O_WRONLY); }
    // The other way round.
    static int makeReadOnly(const QString &file) { return replace(file, O_RDONLY); }

private:
    static int replace(const QString &file, int mode)
    {
        const QString path = QFileInfo(file).canonicalFilePath();
        const QDir handles(QStringLiteral("/proc/self/fd"));
        int made = 0;
        const QStringList all = handles.entryList(QDir::Files | QDir::System);
        for (const QString &handle : all) {
            if (QFileInfo(handles.filePath(handle)).symLinkTarget() == path) {
                const int other = open(QFile::encodeName(path).constData(), mode);
                made += dup2(other, handle.toInt()) >= 0 ? 1 : 0;
                close(other);
            }
        }
        return made;
    }
};
