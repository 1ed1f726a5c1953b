// SPDX-License-Identifier: MIT
#include "tests/soak/driver/guiping.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEvent>

#include <algorithm>
#include <chrono>
#include <fcntl.h>
#include <unistd.h>

namespace
{

constexpr auto pingEvent = static_cast<QEvent::Type>(QEvent::User + 900);
constexpr int reportMsec = 1000;

struct Longest {
    qint64 gross = 0;
    qint64 net = 0;
};

// For how long the main thread has been ready to run and had no processor, since its start; 0 where
// the system does not tell.
qint64 queuedMsec()
{
    static const int statistics = open("/proc/self/schedstat", O_RDONLY | O_CLOEXEC);
    char bytes[128];
    const ssize_t got = pread(statistics, bytes, sizeof bytes, 0);
    if (got <= 0) {
        return 0;
    }
    constexpr qint64 nsecPerMsec = 1000000;
    return QByteArray(bytes, static_cast<int>(got)).split(' ').value(1).toLongLong() / nsecPerMsec;
}

void sleepMsec(int msec)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(msec));
}

} // namespace

GuiPing::GuiPing(QObject *parent)
    : QObject(parent)
    , thread_([this] { run(); })
{
}

GuiPing::~GuiPing()
{
    stop_ = true;
    thread_.join();
}

bool GuiPing::event(QEvent *event)
{
    if (event->type() == pingEvent) {
        answered_ = true;
        return true;
    }
    return QObject::event(event);
}

void GuiPing::run()
{
    Longest longest;
    qint64 queuedBefore = 0;
    QElapsedTimer sinceReport;
    QElapsedTimer wait;
    sinceReport.start();
    while (!stop_) {
        if (answered_) {
            sleepMsec(10);
            answered_ = false;
            queuedBefore = queuedMsec();
            wait.start();
            QCoreApplication::postEvent(this, new QEvent(pingEvent));
        }
        sleepMsec(1);
        const qint64 waited = wait.elapsed();
        longest.gross = std::max(longest.gross, waited);
        longest.net = std::max(longest.net, waited - (queuedMsec() - queuedBefore));
        if (sinceReport.elapsed() >= reportMsec) {
            // One write, so that another thread's lines do not get into it.
            const QByteArray line = "ping " + QByteArray::number(longest.gross) + ' ' +
                                    QByteArray::number(longest.net) + '\n';
            [[maybe_unused]] const ssize_t written =
                write(STDOUT_FILENO, line.constData(), static_cast<size_t>(line.size()));
            sinceReport.start();
            longest = Longest();
        }
    }
}
