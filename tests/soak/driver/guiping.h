// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include <atomic>
#include <thread>

// How long the panel's GUI thread makes an event wait. A thread of its own posts one to it every
// 10 ms, waits until it was delivered, and writes the longest wait of each second to standard
// output, "ping MSEC NET"; a wait that goes on counts with what it has taken so far, so a window
// that is frozen says so. NET is the longest one without the time in which the GUI thread was ready
// and had no processor: on a busy machine that is the machine's part.
//
// Lives in the GUI thread. Its end stops the thread.
class GuiPing : public QObject
{
    Q_OBJECT

public:
    explicit GuiPing(QObject *parent);
    ~GuiPing() override;

protected:
    bool event(QEvent *event) override;

private:
    void run();

    std::atomic<bool> stop_{false};
    std::atomic<bool> answered_{true};
    std::thread thread_;
};
