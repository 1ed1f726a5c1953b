// SPDX-License-Identifier: MIT
#pragma once

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QEvent>
#include <QObject>
#include <QPoint>

class QAbstractItemView;
class QMouseEvent;
class QScroller;
class QTouchEvent;
class QWidget;

// Lets a finger scroll a list, without choosing a row on the way. What a press means is known only
// when it ends or moves, so it is kept back until then:
// - a drag scrolls, a flick goes on by itself, and neither changes the current row or the
// selection;
// - a tap is a click of the left button, two taps are a double click;
// - a long press is a click of the right button, which opens the list's context menu.
// A second finger ends all that until every finger is lifted; a finger on a list that still moves
// stops it and does no more.
//
// Many panels' screens report a finger as the left button of a mouse, so the left button does the
// same while no key of the keyboard is held with it. With Shift or Ctrl, and in the titles of rows
// and columns, the mouse selects as the toolkit has it: dragging over the row titles chooses
// several rows. A screen's long press waits for the release, lest its trembling chooses from the
// menu.
//
// While the list moves, it does not jump to rows that become current. A flick ends as soon as a
// key, a wheel, a scroll bar or a shorter table moves the list, or the keyboard goes elsewhere. A
// child of its list, which scrolls by pixels from then on. GUI thread.
class FingerScroll : public QObject
{
    Q_OBJECT

public:
    // Whether the widget is a list of its own, not a part of a calendar or of something that pops
    // up.
    static bool fits(const QWidget *widget);
    // At most one for each list.
    static void install(QAbstractItemView *list);
    static void uninstall(QAbstractItemView *list);

    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    // Undecided: may still become a tap. Spent: nothing more comes of it.
    enum class Press { None, Undecided, Dragging, Spent };

    explicit FingerScroll(QAbstractItemView *list);

    bool listIsWhole() const;
    bool pressed(QEvent *event);
    bool touched(QTouchEvent *event);
    bool moused(QMouseEvent *event);
    void begin(const QPoint &place);
    void move(const QPoint &place);
    void end(const QPoint &place);
    void giveUp();
    void halt();
    void followScroller();
    void tap();
    void openMenu();
    void send(QEvent::Type type, Qt::MouseButton button);

    QAbstractItemView *list_;
    QWidget *viewport_;
    QScroller *scroller_;
    Press press_ = Press::None;
    bool byMouse_ = false;
    bool held_ = false; // a mouse was pressed for long
    QPoint start_;
    QElapsedTimer clock_; // not all screens tell when they were touched
    QBasicTimer hold_;
    // The last tap, for the second one of a double click.
    QPoint tapped_;
    qint64 tappedAt_ = -1;
    // What the list did before it moved.
    bool moving_ = false;
    bool formerAutoScroll_ = true;
    int formerEnd_ = 0; // of the vertical scroll bar
};
