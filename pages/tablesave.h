// SPDX-License-Identifier: MIT
#pragma once

#include "records/scan.h"

#include <QCoreApplication>
#include <QStringList>

#include <functional>

class ScanModel;

// A table as it was when a save began: the worker copies exactly these rows, from handles of its
// own, while the table goes on growing.
struct TableSnapshot {
    QString recordFile;
    QString indexFile;
    int rows = 0;
    QStringList titles;

    // As it is now. GUI thread.
    static TableSnapshot of(const ScanModel &model);
};

// The steps of a save, for worker threads. Each returns the text of what went wrong, empty when
// nothing did. Files appear whole or not at all, replacing what was there; the table's own files
// are refused and stay untouched. The thread's interruption ends a long loop with a text as well.
class TableSave
{
    Q_DECLARE_TR_FUNCTIONS(TableSave)

public:
    // Told the percentage that is done whenever it changes.
    using Progress = std::function<void(int)>;

    // The record file as name and the index file beside it, under name's base name.
    static QString dump(const TableSnapshot &table, const QString &name);

    // The titles and one line per passage, joined by ";" and line breaks, without a line break at
    // the end. The plain form quotes nothing.
    static QString plainCsv(const TableSnapshot &table, const QString &name);
    static QString csv(const TableSnapshot &table, const QString &name, const Progress &progress);

    // The photos that are there, from one folder into another, which exists, and onto its disk. One
    // that cannot be copied does not stop the rest; the texts, joined by line ends. Each row's is
    // that of its own device, and what only keeps the place of one goes along; see PhotoName.
    static QString photos(const TableSnapshot &table, const QString &from, const QString &to,
                          const Progress &progress = Progress());

    // Each passage in order until the action returns false.
    static QString forEachPassage(const TableSnapshot &table,
                                  const std::function<bool(const Scan &)> &action,
                                  const Progress &progress = Progress());

private:
    using Line = std::function<QString(const QStringList &fields)>;
    static QString lines(const TableSnapshot &table, const QString &name, const Line &line,
                         const Progress &progress);
};
