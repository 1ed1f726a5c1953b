// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QString>

class QWidget;

// Asks the operator for the file of a table: a dump, whose ending depends on the kind of table, or
// CSV. Runs modally. GUI thread.
class TableFileDialog
{
    Q_DECLARE_TR_FUNCTIONS(TableFileDialog)

public:
    enum class First { Dump, Csv };

    // The name is empty when the operator gave it up.
    struct Choice {
        QString name;
        bool isCsv = false;
    };

    // folder is where the dialog begins; suffix is the ending of dumps.
    TableFileDialog(QWidget *page, const QString &title, const QString &folder,
                    const QString &suffix);

    // By the name's ending.
    Choice load() const;
    // By the filter that was chosen, of which one stands first; a missing ending is added.
    Choice save(First first) const;

private:
    QWidget *page_;
    QString title_;
    QString folder_;
    QString suffix_;
    QString dumpFilter_;
    QString csvFilter_;
};
