// SPDX-License-Identifier: MIT
#pragma once

#include <QBitArray>
#include <QSortFilterProxyModel>

#include <functional>

// Where the numbers of a table's rows are found without the table.
struct NumberSource {
    int column;
    int recordSize;
    // The record file that the table is bound to; empty when it is not.
    std::function<QString()> file;
    // The number in a record as the table shows it, with local letters translated to Latin ones.
    std::function<QString(const char *record)> number;
};

// Shows the rows whose number, in Latin letters, the filter expression finds; all of them while it
// is empty.
//
// The toolkit asks the table row by row, and takes its map of rows apart once for every gap: a
// filter typed over 100,000 passages would stop the window for seconds. So a whole table is never
// filtered in place: change() lets go of it, tests all numbers straight from the file, and takes it
// up again. Later changes of single rows go the toolkit's way. GUI thread.
class NumberProxy : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    NumberProxy(const NumberSource &source, QObject *parent);

    // Lets go of the table during the action, which may change its file or the filter expression.
    void change(const std::function<void()> &action);

protected:
    bool filterAcceptsRow(int row, const QModelIndex &parent) const override;

private:
    QBitArray matches() const;

    NumberSource source_;
    QBitArray matches_; // while a table is taken up
};
