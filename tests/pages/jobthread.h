// SPDX-License-Identifier: MIT
#pragma once

#include <QThread>

#include <functional>
#include <utility>

// A worker that runs one job.
class JobThread : public QThread
{
public:
    explicit JobThread(std::function<void()> job)
        : job_(std::move(job))
    {
    }

protected:
    void run() override { job_(); }

private:
    std::function<void()> job_;
};

// One that is asked to end before it runs the job.
class InterruptedThread : public JobThread
{
public:
    using JobThread::JobThread;

protected:
    void run() override
    {
        requestInterruption();
        JobThread::run();
    }
};
