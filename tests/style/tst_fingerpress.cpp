// SPDX-License-Identifier: MIT
#include "style/fingerscroll.h"

#include "tests/style/fingercase.h"

#include <QCalendarWidget>
#include <QComboBox>
#include <QFileDialog>
#include <QHeaderView>
#include <QListWidget>
#include <QMenu>
#include <QPointer>
#include <QStyleHints>
#include <QTreeView>

// Taps and long presses, and what stays as the toolkit has it.
class TestFingerPress : public FingerCase
{
    Q_OBJECT

private Q_SLOTS:
    void tapSelects_data();
    void tapSelects();
    void tapWithATremble();
    void twoTapsActivate();
    void mouseActivates();
    void longPressOpensTheMenu();
    void longPressOfAMouseOpensTheMenu();
    void rightButtonStaysTheToolkits();
    void keysHeldLeaveTheMouseToTheToolkit();
    void rowTitlesSelectSeveral();
    void cancelledTouchIsNoTap();
    void listThatClosesOnActivation();
    void everyListOfItsOwn();
    void unpolishedListIsAsBefore();
};

void TestFingerPress::tapSelects_data()
{
    QTest::addColumn<int>("by");
    QTest::newRow("touch") << int(Touch);
    QTest::newRow("mouse") << int(Mouse);
}

void TestFingerPress::tapSelects()
{
    QFETCH(const int, by);
    const QSignalSpy clicked(table_.get(), &QTableView::clicked);
    bar()->setValue(1000);
    const int row = table_->rowAt(middle.y());
    press(static_cast<Pointer>(by), middle);
    QCOMPARE(current(), 2);
    release(static_cast<Pointer>(by), middle);
    QCOMPARE(current(), row);
    QCOMPARE(selected(), 1);
    QCOMPARE(clicked.count(), 1);
    QVERIFY(table_->hasFocus());
}

void TestFingerPress::tapWithATremble()
{
    const int row = table_->rowAt(middle.y());
    press(Touch, middle);
    move(Touch, middle + QPoint(3, -4));
    move(Touch, middle + QPoint(-2, 3));
    release(Touch, middle + QPoint(1, 2));
    QCOMPARE(current(), row);
    restsAt(0);
}

void TestFingerPress::twoTapsActivate()
{
    const QSignalSpy twice(table_.get(), &QTableView::doubleClicked);
    const QSignalSpy activated(table_.get(), &QTableView::activated);
    const int row = table_->rowAt(middle.y());
    for (int tap = 0; tap < 2; ++tap) {
        press(Touch, middle);
        release(Touch, middle);
    }
    QCOMPARE(twice.count(), 1);
    QCOMPARE(activated.count(), 1);
    QCOMPARE(activated.first().first().toModelIndex().row(), row);
    // On two rows they are two taps.
    press(Touch, middle);
    release(Touch, middle);
    press(Touch, middle + QPoint(0, 100));
    release(Touch, middle + QPoint(0, 100));
    QCOMPARE(twice.count(), 1);
    QVERIFY(current() > row);
}

void TestFingerPress::mouseActivates()
{
    const QSignalSpy twice(table_.get(), &QTableView::doubleClicked);
    QTest::mouseClick(viewport(), Qt::LeftButton, {}, middle);
    QTest::mouseDClick(viewport(), Qt::LeftButton, {}, middle);
    release(Mouse, middle);
    QCOMPARE(twice.count(), 1);
    QCOMPARE(current(), table_->rowAt(middle.y()));
}

void TestFingerPress::longPressOpensTheMenu()
{
    const QSignalSpy asked(table_.get(), &QWidget::customContextMenuRequested);
    const QSignalSpy clicked(table_.get(), &QTableView::clicked);
    press(Touch, middle);
    QTRY_COMPARE(asked.count(), 1);
    QCOMPARE(asked.first().first().toPoint(), middle);
    // Of the row under the finger, as by the right button of a mouse.
    QCOMPARE(current(), table_->rowAt(middle.y()));
    move(Touch, middle - QPoint(0, 100));
    release(Touch, middle - QPoint(0, 100));
    restsAt(0);
    QCOMPARE(clicked.count(), 0);
    QCOMPARE(asked.count(), 1);
}

void TestFingerPress::longPressOfAMouseOpensTheMenu()
{
    const QSignalSpy asked(table_.get(), &QWidget::customContextMenuRequested);
    press(Mouse, middle);
    const int longest = QGuiApplication::styleHints()->mousePressAndHoldInterval() + 200;
    QTest::qWait(longest); // there is nothing else to wait for
    QCOMPARE(asked.count(), 0);
    release(Mouse, middle);
    QCOMPARE(asked.count(), 1);
    QCOMPARE(current(), table_->rowAt(middle.y()));
}

