// SPDX-License-Identifier: MIT
#include "tests/pages/archivefilescase.h"

#include <QCheckBox>
#include <QRadioButton>

namespace
{

const char *const whole = "radioButtonFull";
const char *const symbols = "radioButtonNotRegionalSymbols";
const char *const digits = "radioButtonNotRegionalNumbers";

} // namespace

// The filter of the table by number, through its widgets.
class TestArchiveWidgetFilter : public ArchiveFilesCase
{
    Q_OBJECT

private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void filters_data();
    void filters();
    void clearsRefusedText_data();
    void clearsRefusedText();
    void showsAllWithoutFilter();
    void showsRightPassageOfFilteredTable();

private:
    void loadNumbers(const QStringList &numbers)
    {
        QVector<Scan> passages;
        for (const QString &number : numbers) {
            Scan scan = passage(passages.size());
            scan.setNumber(number);
            passages << scan;
        }
        const QString name = onStick(QStringLiteral("table.tpp"));
        Page::write(name, tableOf(passages));
        load(name);
    }
};

void TestArchiveWidgetFilter::filters_data()
{
    QTest::addColumn<QByteArray>("mode");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("rows");

    const auto row = [](const char *mode, const char *text, const char *rows) {
        QTest::addRow("%s, %s", mode, text)
            << QByteArray(mode) << QString::fromLatin1(text) << QString::fromLatin1(rows);
    };
    row(whole, "", "012345");
    row(whole, "a", "0124"); // anywhere
    row(whole, "a123", "0");
    row(whole, "A123BC77", "0");
    row(whole, "x123ya99", "1");
    row(whole, "a999", "");
    row(symbols, "a", "0124");
    row(symbols, "abc", "024");
    row(symbols, "*bc", "0234");
    row(symbols, "a123bc77", "024");
    row(digits, "123", "013");
    row(digits, "45", "2");
    row(digits, "a123bc77", "013");
    row(digits, "000", "5");
}

void TestArchiveWidgetFilter::filters()
{
    QFETCH(QByteArray, mode);
    QFETCH(QString, text);
    QFETCH(QString, rows);
    const QStringList all = {QStringLiteral("A123BC77"),  QStringLiteral("X123YA99"),
                             QStringLiteral("A456BC178"), QStringLiteral("B123BC77"),
                             QStringLiteral("A?89BC77"),  QStringLiteral("O000OO00")};
    loadNumbers(all);
    choose("checkBoxFilter");
    QVERIFY(typed()->isEnabled());
    choose(mode.constData());
    QVERIFY(page_->find<QRadioButton>(mode.constData())->isChecked());
    type(text);
    QCOMPARE(typed()->text(), text);
    QStringList expected;
    for (const QChar row : rows) {
        expected << VaskSettings::readableNumber(all.at(row.digitValue()));
    }
    QCOMPARE(numbers(), expected);
    choose("checkBoxFilter");
    QCOMPARE(page_->rows(), all.size());
}

void TestArchiveWidgetFilter::clearsRefusedText_data()
{
    QTest::addColumn<QByteArray>("typedIn");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("chosen");
    QTest::addColumn<bool>("stays");

    const auto row = [](const char *typedIn, const char *text, const char *chosen, bool stays) {
        QTest::addRow("%s from %s to %s", text, typedIn, chosen)
            << QByteArray(typedIn) << QString::fromLatin1(text) << QByteArray(chosen) << stays;
    };
    row(symbols, "abc", whole, false);
    row(symbols, "abc", digits, false);
    row(symbols, "*b", digits, false);
    row(digits, "123", whole, false);
    row(digits, "1", symbols, false);
    for (const char *mode : {whole, symbols, digits}) {
        for (const char *other : {whole, symbols, digits}) {
            row(mode, "a123bc77", other, true);
            row(mode, "a1", other, true);
        }
    }
}

void TestArchiveWidgetFilter::clearsRefusedText()
{
    QFETCH(QByteArray, typedIn);
    QFETCH(QString, text);
    QFETCH(QByteArray, chosen);
    QFETCH(bool, stays);
    loadNumbers({QStringLiteral("A123BC77"), QStringLiteral("Y000YY00")});
    choose("checkBoxFilter");
    choose(typedIn.constData());
    type(text);
    QCOMPARE(page_->rows(), 1);
    choose(chosen.constData());
    QCOMPARE(typed()->text(), stays ? text : QString());
    QCOMPARE(page_->rows(), stays ? 1 : 2);
    // What the mode does not take cannot be typed either.
    if (!stays) {
        QTest::keyClicks(typed(), text);
        QVERIFY(typed()->text() != text);
    }
}

void TestArchiveWidgetFilter::showsAllWithoutFilter()
{
    load(makeDump(QStringLiteral("table.tpp"), 6));
    choose("checkBoxFilter");
    type(QStringLiteral("a004"));
    QCOMPARE(numbers(), QStringList(numberOf(4)));
    choose("checkBoxFilter");
    QVERIFY(!typed()->isEnabled());
    QCOMPARE(numbers(), numbersOf(6));
    choose(symbols);
    QCOMPARE(numbers(), numbersOf(6));
    choose(whole);
    // The text waits for the filter to be on again.
    QCOMPARE(typed()->text(), QStringLiteral("a004"));
    choose("checkBoxFilter");
    QCOMPARE(numbers(), QStringList(numberOf(4)));
    // And holds for the next table.
    load(makeDump(QStringLiteral("other.tpp"), 3, {}, 3));
    QCOMPARE(numbers(), QStringList(numberOf(4)));
    page_->press("buttonNewTable");
    QCOMPARE(page_->rows(), 0);
    QVERIFY(page_->find<QCheckBox>("checkBoxFilter")->isChecked());
}

void TestArchiveWidgetFilter::showsRightPassageOfFilteredTable()
{
    load(makeDump(QStringLiteral("table.tpp"), 30, {12, 21, 25}));
    page_->clickRow(21);
    expectShown(21, 21, true);
    choose("checkBoxFilter");
    choose(whole);
    type(QStringLiteral("a02"));
    QCOMPARE(numbers(), numbersOf(10, 20));
    QCOMPARE(devices(), devicesOf(10, 20));
    // Still the one that was chosen.
    expectShown(1, 21, true);
    page_->clickRow(5);
    expectShown(5, 25, true);
    page_->clickRow(6);
    expectShown(6, 26, false);
    page_->clickRow(5);
    page_->answers().expect(ModalAnswers::savingAs(onStick(QStringLiteral("photo"))));
    page_->press("buttonSavePhoto");
    QTRY_VERIFY(!page_->isBusy());
    QCOMPARE(Page::content(onStick(QStringLiteral("photo.jpeg"))), photoOf(25));
    choose("checkBoxFilter");
    expectShown(25, 25, true);
    // One that the filter takes away is not shown any more.
    choose("checkBoxFilter");
    type(QStringLiteral("a012"));
    QCOMPARE(numbers(), QStringList(numberOf(12)));
    if (page_->currentRow() < 0) {
        expectNothingShown();
    } else {
        expectShown(0, 12, true);
    }
    type(QStringLiteral("a999"));
    QCOMPARE(page_->rows(), 0);
    expectNothingShown();
}

STALLO_TEST_MAIN(TestArchiveWidgetFilter)
#include "tst_archivewidgetfilter.moc"
