// SPDX-License-Identifier: MIT
#include "pages/tablecolumns.h"

#include <QDateTime>
#include <QHeaderView>
#include <QTableView>

void TableColumns::fit(QTableView *table, const Widest &widest)
{
    if (fitted_) {
        return;
    }
    fitted_ = true;
    const QFontMetrics metrics = table->fontMetrics();
    for (const auto &[column, text] : widest) {
        table->setColumnWidth(column, metrics.horizontalAdvance(QStringLiteral("    ") + text));
    }
    // Every title is there in full, whatever its language.
    const QHeaderView *header = table->horizontalHeader();
    for (int column = 0; column < header->count(); ++column) {
        table->setColumnWidth(column,
                              qMax(table->columnWidth(column), header->sectionSizeHint(column)));
    }
}

QString TableColumns::widestTime(const QString &format)
{
    return QDateTime(QDate(2000, 9, 30), QTime(0, 0)).toString(format);
}
