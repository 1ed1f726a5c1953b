// SPDX-License-Identifier: MIT
#pragma once

#include <QFrame>

#include <memory>

class QSignalMapper;
class Ui_Form;

// The numeric keypad of the panel's dialogs: it types into whatever widget has the keyboard focus,
// as a hardware key would, and never takes the focus itself. The comma key types a full stop, for
// dotted addresses, under the key code of the comma. Only key presses are sent, no releases.
//
// A child of the dialog that embeds it; knows nothing about the dialog. GUI thread.
class ScreenKeybord : public QFrame
{
    Q_OBJECT

public:
    explicit ScreenKeybord(QWidget *parent);
    ~ScreenKeybord() override;

public Q_SLOTS:
    // key is a Qt::Key. Without a focus widget nothing happens.
    void buttonPressed(int key);

private:
    std::unique_ptr<Ui_Form> ui_;
    // A child of this keypad.
    QSignalMapper *mapper_;
};
