// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPointer>

class QWidget;

// Gives the keyboard to the window that the operator works in, on panels without a window manager:
// there nobody else does, no widget would have the focus, and neither keys nor keypad could type.
// A window gets it when it opens or is pressed, and the main window gets it back when a dialog
// closes. Where a window manager runs these are requests that it grants or not, as always.
//
// Watches all events of the application; owned by the main window. GUI thread.
class FocusKeeper : public QObject
{
    Q_OBJECT

public:
    explicit FocusKeeper(QWidget *mainWindow);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void giveBack(const QWidget *closed);

    QPointer<QWidget> mainWindow_;
};
