// SPDX-License-Identifier: MIT
#pragma once

#include "pages/numberproxy.h"

#include <QCoreApplication>
#include <QStringList>

class AccessModel;

// Files of access lists, for worker threads with handles of their own. Each step returns the text
// of what went wrong, empty when nothing did. What is written appears whole or not at all; the list
// itself is refused as a destination.
class AccessFiles
{
    Q_DECLARE_TR_FUNCTIONS(AccessFiles)

public:
    // The panel's own list, which outlives the program.
    static QString ownList();

    // For the temporary folder of a list that is fetched.
    static QString transferTemplate();

    // Where a filter finds the numbers of a list.
    static NumberSource numbersOf(const AccessModel *model);

    // An empty list, where there is none of the name.
    static QString create(const QString &name);
    // The list as name.
    static QString copy(const QString &list, const QString &name);
    // The titles and one line per entry, joined by ";" and line breaks.
    static QString saveCsv(const QString &list, const QStringList &titles, const QString &name);
    // Takes entries, in rising order, out of the list; all of them or, when it fails, none. No
    // table is bound to it meanwhile.
    static bool remove(const QString &list, const QVector<int> &entries);
    // Replaces the list by that of a CSV file. No table is bound to it meanwhile. A source that
    // cannot be read leaves it alone.
    static QString loadCsv(const QString &source, const QString &list);
};
