// SPDX-License-Identifier: MIT
#include "app/addressdialog.h"

#include "tests/app/addressdialogcase.h"

#include <QSignalSpy>

class TestAddressDialog : public AddressDialogCase
{
    Q_OBJECT

private Q_SLOTS:
    // Opening.
    void showsWhatIsStored();
    void opensEmpty();
    void opensWithoutSettings();

    // Editing the list.
    void addsByButton();
    void addsEmptyByShortcutAndMenu();
    void insertAddsFromAnywhere();
    void duplicatesAreKept();
    void removesByButton();
    void deleteKeyRemoves();
    void deleteInTheEditorEditsText();
    void deleteWithoutCurrentEntry();
    void returnAppliesAndDoesNotAdd();
    void returnWithEmptyText();
    void returnWithoutCurrentEntry();
    void returnInAPortDoesNothingElse();
    void selectionFillsTheEditor();
    void deselectingDisables();

    // Leaving.
    void okGivesTheResult();
    void activationAccepts_data();
    void activationAccepts();
    void cancelKeepsTheListAndGivesNothing_data();
    void cancelKeepsTheListAndGivesNothing();
    void okNeedsACurrentEntry();
};

void TestAddressDialog::showsWhatIsStored()
{
    Settings::instance()->setVaskParkingPort(4001);
    Settings::instance()->setFileTransferPort(4002);
    open({one, two, three});
    QCOMPARE(shown(), QStringList({one, two, three}));
    QCOMPARE(list()->currentRow(), 0);
    QCOMPARE(editor()->text(), one);
    QCOMPARE(linePort()->value(), 4001);
    QCOMPARE(filePort()->value(), 4002);
    QVERIFY(button("buttonOk")->isEnabled() && button("buttonRemove")->isEnabled());
    QVERIFY(button("buttonNew")->isEnabled());
    QVERIFY(dialog_->result().isEmpty());
}

void TestAddressDialog::opensEmpty()
{
    open({});
    QCOMPARE(list()->count(), 0);
    QVERIFY(!button("buttonOk")->isEnabled());
    QVERIFY(!button("buttonRemove")->isEnabled());
    QVERIFY(!button("buttonNew")->isEnabled());
    QVERIFY(editor()->hasFocus());
    QTest::keyClicks(editor(), QStringLiteral("x"));
    QVERIFY(button("buttonNew")->isEnabled());
    QTest::keyClick(editor(), Qt::Key_Backspace);
    QVERIFY(!button("buttonNew")->isEnabled());
}

void TestAddressDialog::opensWithoutSettings()
{
    delete Settings::instance();
    QVERIFY(Settings::instance() == nullptr);
    dialog_ = std::make_unique<AddressDialog>(nullptr);
    dialog_->show();
    QVERIFY(QTest::qWaitForWindowActive(dialog_.get()));
    type(one);
    click("buttonNew");
    click("buttonOk");
    QCOMPARE(dialog_->result(), one);
}

void TestAddressDialog::addsByButton()
{
    open({one});
    type(three);
    click("buttonNew");
    QCOMPARE(shown(), QStringList({one, three}));
    QCOMPARE(stored(), QStringList({one, three}));
    QCOMPARE(list()->currentRow(), 1);
    QVERIFY(list()->item(1)->isSelected());
    QVERIFY(editor()->hasFocus());
    QCOMPARE(editor()->text(), three);
}

void TestAddressDialog::addsEmptyByShortcutAndMenu()
{
    open({});
    QTest::keyClick(dialog_.get(), Qt::Key_Insert);
    QCOMPARE(shown(), QStringList({QString()}));
    QCOMPARE(stored(), QStringList({QString()}));
    menuAction("Add address")->trigger();
    QCOMPARE(stored(), QStringList({QString(), QString()}));
}

