// SPDX-License-Identifier: MIT
#include "pages/tablehandover.h"

#include "tests/pages/jobthread.h"
#include "tests/support/testmain.h"

#include <QElapsedTimer>

#include <atomic>
#include <functional>

namespace
{

constexpr int patience = 30000;

// In which a worker that was woken by mistake would have ended.
constexpr int wakeMsec = 50;

// A table that is bound as a page's is: at once, or by a queued signal.
class Table : public QObject
{
    Q_OBJECT

public:
    Table()
        : handover_([this](const QString &name) { bind(name); },
                    [this](const QString &name) {
                        ++asked_;
                        Q_EMIT bindLater(name);
                    })
    {
        connect(this, &Table::bindLater, this, &Table::bind);
    }

    void bind(const QString &name)
    {
        bound_ << name;
        inGuiThread_ = inGuiThread_ && QThread::currentThread() == thread();
        handover_.done(name);
    }

    QStringList bound_;
    bool inGuiThread_ = true;
    std::atomic<int> asked_{0};
    TableHandover handover_;

Q_SIGNALS:
    void bindLater(const QString &name);
};

} // namespace

class TestTableHandover : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { table_ = std::make_unique<Table>(); }
    void cleanup()
    {
        if (worker_) { // also after a failure
            handover().close();
            QVERIFY(worker_->wait(patience));
        }
        worker_.reset();
        table_.reset();
    }

    void bindsAtOnceInTheGuiThread();
    void workerWaitsUntilBound();
    void onlyTheNameWakes();
    void earlierBindingDoesNotCount();
    void bindsAnEmptyName();
    void servesOneWorkerAfterTheOther();
    void bindsInTheGuiThreadWhileAWorkerWaits();
    void losesNoWakeUp_data();
    void losesNoWakeUp();
    void closeEndsTheWait();
    void closedForGood();
    void closeAtAnyMoment();

private:
    TableHandover &handover() { return table_->handover_; }
    // Asks in a thread of its own; -1 until it returns.
    void rebindInWorker(const QString &name)
    {
        const int before = table_->asked_;
        result_ = -1;
        worker_ = std::make_unique<JobThread>([this, name] { result_ = handover().rebind(name); });
        worker_->start();
        // Without turning the event loop.
        while (table_->asked_ == before) {
            QThread::yieldCurrentThread();
        }
    }
    bool stillWaits() { return !worker_->wait(wakeMsec) && result_ == -1; }
    // Turns the event loop without a pause.
    template <typename Condition>
    static bool turnUntil(const Condition &reached)
    {
        QElapsedTimer clock;
        clock.start();
        while (!reached() && !clock.hasExpired(patience)) {
            QCoreApplication::processEvents();
        }
        return reached();
    }
    void waitForWorker()
    {
        QVERIFY(turnUntil([this] { return worker_->isFinished(); }));
    }

    std::unique_ptr<Table> table_;
    std::unique_ptr<JobThread> worker_;
    std::atomic<int> result_{-1};
    std::atomic<int> rounds_{0}; // that the worker has done
};

void TestTableHandover::bindsAtOnceInTheGuiThread()
{
    QVERIFY(handover().rebind(QStringLiteral("a")));
    QCOMPARE(table_->bound_, QStringList(QStringLiteral("a")));
    QVERIFY(handover().rebind(QString()));
    QCOMPARE(table_->bound_, (QStringList{QStringLiteral("a"), QString()}));
    QCOMPARE(table_->asked_.load(), 0);
}

void TestTableHandover::workerWaitsUntilBound()
{
    rebindInWorker(QStringLiteral("a"));
    QVERIFY(stillWaits());
    QCOMPARE(table_->bound_, QStringList());
    waitForWorker();
    QCOMPARE(result_.load(), 1);
    QCOMPARE(table_->bound_, QStringList(QStringLiteral("a")));
    QVERIFY(table_->inGuiThread_);
    QCOMPARE(table_->asked_.load(), 1);
}

void TestTableHandover::onlyTheNameWakes()
{
    rebindInWorker(QStringLiteral("a"));
    for (const char *other : {"", "A", "a ", "b"}) {
        handover().done(QString::fromLatin1(other));
        QVERIFY2(stillWaits(), other);
    }
    handover().done(QStringLiteral("a"));
    QVERIFY(worker_->wait(patience));
    QCOMPARE(result_.load(), 1);
}

