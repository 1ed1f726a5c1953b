// SPDX-License-Identifier: MIT
#include "app/addressdialog.h"

#include "netsetup/screenkeybord.h"
#include "style/metrics.h"
#include "tests/app/addressdialogcase.h"

#include <QContextMenuEvent>
#include <QLabel>

class TestAddressDialogTouch : public AddressDialogCase
{
    Q_OBJECT

private Q_SLOTS:
    // Face.
    void namesAndTips_data();
    void namesAndTips();
    void fitsTheSmallestScreen();
    void noAutoDefaultButton();
    void tabOrder();
    void everyControlHasAName();

    // Ports.
    void portsAreStoredWithListActionsOnly();
    void portsOutOfRangeCannotBeTyped_data();
    void portsOutOfRangeCannotBeTyped();

    // Menu and keypad.
    void menu_data();
    void menu();
    void keypadTypesAnAddress();
    void keypadTypesAPort();
    void keyboardSlots();
};

void TestAddressDialogTouch::namesAndTips_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("tip");
    const auto row = [](const char *name, const char *text, const char *tip) {
        QTest::newRow(name) << QString::fromLatin1(name) << QString::fromLatin1(text)
                            << QString::fromLatin1(tip);
    };
    row("listWidgetAddresses", "", "Address list");
    row("buttonNew", "Add", "Create new address");
    row("buttonRemove", "Remove", "Remove address");
    row("buttonOk", "OK", "Accept address");
    row("buttonCancel", "Cancel", "Close");
    row("spinBoxFileTransfer", "", "File transfer port editor");
    row("lineEditAddress", "", "Address editor");
    row("spinBoxTPPort", "", "Vask parking port editor");
}

void TestAddressDialogTouch::namesAndTips()
{
    QFETCH(const QString, name);
    QFETCH(const QString, text);
    QFETCH(const QString, tip);
    open({});
    QCOMPARE(dialog_->objectName(), QStringLiteral("AddressDialogClass"));
    QCOMPARE(dialog_->windowTitle(), QStringLiteral("Vask-parking devices configurator"));
    const auto *widget = dialog_->findChild<QWidget *>(name);
    QVERIFY(widget != nullptr);
    QCOMPARE(widget->toolTip(), tip);
    if (const auto *push = qobject_cast<const QPushButton *>(widget)) {
        QCOMPARE(push->text(), text);
    }
}

void TestAddressDialogTouch::fitsTheSmallestScreen()
{
    open({one, two});
    QVERIFY(dialog_->width() >= 404 && dialog_->height() >= 371);
    // Below a title bar of the window manager's.
    QVERIFY2(dialog_->width() <= 1024 && dialog_->height() <= 512 - 40,
             qPrintable(QString::number(dialog_->height())));
    const auto *keypad = dialog_->findChild<ScreenKeybord *>();
    const QRect keys(keypad->mapTo(dialog_.get(), QPoint()), keypad->size());
    const QRect entries(list()->mapTo(dialog_.get(), QPoint()), list()->size());
    QVERIFY(keys.left() > entries.right());
    for (const QPushButton *push : dialog_->findChildren<QPushButton *>()) {
        QVERIFY2(push->width() >= Metrics::touchSize && push->height() >= Metrics::touchSize,
                 qPrintable(push->text()));
    }
    for (const QWidget *widget :
         std::initializer_list<QWidget *>{editor(), linePort(), filePort()}) {
        QVERIFY(widget->height() >= Metrics::touchSize);
    }
}

void TestAddressDialogTouch::noAutoDefaultButton()
{
    open({one});
    for (const QPushButton *push : dialog_->findChildren<QPushButton *>()) {
        QVERIFY2(!push->autoDefault() && !push->isDefault(), qPrintable(push->objectName()));
    }
}

void TestAddressDialogTouch::tabOrder()
{
    open({one});
    const char *order[] = {
        "listWidgetAddresses", "buttonNew",           "buttonRemove", "lineEditAddress",
        "spinBoxTPPort",       "spinBoxFileTransfer", "buttonOk",     "buttonCancel"};
    list()->setFocus();
    for (const char *name : order) {
        QCOMPARE(QApplication::focusWidget()->objectName(), QLatin1String(name));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    QCOMPARE(QApplication::focusWidget(), list());
}

void TestAddressDialogTouch::everyControlHasAName()
{
    open({});
    QVERIFY(!list()->accessibleName().isEmpty());
    const auto labelled = [this](const QWidget *buddy) {
        for (const QLabel *label : dialog_->findChildren<QLabel *>()) {
            if (label->buddy() == buddy) {
                return label->text();
            }
        }
        return QString();
    };
    QCOMPARE(labelled(editor()), QStringLiteral("Device name (IP-address)"));
    QCOMPARE(labelled(linePort()), QStringLiteral("Vask parking port"));
    QCOMPARE(labelled(filePort()), QStringLiteral("File transfer port"));
}

void TestAddressDialogTouch::portsAreStoredWithListActionsOnly()
{
    open({one});
    linePort()->setValue(4001);
    filePort()->setValue(4002);
    QCOMPARE(Settings::instance()->vaskParkingPort(), 3333);
    QCOMPARE(Settings::instance()->fileTransferPort(), 5058);
    click("buttonNew");
    QCOMPARE(Settings::instance()->vaskParkingPort(), 4001);
    QCOMPARE(Settings::instance()->fileTransferPort(), 4002);
    linePort()->setValue(4003);
    click("buttonOk");
    QCOMPARE(Settings::instance()->vaskParkingPort(), 4003);
}

void TestAddressDialogTouch::portsOutOfRangeCannotBeTyped_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<int>("value");
    QTest::newRow("largest") << QStringLiteral("65535") << 65535;
    QTest::newRow("too large") << QStringLiteral("65536") << 6553;
    QTest::newRow("six digits") << QStringLiteral("100000") << 10000;
    QTest::newRow("letters") << QStringLiteral("8a0") << 80;
    QTest::newRow("negative") << QStringLiteral("-5") << 5;
}

