// SPDX-License-Identifier: MIT
#include "pages/onlinewidget.h"
#include "style/brelwindow.h"
#include "style/metrics.h"
#include "tests/accessibility/panel.h"
#include "tests/support/onlinepage.h"
#include "tests/support/testmain.h"

#include <QListWidget>
#include <QMenu>
#include <QScrollBar>
#include <QScroller>
#include <QSignalSpy>
#include <QTableView>
#include <QTouchDevice>

#include <memory>

// A finger on the lists of the panel: the tables of the three pages and the addresses.
class TestFingerPages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase() { panel_.reset(); }

    void drags_data();
    void drags();
    void taps_data();
    void taps();
    void pressesLong_data();
    void pressesLong();
    void passagesComeDuringADrag();

private:
    static void lists();
    // Calls back with the list of the window.
    void on(const QString &window, const std::function<void(QAbstractItemView &)> &action);
    void press(const QPoint &place) const { touch().press(0, place, port_); }
    void move(const QPoint &place) const { touch().move(0, place, port_); }
    void release(const QPoint &place) const { touch().release(0, place, port_); }
    QTest::QTouchEventSequence touch() const { return QTest::touchEvent(port_, screen_); }

    QTouchDevice *screen_ = nullptr;
    QWidget *port_ = nullptr;
    std::unique_ptr<Panel> panel_;
};

void TestFingerPages::initTestCase()
{
    screen_ = QTest::createTouchDevice();
    panel_ = std::make_unique<Panel>(QStringLiteral("en"));
}

void TestFingerPages::lists()
{
    QTest::addColumn<QString>("window");
    for (const char *window : {"archive", "list", "online", "addresses"}) {
        QTest::newRow(window) << QString::fromLatin1(window);
    }
}

void TestFingerPages::on(const QString &window,
                         const std::function<void(QAbstractItemView &)> &action)
{
    panel_->with(window, [&](QWidget &widget) {
        QAbstractItemView *list = panel_->table();
        if (auto *addresses =
                widget.findChild<QListWidget *>(QStringLiteral("listWidgetAddresses"))) {
            list = addresses;
            for (int n = 0; n < 40; ++n) {
                addresses->addItem(QStringLiteral("10.0.0.%1").arg(n));
            }
        }
        list->setCurrentIndex(list->model()->index(1, 0));
        list->scrollToTop();
        port_ = list->viewport();
        QTRY_VERIFY(list->verticalScrollBar()->maximum() > 4 * Metrics::touchSize);
        action(*list);
    });
}

void TestFingerPages::drags_data()
{
    lists();
}

void TestFingerPages::drags()
{
    QFETCH(const QString, window);
    on(window, [this](QAbstractItemView &list) {
        const QSignalSpy changed(list.selectionModel(), &QItemSelectionModel::currentChanged);
        const QSignalSpy selected(list.selectionModel(), &QItemSelectionModel::selectionChanged);
        const QPoint from(100, list.viewport()->height() - 10);
        press(from);
        for (int step = 1; step <= 10; ++step) {
            QTest::qWait(8); // the speed of the finger
            move(from - QPoint(0, 8 * step));
        }
        QTRY_VERIFY(list.verticalScrollBar()->value() > 40);
        release(from - QPoint(0, 80));
        QTRY_COMPARE(QScroller::scroller(port_)->state(), QScroller::Inactive);
        QCOMPARE(changed.count() + selected.count(), 0);
        QCOMPARE(list.currentIndex().row(), 1);
    });
}

void TestFingerPages::taps_data()
{
    lists();
}

void TestFingerPages::taps()
{
    QFETCH(const QString, window);
    on(window, [this](QAbstractItemView &list) {
        const QPoint third =
            list.visualRect(list.model()->index(2, 1 % list.model()->columnCount())).center();
        press(third);
        release(third);
        QCOMPARE(list.currentIndex().row(), 2);
        QCOMPARE(list.selectionModel()->selectedRows().size(), 1);
        QVERIFY(list.hasFocus());
    });
}

void TestFingerPages::pressesLong_data()
{
    lists();
}

void TestFingerPages::pressesLong()
{
    QFETCH(const QString, window);
    on(window, [this](QAbstractItemView &list) {
        const QPoint third = list.visualRect(list.model()->index(2, 0)).center();
        auto *menu = list.findChild<QMenu *>();
        if (menu == nullptr) {
            menu = list.window()->findChild<QMenu *>();
        }
        press(third);
        QTRY_VERIFY(menu->isVisible());
        QCOMPARE(list.currentIndex().row(), 2);
        release(third);
        QVERIFY(menu->isVisible());
        menu->close();
    });
}

// The newest one is current, so the page follows each that comes; not under the finger.
void TestFingerPages::passagesComeDuringADrag()
{
    on(QStringLiteral("online"), [this](QAbstractItemView &list) {
        auto *page = panel_->frame().findChild<OnLineWidget *>();
        const int before = list.model()->rowCount();
        list.setCurrentIndex(list.model()->index(before - 1, 0));
        QScrollBar *bar = list.verticalScrollBar();
        bar->setValue(bar->maximum());
        const int bottom = bar->value();
        const QPoint from(100, 20);
        press(from);
        int last = bottom;
        for (int step = 1; step <= 12; ++step) {
            page->insertRecord(Scan(OnlinePage::record(100 + step)));
            QTest::qWait(8);
            move(from + QPoint(0, 8 * step));
            QVERIFY2(bar->value() <= last, qPrintable(QString::number(bar->value() - last)));
            last = bar->value();
        }
        QTRY_VERIFY(bar->value() < bottom - 40);
        release(from + QPoint(0, 96));
        QTRY_COMPARE(QScroller::scroller(port_)->state(), QScroller::Inactive);
        QVERIFY(bar->value() < bottom);
        // All came, and the newest is the one on view beside the table.
        QCOMPARE(list.model()->rowCount(), before + 12);
        QCOMPARE(list.currentIndex().row(), before + 11);
        page->insertRecord(Scan(OnlinePage::record(200)));
        QTRY_COMPARE(bar->value(), bar->maximum());
    });
}

STALLO_TEST_MAIN(TestFingerPages)
#include "tst_fingerpages.moc"