void TestTableHandover::earlierBindingDoesNotCount()
{
    QVERIFY(handover().rebind(QStringLiteral("a")));
    handover().done(QStringLiteral("a"));
    for (int round = 0; round < 2; ++round) {
        rebindInWorker(QStringLiteral("a"));
        QVERIFY(stillWaits());
        waitForWorker();
        QCOMPARE(result_.load(), 1);
    }
    QCOMPARE(table_->bound_.size(), 3);
}

void TestTableHandover::bindsAnEmptyName()
{
    handover().done(QString());
    rebindInWorker(QString());
    QVERIFY(stillWaits());
    waitForWorker();
    QCOMPARE(result_.load(), 1);
    QCOMPARE(table_->bound_, QStringList(QString()));
}

void TestTableHandover::servesOneWorkerAfterTheOther()
{
    QStringList expected;
    for (int round = 0; round < 5; ++round) {
        expected << QString::number(round);
        rebindInWorker(expected.last());
        waitForWorker();
        QCOMPARE(result_.load(), 1);
        QCOMPARE(table_->bound_, expected);
    }
}

void TestTableHandover::bindsInTheGuiThreadWhileAWorkerWaits()
{
    // The operator empties the table while a job waits for it: neither holds the other up.
    rebindInWorker(QStringLiteral("a"));
    QVERIFY(handover().rebind(QStringLiteral("b")));
    QVERIFY(stillWaits());
    waitForWorker();
    QCOMPARE(result_.load(), 1);
    QCOMPARE(table_->bound_, (QStringList{QStringLiteral("b"), QStringLiteral("a")}));
}

void TestTableHandover::losesNoWakeUp_data()
{
    QTest::addColumn<int>("names");
    QTest::newRow("one name") << 1;
    QTest::newRow("two names in turn") << 2;
    QTest::newRow("each its own") << 10000;
}

void TestTableHandover::losesNoWakeUp()
{
    QFETCH(int, names);
    constexpr int rounds = 10000;
    rounds_ = 0;
    worker_ = std::make_unique<JobThread>([this, names] {
        for (; rounds_ < rounds; ++rounds_) {
            const QString name = QString::number(rounds_ % names);
            // The table stands still between two requests, so that a worker may look at it.
            if (!handover().rebind(name) || table_->bound_.size() != rounds_ + 1 ||
                table_->bound_.last() != name) {
                return;
            }
        }
    });
    worker_->start();
    waitForWorker(); // the GUI thread binds between its other events
    QCOMPARE(rounds_.load(), rounds);
    QVERIFY(worker_->wait(patience));
    QCOMPARE(table_->asked_.load(), rounds);
    QVERIFY(table_->inGuiThread_);
}

void TestTableHandover::closeEndsTheWait()
{
    rebindInWorker(QStringLiteral("a"));
    QVERIFY(stillWaits());
    handover().close();
    QVERIFY(worker_->wait(patience));
    QCOMPARE(result_.load(), 0);
    QCOMPARE(table_->bound_, QStringList());
    // What it had asked for comes too late and does no harm.
    QCoreApplication::processEvents();
    QCOMPARE(table_->bound_, QStringList(QStringLiteral("a")));
}

void TestTableHandover::closedForGood()
{
    handover().close();
    handover().close();
    for (int round = 0; round < 3; ++round) {
        worker_ = std::make_unique<JobThread>(
            [this] { result_ = handover().rebind(QStringLiteral("a")); });
        worker_->start();
        QVERIFY(worker_->wait(patience));
        QCOMPARE(result_.load(), 0);
        handover().done(QStringLiteral("a"));
    }
    QCOMPARE(table_->asked_.load(), 0);
    // The page itself still empties its table at its end.
    QVERIFY(handover().rebind(QString()));
    QCOMPARE(table_->bound_, QStringList(QString()));
}

void TestTableHandover::closeAtAnyMoment()
{
    for (int round = 0; round < 500; ++round) {
        table_ = std::make_unique<Table>();
        rounds_ = 0;
        result_ = -1;
        worker_ = std::make_unique<JobThread>([this] {
            while (handover().rebind(QStringLiteral("a"))) {
                ++rounds_;
            }
            result_ = handover().rebind(QStringLiteral("b"));
        });
        worker_->start();
        const int wanted = round % 5;
        QVERIFY(turnUntil([&] { return rounds_ >= wanted; }));
        handover().close();
        QVERIFY(worker_->wait(patience));
        QCOMPARE(result_.load(), 0);
        worker_.reset();
    }
}

STALLO_TEST_MAIN(TestTableHandover)
#include "tst_tablehandover.moc"
