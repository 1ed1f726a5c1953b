// SPDX-License-Identifier: MIT
#pragma once

#include <QTest>
#include <QWidget>
#include <QWindow>

// A pointer at places of the screen, so that a window may move under it while it is held.
class WindowMouse
{
public:
    explicit WindowMouse(QWidget &window)
        : window_(window)
    {
    }

    void press(const QPoint &place) { QTest::mousePress(handle(), Qt::LeftButton, {}, at(place)); }
    void release(const QPoint &place)
    {
        QTest::mouseRelease(handle(), Qt::LeftButton, {}, at(place));
    }
    void moveTo(const QPoint &place)
    {
        QTest::mouseMove(handle(), at(place));
        QCoreApplication::sendPostedEvents();
    }
    void doubleClick(const QPoint &place)
    {
        QTest::mouseDClick(handle(), Qt::LeftButton, {}, at(place));
    }
    // In several steps, as a hand does.
    void drag(const QPoint &from, const QPoint &way)
    {
        constexpr int steps = 4;
        press(from);
        for (int step = 1; step <= steps; ++step) {
            moveTo(from + way * step / steps);
        }
        release(from + way);
    }

private:
    QWindow *handle() const { return window_.windowHandle(); }
    QPoint at(const QPoint &place) const { return handle()->mapFromGlobal(place); }

    QWidget &window_;
};
