// SPDX-License-Identifier: MIT
#include "app/shutdownsignals.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace
{

int writeEnd = -1;

void wakeEventLoop(int)
{
    const int before = errno;
    const char byte = 0;
    const ssize_t ignored = write(writeEnd, &byte, 1);
    static_cast<void>(ignored);
    errno = before;
}

} // namespace

ShutdownSignals::ShutdownSignals(QObject *parent)
    : QObject(parent)
{
    int ends[2] = {-1, -1};
    if (pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0) {
        return;
    }
    readEnd_ = ends[0];
    writeEnd = ends[1];
    auto *notifier = new QSocketNotifier(readEnd_, QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [notifier] {
        notifier->setEnabled(false);
        QCoreApplication::quit();
    });
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
        if (std::signal(number, wakeEventLoop) == SIG_IGN) {
            std::signal(number, SIG_IGN); // the caller wants it so, as nohup does
        }
    }
}

ShutdownSignals::~ShutdownSignals()
{
    // The end is under way; another request changes nothing.
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
        std::signal(number, SIG_IGN);
    }
    close(readEnd_);
    close(writeEnd);
    writeEnd = -1;
}
