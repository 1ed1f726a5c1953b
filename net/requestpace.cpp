// SPDX-License-Identifier: MIT
#include "net/requestpace.h"

#include <QElapsedTimer>
#include <QHash>
#include <QMutex>
#include <QMutexLocker>
#include <QPair>

namespace
{

constexpr int interval = 1000;

// Of the services that hung up last: when they were asked.
struct Services {
    QMutex mutex;
    QHash<QPair<QString, quint16>, QElapsedTimer> asked;
};

Services &services()
{
    static Services instance;
    return instance;
}

} // namespace

bool RequestPace::mayAsk(const QString &host, quint16 port)
{
    Services &all = services();
    const QMutexLocker lock(&all.mutex);
    const auto service = all.asked.find({host, port});
    if (service == all.asked.end()) {
        return true;
    }
    if (!service->hasExpired(interval)) {
        return false;
    }
    service->start();
    return true;
}

void RequestPace::hungUp(const QString &host, quint16 port)
{
    Services &all = services();
    const QMutexLocker lock(&all.mutex);
    QElapsedTimer &asked = all.asked[{host, port}];
    if (!asked.isValid()) {
        asked.start();
    }
}

void RequestPace::answered(const QString &host, quint16 port)
{
    Services &all = services();
    const QMutexLocker lock(&all.mutex);
    all.asked.remove({host, port});
}
