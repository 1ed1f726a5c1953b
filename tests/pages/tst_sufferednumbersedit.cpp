// SPDX-License-Identifier: MIT
#include "records/vasksettings.h"
#include "tests/pages/listcase.h"
#include "tests/support/filelimit.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QLabel>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QTimeEdit>

namespace
{

using Page = ListPage;

} // namespace

// The editor under the operator's hands.
class TestSufferedNumbersEdit : public ListCase
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup()
    {
        ListCase::cleanup();
        VaskSettings::init();
    }

    void begins();
    void showsEntry();
    void keepsWhatIsTypedWithoutRow();
    void insertsEntry();
    void numbersEntryByRowsWhereTheRuleHasNone();
    void insertsUpToAThousand();
    void translatesWhatIsTyped();
    void appliesEveryField();
    void appliesNothingWithoutRow();
    void tellsFullDisk();
};

void TestSufferedNumbersEdit::begins()
{
    const QDate today = QDate::currentDate();
    open(Page::list(3));
    QCOMPARE(numbers(), QStringLiteral("A000BC77 A001BC77 A002BC77"));
    QStringList titles;
    for (int each = 0; each < page_->table()->model()->columnCount(); ++each) {
        titles << page_->table()->model()->headerData(each, Qt::Horizontal).toString();
    }
    QCOMPARE(titles.join(QLatin1Char(';')),
             QStringLiteral("Id;Number;Date from;Date till;Key;Comment"));
    for (const char *name : {"lineEditId", "lineEditNumber", "lineEditKey", "lineEditFilter"}) {
        QCOMPARE(page_->find<QLineEdit>(name)->text(), QString());
    }
    QVERIFY(page_->find<QLineEdit>("lineEditId")->isReadOnly());
    QCOMPARE(page_->find<QPlainTextEdit>("textEditComment")->toPlainText(), QString());
    for (const char *name : {"dateEditFrom", "dateEditTill"}) {
        const QDate date = page_->find<QDateEdit>(name)->date();
        QVERIFY(date == today || date == QDate::currentDate());
    }
    for (const char *name : {"timeEditFrom", "timeEditTill"}) {
        QCOMPARE(page_->find<QTimeEdit>(name)->displayFormat(), QStringLiteral("H:mm:ss"));
    }
    const auto *guideline = page_->find<QComboBox>("comboBoxGuideline");
    QStringList texts;
    for (int each = 0; each < guideline->count(); ++each) {
        texts << guideline->itemText(each);
    }
    QCOMPARE(texts, (QStringList{QStringLiteral("Full symbol coincidence"),
                                 QStringLiteral("One symbol discrepancy"),
                                 QStringLiteral("Two symbols discrepancy"),
                                 QStringLiteral("Three symbols discrepancy"),
                                 QStringLiteral("Full not regional numbers coincidence"),
                                 QStringLiteral("Full not regional symbols coincidence")}));
    QCOMPARE(page_->find<QLabel>("labelBusy")->text(),
             QStringLiteral("<h1>Vask operation in progress</h1>"));
    QVERIFY(!page_->find<QCheckBox>("checkBoxFilter")->isChecked());
    QVERIFY(!page_->find<QLineEdit>("lineEditFilter")->isEnabled());
    QVERIFY(page_->find<QRadioButton>("radioButtonFull")->isChecked());
    QCOMPARE(page_->currentRow(), -1);
}