void TestAddressDialogTouch::portsOutOfRangeCannotBeTyped()
{
    QFETCH(const QString, typed);
    QFETCH(const int, value);
    open({one});
    for (QSpinBox *port : {linePort(), filePort()}) {
        port->setFocus();
        port->selectAll();
        QTest::keyClicks(port, typed);
        QCOMPARE(port->value(), value);
    }
    // A lone zero is no port: it does not stay.
    linePort()->selectAll();
    QTest::keyClicks(linePort(), QStringLiteral("0"));
    editor()->setFocus();
    QVERIFY(linePort()->value() >= 1);
}

void TestAddressDialogTouch::menu_data()
{
    QTest::addColumn<bool>("onEntry");
    QTest::newRow("on an entry") << true;
    QTest::newRow("beside the entries") << false;
}

void TestAddressDialogTouch::menu()
{
    QFETCH(const bool, onEntry);
    open({one});
    auto *menu = dialog_->findChild<QMenu *>();
    QCOMPARE(menu->title(), QStringLiteral("Addresses editor"));
    const QRect entry = list()->visualItemRect(list()->item(0));
    const QPoint place = onEntry ? entry.center() : entry.center() + QPoint(0, 2 * entry.height());
    QContextMenuEvent asked(QContextMenuEvent::Mouse, place,
                            list()->viewport()->mapToGlobal(place));
    QApplication::sendEvent(list()->viewport(), &asked);
    QTRY_VERIFY(menu->isVisible());
    QCOMPARE(menu->pos(), list()->viewport()->mapToGlobal(place));
    QCOMPARE(menuAction("Remove address")->isEnabled(), onEntry);
    QVERIFY(menuAction("Add address")->isEnabled());
    menu->close();
}

void TestAddressDialogTouch::keypadTypesAnAddress()
{
    open({one});
    editor()->setFocus();
    editor()->selectAll();
    click("pbDel");
    QVERIFY(editor()->text().isEmpty());
    for (const char *key : {"pb1", "pb2", "pb7", "pbComma", "pb0", "pbComma", "pb0", "pbComma",
                            "pb2", "pb3", "pbBackSpace"}) {
        click(key);
        QVERIFY(editor()->hasFocus());
    }
    QCOMPARE(editor()->text(), QStringLiteral("127.0.0.2"));
    // The key of the pad edits; it is not the dialog's shortcut.
    QCOMPARE(shown(), QStringList({one}));
    click("buttonNew");
    QCOMPARE(stored(), QStringList({one, QStringLiteral("127.0.0.2")}));
}

void TestAddressDialogTouch::keypadTypesAPort()
{
    open({one});
    linePort()->setFocus();
    linePort()->selectAll();
    for (const char *key : {"pb4", "pb0", "pb0", "pb9"}) {
        click(key);
    }
    QCOMPARE(linePort()->value(), 4009);
}

void TestAddressDialogTouch::keyboardSlots()
{
    open({one});
    editor()->setText(QStringLiteral("abcd"));
    list()->setFocus();
    dialog_->cursorBackward();
    QVERIFY(editor()->hasFocus());
    QCOMPARE(editor()->cursorPosition(), 3);
    QVERIFY(!editor()->hasSelectedText());
    list()->setFocus();
    dialog_->backspace();
    QVERIFY(editor()->hasFocus());
    QCOMPARE(editor()->text(), QStringLiteral("abd"));
    QCOMPARE(editor()->cursorPosition(), 2);
    list()->setFocus();
    dialog_->cursorForward();
    QVERIFY(editor()->hasFocus());
    QCOMPARE(editor()->cursorPosition(), 3);
    dialog_->cursorForward();
    QCOMPARE(editor()->cursorPosition(), 3);
}

STALLO_TEST_MAIN(TestAddressDialogTouch)
#include "tst_addressdialogtouch.moc"
