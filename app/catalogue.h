// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>
#include <QTranslator>

// A message catalogue of the system's language, used by tr() for as long as it lives.
//
// It is looked for in the process's current directory, then in the given folders, under the base
// name followed by the locale's name, and under that cut shorter at its underscores: for ru_RU and
// "vaskparking_", vaskparking_ru_RU.qm before vaskparking_ru.qm. One that is missing or damaged
// changes nothing.
//
// GUI thread; made after the application object and gone before it. A catalogue that is made later
// is asked first.
class Catalogue
{
public:
    explicit Catalogue(const QString &baseName, const QStringList &furtherFolders = {});

    // Where the toolkit keeps its own.
    static QString toolkitFolder();

    // Where ours are installed, seen from the program. For programs whose current directory is
    // taken by other files.
    static QString installedFolder();

private:
    QTranslator translator_;
};
