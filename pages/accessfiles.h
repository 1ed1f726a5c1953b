// SPDX-License-Identifier: MIT
#pragma once

#include "pages/numberproxy.h"

#include <QCoreApplication>
#include <QStringList>

#include <functional>

class AccessModel;
class QFile;
class WholeFile;

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

    // More than any device holds; so many are read from a device or a file, and no more.
    static constexpr int mostEntries = 100000;
    static bool isTooLong(qint64 bytes);
    static QString tooLong();
    // Why no table is bound to this file; see TableLoad::refusal().
    static QString refusal(const QString &name);

    // An empty list, where there is none of the name.
    static QString create(const QString &name);
    // The whole entries of the list as name; what a cut write has left behind them is not copied.
    static QString copy(const QString &list, const QString &name);
    // The titles and one line per entry, joined by ";" and line breaks.
    static QString saveCsv(const QString &list, const QStringList &titles, const QString &name);
    // Takes entries, in rising order, out of the list; all of them or, when it fails, none. No
    // table is bound to it meanwhile.
    static bool remove(const QString &list, const QVector<int> &entries);
    // Replaces the list by that of a CSV file. release unbinds the list's table, if it has one,
    // when the source is known to be good; false ends the load. Where no line has an id, the source
    // is no list, unless it is an empty one: titles and nothing else. A source that is refused or
    // cannot be read leaves list and table alone.
    static QString loadCsv(const QString &source, const QString &list,
                           const std::function<bool()> &release = {});

private:
    static QString readCsv(QFile &source, WholeFile *list);
};
