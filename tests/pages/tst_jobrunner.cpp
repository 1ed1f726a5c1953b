// SPDX-License-Identifier: MIT
#include "tests/pages/jobrunnercase.h"

#include <QDialog>
#include <QTimer>

// In which order a page's jobs, their beginnings and their finish slots come.
class TestJobRunner : public JobRunnerCase
{
    Q_OBJECT

private Q_SLOTS:
    void runsOneAfterTheOther();
    void beginsInTheGuiThreadBeforeTheJob();
    void waitingJobBeginsAtItsTurn();
    void runsBeforeAnEventLoop();
    void needsNeitherFinishNorBegin();
    void givesEachFinishSlotItsResult();
    void waitsForTheFinishSlot();
    void waitsForADialogInTheFinishSlot();
    void takesJobsFromAFinishSlot();
    void takesJobsFromABegin();
    void keepsJobUntilItsFinishSlotReturned();
    void doesAtOnceWhenIdle();
    void doesAfterwardsInOrder();
    void doesAfterwardsBehindTheFinishSlot();
    void takesJobsFromAnAfterwards();
    void manyInARow();
};

void TestJobRunner::runsOneAfterTheOther()
{
    QVERIFY(page_->runner_.isIdle());
    for (const char *name : {"a", "b", "c"}) {
        page_->ask(&JobPage::quick, name);
    }
    QVERIFY(!page_->runner_.isIdle());
    waitUntilIdle();
    QCOMPARE(page_->log(), QStringLiteral("begin a, job a, end A, begin b, job b, end B, "
                                          "begin c, job c, end C"));
    QCOMPARE(page_->mostAtOnce_.load(), 1);
}

void TestJobRunner::beginsInTheGuiThreadBeforeTheJob()
{
    QVector<QThread *> beginThreads;
    QString copied;
    for (const char *name : {"a", "b"}) {
        page_->runner_.run(&JobPage::quick, QString::fromLatin1(name), &JobPage::finish, [&] {
            beginThreads << QThread::currentThread();
            copied += QString::number(page_->entered_);
        });
    }
    // The first before run() returns, so that the busy face shows at once.
    QCOMPARE(beginThreads.size(), 1);
    waitUntilIdle();
    QCOMPARE(copied, QStringLiteral("01"));
    QCOMPARE(beginThreads, QVector<QThread *>(2, thread()));
    QCOMPARE(page_->finishThreads_, QVector<QThread *>(2, thread()));
    QCOMPARE(page_->jobThreads_.size(), 2);
    QVERIFY(!page_->jobThreads_.contains(thread()));
}

void TestJobRunner::waitingJobBeginsAtItsTurn()
{
    page_->ask(&JobPage::held, "a");
    const auto *waiting = page_->ask(&JobPage::quick, "b");
    waitForJob(1);
    turnEventLoop();
    QCOMPARE(page_->log(), QStringLiteral("begin a, job a"));
    QVERIFY(!waiting->isRunning() && !waiting->isFinished());
    page_->gate_.release();
    waitUntilIdle();
    QCOMPARE(page_->log(), QStringLiteral("end A, begin b, job b, end B"));
}

void TestJobRunner::runsBeforeAnEventLoop()
{
    // The job ends before anybody looks at events.
    auto *job = page_->ask(&JobPage::quick, "a");
    QVERIFY(job->wait(patience));
    QVERIFY(!page_->runner_.isIdle());
    QCOMPARE(page_->log(), QStringLiteral("begin a, job a"));
    waitUntilIdle();
    QCOMPARE(page_->log(), QStringLiteral("end A"));
}

void TestJobRunner::needsNeitherFinishNorBegin()
{
    page_->runner_.run(&JobPage::quick, QStringLiteral("a"), nullptr, nullptr);
    page_->ask(&JobPage::quick, "b");
    waitUntilIdle();
    QCOMPARE(page_->log(), QStringLiteral("job a, begin b, job b, end B"));
}

void TestJobRunner::givesEachFinishSlotItsResult()
{
    page_->ask(&JobPage::quick, "a");
    page_->runner_.run(&JobPage::quick, QStringLiteral("b"), &JobPage::otherFinish, nullptr);
    page_->ask(&JobPage::quick, "");
    waitUntilIdle();
    QCOMPARE(page_->log(),
             QStringLiteral("begin a, job a, end A, job b, other B, begin , job , end "));
}

void TestJobRunner::waitsForTheFinishSlot()
{
    page_->inFinish_ = [this] {
        turnEventLoop();
        page_->write(QStringLiteral("returns"));
        QVERIFY(!page_->runner_.isIdle());
    };
    page_->ask(&JobPage::quick, "a");
    page_->ask(&JobPage::quick, "b");
    waitUntilIdle();
    QCOMPARE(page_->log(), QStringLiteral("begin a, job a, end A, returns, begin b, job b, end B"));
}

