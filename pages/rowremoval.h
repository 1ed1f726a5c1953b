// SPDX-License-Identifier: MIT
#pragma once

#include <QVector>

#include <functional>

class NumberFilter;
class QTableView;

// The rows that the operator has selected to be removed, as rows of the table behind the filter,
// and the row that takes the place of the current one when they are gone, as the toolkit chooses
// it: the one before that stays, else the next. A value; the view and its filter live while it is
// used. GUI thread.
class RowRemoval
{
public:
    // The table's file is written anew by a removal: that of a longer table is left to a job.
    static constexpr int longestAtOnce = 10000;

    RowRemoval() = default;
    RowRemoval(QTableView *table, NumberFilter *filter);

    // In rising order; empty when none is selected.
    const QVector<int> &rows() const { return rows_; }
    // Has the action remove them from the table, and the view go on beside them; what the action
    // returns.
    bool apply(const std::function<bool()> &action) const;

    // For a view that has lost its current row, when the rows are gone.
    void restoreCurrent() const;

private:
    int rowThatStays() const;

    QTableView *table_ = nullptr;
    NumberFilter *filter_ = nullptr;
    QVector<int> rows_;
    int current_ = -1; // when the rows are gone
};
