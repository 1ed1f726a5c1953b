// SPDX-License-Identifier: MIT
#include "netsetup/screenkeybord.h"

#include "ui_screenkeybord.h"

#include <QApplication>
#include <QKeyEvent>
#include <QSignalMapper>

namespace
{

QString textOf(int key)
{
    if (key >= Qt::Key_0 && key <= Qt::Key_9) {
        return QString::number(key - Qt::Key_0);
    }
    if (key == Qt::Key_Space) {
        return QStringLiteral(" ");
    }
    // Dotted addresses are what is typed here; the key's code stays that of the comma.
    if (key == Qt::Key_Comma) {
        return QStringLiteral(".");
    }
    return {};
}

} // namespace

ScreenKeybord::ScreenKeybord(QWidget *parent)
    : QFrame(parent)
    , ui_(std::make_unique<Ui_Form>())
    , mapper_(new QSignalMapper(this))
{
    ui_->setupUi(this);
    const struct {
        QPushButton *button;
        int key;
    } keys[] = {
        {ui_->pb0, Qt::Key_0},         {ui_->pb1, Qt::Key_1},
        {ui_->pb2, Qt::Key_2},         {ui_->pb3, Qt::Key_3},
        {ui_->pb4, Qt::Key_4},         {ui_->pb5, Qt::Key_5},
        {ui_->pb6, Qt::Key_6},         {ui_->pb7, Qt::Key_7},
        {ui_->pb8, Qt::Key_8},         {ui_->pb9, Qt::Key_9},
        {ui_->pbSpace, Qt::Key_Space}, {ui_->pbComma, Qt::Key_Comma},
        {ui_->pbDel, Qt::Key_Delete},  {ui_->pbBackSpace, Qt::Key_Backspace},
    };
    for (const auto &[button, key] : keys) {
        mapper_->setMapping(button, key);
        connect(button, &QPushButton::pressed, mapper_, QOverload<>::of(&QSignalMapper::map));
    }
    connect(mapper_, &QSignalMapper::mappedInt, this, &ScreenKeybord::buttonPressed);
}

ScreenKeybord::~ScreenKeybord() = default;

void ScreenKeybord::buttonPressed(int key)
{
    QWidget *target = QApplication::focusWidget();
    if (target == nullptr) {
        return;
    }
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, textOf(key), false, 1);
    QApplication::sendEvent(target, &press);
}
