// SPDX-License-Identifier: MIT
#pragma once

#include "pages/numberproxy.h"
#include "records/vasksettings.h"

#include <QRegExpValidator>
#include <QTimer>

#include <array>

class QCheckBox;
class QLineEdit;
class QRadioButton;
class QTableView;

// The filter group of a page and its table: a check box that switches the filter on, what the
// operator types, and in which of three ways it is meant. Switched off, the table shows every row.
// The current row stays current if it is still shown. In a long table, where filtering takes a
// moment, it waits until the operator pauses.
//
// Used while the page's form lives. GUI thread.
class NumberFilter : public QObject
{
    Q_OBJECT

public:
    struct Widgets {
        QCheckBox *on;
        QLineEdit *text;
        QRadioButton *whole;
        QRadioButton *symbols;
        QRadioButton *numbers;
        QTableView *table;
    };

    // Shows the model in the table.
    NumberFilter(const Widgets &widgets, QAbstractItemModel *model, const NumberSource &source,
                 QObject *parent);

    NumberProxy *proxy() const { return proxy_; }

    // While other rows are shown: the current row comes and goes by no hand.
    bool isAtWork() const { return atWork_; }

    // Binds the model anew while no view looks; the table keeps its columns.
    void rebind(const std::function<void()> &bind);

    // As the check box tells it.
    void enable(int state);
    // What is typed and how it is meant; local letters that look like Latin ones find these. The
    // text on view stays as it was typed, but one that cannot be typed in this way is cleared.
    void apply();

Q_SIGNALS:
    // Other rows are shown.
    void filtered();

private:
    VaskSettings::NumFilterMode mode() const;
    void filter();

    Widgets widgets_;
    NumberProxy *proxy_; // a child
    std::array<QRegExpValidator, 3> validators_;
    QRegExp wanted_;
    QTimer pause_;
    bool atWork_ = false;
};
