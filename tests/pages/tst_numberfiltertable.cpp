// SPDX-License-Identifier: MIT
#include "tests/pages/numberfiltercase.h"

#include <QHeaderView>
#include <QScrollBar>
#include <QSignalSpy>

namespace
{

constexpr int patience = 15000;

QString plate(const char *text)
{
    return QString::fromUtf8(text);
}

// Numbers as devices report them, good and bad ones.
QStringList manyPlates(int count)
{
    const QString letters = QStringLiteral("ABCEHKMOPTXY?*abc");
    const QString digits = QStringLiteral("0123456789?*");
    quint32 state = 1;
    const auto any = [&state](const QString &from) {
        state = state * 1664525U + 1013904223U;
        return from.at(static_cast<int>((state >> 16) % static_cast<quint32>(from.size())));
    };
    QStringList plates;
    for (int n = 0; n < count; ++n) {
        QString text;
        for (const char kind : {'l', 'd', 'd', 'd', 'l', 'l', 'd', 'd', 'd'}) {
            text += any(kind == 'l' ? letters : digits);
        }
        plates << (n % 10 == 0 ? text.left(n / 10 % 10) : text);
    }
    return plates;
}

} // namespace

// What the filter does to the table and its rows.
class TestNumberFilterTable : public NumberFilterCase
{
    Q_OBJECT

private Q_SLOTS:
    void newRowsAreFiltered();
    void anotherFileIsFiltered();
    void halfARecordIsNoRow();
    void unreadableCharacters();
    void localLetters();
    void findsWhatTheTableShows_data();
    void findsWhatTheTableShows();
    void currentRowStays();
    void currentRowGoesWithItsRow();
    void columnsStay();
    void columnsStayInReach();
    void resetsOnlyForOtherRows();
    void longTableWaitsForAPause();
    void longTableIsShownWholeAgain();
    void longTableGoesWhileItWaits();

private:
    void makeLong(int rows)
    {
        group_->filter->rebind([this, rows] {
            model_->setFileName(QString());
            QStringList plates = manyPlates(rows - 2);
            plates << plate("A456BC77");
            plates.prepend(plate("A456BC177"));
            write("long.tpp", plates);
            model_->setFileName(below("long.tpp"));
        });
        QCOMPARE(model_->rowCount(), rows);
    }
    QString currentNumber() const
    {
        const QModelIndex current = group_->table.currentIndex();
        return current.sibling(current.row(), numberColumn).data().toString();
    }
    void select(int row)
    {
        group_->table.setCurrentIndex(proxy()->index(row, ScanModel::CommentColumn));
    }
};

void TestNumberFilterTable::newRowsAreFiltered()
{
    click(group_->on);
    type(plate("A4"));
    QVERIFY(model_->append(passage(plate("A411BC77"))));
    QVERIFY(model_->append(passage(plate("K411BC77"))));
    QVERIFY(model_->append(passage(plate("A422BC77"))));
    QCOMPARE(shown(), QStringLiteral("A456BC77 A411BC77 A422BC77"));
    QVERIFY(model_->setValue(0, passage(plate("A400AA00"))));
    QCOMPARE(shown(), QStringLiteral("A400AA00 A456BC77 A411BC77 A422BC77"));
    click(group_->on);
    QCOMPARE(shown(), all());
    QCOMPARE(proxy()->rowCount(), 8);
}

void TestNumberFilterTable::anotherFileIsFiltered()
{
    write("other.tpp", {plate("K499AA00"), plate("A499AA00")});
    click(group_->on);
    type(plate("A4"));
    group_->filter->rebind([this] { model_->setFileName(QString()); });
    QCOMPARE(proxy()->rowCount(), 0);
    // Typed while there is no table.
    type(plate("K4"));
    group_->filter->rebind([this] { model_->setFileName(below("other.tpp")); });
    QCOMPARE(shown(), QStringLiteral("K499AA00"));
    type(plate("A4"));
    QCOMPARE(shown(), QStringLiteral("A499AA00"));
    QCOMPARE(proxy()->sourceModel(), model_.get());
}

