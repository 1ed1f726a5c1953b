// SPDX-License-Identifier: MIT
#include "pages/passagetable.h"

#include "app/settings.h"
#include "app/shellaccess.h"
#include "net/events.h"
#include "pages/proportionalsclalewidget.h"
#include "records/scanmodel.h"
#include "records/vasksettings.h"

#include <QFileDialog>
#include <QLabel>
#include <QMenu>
#include <QTableView>
#include <QVBoxLayout>

void PassageTable::fitColumns(QTableView *table, bool *fitted)
{
    if (*fitted) {
        return;
    }
    *fitted = true;
    const QFontMetrics metrics = table->fontMetrics();
    const auto fit = [&](int column, const QString &widest) {
        table->setColumnWidth(column, metrics.horizontalAdvance(QStringLiteral("    ") + widest));
    };
    fit(ScanModel::DateColumn,
        QDateTime(QDate(2000, 9, 30), QTime(0, 0)).toString(scanModelDateTimeFormat));
    fit(ScanModel::NumberColumn, QStringLiteral("M000MM000"));
    for (const int column : {ScanModel::InListColumn, ScanModel::GrantedColumn}) {
        fit(column, table->model()->headerData(column, Qt::Horizontal).toString());
    }
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
