// SPDX-License-Identifier: MIT
#pragma once

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <unistd.h>

// A disk that no longer gives what it has: from its making on, this process can read nothing more
// through the handles that it has on a file, though their size can be asked and writing goes on.
// Handles that are opened afterwards can read. For good: a test of the page closes them.
class Unreadable
{
public:
    // How many handles there were.
    static int make(const QString &file)
    {
        const QString path = QFileInfo(file).canonicalFilePath();
        const QDir handles(QStringLiteral("/proc/self/fd"));
        int made = 0;
        const QStringList all = handles.entryList(QDir::Files | QDir::System);
        for (const QString &handle : all) {
            if (QFileInfo(handles.filePath(handle)).symLinkTarget() == path) {
                const int writing = open(QFile::encodeName(path).constData(), O_WRONLY);
                made += dup2(writing, handle.toInt()) >= 0 ? 1 : 0;
                close(writing);
            }
        }
        return made;
    }
};