void TestNumberFilterTable::halfARecordIsNoRow()
{
    QFile file(below("table.tpp"));
    QVERIFY(file.open(QIODevice::Append));
    file.write(passage(plate("A499AA00")).data(), Scan::size / 2);
    file.close();
    click(group_->on);
    type(plate("A4"));
    QCOMPARE(shown(), QStringLiteral("A456BC77"));
    // The row that is written over it later counts.
    QVERIFY(model_->append(passage(plate("A499AA00"))));
    QCOMPARE(shown(), QStringLiteral("A456BC77 A499AA00"));
}

void TestNumberFilterTable::unreadableCharacters()
{
    click(group_->on);
    choose(numbers);
    type(plate("23"));
    QCOMPARE(shown(), QStringLiteral("A123BC77 A123BC177 K123MM99 A#23B#77"));
    choose(symbols);
    type(plate("AB*"));
    QCOMPARE(shown(), QStringLiteral("A123BC77 A123BC177 A456BC77 A#23B#77"));
}

void TestNumberFilterTable::localLetters()
{
    VaskSettings::localSymbols = QString::fromUtf8("\xd0\x90\xd0\x9a"); // A and K
    VaskSettings::latinSymbols = QStringLiteral("AK");
    const QString local = QString::fromUtf8("\xd0\x90") + QStringLiteral("456bc77");
    QVERIFY(model_->append(passage(local)));
    QCOMPARE(model_->index(5, numberColumn).data().toString(), QStringLiteral("A456BC77"));
    click(group_->on);
    type(plate("A456BC77"));
    QCOMPARE(shown(), QStringLiteral("A456BC77 A456BC77"));
    choose(symbols);
    QCOMPARE(proxy()->rowCount(), 4);
}

void TestNumberFilterTable::findsWhatTheTableShows_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("typed");
    for (const int mode : {int(whole), int(symbols), int(numbers)}) {
        for (const char *typed : {"", "A", "K1", "A12", "A123BC77"}) {
            QTest::addRow("%d, %s", mode, typed) << mode << plate(typed);
        }
    }
    for (const char *typed : {"A**", "**B", "ABC", "*", "***"}) {
        QTest::addRow("%d, %s", symbols, typed) << int(symbols) << plate(typed);
    }
    for (const char *typed : {"1", "12", "123", "007"}) {
        QTest::addRow("%d, %s", numbers, typed) << int(numbers) << plate(typed);
    }
}

// Row by row, as the toolkit would find them in the table.
void TestNumberFilterTable::findsWhatTheTableShows()
{
    QFETCH(int, mode);
    QFETCH(QString, typed);
    makeLong(3000);
    click(group_->on);
    choose(static_cast<VaskSettings::NumFilterMode>(mode));
    type(typed);
    QCOMPARE(group_->text.text(), typed);
    QSortFilterProxyModel plain;
    plain.setFilterKeyColumn(numberColumn);
    plain.setFilterRegExp(
        VaskSettings::numFilter(typed, static_cast<VaskSettings::NumFilterMode>(mode)));
    plain.setSourceModel(model_.get());
    QCOMPARE(proxy()->rowCount(), plain.rowCount());
    for (int row = 0; row < plain.rowCount(); ++row) {
        QCOMPARE(proxy()->mapToSource(proxy()->index(row, 0)).row(),
                 plain.mapToSource(plain.index(row, 0)).row());
    }
}

void TestNumberFilterTable::currentRowStays()
{
    select(3);
    QCOMPARE(currentNumber(), QStringLiteral("A456BC77"));
    click(group_->on);
    QCOMPARE(currentNumber(), QStringLiteral("A456BC77"));
    type(plate("A4"));
    QCOMPARE(currentNumber(), QStringLiteral("A456BC77"));
    QCOMPARE(group_->table.currentIndex().row(), 0);
    click(group_->on);
    QCOMPARE(currentNumber(), QStringLiteral("A456BC77"));
    QCOMPARE(group_->table.currentIndex().row(), 3);
}

void TestNumberFilterTable::currentRowGoesWithItsRow()
{
    select(2);
    click(group_->on);
    type(plate("A4"));
    QVERIFY(!group_->table.currentIndex().isValid());
    QVERIFY(!group_->table.selectionModel()->hasSelection());
}

