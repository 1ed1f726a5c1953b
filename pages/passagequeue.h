// SPDX-License-Identifier: MIT
#pragma once

#include "net/events.h"

#include <QObject>

#include <deque>
#include <functional>

// The passages that the clients have brought, handled in their order, in slices of 20 ms with the
// rest of the window's work in between; so a flood of them does not stop the window. Those that no
// client waits for are handled at once, unless others are before them.
//
// GUI thread. A slice may open a dialog: the slices go on inside it. What is still waiting when the
// queue dies is dropped.
class PassageQueue : public QObject
{
    Q_OBJECT

public:
    using Handler = std::function<void(const OnLineEvent &)>;

    // handle is called for each passage, sliceEnds after the last one of a slice. Both must be
    // callable as long as the queue lives.
    PassageQueue(Handler handle, std::function<void()> sliceEnds);

    void add(const OnLineEvent &event);

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    void handleSlice();
    void stopTimer();

    Handler handle_;
    std::function<void()> sliceEnds_;
    std::deque<OnLineEvent> waiting_;
    int timer_ = 0;
};
