// SPDX-License-Identifier: MIT
#pragma once

#include <QMutex>
#include <QString>
#include <QWaitCondition>

#include <functional>

class QThread;

// Binding a page's table to another file on behalf of a worker. Views crash over a table that is
// bound anew in another thread, so the worker asks and waits until the GUI thread has done it.
//
// The worker holds no other lock meanwhile, and the GUI thread takes the one here for moments only,
// so neither can hold the other up. After close() nobody waits any more. Made in the GUI thread; a
// member of the page that outlives every job of it.
class TableHandover
{
public:
    using Bind = std::function<void(const QString &)>;

    // bind binds the table at once. ask has the GUI thread do it later; it may be called in any
    // thread.
    TableHandover(Bind bind, Bind ask);

    // Returns when the table is bound; false when it was closed before. Any thread.
    bool rebind(const QString &name);

    // The GUI thread has bound the table to what this name stands for.
    void done(const QString &name);
    // Ends all waiting for good.
    void close();

private:
    Bind bind_;
    Bind ask_;
    QThread *guiThread_;
    QMutex mutex_;
    QWaitCondition changed_;
    QString asked_;
    bool done_ = false;
    bool closing_ = false;
};
