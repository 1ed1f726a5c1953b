// SPDX-License-Identifier: MIT
#include "tests/soak/driver/guiping.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEvent>

#include <algorithm>
#include <chrono>
#include <unistd.h>

namespace
{

constexpr auto pingEvent = static_cast<QEvent::Type>(QEvent::User + 900);
constexpr int reportMsec = 1000;

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
    qint64 longest = 0;
    qint64 latest = 0;
    QElapsedTimer sinceReport;
    QElapsedTimer wait;
    QElapsedTimer sleep;
    sinceReport.start();
    while (!stop_) {
        if (answered_) {
            sleepMsec(10);
            answered_ = false;
            wait.start();
            QCoreApplication::postEvent(this, new QEvent(pingEvent));
        }
        sleep.start();
        sleepMsec(1);
        latest = std::max(latest, sleep.elapsed() - 1);
        longest = std::max(longest, wait.elapsed());
        if (sinceReport.elapsed() >= reportMsec) {
            // One write, so that another thread's lines do not get into it.
            const QByteArray line =
                "ping " + QByteArray::number(longest) + ' ' + QByteArray::number(latest) + '\n';
            [[maybe_unused]] const ssize_t written =
                write(STDOUT_FILENO, line.constData(), static_cast<size_t>(line.size()));
            sinceReport.start();
            longest = 0;
            latest = 0;
        }
    }
}
