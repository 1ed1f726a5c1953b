// SPDX-License-Identifier: MIT
#include "pages/tablecolumns.h"

#include <QDateTime>
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
}

QString TableColumns::widestTime(const QString &format)
{
    return QDateTime(QDate(2000, 9, 30), QTime(0, 0)).toString(format);
}
