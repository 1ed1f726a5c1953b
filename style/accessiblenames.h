// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>

class QWidget;

// Names for those parts of the toolkit's widgets that have none, for whoever has the screen read to
// him: scroll bars, the corner of a table, menus, the parts of a calendar, the file names that a
// file dialog offers. A name that a part has stays. GUI thread.
class AccessibleNames
{
    Q_DECLARE_TR_FUNCTIONS(AccessibleNames)

public:
    static void give(QWidget *widget);
};
