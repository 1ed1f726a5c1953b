// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

// A lock file that one process holds.
//
// What counts is the kernel's lock on the file, which ends with the process, and never the file's
// content: one that a power cut or a killed process has left holds nobody off, be it empty or
// rubbish. The content names the process as the toolkit's lock files do, which take the same kernel
// lock, so the two keep each other out. The file goes when the lock is given back.
//
// Where the file cannot be made or the file system takes no locks, there is none, and nobody is
// refused. Used by one thread.
class ProcessLock
{
public:
    explicit ProcessLock(const QString &path);
    ~ProcessLock();
    ProcessLock(const ProcessLock &) = delete;
    ProcessLock &operator=(const ProcessLock &) = delete;

    bool isLocked() const { return file_ >= 0; }
    // Somebody else has it; that may be another object of this process.
    bool isRefused() const { return refused_; }

    // Deletes a lock file of this kind, or of the toolkit's, that no process holds. Links are left
    // alone.
    static void removeAbandoned(const QString &path);

private:
    enum class Try { Done, Again };

    Try take();
    void nameHolder() const;

    QByteArray path_;
    int file_ = -1;
    bool refused_ = false;
};
