// SPDX-License-Identifier: MIT
#include "style/fingerscroll.h"

#include "style/metrics.h"
#include "tests/style/fingercase.h"

#include <QAbstractTableModel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace
{

constexpr int million = 1000000;

// Rows that take no place.
class ManyRows : public QAbstractTableModel
{
public:
    int rowCount(const QModelIndex &parent) const override
    {
        return parent.isValid() ? 0 : million;
    }
    int columnCount(const QModelIndex & /*parent*/) const override { return 7; }
    QVariant data(const QModelIndex &index, int role) const override
    {
        return role == Qt::DisplayRole ? QVariant(index.row()) : QVariant();
    }
};

} // namespace

// Drags and flicks: the table scrolls, and nothing is chosen.
class TestFingerScroll : public FingerCase
{
    Q_OBJECT

private Q_SLOTS:
    void dragScrollsWithoutSelecting_data();
    void dragScrollsWithoutSelecting();
    void dragSideways();
    void dragOverAListThatFits();
    void slowDragLeavesItWhereItIs();
    void flickGoesOn();
    void fingerStopsTheFlick();
    void twoFingersDoNothing();
    void secondFingerEndsTheDrag();
    void firstTouchMakesNothingCurrent();
    void rowsAppendedMeanwhile();
    void currentRowThatChangesMeanwhileStays();
    void aMillionRows();
    void listThatGoesWhileItMoves();
};

void TestFingerScroll::dragScrollsWithoutSelecting_data()
{
    QTest::addColumn<int>("by");
    QTest::addColumn<int>("mode");
    QTest::newRow("touch, single") << int(Touch) << int(QAbstractItemView::SingleSelection);
    QTest::newRow("touch, several") << int(Touch) << int(QAbstractItemView::ExtendedSelection);
    QTest::newRow("mouse, single") << int(Mouse) << int(QAbstractItemView::SingleSelection);
    QTest::newRow("mouse, several") << int(Mouse) << int(QAbstractItemView::ExtendedSelection);
}

void TestFingerScroll::dragScrollsWithoutSelecting()
{
    QFETCH(const int, by);
    QFETCH(const int, mode);
    table_->setSelectionMode(static_cast<QAbstractItemView::SelectionMode>(mode));
    const QSignalSpy currentChanged(table_->selectionModel(), &QItemSelectionModel::currentChanged);
    const QSignalSpy selection(table_->selectionModel(), &QItemSelectionModel::selectionChanged);
    const QSignalSpy clicked(table_.get(), &QTableView::clicked);
    const QSignalSpy pressed(table_.get(), &QTableView::pressed);
    drag(static_cast<Pointer>(by), middle, {0, -150});
    QTRY_VERIFY2(bar()->value() >= 100, qPrintable(QString::number(bar()->value())));
    QTRY_COMPARE(scroller()->state(), QScroller::Inactive);
    const int down = bar()->value();
    drag(static_cast<Pointer>(by), middle, {0, 100});
    QTRY_VERIFY(bar()->value() < down);
    QTRY_COMPARE(scroller()->state(), QScroller::Inactive);
    QCOMPARE(currentChanged.count() + selection.count() + clicked.count() + pressed.count(), 0);
    QCOMPARE(current(), 2);
    QCOMPARE(selected(), 1);
}

void TestFingerScroll::dragSideways()
{
    QScrollBar *sideways = table_->horizontalScrollBar();
    QVERIFY(sideways->maximum() > 100);
    drag(Touch, middle, {-120, 0});
    QTRY_VERIFY(sideways->value() > 60);
    QCOMPARE(bar()->value(), 0);
    QCOMPARE(current(), 2);
}

void TestFingerScroll::dragOverAListThatFits()
{
    model_->removeRows(4, rows - 4);
    QTRY_COMPARE(bar()->maximum(), 0);
    drag(Touch, table_->visualRect(model_->index(0, 0)).center(), {0, 100});
    QCOMPARE(current(), 2);
    drag(Mouse, table_->visualRect(model_->index(0, 0)).center(), {0, 100});
    QCOMPARE(current(), 2);
}

