// SPDX-License-Identifier: MIT
#include "pages/rowremoval.h"

#include "pages/numberfilter.h"

#include <QItemSelectionModel>
#include <QTableView>

#include <algorithm>

RowRemoval::RowRemoval(QTableView *table, NumberFilter *filter)
    : table_(table)
    , filter_(filter)
{
    // By its stretches: asked row by row, a selection of a whole long table takes seconds.
    const QItemSelection selection = table->selectionModel()->selection();
    for (const QItemSelectionRange &stretch : selection) {
        for (int row = stretch.top(); row <= stretch.bottom(); ++row) {
            rows_.append(filter->proxy()->mapToSource(filter->proxy()->index(row, 0)).row());
        }
    }
    std::sort(rows_.begin(), rows_.end());
    rows_.erase(std::unique(rows_.begin(), rows_.end()), rows_.end());
    const int stays = rowThatStays();
    if (stays >= 0) {
        const auto above = std::lower_bound(rows_.cbegin(), rows_.cend(), stays) - rows_.cbegin();
        current_ = stays - static_cast<int>(above);
    }
}

bool RowRemoval::apply(const std::function<bool()> &action) const
{
    if (rows_.last() - rows_.first() + 1 == rows_.size()) {
        return action(); // views follow the removal of one stretch by themselves
    }
    bool removed = false;
    filter_->rebind([&] { removed = action(); });
    restoreCurrent();
    return removed;
}

int RowRemoval::rowThatStays() const
{
    const NumberProxy *proxy = filter_->proxy();
    const int current = table_->currentIndex().row();
    const auto staysAt = [this, proxy](int shown) {
        const int row = proxy->mapToSource(proxy->index(shown, 0)).row();
        return std::binary_search(rows_.cbegin(), rows_.cend(), row) ? -1 : row;
    };
    for (int shown = current; shown >= 0; --shown) {
        if (const int row = staysAt(shown); row >= 0) {
            return row;
        }
    }
    for (int shown = current; shown >= 0 && shown < proxy->rowCount(); ++shown) {
        if (const int row = staysAt(shown); row >= 0) {
            return row;
        }
    }
    return -1;
}

void RowRemoval::restoreCurrent() const
{
    const QAbstractItemModel *model = filter_->proxy()->sourceModel();
    if (current_ >= 0 && model != nullptr) {
        table_->setCurrentIndex(filter_->proxy()->mapFromSource(model->index(current_, 0)));
    }
}