void TestAddressDialog::insertAddsFromAnywhere()
{
    open({one});
    for (QWidget *place :
         std::initializer_list<QWidget *>{list(), editor(), linePort(), button("buttonCancel")}) {
        const int before = list()->count();
        place->setFocus();
        QTest::keyClick(place, Qt::Key_Insert);
        QCOMPARE(list()->count(), before + 1);
        QVERIFY(editor()->hasFocus());
    }
}

void TestAddressDialog::duplicatesAreKept()
{
    open({one});
    click("buttonNew");
    click("buttonNew");
    QCOMPARE(stored(), QStringList({one, one, one}));
}

void TestAddressDialog::removesByButton()
{
    open({one, two, three});
    list()->setCurrentRow(1);
    click("buttonRemove");
    QCOMPARE(shown(), QStringList({one, three}));
    QCOMPARE(stored(), QStringList({one, three}));
    // The editor follows the entry that is current now.
    QVERIFY(list()->currentItem() != nullptr);
    QCOMPARE(editor()->text(), list()->currentItem()->text());
    click("buttonRemove");
    click("buttonRemove");
    QCOMPARE(list()->count(), 0);
    QVERIFY(stored().isEmpty());
    QVERIFY(editor()->text().isEmpty());
    QVERIFY(!button("buttonOk")->isEnabled());
    QVERIFY(!button("buttonRemove")->isEnabled());
    QVERIFY(!button("buttonNew")->isEnabled());
}

void TestAddressDialog::deleteKeyRemoves()
{
    open({one, two});
    list()->setFocus();
    QTest::keyClick(list(), Qt::Key_Delete);
    QCOMPARE(stored(), QStringList({two}));
    menuAction("Remove address")->trigger();
    QVERIFY(stored().isEmpty());
}

void TestAddressDialog::deleteInTheEditorEditsText()
{
    open({one});
    editor()->setFocus();
    editor()->setCursorPosition(0);
    QTest::keyClick(editor(), Qt::Key_Delete);
    QCOMPARE(editor()->text(), one.mid(1));
    QCOMPARE(shown(), QStringList({one}));
}

void TestAddressDialog::deleteWithoutCurrentEntry()
{
    open({one, two});
    list()->setCurrentItem(nullptr);
    editor()->setText(QStringLiteral("something"));
    linePort()->setValue(4567);
    Settings::instance()->setAddressList({});
    button("buttonCancel")->setFocus();
    QTest::keyClick(button("buttonCancel"), Qt::Key_Delete);
    QVERIFY(editor()->text().isEmpty());
    QCOMPARE(stored(), QStringList({one, two}));
    QCOMPARE(Settings::instance()->vaskParkingPort(), 4567);
}

void TestAddressDialog::returnAppliesAndDoesNotAdd()
{
    open({one, two});
    list()->setCurrentRow(1);
    type(three);
    QCOMPARE(shown(), QStringList({one, two}));
    QTest::keyClick(editor(), Qt::Key_Return);
    QCOMPARE(shown(), QStringList({one, three}));
    QCOMPARE(stored(), QStringList({one, three}));
    QVERIFY(dialog_->isVisible());
    QVERIFY(dialog_->result().isEmpty());
}

void TestAddressDialog::returnWithEmptyText()
{
    open({one});
    type(QString());
    QVERIFY(editor()->text().isEmpty());
    filePort()->setValue(4567);
    QTest::keyClick(editor(), Qt::Key_Return);
    QCOMPARE(shown(), QStringList({one}));
    // Nothing was saved either.
    QCOMPARE(Settings::instance()->fileTransferPort(), 5058);
}

void TestAddressDialog::returnWithoutCurrentEntry()
{
    open({});
    type(one);
    QTest::keyClick(editor(), Qt::Key_Return);
    QCOMPARE(list()->count(), 0);
    QVERIFY(stored().isEmpty());
    QVERIFY(dialog_->isVisible());
}

void TestAddressDialog::returnInAPortDoesNothingElse()
{
    open({one});
    linePort()->setFocus();
    QTest::keyClick(linePort(), Qt::Key_Return);
    QCOMPARE(shown(), QStringList({one}));
    QVERIFY(dialog_->isVisible());
}

