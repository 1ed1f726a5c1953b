// SPDX-License-Identifier: MIT
#pragma once

#include "records/scan.h"

#include <QByteArray>
#include <QHash>
#include <QString>

// Which photo names of a table belong to other devices than one: those whose first passage, by the
// index, came from another (see PhotoName). Rows without an identifier own nothing.
//
// Reads the rows once, when it is made, and keeps some fifty bytes of each. Any thread.
class PhotoOwners
{
public:
    // Of the first so many rows of the table.
    PhotoOwners(const QString &recordFile, const QString &indexFile, int rows,
                const QString &vaskId);

    bool isOfAnother(const Scan &scan) const;

private:
    static QByteArray key(const Scan &scan);

    QHash<QByteArray, bool> ofAnother_;
};
