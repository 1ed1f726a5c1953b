// SPDX-License-Identifier: MIT
#pragma once

#include "records/flush.h"

#include <QFile>
#include <QFileInfo>
#include <QMutex>
#include <QStringList>

#include <cerrno>
#include <unistd.h>

// What the program brings onto the disk while it lives, in place of the disk: the names of the
// files and folders that it flushes, file systems in brackets. A file that has no name yet is told
// as "new". What is told to fail does so with EIO, like a stick that is pulled out.
class FlushCalls
{
public:
    enum class Fail { Nothing, Files, Folders, FileSystems };

    explicit FlushCalls(Fail fail = Fail::Nothing)
        : before_(Flush::calls)
    {
        seen().clear();
        failing() = fail;
        Flush::calls = {flushFile, flushFileSystem};
    }
    ~FlushCalls() { Flush::calls = before_; }
    FlushCalls(const FlushCalls &) = delete;
    FlushCalls &operator=(const FlushCalls &) = delete;

    static QStringList names()
    {
        const QMutexLocker lock(&mutex());
        return seen();
    }

private:
    static int flushFile(int descriptor)
    {
        const QString name = nameOf(descriptor);
        const bool isFolder = QFileInfo(name).isDir();
        note(isFolder ? QFileInfo(name).fileName() + QLatin1Char('/') : QStringLiteral("new"));
        return failsFor(isFolder ? Fail::Folders : Fail::Files);
    }
    static int flushFileSystem(int descriptor)
    {
        note(QLatin1Char('[') + QFileInfo(nameOf(descriptor)).fileName() + QLatin1Char(']'));
        return failsFor(Fail::FileSystems);
    }
    static QString nameOf(int descriptor)
    {
        return QFile::symLinkTarget(QStringLiteral("/proc/self/fd/%1").arg(descriptor));
    }
    static void note(const QString &name)
    {
        const QMutexLocker lock(&mutex());
        seen() << name;
    }
    static int failsFor(Fail kind)
    {
        errno = EIO;
        return failing() == kind ? -1 : 0;
    }

    static QMutex &mutex()
    {
        static QMutex one;
        return one;
    }
    static QStringList &seen()
    {
        static QStringList names;
        return names;
    }
    static Fail &failing()
    {
        static Fail kind = Fail::Nothing;
        return kind;
    }

    Flush::Calls before_;
};
