// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QString>

// The folder of a dump in the working directory, for pages that save a table and empty it in one
// step. Any thread.
class DumpFolder
{
    Q_DECLARE_TR_FUNCTIONS(DumpFolder)

public:
    // Makes the folder that is called as the file's name is, and tells the dump's path in it. The
    // text of what went wrong, also when there is such a folder; empty when nothing did.
    static QString make(const QString &name, QString *dump);
};
