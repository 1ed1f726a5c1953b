// SPDX-License-Identifier: MIT
#include "tests/pages/listcase.h"
#include "tests/support/unreadable.h"

#include <QMenu>
#include <QPlainTextEdit>

namespace
{

using Page = ListPage;

const QString unread = QStringLiteral("Error|Can't read the record");

} // namespace

// A list on a disk that does not give its entries any more: that is told, and no empty entry is
// shown, stored or sent in the place of what could not be read.
class TestSufferedNumbersUnread : public ListCase
{
    Q_OBJECT

private Q_SLOTS:
    void storesNothing();
    void showsNothing();
    void sendsNothing_data();
    void sendsNothing();
    void givesNoNewIds();

private:
    void loseList()
    {
        QVERIFY(Unreadable::make(Page::ownList()) > 0);
        QCOMPARE(page_->rows(), 3);
    }
    void chooseAndLose(int row)
    {
        open(Page::list(3));
        page_->clickRow(row);
        expectEdited(listed(row));
        loseList();
    }
};

void TestSufferedNumbersUnread::storesNothing()
{
    chooseAndLose(1);
    type("lineEditKey", QStringLiteral("new key"));
    QCOMPARE(errorAfter([this] { page_->press("buttonApply"); }), unread);
    QCOMPARE(ownList(), Page::list(3));
    // What is typed stays for another try.
    QCOMPARE(page_->find<QLineEdit>("lineEditKey")->text(), QStringLiteral("new key"));
    page_->page().setTable(Page::ownList());
    page_->clickRow(1);
    type("lineEditKey", QStringLiteral("new key"));
    page_->press("buttonApply");
    Access changed = listed(1);
    changed.setAccessKey(QStringLiteral("new key"));
    QCOMPARE(ownList(), listOf({0}) + Page::bytes(changed) + listOf({2}));
}

void TestSufferedNumbersUnread::showsNothing()
{
    chooseAndLose(1);
    QCOMPARE(errorAfter([this] { page_->clickRow(2); }), unread);
    QCOMPARE(page_->currentRow(), 2);
    for (const char *name : {"lineEditId", "lineEditNumber", "lineEditKey"}) {
        QCOMPARE(page_->find<QLineEdit>(name)->text(), QString());
    }
    QCOMPARE(page_->find<QPlainTextEdit>("textEditComment")->toPlainText(), QString());
    // Nothing of an empty entry that could be stored, nor in the table.
    QVERIFY(!page_->find<QPushButton>("buttonApply")->isEnabled());
    for (int column = 0; column < AccessModel::columns; ++column) {
        QCOMPARE(page_->cell(0, column), QString());
    }
    page_->page().applyRecord();
    QCOMPARE(errorAfter([] {}), unread);
    QCOMPARE(ownList(), Page::list(3));
}

void TestSufferedNumbersUnread::sendsNothing_data()
{
    QTest::addColumn<bool>("asked");
    QTest::newRow("by the menu") << true;
    QTest::newRow("at once") << false;
}

void TestSufferedNumbersUnread::sendsNothing()
{
    QFETCH(bool, asked);
    giveDevice(Page::list(2));
    chooseAndLose(1);
    if (asked) {
        // Before the device is asked for.
        QCOMPARE(errorAfter([this] { page_->menu()->actions().first()->trigger(); }), unread);
    } else {
        QCOMPARE(page_->page().appendRecordToVask(host()), unread.section(QLatin1Char('|'), 1));
    }
    QCOMPARE(reloads(), 0);
    QCOMPARE(device().files().get(DevicePaths::accessList()), Page::list(2));
}

// A new entry gets an id that no other has, which cannot be known without them.
void TestSufferedNumbersUnread::givesNoNewIds()
{
    chooseAndLose(1);
    QString title;
    QString text;
    page_->answers().expect(ModalAnswers::reading(&title, &text));
    page_->press("buttonNew");
    QCOMPARE(text, QStringLiteral("Can't add the record"));
    QCOMPARE(ownList(), Page::list(3));
}

STALLO_TEST_MAIN(TestSufferedNumbersUnread)
#include "tst_sufferednumbersunread.moc"
