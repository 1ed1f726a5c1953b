// SPDX-License-Identifier: MIT
#include "style/fingerscroll.h"

#include "tests/style/fingercase.h"

#include <QDialog>
#include <QStyleHints>

#include <functional>

using Disturbance = std::function<void(QTableView *table)>;
Q_DECLARE_METATYPE(Disturbance)

// A finger that something else comes in the way of.
class TestFingerTroubles : public FingerCase
{
    Q_OBJECT

private Q_SLOTS:
    void secondPressOfTwoCanDrag_data();
    void secondPressOfTwoCanDrag();
    void pressThatIsTakenAway_data();
    void pressThatIsTakenAway();
    void lostReleaseHoldsNothing();
    void flickGivesWay_data();
    void flickGivesWay();
    void rightButtonInADrag();
    void disabledListStays();
    void takenOffWhileItMoves();

private:
    // What the window system tells of the second of two presses.
    void pressAgain(const QPoint &place) const
    {
        QMouseEvent event(QEvent::MouseButtonDblClick, place, viewport()->mapToGlobal(place),
                          Qt::LeftButton, Qt::LeftButton, {});
        QApplication::sendEvent(viewport(), &event);
    }
    static int longest()
    {
        return QGuiApplication::styleHints()->mousePressAndHoldInterval() + 200;
    }
};

void TestFingerTroubles::secondPressOfTwoCanDrag_data()
{
    QTest::addColumn<bool>("afterFlick");
    QTest::newRow("after a tap") << false;
    QTest::newRow("after stopping a flick") << true;
}

void TestFingerTroubles::secondPressOfTwoCanDrag()
{
    QFETCH(const bool, afterFlick);
    table_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    if (afterFlick) {
        flick(Mouse, low, QPoint(0, -200));
        QCOMPARE(scroller()->state(), QScroller::Scrolling);
    }
    press(Mouse, middle);
    release(Mouse, middle);
    const int row = current();
    const int before = bar()->value();
    pressAgain(middle);
    for (int step = 1; step <= 10; ++step) {
        QTest::qWait(reportMsec);
        move(Mouse, middle - QPoint(0, 15 * step));
    }
    QVERIFY(bar()->value() > before + 100);
    release(Mouse, middle - QPoint(0, 150));
    QCOMPARE(current(), row);
    QCOMPARE(selected(), 1);
}

void TestFingerTroubles::pressThatIsTakenAway_data()
{
    QTest::addColumn<bool>("byDialog");
    QTest::newRow("a dialog opens") << true;
    QTest::newRow("the list is hidden") << false;
}

void TestFingerTroubles::pressThatIsTakenAway()
{
    QFETCH(const bool, byDialog);
    const QSignalSpy asked(table_.get(), &QWidget::customContextMenuRequested);
    press(Touch, middle);
    QDialog dialog;
    if (byDialog) {
        dialog.open();
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
    } else {
        table_->hide();
    }
    QTest::qWait(longest()); // there is nothing else to wait for
    QCOMPARE(asked.count(), 0);
    QCOMPARE(current(), 2);
    QCOMPARE(scroller()->state(), QScroller::Inactive);
}

void TestFingerTroubles::lostReleaseHoldsNothing()
{
    const QSignalSpy clicked(table_.get(), &QTableView::clicked);
    press(Mouse, low);
    QEvent away(QEvent::WindowDeactivate);
    QApplication::sendEvent(table_.get(), &away);
    QCOMPARE(scroller()->state(), QScroller::Inactive);
    QVERIFY(table_->hasAutoScroll());
    // The next press is measured from where it is.
    press(Mouse, middle);
    move(Mouse, middle + QPoint(2, 0));
    release(Mouse, middle + QPoint(2, 0));
    QCOMPARE(clicked.count(), 1);
    QCOMPARE(bar()->value(), 0);
}

void TestFingerTroubles::flickGivesWay_data()
{
    QTest::addColumn<Disturbance>("disturb");
    const auto row = [](const char *name, const Disturbance &disturb) {
        QTest::newRow(name) << disturb;
    };
    row("the scroll bar is held",
        [](QTableView *table) { table->verticalScrollBar()->setSliderDown(true); });
    row("the scroll bar is pressed", [](QTableView *table) {
        table->verticalScrollBar()->triggerAction(QScrollBar::SliderPageStepAdd);
    });
    row("a key", [](QTableView *table) { QTest::keyClick(table, Qt::Key_End); });
    row("the keyboard goes elsewhere", [](QTableView *table) { table->clearFocus(); });
    row("the table is cut",
        [](QTableView *table) { table->model()->removeRows(20, table->model()->rowCount() - 20); });
}

void TestFingerTroubles::flickGivesWay()
{
    QFETCH(const Disturbance, disturb);
    table_->setFocus();
    flick(Mouse, low, QPoint(0, -200));
    QCOMPARE(scroller()->state(), QScroller::Scrolling);
    QVERIFY(!table_->hasAutoScroll());
    disturb(table_.get());
    QTRY_COMPARE_WITH_TIMEOUT(scroller()->state(), QScroller::Inactive, 300);
    QVERIFY(table_->hasAutoScroll());
}

void TestFingerTroubles::rightButtonInADrag()
{
    table_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    const QSignalSpy clicked(table_.get(), &QTableView::clicked);
    press(Mouse, middle);
    const auto right = [this](QEvent::Type type, Qt::MouseButtons held) {
        QMouseEvent event(type, middle, viewport()->mapToGlobal(middle), Qt::RightButton, held, {});
        QApplication::sendEvent(viewport(), &event);
    };
    right(QEvent::MouseButtonPress, Qt::LeftButton | Qt::RightButton);
    right(QEvent::MouseButtonRelease, Qt::LeftButton);
    const int row = current();
    QCOMPARE(row, table_->rowAt(middle.y()));
    for (int step = 1; step <= 5; ++step) {
        move(Mouse, middle - QPoint(0, 30 * step));
    }
    QCOMPARE(selected(), 1);
    release(Mouse, middle - QPoint(0, 150));
    QCOMPARE(current(), row);
    QCOMPARE(clicked.count(), 0);
}

void TestFingerTroubles::disabledListStays()
{
    table_->setEnabled(false);
    drag(Touch, low, QPoint(0, -200));
    drag(Mouse, low, QPoint(0, -200));
    restsAt(0);
}

void TestFingerTroubles::takenOffWhileItMoves()
{
    flick(Mouse, low, QPoint(0, -200));
    QVERIFY(!table_->hasAutoScroll());
    FingerScroll::uninstall(table_.get());
    QVERIFY(table_->hasAutoScroll());
    QCOMPARE(scroller()->state(), QScroller::Inactive);
}

STALLO_TEST_MAIN(TestFingerTroubles)
#include "tst_fingertroubles.moc"
