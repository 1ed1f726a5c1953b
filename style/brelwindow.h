// SPDX-License-Identifier: MIT
#pragma once

#include <QPointer>
#include <QTimer>
#include <QWidget>

class BrelWindowTitle;

// The program's frame: a top-level window that draws its own title bar above its central widget.
//
// It is moved by its bar and resized by its edges and corners, through the window manager where
// there is one and by hand where there is none; the same holds for maximising. A double click on
// the bar maximises and restores. A maximised window has no edges to pull.
//
// The central widget becomes a child, so the frame deletes it unless it goes first: one that lives
// on the stack must be destroyed before the frame, or be taken out with setCentralWidget(nullptr).
// GUI thread only.
class BrelWindow : public QWidget
{
    Q_OBJECT

public:
    explicit BrelWindow(QWidget *parent = nullptr, Qt::WindowFlags flags = {});
    ~BrelWindow() override;

    // A former central widget is hidden and handed back to the caller, without a parent.
    void setCentralWidget(QWidget *widget);
    // Null before one is set and after it was destroyed.
    QWidget *centralWidget() const;

    // Rich text goes to the bar as it is; the window's own title gets its plain text.
    void setWindowTitle(const QString &title);

    BrelWindowTitle *brelWindowTitle() const { return title_; }

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void changeEvent(QEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    enum class Drag { None, Pressed, Moving, Resizing };

    Qt::Edges edgesAt(const QPoint &position) const;
    void beginMove();
    void beginResize();
    void resizeByHand(const QPoint &globalPosition);
    void showCursor(const QPoint &position);
    void toggleMaximized();
    void applyState();
    void settleGeometry();

    // Both owned by this window.
    BrelWindowTitle *title_;
    QWidget *body_;
    QPointer<QWidget> central_;

    Drag drag_ = Drag::None;
    Qt::Edges edges_;
    QPoint grip_;
    QRect start_;
    // The place when the state last changed.
    QRect before_;
    // The place to go back to where no window manager keeps it.
    QRect normal_;
    QTimer settle_;
};

// The program's one frame; null until main sets it, and again when that frame is gone.
extern BrelWindow *topLevelBrelWindow;
