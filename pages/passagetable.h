// SPDX-License-Identifier: MIT
#pragma once

#include "records/scan.h"

#include <QCoreApplication>

#include <functional>

class ProportionalSclaleWidget;
class QLabel;
class QMenu;
class QTableView;
class QWidget;

// What the tables of passages of the On-line and the Archive page have in common. GUI thread.
class PassageTable
{
    Q_DECLARE_TR_FUNCTIONS(PassageTable)

public:
    // Gives time, number and verdicts the room that they need, once: the operator may change it.
    // When the table is shown, not before: the style, and with it the font, is set after the pages
    // are made.
    static void fitColumns(QTableView *table, bool *fitted);

    // The view of the chosen passage's photo, which fills the label.
    static ProportionalSclaleWidget *createPhotoView(QLabel *place);

    // The menu of a row, with one action.
    static QMenu *createMenu(QTableView *table, const std::function<void()> &addToSuffered);

    // Asks under which name to save the passage's photo; empty when the operator gave it up.
    static QString askPhotoName(QWidget *page, const Scan &scan);

    // Sends number, key and comment of the passage to the access list page.
    static void addToAccessList(const Scan &scan);
};
