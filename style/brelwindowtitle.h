// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

class QAbstractButton;
class QHBoxLayout;
class QPushButton;
class RichLine;

// The bar at the top of the frame window: page buttons from the left, the device name in the
// middle, the window's title and its three buttons at the right. The texts in the middle give way
// to the buttons: they shrink, then fade out at the end; no button is ever pushed out.
//
// Mouse events that hit no button are left to the parent, the frame window, which moves itself by
// them. GUI thread; owned by the frame.
class BrelWindowTitle : public QWidget
{
    Q_OBJECT

public:
    explicit BrelWindowTitle(QWidget *parent);

    // A new checkable button, right of those made before; owned by the bar.
    QAbstractButton *createButton(const QString &text);

    // Rich text; an empty one shows nothing.
    void setDeviceName(const QString &richText);
    QString deviceName() const;

    void setTitle(const QString &richText);
    QString title() const;

    // Whether the middle one of the window's buttons offers to restore.
    void setMaximized(bool maximized);

Q_SIGNALS:
    void minimizeRequested();
    void maximizeRequested();
    void closeRequested();

protected:
    void changeEvent(QEvent *event) override;

private:
    QPushButton *createWindowButton(const QString &name);
    void nameWindowButtons();
    void drawWindowButtons();

    bool maximized_ = false;
    // All owned by the bar.
    QHBoxLayout *pageButtons_;
    RichLine *deviceName_;
    RichLine *title_;
    QPushButton *minimize_;
    QPushButton *maximize_;
    QPushButton *close_;
};
