// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QStringList>

#include <functional>

class QFile;

// Reading tables from files that the operator chose, for worker threads. Each step
// returns the text of what went wrong, empty when nothing did.
class TableLoad
{
    Q_DECLARE_TR_FUNCTIONS(TableLoad)

public:
    using Progress = std::function<void(int)>;
    using TakeLine = std::function<QString(const QStringList &fields)>;

    // Why a table cannot be bound to this file: it is not there, no regular file, or not to be
    // written (tables write through to their files).
    static QString refusal(const QString &name);

    // Replaces the passages of the record file by those of a CSV file, and removes the index, which
    // a CSV file does not have. No table is bound to the record file meanwhile. After a failure,
    // and when the thread was interrupted, both are what they were. progress is called with the
    // percentage read.
    static QString csv(const QString &source, const QString &recordFile, const Progress &progress);

    // The fields of each line of an open file behind the titles, without blank lines; take returns
    // a text to end it. A thread's interruption ends it with a text as well.
    static QString lines(QFile &source, const TakeLine &take,
                         const Progress &progress = Progress());
};
