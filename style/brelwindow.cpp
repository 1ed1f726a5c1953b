// SPDX-License-Identifier: MIT
#include "style/brelwindow.h"

#include "style/brelwindowtitle.h"
#include "style/focuskeeper.h"
#include "style/metrics.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QTextDocument>
#include <QTextDocumentFragment>
#include <QVBoxLayout>
#include <QWindow>

BrelWindow *topLevelBrelWindow = nullptr;

namespace
{

// How long a window manager may take to maximise or restore before the frame does it by itself.
constexpr int windowManagerTime = 250;

Qt::CursorShape shapeOf(Qt::Edges edges)
{
    if (edges == (Qt::LeftEdge | Qt::TopEdge) || edges == (Qt::RightEdge | Qt::BottomEdge)) {
        return Qt::SizeFDiagCursor;
    }
    if (edges == (Qt::RightEdge | Qt::TopEdge) || edges == (Qt::LeftEdge | Qt::BottomEdge)) {
        return Qt::SizeBDiagCursor;
    }
    if ((edges & (Qt::LeftEdge | Qt::RightEdge)) != 0) {
        return Qt::SizeHorCursor;
    }
    return edges == 0 ? Qt::ArrowCursor : Qt::SizeVerCursor;
}

} // namespace

BrelWindow::BrelWindow(QWidget *parent, Qt::WindowFlags flags)
    : QWidget(parent, flags | Qt::Window | Qt::FramelessWindowHint | Qt::WindowSystemMenuHint |
                          Qt::WindowMinMaxButtonsHint | Qt::WindowCloseButtonHint)
    , title_(new BrelWindowTitle(this))
    , body_(new QWidget(this))
{
    // The edges are told by the pointer's shape; what lies inside must not inherit it.
    setMouseTracking(true);
    title_->setCursor(Qt::ArrowCursor);
    body_->setCursor(Qt::ArrowCursor);

    auto *column = new QVBoxLayout(this);
    column->setSpacing(0);
    column->addWidget(title_);
    column->addWidget(body_, 1);
    auto *inside = new QVBoxLayout(body_);
    inside->setContentsMargins(0, 0, 0, 0);

    connect(title_, &BrelWindowTitle::minimizeRequested, this, &QWidget::showMinimized);
    connect(title_, &BrelWindowTitle::maximizeRequested, this, &BrelWindow::toggleMaximized);
    connect(title_, &BrelWindowTitle::closeRequested, this, &QWidget::close);
    new FocusKeeper(this);
    settle_.setSingleShot(true);
    settle_.setInterval(windowManagerTime);
    connect(&settle_, &QTimer::timeout, this, &BrelWindow::settleGeometry);
    applyState();
}

BrelWindow::~BrelWindow()
{
    if (topLevelBrelWindow == this) {
        topLevelBrelWindow = nullptr;
    }
}

void BrelWindow::setCentralWidget(QWidget *widget)
{
    if (widget == central_) {
        return;
    }
    if (central_ != nullptr) {
        body_->layout()->removeWidget(central_);
        // Hides it too, without marking it as hidden on purpose: it shows again in another place.
        central_->setParent(nullptr);
    }
    central_ = widget;
    if (widget != nullptr) {
        body_->layout()->addWidget(widget);
    }
}

QWidget *BrelWindow::centralWidget() const
{
    return central_;
}

void BrelWindow::setWindowTitle(const QString &title)
{
    title_->setTitle(title);
    QWidget::setWindowTitle(Qt::mightBeRichText(title)
                                ? QTextDocumentFragment::fromHtml(title).toPlainText().simplified()
                                : title);
}

Qt::Edges BrelWindow::edgesAt(const QPoint &position) const
{
    if (isMaximized() || isFullScreen()) {
        return {};
    }
    const auto within = [&](int reach) {
        Qt::Edges edges;
        edges.setFlag(Qt::LeftEdge, position.x() < reach);
        edges.setFlag(Qt::RightEdge, position.x() >= width() - reach);
        edges.setFlag(Qt::TopEdge, position.y() < reach);
        edges.setFlag(Qt::BottomEdge, position.y() >= height() - reach);
        return edges;
    };
    // On an edge, what is near a corner pulls both edges.
    return within(Metrics::edge) == 0 ? Qt::Edges() : within(Metrics::corner);
}

