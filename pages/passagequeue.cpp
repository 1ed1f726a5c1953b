// SPDX-License-Identifier: MIT
#include "pages/passagequeue.h"

#include <QElapsedTimer>

namespace
{

constexpr int longestSlice = 20;

} // namespace

PassageQueue::PassageQueue(Handler handle, std::function<void()> sliceEnds)
    : handle_(std::move(handle))
    , sliceEnds_(std::move(sliceEnds))
{
}

void PassageQueue::add(const OnLineEvent &event)
{
    if (waiting_.empty() && !event.isTicketed()) {
        handle_(event);
        sliceEnds_();
        return;
    }
    waiting_.push_back(event);
    if (timer_ == 0) {
        timer_ = startTimer(0);
    }
}

void PassageQueue::timerEvent(QTimerEvent * /*event*/)
{
    handleSlice();
}

void PassageQueue::handleSlice()
{
    // A new timer: the one that has just fired would not fire again inside a dialog.
    stopTimer();
    timer_ = startTimer(0);
    QElapsedTimer clock;
    clock.start();
    while (!waiting_.empty() && !clock.hasExpired(longestSlice)) {
        const OnLineEvent next = std::move(waiting_.front());
        waiting_.pop_front();
        handle_(next);
    }
    if (waiting_.empty()) {
        stopTimer();
    }
    sliceEnds_();
}

void PassageQueue::stopTimer()
{
    if (timer_ != 0) {
        killTimer(timer_);
        timer_ = 0;
    }
}
