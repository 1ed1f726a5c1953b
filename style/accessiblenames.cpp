// SPDX-License-Identifier: MIT
#include "style/accessiblenames.h"

#include <QAbstractButton>
#include <QCalendarWidget>
#include <QMenu>
#include <QScrollBar>
#include <QTableView>

namespace
{

void name(QWidget *widget, const QString &text)
{
    if (widget != nullptr && widget->accessibleName().isEmpty()) {
        widget->setAccessibleName(text);
    }
}

} // namespace

void AccessibleNames::give(QWidget *widget)
{
    if (const auto *bar = qobject_cast<QScrollBar *>(widget)) {
        name(widget,
             bar->orientation() == Qt::Vertical ? tr("Scroll up and down") : tr("Scroll sideways"));
    } else if (qobject_cast<QTableView *>(widget) != nullptr) {
        name(widget->findChild<QAbstractButton *>(QString(), Qt::FindDirectChildrenOnly),
             tr("Select all rows"));
    } else if (const auto *menu = qobject_cast<QMenu *>(widget); menu != nullptr) {
        name(widget, menu->title());
    } else if (qobject_cast<QCalendarWidget *>(widget) != nullptr) {
        name(widget, tr("Calendar"));
        const auto part = [widget](const char *object) {
            return widget->findChild<QWidget *>(QLatin1String(object));
        };
        name(part("qt_calendar_prevmonth"), tr("Previous month"));
        name(part("qt_calendar_nextmonth"), tr("Next month"));
        name(part("qt_calendar_yearedit"), tr("Year"));
        name(part("qt_calendar_calendarview"), tr("Days"));
    }
}
