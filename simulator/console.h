// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

class Faults;
class FileTree;
class Journal;
class SimulatedDevice;

// The commands by which a device is steered while it runs. Each is one line of words and is
// answered by one line, which begins with "error" when the command was not understood or could not
// be done. help() is the list.
//
// Lives in the device's thread; what it steers must outlive it.
class Console
{
public:
    Console(SimulatedDevice *device, FileTree *files, Faults *faults, Journal *journal);

    // The answer, without a line end. An empty line is answered by an empty one.
    QString execute(const QString &line);
    bool isQuit() const { return quit_; }

    static QString help();

private:
    QString take(const QString &command, const QStringList &values);
    QString takeSending(const QString &command, const QStringList &values);
    QString takeConnections(const QString &command, const QStringList &values);
    QString takeFiles(const QString &command, const QStringList &values);
    QString push(const QStringList &values);
    QString split(const QStringList &values);
    QString listen(const QStringList &values);
    QString counts() const;

    SimulatedDevice *device_;
    FileTree *files_;
    Faults *faults_;
    Journal *journal_;
    bool quit_ = false;
};