void TestFingerScroll::slowDragLeavesItWhereItIs()
{
    press(Touch, middle);
    constexpr int way = 60;
    for (int step = 1; step <= way; ++step) {
        move(Touch, middle - QPoint(0, step));
        QTest::qWait(reportMsec);
    }
    const int reached = bar()->value();
    QVERIFY2(reached > 0 && reached <= way, qPrintable(QString::number(reached)));
    // It rests before it is lifted, so nothing goes on by itself.
    for (int step = 0; step < 20; ++step) {
        QTest::qWait(reportMsec);
        move(Touch, middle - QPoint(0, way));
    }
    release(Touch, middle - QPoint(0, way));
    restsAt(bar()->value());
    QVERIFY(bar()->value() <= way);
    QCOMPARE(current(), 2);
}

void TestFingerScroll::flickGoesOn()
{
    flick(Touch, low, {0, -240});
    QCOMPARE(scroller()->state(), QScroller::Scrolling);
    const int lifted = bar()->value();
    QTRY_COMPARE(scroller()->state(), QScroller::Inactive);
    QVERIFY2(bar()->value() > lifted + 100, qPrintable(QString::number(bar()->value() - lifted)));
    QCOMPARE(current(), 2);
    QVERIFY(table_->hasAutoScroll());
}

void TestFingerScroll::fingerStopsTheFlick()
{
    flick(Touch, low, {0, -240});
    QCOMPARE(scroller()->state(), QScroller::Scrolling);
    QVERIFY(!table_->hasAutoScroll());
    press(Touch, middle);
    release(Touch, middle);
    QTRY_COMPARE(scroller()->state(), QScroller::Inactive);
    QCOMPARE(current(), 2);
    QCOMPARE(selected(), 1);
    QVERIFY(table_->hasAutoScroll());
}

void TestFingerScroll::twoFingersDoNothing()
{
    const QSignalSpy asked(table_.get(), &QWidget::customContextMenuRequested);
    press(Touch, middle);
    touchBoth(middle, middle + QPoint(100, 0));
    for (int step = 1; step <= 10; ++step) {
        QTest::qWait(reportMsec);
        QTest::touchEvent(viewport(), screen_)
            .move(0, middle - QPoint(0, 10 * step), viewport())
            .move(1, middle + QPoint(100, -10 * step), viewport());
    }
    QTest::touchEvent(viewport(), screen_)
        .release(0, middle - QPoint(0, 100), viewport())
        .release(1, middle + QPoint(100, -100), viewport());
    restsAt(0);
    QCOMPARE(current(), 2);
    QCOMPARE(asked.count(), 0);
    // And the next finger works as ever.
    drag(Touch, middle, {0, -150});
    QTRY_VERIFY(bar()->value() >= 100);
}

void TestFingerScroll::secondFingerEndsTheDrag()
{
    press(Touch, middle);
    for (int step = 1; step <= 10; ++step) {
        QTest::qWait(reportMsec);
        move(Touch, middle - QPoint(0, 10 * step));
    }
    const QPoint other = middle + QPoint(100, 0);
    touchBoth(middle - QPoint(0, 100), other);
    QCOMPARE(scroller()->state(), QScroller::Inactive);
    const int reached = bar()->value();
    QVERIFY(reached > 0);
    QTest::touchEvent(viewport(), screen_)
        .release(0, middle - QPoint(0, 100), viewport())
        .stationary(1);
    QTest::touchEvent(viewport(), screen_).move(1, other - QPoint(0, 90), viewport());
    QTest::touchEvent(viewport(), screen_).release(1, other - QPoint(0, 90), viewport());
    restsAt(reached);
    QCOMPARE(current(), 2);
}

