// SPDX-License-Identifier: MIT
#pragma once

#include "netsetup/linefile.h"

#include <QMap>
#include <QString>

// A resolver's file: its name servers in their order as "nameserver0", "nameserver1" and so on, and
// every other line kept as it is.
//
// A name server's line begins with "nameserver" and at least one blank or tab; the rest is its
// address, which may be empty. All other lines are kept under "__comment__0" and so on. Written are
// the entries in string order of their keys: the other lines, then the name servers.
//
// A file that cannot be read gives no entries, one that cannot be written stays as it was. Any
// thread, one at a time.
class ResolvParser
{
public:
    // Reads the file at once.
    explicit ResolvParser(const QString &fileName);

    // Makes an empty entry for a key that is not there, which sync() then writes.
    QString &operator[](const QString &key) { return values_[key]; }

    void sync() const { file_.write(lines()); }
    // For a set of files that are replaced together; false when a part of it could not be read.
    bool addTo(FileSet *set) const { return file_.addTo(set, lines()); }

private:
    QStringList lines() const;

    QMap<QString, QString> values_;
    LineFile file_;
};
