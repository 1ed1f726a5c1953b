// SPDX-License-Identifier: MIT
#include "net/videoframetoken.h"

#include <QMutex>
#include <QMutexLocker>
#include <QWaitCondition>

#include <deque>

namespace
{

constexpr unsigned long pollMsec = 50;

struct Queue {
    QMutex mutex;
    QWaitCondition changed;
    std::deque<quint64> waiting;
    quint64 next = 0;
    bool taken = false;
};

Queue &queue()
{
    static Queue instance;
    return instance;
}

void leave(Queue &line, quint64 ticket)
{
    for (auto it = line.waiting.begin(); it != line.waiting.end(); ++it) {
        if (*it == ticket) {
            line.waiting.erase(it);
            return;
        }
    }
}

} // namespace

VideoFrameToken VideoFrameToken::take(const std::function<bool()> &cancelled)
{
    Queue &line = queue();
    QMutexLocker lock(&line.mutex);
    const quint64 ticket = line.next++;
    line.waiting.push_back(ticket);
    while (line.taken || line.waiting.front() != ticket) {
        line.changed.wait(&line.mutex, pollMsec);
        if (cancelled()) {
            leave(line, ticket);
            line.changed.wakeAll();
            return VideoFrameToken();
        }
    }
    line.waiting.pop_front();
    line.taken = true;
    VideoFrameToken token;
    token.held_ = std::shared_ptr<void>(&line, [](void *taken) {
        auto *owner = static_cast<Queue *>(taken);
        const QMutexLocker release(&owner->mutex);
        owner->taken = false;
        owner->changed.wakeAll();
    });
    return token;
}
