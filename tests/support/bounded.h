// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QThread>

#include <functional>
#include <memory>

// Work that must come to an end: what a pipe or a device would hold up for ever ends the test
// program.
namespace Bounded
{

constexpr int msec = 30000;

// What the work returned.
inline QString text(const std::function<QString()> &work)
{
    QString result;
    std::unique_ptr<QThread> thread(QThread::create([&] { result = work(); }));
    thread->start();
    if (!thread->wait(msec)) {
        qFatal("it goes on and on");
    }
    return result;
}

} // namespace Bounded
