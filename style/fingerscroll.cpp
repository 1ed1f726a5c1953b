// SPDX-License-Identifier: MIT
#include "style/fingerscroll.h"

#include "style/metrics.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QCalendarWidget>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QPointer>
#include <QScrollBar>
#include <QScroller>
#include <QScrollerProperties>
#include <QStyleHints>
#include <QTouchEvent>

namespace
{

void setUp(QScroller &scroller)
{
    QScrollerProperties properties = scroller.scrollerProperties();
    const auto set = [&properties](QScrollerProperties::ScrollMetric metric,
                                   const QVariant &value) {
        properties.setScrollMetric(metric, value);
    };
    // In pixels, because many panels do not tell how large their screen is.
    set(QScrollerProperties::DragStartDistance,
        Metrics::dragDistance / scroller.pixelPerMeter().y());
    // However slowly it still moves: a finger on it stops it, and can pull it on.
    set(QScrollerProperties::MaximumClickThroughVelocity, 0);
    set(QScrollerProperties::HorizontalOvershootPolicy, QScrollerProperties::OvershootAlwaysOff);
    set(QScrollerProperties::VerticalOvershootPolicy, QScrollerProperties::OvershootAlwaysOff);
    scroller.setScrollerProperties(properties);
}

bool isNear(const QPoint &one, const QPoint &other)
{
    return (one - other).manhattanLength() <= Metrics::dragDistance;
}

} // namespace

bool FingerScroll::fits(const QWidget *widget)
{
    return qobject_cast<const QAbstractItemView *>(widget) != nullptr &&
           qobject_cast<const QHeaderView *>(widget) == nullptr &&
           qobject_cast<const QCalendarWidget *>(widget->parentWidget()) == nullptr &&
           widget->window()->windowType() != Qt::Popup;
}

void FingerScroll::install(QAbstractItemView *list)
{
    if (list->findChild<FingerScroll *>(QString(), Qt::FindDirectChildrenOnly) == nullptr) {
        new FingerScroll(list);
    }
}

void FingerScroll::uninstall(QAbstractItemView *list)
{
    if (auto *own = list->findChild<FingerScroll *>(QString(), Qt::FindDirectChildrenOnly)) {
        own->giveUp();
        list->viewport()->grabGesture(Qt::PanGesture);
        delete own;
    }
}

FingerScroll::FingerScroll(QAbstractItemView *list)
    : QObject(list)
    , list_(list)
    , viewport_(list->viewport())
    , scroller_(QScroller::scroller(list->viewport()))
{
    clock_.start();
    setUp(*scroller_);
    list_->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    list_->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    viewport_->setAttribute(Qt::WA_AcceptTouchEvents);
    viewport_->ungrabGesture(Qt::PanGesture); // which jumps when a second finger comes
    viewport_->installEventFilter(this);
    list_->installEventFilter(this);
    connect(scroller_, &QScroller::stateChanged, this, &FingerScroll::followScroller);
    for (const QScrollBar *bar : {list_->verticalScrollBar(), list_->horizontalScrollBar()}) {
        connect(bar, &QScrollBar::sliderPressed, this, &FingerScroll::halt);
        connect(bar, &QScrollBar::actionTriggered, this, &FingerScroll::halt);
    }
    // A list that is cut short.
    connect(list_->verticalScrollBar(), &QScrollBar::rangeChanged, this,
            [this](int /*first*/, int last) {
                if (last < formerEnd_) {
                    halt();
                }
            });
}

// A list that is on its way out still tells that it loses the keyboard, when nothing but a widget
// is left of it.
bool FingerScroll::listIsWhole() const
{
    return qobject_cast<const QAbstractItemView *>(parent()) != nullptr;
}

bool FingerScroll::eventFilter(QObject *watched, QEvent *event)
{
    if (!listIsWhole()) {
        return false;
    }
    switch (event->type()) {
    case QEvent::Hide:
    case QEvent::WindowDeactivate:
        // The end of the press goes to somebody else, such as a dialog.
        giveUp();
        press_ = Press::None;
        return false;
    case QEvent::KeyPress:
    case QEvent::FocusOut:
    case QEvent::Wheel:
        halt();
        return false;
    default:
        return watched == viewport_ && list_->isEnabled() && pressed(event);
    }
}

bool FingerScroll::pressed(QEvent *event)
{
    switch (event->type()) {
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TouchCancel:
        return touched(static_cast<QTouchEvent *>(event));
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::MouseButtonRelease:
        return moused(static_cast<QMouseEvent *>(event));
    default:
        return false;
    }
}

// Takes all of them: what is left the toolkit turns into a mouse, which would select.
bool FingerScroll::touched(QTouchEvent *event)
{
    event->accept();
    if (event->type() == QEvent::TouchCancel || event->touchPoints().size() != 1) {
        giveUp();
        if (event->type() != QEvent::TouchUpdate) {
            press_ = Press::None;
        }
        return true;
    }
    const QPoint place = event->touchPoints().first().pos().toPoint();
    if (event->type() == QEvent::TouchBegin) {
        byMouse_ = false;
        begin(place);
    } else if (event->type() == QEvent::TouchUpdate) {
        move(place);
    } else {
        end(place);
    }
    return true;
}

