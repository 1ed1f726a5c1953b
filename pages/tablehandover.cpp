// SPDX-License-Identifier: MIT
#include "pages/tablehandover.h"

#include <QThread>

#include <utility>

TableHandover::TableHandover(Bind bind, Bind ask)
    : bind_(std::move(bind))
    , ask_(std::move(ask))
    , guiThread_(QThread::currentThread())
{
}

bool TableHandover::rebind(const QString &name)
{
    if (QThread::currentThread() == guiThread_) {
        bind_(name);
        return true;
    }
    QMutexLocker lock(&mutex_);
    if (closing_) {
        return false;
    }
    asked_ = name;
    done_ = false;
    ask_(name);
    while (!done_ && !closing_) {
        changed_.wait(&mutex_);
    }
    return done_;
}

void TableHandover::done(const QString &name)
{
    // Under the lock: a wake-up between the asking and the waiting would be lost.
    const QMutexLocker lock(&mutex_);
    if (name == asked_) {
        done_ = true;
    }
    changed_.wakeAll();
}

void TableHandover::close()
{
    const QMutexLocker lock(&mutex_);
    closing_ = true;
    changed_.wakeAll();
}
