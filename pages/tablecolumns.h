// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <utility>
#include <vector>

class QTableView;

// Columns as wide as the widest text that they usually hold. GUI thread.
class TableColumns
{
public:
    using Widest = std::vector<std::pair<int, QString>>;

    // Once: the operator may change them. When the table is shown, not before: the style, and with
    // it the font, is set after the pages are made.
    void fit(QTableView *table, const Widest &widest);

    // The widest of times printed in this format.
    static QString widestTime(const QString &format);

private:
    bool fitted_ = false;
};
