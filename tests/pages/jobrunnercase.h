// SPDX-License-Identifier: MIT
#pragma once

#include "pages/jobrunner.h"
#include "tests/support/testmain.h"

#include <QMutex>
#include <QSemaphore>

#include <atomic>

// A page that writes down what happens to it, and holds its jobs up until it lets them go.
class JobPage : public QObject
{
public:
    // Bodies of jobs. Each returns its argument in capitals.
    QString quick(QString name)
    {
        enter(name);
        return leave(name);
    }
    // Waits to be let go, and returns something else when it is called off.
    QString held(QString name)
    {
        enter(name);
        while (!gate_.tryAcquire(1, 1)) {
            if (QThread::currentThread()->isInterruptionRequested()) {
                leave(name);
                return QStringLiteral("called off");
            }
        }
        return leave(name);
    }
    // Does not care whether it is called off.
    QString deaf(QString name)
    {
        enter(name);
        gate_.acquire();
        return leave(name);
    }

    void finish()
    {
        write(QStringLiteral("end ") + runner_.result());
        finishThreads_ << QThread::currentThread();
        if (inFinish_) {
            const auto action = inFinish_;
            inFinish_ = nullptr;
            action();
        }
    }
    void otherFinish() { write(QStringLiteral("other ") + runner_.result()); }

    // Asks for a job that writes down its beginning.
    JobRunner<JobPage>::Job *ask(JobRunner<JobPage>::Job::Method method, const char *name)
    {
        return runner_.run(method, QString::fromLatin1(name), &JobPage::finish,
                           note("begin ", name));
    }
    std::function<void()> note(const char *what, const char *name)
    {
        const QString line = QLatin1String(what) + QLatin1String(name);
        return [this, line] { write(line); };
    }
    void afterwards(const char *name) { runner_.afterwards(note("then ", name)); }

    void write(const QString &line)
    {
        const QMutexLocker lock(&mutex_);
        log_ << line;
    }
    // What was written since the last call, joined by commas.
    QString log()
    {
        const QMutexLocker lock(&mutex_);
        const QString lines = log_.join(QStringLiteral(", "));
        log_.clear();
        return lines;
    }
    bool isInJob() const { return running_ > 0; }

    QSemaphore gate_;
    std::function<void()> inFinish_; // once
    QVector<QThread *> finishThreads_;
    QVector<QThread *> jobThreads_; // under the mutex
    std::atomic<int> mostAtOnce_{0};
    std::atomic<int> entered_{0};

private:
    void enter(const QString &name)
    {
        mostAtOnce_ = qMax(mostAtOnce_.load(), ++running_);
        const QMutexLocker lock(&mutex_);
        jobThreads_ << QThread::currentThread();
        log_ << QStringLiteral("job ") + name;
        ++entered_;
    }
    QString leave(const QString &name)
    {
        --running_;
        return name.toUpper();
    }

    QMutex mutex_;
    QStringList log_;
    std::atomic<int> running_{0};

public:
    JobRunner<JobPage> runner_{this}; // last: its end waits for a job that uses the rest
};

// A page with a job runner; each test function has a fresh one.
class JobRunnerCase : public QObject
{
    Q_OBJECT

protected:
    static constexpr int patience = 30000;

    // Turns the event loop until whatever was posted before would have happened.
    static void turnEventLoop()
    {
        for (int turn = 0; turn < 20; ++turn) {
            QCoreApplication::processEvents();
        }
    }
    void waitUntilIdle() const
    {
        QVERIFY(QTest::qWaitFor([this] { return page_->runner_.isIdle(); }, patience));
        turnEventLoop();
    }
    void waitForJob(int number) const
    {
        QVERIFY(QTest::qWaitFor([&] { return page_->entered_ == number; }, patience));
    }

    std::unique_ptr<JobPage> page_;

private Q_SLOTS:
    void init() { page_ = std::make_unique<JobPage>(); }
    void cleanup() { page_.reset(); }
};
