// SPDX-License-Identifier: MIT
#pragma once

#include "pages/decodedphoto.h"

#include <QMutex>
#include <QThread>
#include <QWaitCondition>

#include <atomic>
#include <deque>
#include <functional>
#include <map>
#include <memory>

// Reads and decodes photos for the views of the process, one at a time, in a thread of its own, so
// that no picture, however costly, keeps the window waiting.
//
// Of each view only the newest request waits; an older one is dropped, and what it kept is let go.
// Views are served in turns: first the one that was served longest ago, so that costly pictures of
// one device do not keep those of the other away; among those never served, the newest request.
//
// Made, asked and destroyed in the GUI thread, which the receivers are called in. The last view
// that shares it destroys it; that ends a running decode and waits for it.
class PhotoDecoder : public QThread
{
    Q_OBJECT

public:
    using View = const void *;
    using Receiver = std::function<void(const DecodedPhoto &)>;

    struct Request {
        // A file, or what was read from one before.
        QString fileName;
        QByteArray bytes;
        DecodedPhoto::Place place;
        // Let go as soon as the file has been read, or will not be.
        std::shared_ptr<const void> untilRead;
        // Whether an older request of the view that is being decoded ends with its result all the
        // same. Pictures that follow one another faster than they can be decoded would otherwise
        // never be seen.
        bool followsOlder = false;
    };

    PhotoDecoder() = default;
    ~PhotoDecoder() override;

    // The one that all views share as long as any of them holds it.
    static std::shared_ptr<PhotoDecoder> shared();

    // Each request is followed by one call of its receiver, unless a newer one or drop() comes
    // before.
    void request(View view, Request request, Receiver receiver);
    // Forgets the requests of the view: its receivers are not called any more.
    void drop(View view);

protected:
    void run() override;

private:
    struct Job {
        View view = nullptr;
        quint64 number = 0;
        Request request;
        Receiver receiver;
    };
    struct Result {
        Job job;
        DecodedPhoto photo;
    };

    // With the lock held. The view's request that waits, if any, taken out; and the end of what it
    // has begun.
    Job takeWaiting(View view);
    void callOff(View view);
    Job takeNext();
    std::deque<Job>::iterator next();
    void deliver();

    QMutex mutex_;
    QWaitCondition changed_;
    std::deque<Job> waiting_;        // at most one of a view
    std::map<View, quint64> served_; // when each view was served last, in numbers of jobs
    std::deque<Result> results_;
    View running_ = nullptr;
    bool stopping_ = false;
    quint64 lastNumber_ = 0;
    // Set while the running job's result is not wanted any more.
    std::atomic_bool calledOff_{false};
};