void TestSufferedNumbersEdit::showsEntry()
{
    open(Page::list(5));
    page_->clickRow(1);
    expectEdited(listed(1));
    QCOMPARE(page_->find<QTimeEdit>("timeEditFrom")->text(),
             listed(1).dateTimeFrom().time().toString(QStringLiteral("H:mm:ss")));
    QTest::keyClick(page_->table(), Qt::Key_Down);
    QCOMPARE(page_->currentRow(), 2);
    expectEdited(listed(2));
    page_->page().showRecord(page_->table()->model()->index(4, AccessModel::KeyColumn));
    QCOMPARE(page_->currentRow(), 4);
    expectEdited(listed(4));
    // A second touch, and the Enter key, take back what was typed.
    type("lineEditNumber", QStringLiteral("X1"));
    page_->clickRow(4);
    expectEdited(listed(4));
    type("lineEditKey", QStringLiteral("X1"));
    QTest::keyClick(page_->table(), Qt::Key_Enter);
    expectEdited(listed(4));
    QCOMPARE(ownList(), Page::list(5));
    // The guideline changes nothing.
    page_->find<QComboBox>("comboBoxGuideline")->setCurrentIndex(3);
    QCOMPARE(page_->rows(), 5);
    QCOMPARE(ownList(), Page::list(5));
}

void TestSufferedNumbersEdit::keepsWhatIsTypedWithoutRow()
{
    open(Page::list(1));
    page_->clickRow(0);
    type("lineEditNumber", QStringLiteral("X123YZ77"));
    page_->page().showRecord(QModelIndex());
    QCOMPARE(page_->edited().number(), QStringLiteral("X123YZ77"));
    remove();
    QCOMPARE(page_->rows(), 0);
    QCOMPARE(page_->edited().number(), QStringLiteral("X123YZ77"));
    page_->press("buttonNew");
    QCOMPARE(ownList().mid(2, 8), QByteArray("X123YZ77"));
}

void TestSufferedNumbersEdit::insertsEntry()
{
    open(Page::list(3));
    page_->clickRow(0);
    const Access typed = listed(7);
    page_->edit(typed);
    page_->press("buttonNew");
    // The texts of the editor, and the times of a new entry.
    Access expected;
    expected.setId(4);
    expected.setNumber(typed.number());
    expected.setAccessKey(typed.accessKey());
    expected.setComment(typed.comment());
    QCOMPARE(ownList(), Page::list(3) + Page::bytes(expected));
    QCOMPARE(page_->rows(), 4);
    QCOMPARE(page_->currentRow(), 3);
    QVERIFY(page_->table()->visualRect(page_->table()->currentIndex()).isValid());
    expectEdited(expected);
    QCOMPARE(page_->cell(3, AccessModel::TillColumn), QStringLiteral("19 January 2038 06:14:07"));
    QCOMPARE(page_->find<QLineEdit>("lineEditId")->text(), QStringLiteral("4"));
    // And at once the next one, with what the editor shows now.
    page_->press("buttonNew");
    expected.setId(5);
    QCOMPARE(ownList().mid(4 * Access::size), Page::bytes(expected));
    QCOMPARE(page_->currentRow(), 4);
}

void TestSufferedNumbersEdit::numbersEntryByRowsWhereTheRuleHasNone()
{
    QByteArray list;
    for (const qint16 id : {qint16(1000), qint16(1001)}) {
        Access access = Page::entry(id);
        access.setId(id);
        list += Page::bytes(access);
    }
    open(list);
    page_->press("buttonNew");
    QCOMPARE(page_->cell(2, AccessModel::IdColumn), QStringLiteral("2"));
}

void TestSufferedNumbersEdit::insertsUpToAThousand()
{
    open(Page::list(999));
    type("lineEditNumber", QStringLiteral("X123YZ77"));
    page_->press("buttonNew");
    QCOMPARE(page_->rows(), 1000);
    QCOMPARE(page_->currentRow(), 999);
    const QByteArray full = ownList();
    QCOMPARE(full.left(999 * Access::size), Page::list(999));
    QCOMPARE(page_->cell(999, AccessModel::IdColumn), QStringLiteral("1000"));
    page_->clickRow(5);
    page_->press("buttonNew");
    page_->page().newRecord();
    QCOMPARE(page_->rows(), 1000);
    QCOMPARE(page_->currentRow(), 5);
    QCOMPARE(ownList(), full);
    remove();
    page_->press("buttonNew");
    QCOMPARE(page_->rows(), 1000);
    QCOMPARE(page_->cell(999, AccessModel::IdColumn), QStringLiteral("6"));
}

