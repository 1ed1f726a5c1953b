// SPDX-License-Identifier: MIT
#include "pages/passagetable.h"

#include "app/errorbrowser.h"
#include "app/settings.h"
#include "app/shellaccess.h"
#include "net/events.h"
#include "pages/passagedetails.h"
#include "pages/proportionalsclalewidget.h"
#include "records/scanmodel.h"
#include "records/vasksettings.h"

#include <QFileDialog>
#include <QLabel>
#include <QMenu>
#include <QTableView>
#include <QVBoxLayout>

#include <algorithm>

TableColumns::Widest PassageTable::widestTexts(const QTableView *table)
{
    TableColumns::Widest widest = {
        {ScanModel::DateColumn, TableColumns::widestTime(scanModelDateTimeFormat)},
        {ScanModel::NumberColumn, QStringLiteral("M000MM000")}};
    for (const int column : {ScanModel::InListColumn, ScanModel::GrantedColumn}) {
        widest.emplace_back(column, table->model()->headerData(column, Qt::Horizontal).toString());
    }
    return widest;
}

NumberSource PassageTable::numbersOf(const ScanModel *model)
{
    return {ScanModel::NumberColumn, Scan::size, [model] { return model->fileName(); },
            [](const char *record) {
                Scan scan;
                std::copy_n(record, Scan::size, scan.data());
                return ScanModel::shownNumber(scan);
            }};
}

ProportionalSclaleWidget *PassageTable::createPhotoView(QLabel *place)
{
    auto *layout = new QVBoxLayout(place);
    layout->setContentsMargins(0, 0, 0, 0);
    auto *view = new ProportionalSclaleWidget(tr("No Photo"), place);
    layout->addWidget(view);
    return view;
}

QMenu *PassageTable::createMenu(QTableView *table, const std::function<void()> &addToSuffered)
{
    const QString title = tr("Add number to suffered");
    auto *menu = new QMenu(title, table);
    QObject::connect(menu->addAction(title), &QAction::triggered, table, addToSuffered);
    return menu;
}

std::optional<Scan> PassageTable::read(ScanModel &model, int row, QWidget *page)
{
    const std::optional<Scan> scan = model.read(row);
    if (!scan && row >= 0) {
        ErrorBrowser::error(tr("Error"), PassageDetails::unread(), page);
    }
    return scan;
}

QString PassageTable::askPhotoName(QWidget *page, const Scan &scan)
{
    const QString start =
        Settings::instance()->lastSavedPhoto() + QLatin1Char('/') + VaskSettings::picFileName(scan);
    const QString name = QFileDialog::getSaveFileName(page, tr("Save photo to file"), start,
                                                      tr("Image file (*.jpeg)"), nullptr,
                                                      QFileDialog::DontUseNativeDialog);
    return name.isEmpty() ? name : Settings::extended(name, QStringLiteral(".jpeg"));
}

void PassageTable::addToAccessList(const Scan &scan)
{
    QObject *receiver = ShellAccess::accessEntryReceiver();
    if (receiver == nullptr) {
        return;
    }
    Access access;
    access.setNumber(scan.number());
    access.setAccessKey(scan.accessKey());
    access.setComment(scan.comment());
    QCoreApplication::postEvent(receiver, new SufferedEvent(access));
}
