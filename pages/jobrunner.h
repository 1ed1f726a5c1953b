// SPDX-License-Identifier: MIT
#pragma once

#include "net/threadrun.h"

#include <QPointer>

#include <deque>
#include <functional>
#include <memory>

// The jobs of a page, one at a time, in the order in which they were asked for. Each runs on a
// thread of its own; the next one begins when the one before it has ended and its finish slot has
// returned, also when that slot shows a dialog meanwhile.
//
// GUI thread. A member of its page; the destructor drops what waits, calls off what runs and waits
// for it. A page that jobs wait for (see TableHandover) must end that waiting first.
template <typename Page>
class JobRunner
{
public:
    using Job = ThreadRun<Page, QString, QString>;
    using Finish = void (Page::*)();
    using Action = std::function<void()>;

    explicit JobRunner(Page *page)
        : page_(page)
    {
    }
    ~JobRunner() { stop(); }
    JobRunner(const JobRunner &) = delete;
    JobRunner &operator=(const JobRunner &) = delete;

    // begin is called right before the job starts, to copy what the job needs from widgets. finish
    // is the page's slot for the end, or null. The job lives until its finish slot has returned.
    Job *run(typename Job::Method method, const QString &argument, Finish finish,
             const Action &begin)
    {
        auto job = std::make_unique<Job>(page_, method, argument);
        Job *const running = job.get();
        waiting_.push_back({begin, std::move(job), finish});
        startNext();
        return running;
    }

    // Does it after the jobs that were asked for so far, at once when there are none.
    void afterwards(const Action &action)
    {
        waiting_.push_back({action, nullptr, nullptr});
        startNext();
    }

    bool isIdle() const { return !busy_; }

    // Ends the running job; the others stay. The operator knows that he did it, so its result is
    // empty.
    void cancel()
    {
        if (current_.job) {
            cancelled_ = true;
            current_.job->requestInterruption();
        }
    }

    // For finish slots: what their job returned.
    QString result() const { return result_; }

    void stop()
    {
        waiting_.clear();
        if (current_.job) {
            current_.job->requestInterruption();
            current_ = Step();
            busy_ = false;
        }
    }

private:
    struct Step {
        Action begin;
        std::unique_ptr<Job> job;
        Finish finish = nullptr;
    };

    void startNext()
    {
        while (!busy_ && !waiting_.empty()) {
            busy_ = true;
            current_ = std::move(waiting_.front());
            waiting_.pop_front();
            if (current_.begin) {
                current_.begin();
            }
            if (current_.job) {
                cancelled_ = false;
                // A job that was stopped may have told its end already.
                const QPointer<QThread> job(current_.job.get());
                QObject::connect(job, &QThread::finished, page_, [this, job] {
                    if (!job.isNull()) {
                        finishCurrent();
                    }
                });
                job->start();
                return;
            }
            busy_ = false;
        }
    }

    void finishCurrent()
    {
        current_.job->wait();
        result_ = cancelled_ ? QString() : current_.job->result();
        const QPointer<Page> page(page_);
        if (current_.finish != nullptr) {
            (page_->*current_.finish)();
        }
        if (page.isNull()) {
            return; // closed behind the slot's dialog
        }
        current_ = Step();
        busy_ = false;
        startNext();
    }

    Page *page_;
    std::deque<Step> waiting_;
    Step current_;
    QString result_;
    bool busy_ = false;
    bool cancelled_ = false;
};
