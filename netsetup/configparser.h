// SPDX-License-Identifier: MIT
#pragma once

#include "netsetup/linefile.h"

#include <QMap>
#include <QString>

// A file of KEY=value lines as a shell reads it: settings by their names, and every other line kept
// as it is.
//
// A line with "=" is a setting unless "#" is the first thing in it. Blanks next to the first "="
// are dropped, those in front of the name stay in it; everything behind is the value, further "="
// included. Of two lines with one name the later one counts. Lines that are no settings are kept
// under "__comment__0" and so on. Written are the entries in string order of their keys, which the
// boot scripts do not mind: they read by name.
//
// A file that cannot be read gives no entries, one that cannot be written stays as it was. Any
// thread, one at a time.
class ConfigParser
{
public:
    // Reads the file at once.
    explicit ConfigParser(const QString &fileName);

    // Makes an empty entry for a name that is not there, which sync() then writes.
    QString &operator[](const QString &key) { return values_[key]; }

    void sync() const { file_.write(lines()); }
    // For a set of files that are replaced together; false when a part of it could not be read.
    bool addTo(FileSet *set) const { return file_.addTo(set, lines()); }

private:
    QStringList lines() const;

    QMap<QString, QString> values_;
    LineFile file_;
};
