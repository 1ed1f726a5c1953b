// SPDX-License-Identifier: MIT
#pragma once

#include <QThread>

#include <utility>

// One call of a member function on a thread of its own: start() it, and after finished() read the
// result. The owner must outlive the thread; destroying a running one waits for it without limit,
// so ask the job to end first (requestInterruption()). The result belongs to whoever reads it.
template <typename Owner, typename Arg, typename Result>
class ThreadRun : public QThread
{
public:
    using Method = Result (Owner::*)(Arg);

    ThreadRun(Owner *owner, Method method, Arg argument)
        : owner_(owner)
        , method_(method)
        , argument_(std::move(argument))
    {
    }

    ~ThreadRun() override { wait(); }

    // Only after the thread has finished; a default value before.
    const Result &result() const { return result_; }

protected:
    void run() override { result_ = (owner_->*method_)(argument_); }

private:
    Owner *owner_;
    Method method_;
    Arg argument_;
    Result result_{};
};
