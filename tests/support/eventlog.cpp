// SPDX-License-Identifier: MIT
#include "tests/support/eventlog.h"

#include <QAbstractSocket>
#include <QFile>

#include <algorithm>

int EventLog::reposts() const
{
    return static_cast<int>(std::count_if(passages.begin(), passages.end(),
                                          [](const Passage &each) { return each.repost; }));
}

int EventLog::connects() const
{
    return static_cast<int>(std::count_if(pipes.begin(), pipes.end(), [](const Pipe &each) {
        return each.state == QAbstractSocket::ConnectedState;
    }));
}

void EventLog::customEvent(QEvent *event)
{
    switch (static_cast<int>(event->type())) {
    case EventNumber::OnLine: {
        const auto &passage = *static_cast<OnLineEvent *>(event);
        passages.append({passage.onLine(), passage.fileName(), passage.hostName(), passage.vaskId(),
                         passage.repost()});
        break;
    }
    case EventNumber::Pipe: {
        const auto &pipe = *static_cast<PipeEvent *>(event);
        pipes.append({pipe.state, pipe.message, pipe.channel});
        break;
    }
    case EventNumber::Video: {
        const auto &frame = *static_cast<VideoEvent *>(event);
        QFile file(frame.photo());
        const QByteArray content = !frame.photo().isEmpty() && file.open(QIODevice::ReadOnly)
                                       ? file.readAll()
                                       : QByteArray();
        frames.append({frame.hostName(), frame.photo(), frame.channel(), content});
        break;
    }
    default:
        break;
    }
}