// A table that was never current anywhere, beside a field that is typed into.
void TestFingerScroll::firstTouchMakesNothingCurrent()
{
    QWidget window;
    QVBoxLayout column(&window);
    QLineEdit field;
    column.addWidget(&field);
    table_ = std::make_unique<QTableView>();
    table_->setModel(model_.get());
    column.addWidget(table_.get());
    window.resize(460, 450);
    field.setFocus();
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    const QSignalSpy changed(table_->selectionModel(), &QItemSelectionModel::currentChanged);
    drag(Touch, middle, {0, -150});
    field.setFocus();
    drag(Mouse, middle, {0, -50});
    QCOMPARE(changed.count(), 0);
    QTRY_VERIFY(bar()->value() > 0);
    QTRY_COMPARE(scroller()->state(), QScroller::Inactive);
    press(Touch, middle);
    release(Touch, middle);
    QCOMPARE(changed.count(), 1);
    table_.reset(); // before its window
}

void TestFingerScroll::rowsAppendedMeanwhile()
{
    const auto append = [this] {
        model_->appendRow(new QStandardItem(QStringLiteral("new")));
        // As the live page does while its newest passage is current.
        table_->setCurrentIndex(model_->index(model_->rowCount() - 1, 0));
    };
    press(Touch, middle);
    append();
    QCOMPARE(bar()->value(), 0);
    int last = 0;
    for (int step = 1; step <= 10; ++step) {
        QTest::qWait(reportMsec);
        move(Touch, middle - QPoint(0, 10 * step));
        append();
        QVERIFY2(bar()->value() >= last && bar()->value() <= 100,
                 qPrintable(QString::number(bar()->value())));
        last = bar()->value();
    }
    QVERIFY(last > 0);
    release(Touch, middle - QPoint(0, 100));
    while (scroller()->state() != QScroller::Inactive) {
        append();
        QTest::qWait(5);
        QVERIFY(bar()->value() < 5000);
    }
    QVERIFY(model_->rowCount() > rows + 10);
    QCOMPARE(current(), model_->rowCount() - 1);
    // At rest it goes to what becomes current again.
    append();
    QTRY_COMPARE(bar()->value(), bar()->maximum());
}

void TestFingerScroll::currentRowThatChangesMeanwhileStays()
{
    press(Touch, middle);
    table_->setCurrentIndex(model_->index(rows - 1, 0));
    move(Touch, middle - QPoint(0, 50));
    move(Touch, middle - QPoint(0, 100));
    release(Touch, middle - QPoint(0, 100));
    QTRY_COMPARE(scroller()->state(), QScroller::Inactive);
    QCOMPARE(current(), rows - 1);
    QCOMPARE(selected(), 1);
}

// To the pixel, out to the last of them.
void TestFingerScroll::aMillionRows()
{
    ManyRows many;
    table_->setModel(&many);
    table_->setCurrentIndex(many.index(2, 0));
    QTRY_VERIFY(bar()->maximum() > million * (Metrics::touchSize - 1));
    table_->scrollToBottom();
    QCOMPARE(bar()->value(), bar()->maximum());
    QCOMPARE(table_->rowAt(viewport()->height() - 1), million - 1);
    const int bottom = bar()->value();
    drag(Touch, middle, {0, 60});
    QTRY_COMPARE(scroller()->state(), QScroller::Inactive);
    QVERIFY2(bar()->value() < bottom && bar()->value() >= bottom - 60,
             qPrintable(QString::number(bottom - bar()->value())));
    QCOMPARE(current(), 2);
    bar()->setValue(bottom);
    const QPoint last = table_->visualRect(many.index(million - 1, 0)).center();
    press(Touch, last);
    release(Touch, last);
    QCOMPARE(current(), million - 1);
    table_->setModel(nullptr);
}

void TestFingerScroll::listThatGoesWhileItMoves()
{
    flick(Touch, low, {0, -240});
    QCOMPARE(scroller()->state(), QScroller::Scrolling);
    table_.reset();
    QTest::qWait(50); // what the flick had still to do finds nothing
    init();
    pull(Touch, middle, {0, -60}, 4);
    table_.reset();
}

STALLO_TEST_MAIN(TestFingerScroll)
#include "tst_fingerscroll.moc"