void TestSufferedNumbersEdit::translatesWhatIsTyped()
{
    VaskSettings::localSymbols = QString::fromUtf8("\xD0\x90\xD0\x92\xD0\xA1"); // А, В and С
    VaskSettings::latinSymbols = QStringLiteral("ABC");
    // While it is whole: as it stands it is longer than its field.
    const QString typed = QString::fromUtf8("\xD0\xB0\x31\x32\x33\xD0\xB2\xD1\x81\x31\x39\x37");
    open(Page::list(1));
    page_->find<QLineEdit>("lineEditNumber")->setText(typed);
    page_->press("buttonNew");
    QCOMPARE(page_->cell(1, AccessModel::NumberColumn), QStringLiteral("A123BC197"));
    page_->clickRow(0);
    page_->find<QLineEdit>("lineEditNumber")->setText(typed);
    page_->press("buttonApply");
    QCOMPARE(ownList().mid(2, 10), QByteArray("A123BC197\0", 10));
}

void TestSufferedNumbersEdit::appliesEveryField()
{
    open(Page::list(3));
    page_->clickRow(1);
    Access edited = Page::entry(500);
    edited.setId(listed(1).id());
    page_->edit(edited);
    QCOMPARE(ownList(), Page::list(3)); // not before it is applied
    page_->press("buttonApply");
    QCOMPARE(ownList(), listOf({0}) + Page::bytes(edited) + listOf({2}));
    QCOMPARE(page_->currentRow(), 1);
    QCOMPARE(page_->cell(1, AccessModel::NumberColumn), edited.number());
    QCOMPARE(page_->cell(1, AccessModel::FromColumn),
             edited.dateTimeFrom().toString(accessModelDateTimeFormat));
    QCOMPARE(page_->cell(1, AccessModel::TillColumn),
             edited.dateTimeTill().toString(accessModelDateTimeFormat));
    QCOMPARE(page_->cell(1, AccessModel::KeyColumn), edited.accessKey());
    QCOMPARE(page_->cell(1, AccessModel::CommentColumn), edited.comment());
    // One by one.
    page_->clickRow(2);
    page_->find<QTimeEdit>("timeEditTill")->setTime(QTime(5, 6, 7));
    page_->press("buttonApply");
    edited = listed(2);
    edited.setDateTimeTill(QDateTime(edited.dateTimeTill().date(), QTime(5, 6, 7)));
    QCOMPARE(ownList().mid(2 * Access::size), Page::bytes(edited));
    // Bytes that the editor does not show stay as they are.
    page_->press("buttonApply");
    QCOMPARE(ownList().mid(2 * Access::size), Page::bytes(edited));
}

void TestSufferedNumbersEdit::appliesNothingWithoutRow()
{
    open(Page::list(3));
    type("lineEditNumber", QStringLiteral("X1"));
    page_->press("buttonApply");
    page_->page().applyRecord();
    page_->page().appendToVask();
    QCOMPARE(ownList(), Page::list(3));
    QCOMPARE(page_->answers().given(), 0);
}

void TestSufferedNumbersEdit::tellsFullDisk()
{
    open(Page::list(3));
    page_->clickRow(1);
    type("lineEditNumber", QStringLiteral("X1"));
    const FileLimit disk(50);
    QCOMPARE(errorAfter([this] {
                 QTimer::singleShot(0, &page_->page(), &SufferedNumbersWidget::newRecord);
             }),
             QStringLiteral("Error|Can't add the record"));
    QCOMPARE(errorAfter([this] {
                 QTimer::singleShot(0, &page_->page(), &SufferedNumbersWidget::applyRecord);
             }),
             QStringLiteral("Error|Can't store the record"));
    QCOMPARE(ownList(), Page::list(3));
    QCOMPARE(page_->rows(), 3);
    QCOMPARE(page_->currentRow(), 1);
}

STALLO_TEST_MAIN(TestSufferedNumbersEdit)
#include "tst_sufferednumbersedit.moc"
