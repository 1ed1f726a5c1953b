// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

// Draws a line around the dialogs that it is installed on. A panel often runs without a window
// manager, where nothing else would tell a dialog from the page behind it.
class DialogEdge : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    bool eventFilter(QObject *dialog, QEvent *event) override;
};
