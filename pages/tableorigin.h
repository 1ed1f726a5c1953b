// SPDX-License-Identifier: MIT
#pragma once

#include <QMutex>
#include <QString>

// Where a page's table came from: a device's address or a word for a file. Jobs set it, the GUI
// thread shows it. Any thread.
class TableOrigin
{
public:
    void set(const QString &origin)
    {
        const QMutexLocker lock(&mutex_);
        origin_ = origin;
    }

    QString get() const
    {
        const QMutexLocker lock(&mutex_);
        return origin_;
    }

private:
    mutable QMutex mutex_;
    QString origin_;
};
