// SPDX-License-Identifier: MIT
#include "pages/photodecoder.h"

#include <QMutexLocker>

#include <algorithm>

PhotoDecoder::~PhotoDecoder()
{
    {
        const QMutexLocker lock(&mutex_);
        stopping_ = true;
        calledOff_ = true;
        changed_.wakeAll();
    }
    wait();
}

std::shared_ptr<PhotoDecoder> PhotoDecoder::shared()
{
    static std::weak_ptr<PhotoDecoder> instance;
    std::shared_ptr<PhotoDecoder> decoder = instance.lock();
    if (!decoder) {
        decoder = std::make_shared<PhotoDecoder>();
        instance = decoder;
    }
    return decoder;
}

void PhotoDecoder::request(View view, Request request, Receiver receiver)
{
    Job dropped; // what it keeps is let go without the lock
    const QMutexLocker lock(&mutex_);
    dropped = takeWaiting(view);
    if (!request.followsOlder) {
        callOff(view);
    }
    waiting_.push_back({view, ++lastNumber_, std::move(request), std::move(receiver)});
    changed_.wakeAll();
    if (!isRunning()) {
        start();
    }
}

void PhotoDecoder::drop(View view)
{
    Job dropped;
    const QMutexLocker lock(&mutex_);
    dropped = takeWaiting(view);
    callOff(view);
    served_.erase(view);
}

PhotoDecoder::Job PhotoDecoder::takeWaiting(View view)
{
    const auto found = std::find_if(waiting_.begin(), waiting_.end(),
                                    [view](const Job &job) { return job.view == view; });
    if (found == waiting_.end()) {
        return Job();
    }
    Job job = std::move(*found);
    waiting_.erase(found);
    return job;
}

void PhotoDecoder::callOff(View view)
{
    const auto isOfView = [view](const Result &result) { return result.job.view == view; };
    results_.erase(std::remove_if(results_.begin(), results_.end(), isOfView), results_.end());
    if (running_ == view) {
        calledOff_ = true;
    }
}

std::deque<PhotoDecoder::Job>::iterator PhotoDecoder::next()
{
    const auto lastServed = [this](const Job &job) {
        const auto found = served_.find(job.view);
        return found == served_.end() ? 0 : found->second;
    };
    return std::min_element(waiting_.begin(), waiting_.end(),
                            [&](const Job &one, const Job &other) {
                                const quint64 first = lastServed(one);
                                const quint64 second = lastServed(other);
                                return first != second ? first < second : one.number > other.number;
                            });
}

PhotoDecoder::Job PhotoDecoder::takeNext()
{
    QMutexLocker lock(&mutex_);
    running_ = nullptr;
    while (waiting_.empty() && !stopping_) {
        changed_.wait(&mutex_);
    }
    if (stopping_) {
        return Job();
    }
    const auto chosen = next();
    Job job = std::move(*chosen);
    waiting_.erase(chosen);
    running_ = job.view;
    calledOff_ = false;
    served_[job.view] = ++lastNumber_;
    return job;
}

void PhotoDecoder::run()
{
    const DecodedPhoto::CalledOff calledOff = [this] { return calledOff_.load(); };
    for (Job job = takeNext(); job.view != nullptr; job = takeNext()) {
        Request &request = job.request;
        if (!request.fileName.isEmpty()) {
            request.bytes = DecodedPhoto::content(request.fileName);
        }
        request.untilRead.reset();
        Result result{std::move(job), {}};
        result.photo =
            DecodedPhoto::of(result.job.request.bytes, result.job.request.place, calledOff);
        const QMutexLocker lock(&mutex_);
        if (!calledOff_) {
            results_.push_back(std::move(result));
            QMetaObject::invokeMethod(this, &PhotoDecoder::deliver, Qt::QueuedConnection);
        }
    }
}

void PhotoDecoder::deliver()
{
    for (;;) {
        Result result;
        {
            const QMutexLocker lock(&mutex_);
            if (results_.empty()) {
                return;
            }
            result = std::move(results_.front());
            results_.pop_front();
        }
        result.job.receiver(result.photo);
    }
}
