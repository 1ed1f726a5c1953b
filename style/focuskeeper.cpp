// SPDX-License-Identifier: MIT
#include "style/focuskeeper.h"

#include <QApplication>
#include <QEvent>
#include <QWidget>

namespace
{

// Menus, tool tips and the like never take the keyboard by themselves.
bool takesKeyboard(const QWidget *window)
{
    return window->windowType() == Qt::Window || window->windowType() == Qt::Dialog;
}

void activate(QWidget *window)
{
    if (takesKeyboard(window) && !window->isActiveWindow()) {
        window->activateWindow();
    }
}

} // namespace

FocusKeeper::FocusKeeper(QWidget *mainWindow)
    : QObject(mainWindow)
    , mainWindow_(mainWindow)
{
    qApp->installEventFilter(this);
}

bool FocusKeeper::eventFilter(QObject *watched, QEvent *event)
{
    const QEvent::Type type = event->type();
    if (watched->isWidgetType() &&
        (type == QEvent::Show || type == QEvent::Hide || type == QEvent::MouseButtonPress)) {
        auto *widget = static_cast<QWidget *>(watched);
        if (type == QEvent::MouseButtonPress) {
            activate(widget->window());
        } else if (type == QEvent::Show && widget->isWindow() &&
                   !widget->testAttribute(Qt::WA_ShowWithoutActivating)) {
            activate(widget);
        } else if (type == QEvent::Hide && widget->isWindow()) {
            giveBack(widget);
        }
    }
    return QObject::eventFilter(watched, event);
}

void FocusKeeper::giveBack(const QWidget *closed)
{
    if (closed->windowType() != Qt::Dialog) {
        return;
    }
    QWidget *next = QApplication::activeModalWidget();
    if (next == nullptr || next == closed) {
        next = mainWindow_;
    }
    if (next != nullptr && next != closed && next->isVisible()) {
        activate(next);
    }
}