void TestJobRunner::waitsForADialogInTheFinishSlot()
{
    page_->inFinish_ = [this] {
        QDialog dialog;
        QTimer::singleShot(0, &dialog, [this, &dialog] {
            // Started by a signal from outside, behind the dialog.
            page_->ask(&JobPage::quick, "c");
            page_->afterwards("d");
            turnEventLoop();
            QVERIFY(!page_->runner_.isIdle());
            QCOMPARE(page_->runner_.result(), QStringLiteral("A"));
            page_->write(QStringLiteral("closed"));
            dialog.accept();
        });
        dialog.exec();
    };
    page_->ask(&JobPage::quick, "a");
    page_->ask(&JobPage::quick, "b");
    waitUntilIdle();
    QCOMPARE(page_->log(), QStringLiteral("begin a, job a, end A, closed, begin b, job b, end B, "
                                          "begin c, job c, end C, then d"));
    QCOMPARE(page_->mostAtOnce_.load(), 1);
}

void TestJobRunner::takesJobsFromAFinishSlot()
{
    page_->inFinish_ = [this] { page_->ask(&JobPage::quick, "c"); };
    page_->ask(&JobPage::quick, "a");
    page_->ask(&JobPage::quick, "b");
    waitUntilIdle();
    QCOMPARE(page_->log(), QStringLiteral("begin a, job a, end A, begin b, job b, end B, "
                                          "begin c, job c, end C"));
}

void TestJobRunner::takesJobsFromABegin()
{
    page_->runner_.run(&JobPage::quick, QStringLiteral("a"), &JobPage::finish,
                       [this] { page_->ask(&JobPage::quick, "b"); });
    waitUntilIdle();
    QCOMPARE(page_->log(), QStringLiteral("job a, end A, begin b, job b, end B"));
    QCOMPARE(page_->mostAtOnce_.load(), 1);
}

void TestJobRunner::keepsJobUntilItsFinishSlotReturned()
{
    const QPointer<QThread> job(page_->ask(&JobPage::held, "a"));
    bool alive = false;
    page_->inFinish_ = [&] {
        turnEventLoop();
        alive = !job.isNull() && job->isFinished();
    };
    page_->gate_.release();
    waitUntilIdle();
    QVERIFY(alive);
    QVERIFY(job.isNull());
}

void TestJobRunner::doesAtOnceWhenIdle()
{
    page_->afterwards("a");
    QCOMPARE(page_->log(), QStringLiteral("then a"));
    QVERIFY(page_->runner_.isIdle());
    page_->ask(&JobPage::quick, "b");
    waitUntilIdle();
    page_->afterwards("c");
    QCOMPARE(page_->log(), QStringLiteral("begin b, job b, end B, then c"));
}

void TestJobRunner::doesAfterwardsInOrder()
{
    page_->ask(&JobPage::held, "a");
    page_->afterwards("b");
    page_->ask(&JobPage::quick, "c");
    page_->afterwards("d");
    page_->afterwards("e");
    waitForJob(1);
    turnEventLoop();
    QCOMPARE(page_->log(), QStringLiteral("begin a, job a"));
    page_->gate_.release();
    waitUntilIdle();
    QCOMPARE(page_->log(), QStringLiteral("end A, then b, begin c, job c, end C, then d, then e"));
}

void TestJobRunner::doesAfterwardsBehindTheFinishSlot()
{
    page_->inFinish_ = [this] {
        page_->afterwards("b");
        page_->write(QStringLiteral("returns"));
    };
    page_->ask(&JobPage::quick, "a");
    waitUntilIdle();
    QCOMPARE(page_->log(), QStringLiteral("begin a, job a, end A, returns, then b"));
}

void TestJobRunner::takesJobsFromAnAfterwards()
{
    page_->runner_.afterwards([this] {
        page_->ask(&JobPage::quick, "b");
        page_->afterwards("c");
        page_->write(QStringLiteral("asked"));
    });
    waitUntilIdle();
    QCOMPARE(page_->log(), QStringLiteral("asked, begin b, job b, end B, then c"));
}

void TestJobRunner::manyInARow()
{
    constexpr int jobs = 100;
    QString expected;
    for (int n = 0; n < jobs; ++n) {
        page_->ask(&JobPage::quick, "a");
        page_->afterwards("b");
        expected += QStringLiteral("begin a, job a, end A, then b, ");
    }
    waitUntilIdle();
    QCOMPARE(page_->log() + QStringLiteral(", "), expected);
    QCOMPARE(page_->mostAtOnce_.load(), 1);
    QCOMPARE(page_->jobThreads_.size(), jobs);
}

STALLO_TEST_MAIN(TestJobRunner)
#include "tst_jobrunner.moc"
