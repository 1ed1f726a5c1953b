// SPDX-License-Identifier: MIT
#pragma once

#include "pages/numberproxy.h"
#include "pages/tablecolumns.h"
#include "records/scan.h"

#include <QCoreApplication>

#include <functional>
#include <optional>

class ProportionalSclaleWidget;
class QLabel;
class QMenu;
class QTableView;
class QWidget;
class ScanModel;

// What the tables of passages of the On-line and the Archive page have in common. GUI thread.
class PassageTable
{
    Q_DECLARE_TR_FUNCTIONS(PassageTable)

public:
    // The columns of time, number and verdicts.
    static TableColumns::Widest widestTexts(const QTableView *table);

    // Where a filter finds the numbers of a table of passages.
    static NumberSource numbersOf(const ScanModel *model);

    // The view of the chosen passage's photo, which fills the label.
    static ProportionalSclaleWidget *createPhotoView(QLabel *place);

    // The menu of a row, with one action.
    static QMenu *createMenu(QTableView *table, const std::function<void()> &addToSuffered);

    // The passage of a row. One that cannot be read is told over the page; nothing is told, and
    // nothing returned, of row -1.
    static std::optional<Scan> read(ScanModel &model, int row, QWidget *page);

    // Asks under which name to save the passage's photo; empty when the operator gave it up.
    static QString askPhotoName(QWidget *page, const Scan &scan);

    // Sends number, key and comment of the passage to the access list page.
    static void addToAccessList(const Scan &scan);
};