bool FingerScroll::moused(QMouseEvent *event)
{
    if (event->source() == Qt::MouseEventSynthesizedByApplication) {
        return false; // from here
    }
    // The second press of two is told as a double click, though it may become a drag.
    const bool presses =
        event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonDblClick;
    if (presses && event->buttons() == Qt::LeftButton && event->modifiers() == Qt::NoModifier) {
        byMouse_ = true;
        begin(event->pos());
        return true;
    }
    if (!byMouse_ || press_ == Press::None) {
        return false;
    }
    if (event->type() == QEvent::MouseMove && event->buttons() == Qt::LeftButton) {
        move(event->pos());
        return true;
    }
    if (event->type() == QEvent::MouseButtonRelease && event->button() == Qt::LeftButton) {
        end(event->pos());
        return true;
    }
    // Another button, or the release went elsewhere. With the left one still down the list would
    // select along the way.
    giveUp();
    const bool stillDown = event->buttons().testFlag(Qt::LeftButton);
    if (!stillDown) {
        press_ = Press::None;
    }
    return stillDown && event->type() == QEvent::MouseMove;
}

void FingerScroll::begin(const QPoint &place)
{
    const bool stops = scroller_->state() == QScroller::Scrolling;
    if (!stops) {
        scroller_->stop(); // a press whose end was lost
    }
    start_ = place;
    held_ = false;
    press_ = stops ? Press::Dragging : Press::Undecided;
    if (!stops) {
        hold_.start(QGuiApplication::styleHints()->mousePressAndHoldInterval(), this);
    }
    scroller_->handleInput(QScroller::InputPress, place, clock_.elapsed());
    // The list would go back to what was current at the press, though another passage may have come
    // meanwhile; here nothing has been chosen that must be undone.
    scroller_->disconnect(list_);
}

void FingerScroll::move(const QPoint &place)
{
    if (press_ == Press::Spent || press_ == Press::None) {
        return;
    }
    if (press_ == Press::Undecided && !isNear(start_, place)) {
        press_ = Press::Dragging;
        hold_.stop();
    }
    scroller_->handleInput(QScroller::InputMove, place, clock_.elapsed());
}

void FingerScroll::end(const QPoint &place)
{
    move(place);
    hold_.stop();
    const Press press = press_;
    press_ = Press::None;
    if (press == Press::Spent || press == Press::None) {
        return;
    }
    scroller_->handleInput(QScroller::InputRelease, place, clock_.elapsed());
    if (press == Press::Undecided) {
        if (held_) {
            openMenu();
        } else {
            tap();
        }
    }
}

void FingerScroll::giveUp()
{
    hold_.stop();
    scroller_->stop();
    press_ = Press::Spent;
}

// Something else moves the list.
void FingerScroll::halt()
{
    if (scroller_->state() == QScroller::Scrolling) {
        scroller_->stop();
    }
}

void FingerScroll::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != hold_.timerId()) {
        return QObject::timerEvent(event);
    }
    hold_.stop();
    if (byMouse_) {
        held_ = true;
        return;
    }
    giveUp();
    openMenu();
}

void FingerScroll::followScroller()
{
    const bool moving = scroller_->state() != QScroller::Inactive;
    if (moving == moving_ || !listIsWhole()) {
        return;
    }
    moving_ = moving;
    if (moving) {
        formerAutoScroll_ = list_->hasAutoScroll();
        formerEnd_ = list_->verticalScrollBar()->maximum();
    }
    list_->setAutoScroll(!moving && formerAutoScroll_);
}

void FingerScroll::tap()
{
    const qint64 now = clock_.elapsed();
    const bool second = tappedAt_ >= 0 && now - tappedAt_ <= QApplication::doubleClickInterval() &&
                        isNear(tapped_, start_);
    tapped_ = start_;
    tappedAt_ = second ? -1 : now;
    const QPointer<FingerScroll> alive(this); // what is clicked may close the window
    if ((list_->focusPolicy() & Qt::ClickFocus) != 0) {
        list_->setFocus(Qt::MouseFocusReason);
    }
    send(second ? QEvent::MouseButtonDblClick : QEvent::MouseButtonPress, Qt::LeftButton);
    if (alive) {
        send(QEvent::MouseButtonRelease, Qt::LeftButton);
    }
}

void FingerScroll::openMenu()
{
    const QPointer<FingerScroll> alive(this);
    send(QEvent::MouseButtonPress, Qt::RightButton);
    if (alive) {
        send(QEvent::MouseButtonRelease, Qt::RightButton);
    }
    if (alive) {
        QContextMenuEvent event(QContextMenuEvent::Mouse, start_, viewport_->mapToGlobal(start_));
        QCoreApplication::sendEvent(viewport_, &event);
    }
}

void FingerScroll::send(QEvent::Type type, Qt::MouseButton button)
{
    const Qt::MouseButtons held = type == QEvent::MouseButtonRelease ? Qt::NoButton : button;
    const QPoint window = viewport_->mapTo(viewport_->window(), start_);
    QMouseEvent event(type, start_, window, viewport_->mapToGlobal(start_), button, held,
                      Qt::NoModifier, Qt::MouseEventSynthesizedByApplication);
    QCoreApplication::sendEvent(viewport_, &event);
}