void BrelWindow::mousePressEvent(QMouseEvent *event)
{
    QWidget::mousePressEvent(event);
    if (event->button() != Qt::LeftButton) {
        return;
    }
    edges_ = edgesAt(event->pos());
    grip_ = event->globalPos();
    start_ = geometry();
    if (edges_ != 0) {
        beginResize();
        event->accept();
    } else if (title_->geometry().contains(event->pos())) {
        // Moves from the first real movement on, or a double click would never come through.
        drag_ = Drag::Pressed;
        event->accept();
    }
}

void BrelWindow::mouseMoveEvent(QMouseEvent *event)
{
    QWidget::mouseMoveEvent(event);
    if ((event->buttons() & Qt::LeftButton) == 0) {
        drag_ = Drag::None;
        showCursor(event->pos());
        return;
    }
    const QPoint way = event->globalPos() - grip_;
    if (drag_ == Drag::Pressed && way.manhattanLength() >= QApplication::startDragDistance()) {
        beginMove();
    }
    if (drag_ == Drag::Moving) {
        move(start_.topLeft() + way);
    } else if (drag_ == Drag::Resizing) {
        resizeByHand(event->globalPos());
    }
}

void BrelWindow::mouseReleaseEvent(QMouseEvent *event)
{
    QWidget::mouseReleaseEvent(event);
    drag_ = Drag::None;
}

void BrelWindow::mouseDoubleClickEvent(QMouseEvent *event)
{
    drag_ = Drag::None;
    if (event->button() == Qt::LeftButton && edgesAt(event->pos()) == 0 &&
        title_->geometry().contains(event->pos())) {
        toggleMaximized();
    }
}

void BrelWindow::leaveEvent(QEvent *event)
{
    QWidget::leaveEvent(event);
    setCursor(Qt::ArrowCursor);
}

void BrelWindow::beginMove()
{
    drag_ = Drag::None;
    if (isMaximized() || isFullScreen()) {
        return;
    }
    if (!windowHandle()->startSystemMove()) {
        drag_ = Drag::Moving;
    }
}

void BrelWindow::beginResize()
{
    drag_ = windowHandle()->startSystemResize(edges_) ? Drag::None : Drag::Resizing;
}

void BrelWindow::resizeByHand(const QPoint &globalPosition)
{
    const QPoint way = globalPosition - grip_;
    QSize size = start_.size();
    if ((edges_ & Qt::LeftEdge) != 0) {
        size.rwidth() -= way.x();
    } else if ((edges_ & Qt::RightEdge) != 0) {
        size.rwidth() += way.x();
    }
    if ((edges_ & Qt::TopEdge) != 0) {
        size.rheight() -= way.y();
    } else if ((edges_ & Qt::BottomEdge) != 0) {
        size.rheight() += way.y();
    }
    size = size.expandedTo(minimumSize()).expandedTo(minimumSizeHint()).boundedTo(maximumSize());
    QRect target(start_.topLeft(), size);
    if ((edges_ & Qt::LeftEdge) != 0) {
        target.moveRight(start_.right());
    }
    if ((edges_ & Qt::TopEdge) != 0) {
        target.moveBottom(start_.bottom());
    }
    setGeometry(target);
}

void BrelWindow::showCursor(const QPoint &position)
{
    setCursor(shapeOf(edgesAt(position)));
}

void BrelWindow::toggleMaximized()
{
    if (isMaximized()) {
        showNormal();
    } else {
        showMaximized();
    }
}

void BrelWindow::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange) {
        before_ = geometry();
        applyState();
        settle_.start();
    }
}

void BrelWindow::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (isMaximized()) {
        before_ = geometry();
        settle_.start();
    }
}

void BrelWindow::applyState()
{
    const bool whole = isMaximized() || isFullScreen();
    const int edge = whole ? 0 : Metrics::edge;
    layout()->setContentsMargins(edge, edge, edge, edge);
    title_->setMaximized(isMaximized());
    update();
}

// Without a window manager nobody follows a changed state; the geometry has then stayed as it was.
void BrelWindow::settleGeometry()
{
    if (!isVisible() || isMinimized()) {
        return;
    }
    const QRect whole = windowHandle()->screen()->availableGeometry();
    if (isMaximized() && geometry() == before_ && before_ != whole) {
        normal_ = before_;
        // The widget's own function would take the maximised state back.
        windowHandle()->setGeometry(whole);
    } else if (!isMaximized() && normal_.isValid()) {
        if (geometry() == whole) {
            setGeometry(normal_);
        }
        normal_ = QRect();
    }
}

void BrelWindow::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Window));
    if (!isMaximized() && !isFullScreen()) {
        painter.setPen(Metrics::line);
        painter.drawRect(rect().adjusted(0, 0, -1, -1));
    }
}
