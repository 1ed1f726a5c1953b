// SPDX-License-Identifier: MIT
#include "style/accessiblenames.h"

#include <QAbstractButton>
#include <QCalendarWidget>
#include <QCompleter>
#include <QFileDialog>
#include <QLineEdit>
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
        // The menu of a text field has no title. A title may mark its key letter.
        QString title = menu->title();
        title.remove(QLatin1Char('&'));
        name(widget, title.isEmpty() ? tr("Menu") : title);
    } else if (const auto *files = qobject_cast<QFileDialog *>(widget); files != nullptr) {
        const auto *edit = files->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
        if (edit != nullptr && edit->completer() != nullptr) {
            name(edit->completer()->popup(), tr("File names on offer"));
        }
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
