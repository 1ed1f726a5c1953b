// SPDX-License-Identifier: MIT
#include "pages/numberfilter.h"

#include <QCheckBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QRadioButton>
#include <QSortFilterProxyModel>
#include <QTableView>

NumberFilter::NumberFilter(const Widgets &widgets, int numberColumn, QObject *parent)
    : QObject(parent)
    , widgets_(widgets)
    , proxy_(new QSortFilterProxyModel(this))
{
    validators_[VaskSettings::NumFilterWhole].setRegExp(VaskSettings::numPattern);
    validators_[VaskSettings::NumFilterSymbols].setRegExp(VaskSettings::numPatternSymbols);
    validators_[VaskSettings::NumFilterNumbers].setRegExp(VaskSettings::numPatternNumbers);
    proxy_->setDynamicSortFilter(true);
    proxy_->setFilterKeyColumn(numberColumn);
    enable(widgets_.on->checkState());
}

void NumberFilter::rebind(const QTableView *view, const std::function<void()> &bind)
{
    QHeaderView *header = view->horizontalHeader();
    const QByteArray columns = header->saveState();
    QAbstractItemModel *model = proxy_->sourceModel();
    proxy_->setSourceModel(nullptr);
    bind();
    proxy_->setSourceModel(model);
    header->restoreState(columns);
}

void NumberFilter::enable(int state)
{
    widgets_.text->setEnabled(state != Qt::Unchecked);
    apply();
}

void NumberFilter::apply()
{
    const QRegExpValidator &validator = validators_[mode()];
    if (widgets_.text->validator() != &validator) {
        widgets_.text->setValidator(&validator);
    }
    QString typed = widgets_.text->text();
    int cursor = 0;
    if (validator.validate(typed, cursor) == QValidator::Invalid) {
        typed.clear();
        widgets_.text->clear();
    }
    proxy_->setFilterRegExp(widgets_.on->isChecked() ? VaskSettings::numFilter(typed, mode())
                                                     : QRegExp());
}

VaskSettings::NumFilterMode NumberFilter::mode() const
{
    return widgets_.symbols->isChecked()   ? VaskSettings::NumFilterSymbols
           : widgets_.numbers->isChecked() ? VaskSettings::NumFilterNumbers
                                           : VaskSettings::NumFilterWhole;
}
