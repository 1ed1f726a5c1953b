// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QFile>

// Opening a file whose name came from outside: chosen by the operator, or standing beside what was
// chosen. Only a regular file is opened; a folder, a device or a pipe is refused untouched, and
// what takes its place in between does not block. Returns the text of what went wrong, empty when
// nothing did. While the file is open, the object has no name: the toolkit knows its handle only.
//
// Callable from any thread.
class RegularFile
{
    Q_DECLARE_TR_FUNCTIONS(RegularFile)

public:
    // Modes as for QFile, to read or to read and write; the latter makes a missing file, unless the
    // mode says that it must exist.
    static QString open(QFile &file, QIODevice::OpenMode mode);
};
