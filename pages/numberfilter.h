// SPDX-License-Identifier: MIT
#pragma once

#include "records/vasksettings.h"

#include <QObject>
#include <QRegExpValidator>

#include <array>
#include <functional>

class QCheckBox;
class QLineEdit;
class QRadioButton;
class QSortFilterProxyModel;
class QTableView;

// The filter group of a page: a check box that switches it on, what the operator types, and in
// which of three ways it is meant. Switched off, the table shows every row.
//
// The widgets belong to the page's form and outlive this object. GUI thread.
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
    };

    // numberColumn of the tables that the proxy will show.
    NumberFilter(const Widgets &widgets, int numberColumn, QObject *parent);

    QSortFilterProxyModel *proxy() const { return proxy_; }

    // Binds the table's model anew while the proxy does not look; the view keeps its columns.
    void rebind(const QTableView *view, const std::function<void()> &bind);

    // As the check box tells it.
    void enable(int state);
    // What is typed and how it is meant. A text that cannot be typed in this way is cleared.
    void apply();

private:
    VaskSettings::NumFilterMode mode() const;

    Widgets widgets_;
    QSortFilterProxyModel *proxy_; // a child
    std::array<QRegExpValidator, 3> validators_;
};
