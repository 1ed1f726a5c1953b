// SPDX-License-Identifier: MIT
#include "tests/pages/listcase.h"
#include "tests/support/filelimit.h"

namespace
{

using Page = ListPage;

constexpr int longList = 10100; // removed from by a job

} // namespace

// Many entries removed at once, from short lists and from long ones.
class TestSufferedNumbersRemoval : public ListCase
{
    Q_OBJECT

private Q_SLOTS:
    void goesOnBesideTheRemoved_data();
    void goesOnBesideTheRemoved();
    void removesWhatTheFilterShows_data();
    void removesWhatTheFilterShows();
    void tellsFullDisk_data();
    void tellsFullDisk();

private:
    void select(const QVector<int> &rows)
    {
        for (const int row : rows) {
            const QModelIndex index = page_->table()->model()->index(row, 0);
            page_->table()->selectionModel()->select(index, QItemSelectionModel::Select |
                                                                QItemSelectionModel::Rows);
        }
    }
};

void TestSufferedNumbersRemoval::goesOnBesideTheRemoved_data()
{
    QTest::addColumn<int>("entries");
    QTest::addColumn<int>("current");
    QTest::addColumn<QVector<int>>("others");
    QTest::addColumn<int>("next");
    using Rows = QVector<int>;
    for (const int entries : {20, longList}) {
        const auto row = [entries](const char *name, int current, const Rows &others, int next) {
            QTest::addRow("%s of %d", name, entries) << entries << current << others << next;
        };
        row("one", 3, {}, 2);
        row("first", 0, {}, 0);
        row("stretch", 3, {4, 5}, 2);
        row("apart", 3, {5, 7}, 2);
        row("apart, some above", 7, {1, 3, 8}, 4);
        row("from the beginning", 1, {0, 2, 7}, 0);
        row("to the end", entries - 1, {2, entries - 2}, entries - 4);
    }
}

void TestSufferedNumbersRemoval::goesOnBesideTheRemoved()
{
    QFETCH(int, entries);
    QFETCH(int, current);
    QFETCH(QVector<int>, others);
    QFETCH(int, next);
    open(Page::list(entries));
    page_->clickRow(current);
    select(others);
    QVector<int> left;
    for (int row = 0; row < entries; ++row) {
        if (row != current && !others.contains(row)) {
            left << row;
        }
    }
    remove();
    QCOMPARE(page_->isBusy(), entries == longList);
    QVERIFY(page_->becomesIdle());
    QCOMPARE(ownList(), listOf(left));
    QCOMPARE(page_->rows(), left.size());
    QCOMPARE(page_->currentRow(), next);
    expectEdited(listed(left.at(next)));
}

void TestSufferedNumbersRemoval::removesWhatTheFilterShows_data()
{
    QTest::addColumn<int>("entries");
    QTest::newRow("short list") << 60;
    QTest::newRow("long list") << longList;
}

void TestSufferedNumbersRemoval::removesWhatTheFilterShows()
{
    QFETCH(int, entries);
    QByteArray list;
    QByteArray left;
    for (int n = 0; n < entries; ++n) {
        Access access = listed(n);
        access.setNumber(n % 2 == 0 ? QStringLiteral("A123BC77") : QStringLiteral("X456YZ77"));
        list += Page::bytes(access);
        left += n % 2 == 0 ? QByteArray() : Page::bytes(access);
    }
    open(list);
    choose("checkBoxFilter");
    type("lineEditFilter", QStringLiteral("A123"));
    QTRY_COMPARE(page_->rows(), entries / 2);
    page_->table()->selectAll();
    remove();
    QVERIFY(page_->becomesIdle());
    QCOMPARE(ownList(), left);
    QCOMPARE(page_->rows(), 0);
    QCOMPARE(page_->currentRow(), -1);
    QVERIFY(!page_->find<QAbstractButton>("buttonApply")->isEnabled());
    choose("checkBoxFilter");
    QTRY_COMPARE(page_->rows(), entries / 2);
}

void TestSufferedNumbersRemoval::tellsFullDisk_data()
{
    QTest::addColumn<int>("entries");
    QTest::addColumn<QVector<int>>("rows");
    using Rows = QVector<int>;
    QTest::newRow("short list, one") << 20 << Rows{3};
    QTest::newRow("short list, apart") << 20 << Rows{3, 7};
    QTest::newRow("long list") << longList << Rows{3, 7};
}

void TestSufferedNumbersRemoval::tellsFullDisk()
{
    QFETCH(int, entries);
    QFETCH(QVector<int>, rows);
    open(Page::list(entries));
    select(rows);
    const FileLimit disk(200);
    page_->answers().expect([](QWidget *window) { QTest::keyClick(window, Qt::Key_Enter); });
    QCOMPARE(errorAfter([this] {
                 QTimer::singleShot(0, &page_->page(), &SufferedNumbersWidget::deleteRecord);
             }),
             QStringLiteral("Error|Can't remove row"));
    QCOMPARE(ownList(), Page::list(entries));
    QCOMPARE(page_->rows(), entries);
}

STALLO_TEST_MAIN(TestSufferedNumbersRemoval)
#include "tst_sufferednumbersremoval.moc"