void TestNumberFilterTable::columnsStay()
{
    QHeaderView *header = group_->table.horizontalHeader();
    header->resizeSection(numberColumn, 321);
    header->resizeSection(ScanModel::KeyColumn, 77);
    header->moveSection(ScanModel::KeyColumn, 0);
    const QByteArray columns = header->saveState();
    click(group_->on);
    type(plate("A4"));
    QCOMPARE(header->saveState(), columns);
    type(plate("X"));
    QCOMPARE(proxy()->rowCount(), 0);
    QCOMPARE(header->saveState(), columns);
    group_->filter->rebind([this] { model_->setFileName(QString()); });
    group_->filter->rebind([this] { model_->setFileName(below("table.tpp")); });
    QCOMPARE(header->saveState(), columns);
    QCOMPARE(header->sectionSize(numberColumn), 321);
}

void TestNumberFilterTable::columnsStayInReach()
{
    QTableView &table = group_->table;
    QHeaderView *header = table.horizontalHeader();
    const QScrollBar *bar = table.horizontalScrollBar();
    group_->window.resize(450, 500);
    // Wider than the toolkit's own, which the table has while it is taken up.
    for (int column = 0; column < header->count(); ++column) {
        header->resizeSection(column, 250);
    }
    const int reach = header->count() - 1; // in columns, of which one is seen whole
    QTRY_COMPARE(bar->maximum(), reach);
    const auto compareReach = [&] {
        QTRY_COMPARE(bar->maximum(), reach);
        table.horizontalScrollBar()->setValue(reach);
        const int last = header->sectionViewportPosition(header->count() - 1);
        QVERIFY2(last >= 0 && last < table.viewport()->width(), qPrintable(QString::number(last)));
        QVERIFY(header->offset() > 0);
    };
    compareReach();
    click(group_->on);
    type(plate("A4"));
    compareReach();
    type(plate("X")); // no row is left
    compareReach();
    click(group_->on);
    QCOMPARE(proxy()->rowCount(), 5);
    compareReach();
    group_->filter->rebind([this] { model_->setFileName(QString()); });
    group_->filter->rebind([this] { model_->setFileName(below("table.tpp")); });
    compareReach();
    // What was on view stays on view.
    click(group_->on);
    QCOMPARE(bar->value(), reach);
}

// Each change is a reset for letting go of the table and one for taking it up.
void TestNumberFilterTable::resetsOnlyForOtherRows()
{
    const QSignalSpy resets(proxy(), &QAbstractItemModel::modelReset);
    click(group_->on); // nothing is typed
    const int before = resets.size();
    QTest::keyClicks(&group_->text, plate("A4"));
    QCOMPARE(resets.size(), before + 4);
    group_->filter->apply(); // nothing has changed
    QCOMPARE(resets.size(), before + 4);
    click(group_->on);
    QCOMPARE(resets.size(), before + 6);
}

void TestNumberFilterTable::longTableWaitsForAPause()
{
    makeLong(50001);
    select(50000);
    click(group_->on);
    type(plate("A456BC"));
    QCOMPARE(proxy()->rowCount(), 50001); // not between two keys
    QTRY_VERIFY_WITH_TIMEOUT(proxy()->rowCount() < 100, patience);
    QVERIFY(shown().startsWith(QStringLiteral("A456BC177")));
    QVERIFY(shown().endsWith(QStringLiteral("A456BC77")));
    QCOMPARE(currentNumber(), QStringLiteral("A456BC77"));
}

void TestNumberFilterTable::longTableIsShownWholeAgain()
{
    makeLong(50001);
    click(group_->on);
    type(plate("A456BC"));
    QTRY_VERIFY_WITH_TIMEOUT(proxy()->rowCount() < 100, patience);
    click(group_->on);
    QTRY_COMPARE_WITH_TIMEOUT(proxy()->rowCount(), 50001, patience);
}

void TestNumberFilterTable::longTableGoesWhileItWaits()
{
    makeLong(50001);
    click(group_->on);
    type(plate("A456BC"));
    group_->filter->rebind([this] { model_->setFileName(below("table.tpp")); });
    QTRY_COMPARE_WITH_TIMEOUT(shown(), QStringLiteral("A456BC77"), patience);
}

STALLO_TEST_MAIN(TestNumberFilterTable)
#include "tst_numberfiltertable.moc"