void TestFingerPress::rightButtonStaysTheToolkits()
{
    QTest::mouseClick(viewport(), Qt::RightButton, {}, middle);
    QCOMPARE(current(), table_->rowAt(middle.y()));
    // A screen's driver that makes it of a long press ends what the finger began.
    const QSignalSpy clicked(table_.get(), &QTableView::clicked);
    press(Mouse, middle + QPoint(0, 100));
    QTest::mousePress(viewport(), Qt::RightButton, {}, middle);
    QTest::mouseRelease(viewport(), Qt::RightButton, {}, middle);
    release(Mouse, middle + QPoint(0, 100));
    QCOMPARE(current(), table_->rowAt(middle.y()));
    QCOMPARE(clicked.count(), 0);
}

void TestFingerPress::keysHeldLeaveTheMouseToTheToolkit()
{
    const QRect third = table_->visualRect(model_->index(3, 0));
    const QRect fifth = table_->visualRect(model_->index(5, 0));
    QTest::mouseClick(viewport(), Qt::LeftButton, Qt::ControlModifier, fifth.center());
    QCOMPARE(selected(), 2);
    QTest::mouseClick(viewport(), Qt::LeftButton, {}, third.center());
    QCOMPARE(selected(), 1);
    QTest::mouseClick(viewport(), Qt::LeftButton, Qt::ShiftModifier, fifth.center());
    QCOMPARE(selected(), 3);
}

void TestFingerPress::rowTitlesSelectSeveral()
{
    QWidget *titles = table_->verticalHeader()->viewport();
    const int height = table_->rowHeight(0);
    const QPoint first(titles->width() / 2, height + height / 2);
    QTest::mousePress(titles, Qt::LeftButton, {}, first);
    for (int step = 1; step <= 3; ++step) {
        const QPoint place = first + QPoint(0, step * height);
        QMouseEvent event(QEvent::MouseMove, place, titles->mapToGlobal(place), Qt::NoButton,
                          Qt::LeftButton, {});
        QApplication::sendEvent(titles, &event);
    }
    QTest::mouseRelease(titles, Qt::LeftButton, {}, first + QPoint(0, 3 * height));
    QCOMPARE(selected(), 4);
}

void TestFingerPress::cancelledTouchIsNoTap()
{
    press(Touch, middle);
    QTouchEvent cancel(QEvent::TouchCancel, screen_);
    QApplication::sendEvent(viewport(), &cancel);
    QCOMPARE(current(), 2);
    release(Touch, middle);
    QCOMPARE(current(), 2);
}

void TestFingerPress::listThatClosesOnActivation()
{
    auto *list = new QListWidget;
    list->addItems({QStringLiteral("one"), QStringLiteral("two")});
    list->show();
    QVERIFY(QTest::qWaitForWindowActive(list));
    connect(list, &QListWidget::itemPressed, list, [list] { delete list; });
    const QPointer<QListWidget> alive(list);
    const QPoint place = list->visualItemRect(list->item(1)).center();
    QWidget *port = list->viewport();
    QTest::touchEvent(port, screen_).press(0, place, port);
    QTest::touchEvent(port, screen_).release(0, place, port);
    QVERIFY(alive.isNull());
}

void TestFingerPress::everyListOfItsOwn()
{
    const auto isFitted = [](const QAbstractItemView *list) {
        return list->findChild<FingerScroll *>(QString(), Qt::FindDirectChildrenOnly) != nullptr;
    };
    QVERIFY(isFitted(table_.get()));
    QVERIFY(!isFitted(table_->verticalHeader()));
    QListWidget list;
    list.show();
    QVERIFY(isFitted(&list));
    QCOMPARE(list.verticalScrollMode(), QAbstractItemView::ScrollPerPixel);
    QFileDialog files;
    files.setOption(QFileDialog::DontUseNativeDialog);
    files.show();
    QVERIFY(isFitted(files.findChild<QTreeView *>(QStringLiteral("treeView"))));
    QCalendarWidget calendar;
    calendar.show();
    QVERIFY(!isFitted(calendar.findChild<QTableView *>()));
    QComboBox combo;
    combo.addItems({QStringLiteral("one"), QStringLiteral("two")});
    combo.show();
    combo.showPopup();
    QVERIFY(!isFitted(combo.view()));
    combo.hidePopup();
}

void TestFingerPress::unpolishedListIsAsBefore()
{
    FingerScroll::install(table_.get()); // no second one
    FingerScroll::uninstall(table_.get());
    press(Mouse, middle);
    QCOMPARE(current(), table_->rowAt(middle.y()));
    release(Mouse, middle);
}

STALLO_TEST_MAIN(TestFingerPress)
#include "tst_fingerpress.moc"