void TestAddressDialog::selectionFillsTheEditor()
{
    open({one, two});
    QTest::mouseClick(list()->viewport(), Qt::LeftButton, {},
                      list()->visualItemRect(list()->item(1)).center());
    QCOMPARE(editor()->text(), two);
    list()->setFocus();
    QTest::keyClick(list(), Qt::Key_Up);
    QCOMPARE(editor()->text(), one);
}

void TestAddressDialog::deselectingDisables()
{
    open({one});
    list()->clearSelection();
    QVERIFY(!button("buttonOk")->isEnabled());
    QVERIFY(!button("buttonRemove")->isEnabled());
    QCOMPARE(editor()->text(), one);
    list()->item(0)->setSelected(true);
    QVERIFY(button("buttonOk")->isEnabled() && button("buttonRemove")->isEnabled());
}

void TestAddressDialog::okGivesTheResult()
{
    open({one, two});
    list()->setCurrentRow(1);
    const QSignalSpy finished(dialog_.get(), &QDialog::finished);
    click("buttonOk");
    QCOMPARE(dialog_->result(), two);
    QCOMPARE(finished.count(), 1);
    QCOMPARE(finished.first().first().toInt(), static_cast<int>(QDialog::Accepted));
    QVERIFY(!dialog_->isVisible());
}

void TestAddressDialog::activationAccepts_data()
{
    QTest::addColumn<bool>("byKey");
    QTest::newRow("double click") << false;
    QTest::newRow("return") << true;
}

void TestAddressDialog::activationAccepts()
{
    QFETCH(const bool, byKey);
    open({one, two});
    const QPoint place = list()->visualItemRect(list()->item(1)).center();
    QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, place);
    QVERIFY(dialog_->isVisible());
    if (byKey) {
        QTest::keyClick(list(), Qt::Key_Return);
    } else {
        QTest::mouseDClick(list()->viewport(), Qt::LeftButton, {}, place);
        QTest::mouseRelease(list()->viewport(), Qt::LeftButton, {}, place);
    }
    QVERIFY(!dialog_->isVisible());
    QCOMPARE(dialog_->result(), two);
}

void TestAddressDialog::cancelKeepsTheListAndGivesNothing_data()
{
    QTest::addColumn<QString>("way");
    QTest::newRow("button") << QStringLiteral("button");
    QTest::newRow("escape") << QStringLiteral("escape");
    QTest::newRow("window closed") << QStringLiteral("close");
}

void TestAddressDialog::cancelKeepsTheListAndGivesNothing()
{
    QFETCH(const QString, way);
    open({one});
    const QSignalSpy finished(dialog_.get(), &QDialog::finished);
    type(three);
    click("buttonNew");
    filePort()->setValue(4999);
    if (way == QLatin1String("button")) {
        click("buttonCancel");
    } else if (way == QLatin1String("escape")) {
        QTest::keyClick(editor(), Qt::Key_Escape);
    } else {
        dialog_->close();
    }
    QVERIFY(!dialog_->isVisible());
    QVERIFY(dialog_->result().isEmpty());
    QCOMPARE(finished.count(), 1);
    QCOMPARE(finished.first().first().toInt(), static_cast<int>(QDialog::Rejected));
    QCOMPARE(stored(), QStringList({one, three}));
    // The port alone was not saved by leaving.
    QCOMPARE(Settings::instance()->fileTransferPort(), 5058);
}

void TestAddressDialog::okNeedsACurrentEntry()
{
    open({});
    type(one);
    dialog_->accept();
    QVERIFY(dialog_->isVisible());
    QVERIFY(dialog_->result().isEmpty());
    click("buttonNew");
    dialog_->accept();
    QVERIFY(!dialog_->isVisible());
    QCOMPARE(dialog_->result(), one);
    dialog_->reject();
    QVERIFY(dialog_->result().isEmpty());
}

STALLO_TEST_MAIN(TestAddressDialog)
#include "tst_addressdialog.moc"
