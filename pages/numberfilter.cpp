// SPDX-License-Identifier: MIT
#include "pages/numberfilter.h"

#include <QCheckBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QRadioButton>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QTableView>

namespace
{

// So many rows are filtered between two key presses.
constexpr int rowsAtOnce = 50000;
constexpr int pauseMsec = 300;

} // namespace

NumberFilter::NumberFilter(const Widgets &widgets, QAbstractItemModel *model,
                           const NumberSource &source, QObject *parent)
    : QObject(parent)
    , widgets_(widgets)
    , proxy_(new NumberProxy(source, this))
{
    validators_[VaskSettings::NumFilterWhole].setRegExp(VaskSettings::numPattern);
    validators_[VaskSettings::NumFilterSymbols].setRegExp(VaskSettings::numPatternSymbols);
    validators_[VaskSettings::NumFilterNumbers].setRegExp(VaskSettings::numPatternNumbers);
    pause_.setSingleShot(true);
    pause_.setInterval(pauseMsec);
    connect(&pause_, &QTimer::timeout, this, &NumberFilter::filter);
    proxy_->setSourceModel(model);
    widgets_.table->setModel(proxy_);
    enable(widgets_.on->checkState());
}

void NumberFilter::rebind(const std::function<void()> &bind)
{
    QHeaderView *header = widgets_.table->horizontalHeader();
    QScrollBar *bar = widgets_.table->horizontalScrollBar();
    const QByteArray columns = header->saveState();
    const int first = bar->value();
    proxy_->change(bind);
    header->restoreState(columns);
    // The header does not tell that its columns have other widths again, and the table would scroll
    // no further than those that they had in between reach.
    Q_EMIT header->geometriesChanged();
    bar->setValue(first);
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
    // The tables show Latin letters, while a keyboard may type local ones that look the same.
    wanted_ = widgets_.text->isEnabled()
                  ? VaskSettings::numFilter(VaskSettings::inLatinLetters(typed), mode())
                  : QRegExp();
    if (proxy_->sourceModel()->rowCount() > rowsAtOnce) {
        pause_.start();
    } else {
        filter();
    }
}

void NumberFilter::filter()
{
    pause_.stop();
    if (wanted_ == proxy_->filterRegExp()) {
        return;
    }
    const QAbstractItemModel *model = proxy_->sourceModel();
    const int row = proxy_->mapToSource(widgets_.table->currentIndex()).row();
    {
        const QScopedValueRollback<bool> work(atWork_, true);
        rebind([this] { proxy_->setFilterRegExp(wanted_); });
        if (row >= 0) {
            widgets_.table->setCurrentIndex(
                proxy_->mapFromSource(model->index(row, proxy_->filterKeyColumn())));
        }
    }
    Q_EMIT filtered();
}

VaskSettings::NumFilterMode NumberFilter::mode() const
{
    return widgets_.symbols->isChecked()   ? VaskSettings::NumFilterSymbols
           : widgets_.numbers->isChecked() ? VaskSettings::NumFilterNumbers
                                           : VaskSettings::NumFilterWhole;
}
