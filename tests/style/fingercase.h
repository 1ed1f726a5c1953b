// SPDX-License-Identifier: MIT
#pragma once

#include "style/brelstyle.h"
#include "tests/support/testmain.h"

#include <QScrollBar>
#include <QScroller>
#include <QSignalSpy>
#include <QStandardItemModel>
#include <QTableView>
#include <QTouchDevice>

#include <memory>

// A real table of 500 rows under the program's style, its third row current, and a finger on it: by
// touch events, and by the mouse that many screens send instead.
class FingerCase : public QObject
{
    Q_OBJECT

protected:
    enum Pointer { Touch, Mouse };
    static constexpr int rows = 500;
    // Between two reports of a screen.
    static constexpr int reportMsec = 8;
    // Of the table.
    const QPoint middle{150, 200};
    const QPoint low{150, 290};

    QWidget *viewport() const { return table_->viewport(); }
    QScrollBar *bar() const { return table_->verticalScrollBar(); }
    QScroller *scroller() const { return QScroller::scroller(viewport()); }
    int current() const { return table_->currentIndex().row(); }
    int selected() const { return table_->selectionModel()->selectedRows().size(); }

    void press(Pointer by, const QPoint &place) const
    {
        if (by == Touch) {
            QTest::touchEvent(viewport(), screen_).press(0, place, viewport());
        } else {
            QTest::mousePress(viewport(), Qt::LeftButton, {}, place);
        }
    }
    void move(Pointer by, const QPoint &place) const
    {
        if (by == Touch) {
            QTest::touchEvent(viewport(), screen_).move(0, place, viewport());
            return;
        }
        // The tests' own mouse forgets which button is held.
        QMouseEvent event(QEvent::MouseMove, place, viewport()->mapToGlobal(place), Qt::NoButton,
                          Qt::LeftButton, {});
        QApplication::sendEvent(viewport(), &event);
    }
    void release(Pointer by, const QPoint &place) const
    {
        if (by == Touch) {
            QTest::touchEvent(viewport(), screen_).release(0, place, viewport());
        } else {
            QTest::mouseRelease(viewport(), Qt::LeftButton, {}, place);
        }
    }
    void touchBoth(const QPoint &one, const QPoint &other) const
    {
        QTest::touchEvent(viewport(), screen_).move(0, one, viewport()).press(1, other, viewport());
    }
    void pull(Pointer by, const QPoint &from, const QPoint &way, int steps) const
    {
        press(by, from);
        for (int step = 1; step <= steps; ++step) {
            QTest::qWait(reportMsec); // the speed of the finger
            move(by, from + way * step / steps);
        }
    }
    // Rests before it is lifted.
    void drag(Pointer by, const QPoint &from, const QPoint &way) const
    {
        pull(by, from, way, 10);
        for (int report = 0; report < 30; ++report) {
            QTest::qWait(reportMsec);
            move(by, from + way);
        }
        release(by, from + way);
    }
    void flick(Pointer by, const QPoint &from, const QPoint &way) const
    {
        pull(by, from, way, 6);
        release(by, from + way);
    }
    void restsAt(int value) const
    {
        QTRY_COMPARE(scroller()->state(), QScroller::Inactive);
        QCOMPARE(bar()->value(), value);
    }

    QTouchDevice *screen_ = nullptr;
    std::unique_ptr<QStandardItemModel> model_;
    std::unique_ptr<QTableView> table_;

protected Q_SLOTS:
    void initTestCase()
    {
        auto *style = new BrelStyle;
        QApplication::setStyle(style);
        QApplication::setPalette(style->standardPalette());
        screen_ = QTest::createTouchDevice();
    }
    void init()
    {
        model_ = std::make_unique<QStandardItemModel>(rows, 7);
        for (int row = 0; row < rows; ++row) {
            model_->setItem(row, 0, new QStandardItem(QString::number(row)));
        }
        table_ = std::make_unique<QTableView>();
        table_->setModel(model_.get());
        table_->setSelectionBehavior(QAbstractItemView::SelectRows);
        table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
        table_->setContextMenuPolicy(Qt::CustomContextMenu);
        table_->resize(460, 400);
        table_->show();
        QVERIFY(QTest::qWaitForWindowActive(table_.get()));
        table_->selectRow(2);
        QCOMPARE(current(), 2);
    }
    void cleanup()
    {
        table_.reset();
        model_.reset();
    }
};
