// SPDX-License-Identifier: MIT
#include "tests/pages/jobrunnercase.h"
#include "tests/pages/jobthread.h"

#include <QDialog>
#include <QTimer>

namespace
{

// Deletes the page from inside its finish slot.
using Ending = void (*)(JobPage *);

void deleteAtOnce(JobPage *page)
{
    delete page;
}

// The operator closes the window while an error dialog of the page is open.
void deleteBehindDialog(JobPage *page)
{
    QDialog dialog;
    QTimer::singleShot(0, &dialog, [&dialog, page] {
        delete page;
        dialog.reject();
    });
    dialog.exec();
}

} // namespace

Q_DECLARE_METATYPE(Ending)

// How a page's jobs are called off.
class TestJobRunnerEnd : public JobRunnerCase
{
    Q_OBJECT

private Q_SLOTS:
    void cancelEndsTheJobWithoutAResult();
    void cancelRightAfterTheStart();
    void cancelAfterTheJobsEnd();
    void cancelEndsOnlyTheRunningJob();
    void cancelInTheFinishSlotIsForgotten();
    void cancelWhenIdleIsForgotten();
    void stopDropsAndEnds();
    void stopLeavesNothingBehind();
    void stopWaitsForAJobThatDoesNotListen();
    void stopWhenIdle();
    void endsWithItsPage();
    void pageEndsInItsFinishSlot_data();
    void pageEndsInItsFinishSlot();
};

void TestJobRunnerEnd::cancelEndsTheJobWithoutAResult()
{
    page_->ask(&JobPage::held, "a");
    waitForJob(1);
    page_->runner_.cancel();
    QVERIFY(!page_->runner_.isIdle()); // until the finish slot returned
    page_->runner_.cancel();           // impatient
    waitUntilIdle();
    QCOMPARE(page_->log(), QStringLiteral("begin a, job a, end "));
    page_->ask(&JobPage::quick, "b");
    waitUntilIdle();
    QCOMPARE(page_->log(), QStringLiteral("begin b, job b, end B"));
}

void TestJobRunnerEnd::cancelRightAfterTheStart()
{
    for (int round = 0; round < 50; ++round) {
        page_->ask(&JobPage::held, "a");
        page_->runner_.cancel();
        waitUntilIdle();
        QCOMPARE(page_->log(), QStringLiteral("begin a, job a, end "));
    }
}

void TestJobRunnerEnd::cancelAfterTheJobsEnd()
{
    auto *job = page_->ask(&JobPage::quick, "a");
    QVERIFY(job->wait(patience));
    page_->runner_.cancel();
    waitUntilIdle();
    QCOMPARE(page_->log(), QStringLiteral("begin a, job a, end "));
}

void TestJobRunnerEnd::cancelEndsOnlyTheRunningJob()
{
    page_->ask(&JobPage::held, "a");
    page_->ask(&JobPage::held, "b");
    page_->afterwards("c");
    waitForJob(1);
    page_->runner_.cancel();
    waitForJob(2);
    turnEventLoop();
    QVERIFY(page_->isInJob());
    QCOMPARE(page_->log(), QStringLiteral("begin a, job a, end , begin b, job b"));
    page_->gate_.release();
    waitUntilIdle();
    QCOMPARE(page_->log(), QStringLiteral("end B, then c"));
}

void TestJobRunnerEnd::cancelInTheFinishSlotIsForgotten()
{
    page_->inFinish_ = [this] {
        page_->runner_.cancel();
        QCOMPARE(page_->runner_.result(), QStringLiteral("A"));
    };
    page_->ask(&JobPage::quick, "a");
    page_->ask(&JobPage::held, "b");
    page_->gate_.release();
    waitUntilIdle();
    QCOMPARE(page_->log(), QStringLiteral("begin a, job a, end A, begin b, job b, end B"));
}

void TestJobRunnerEnd::cancelWhenIdleIsForgotten()
{
    page_->runner_.cancel();
    page_->gate_.release();
    page_->ask(&JobPage::held, "a");
    waitUntilIdle();
    page_->runner_.cancel();
    page_->gate_.release();
    page_->ask(&JobPage::held, "b");
    waitUntilIdle();
    QCOMPARE(page_->log(), QStringLiteral("begin a, job a, end A, begin b, job b, end B"));
}

void TestJobRunnerEnd::stopDropsAndEnds()
{
    const QPointer<QThread> running(page_->ask(&JobPage::held, "a"));
    const QPointer<QThread> waiting(page_->ask(&JobPage::quick, "b"));
    page_->afterwards("c");
    waitForJob(1);
    page_->runner_.stop();
    QVERIFY(!page_->isInJob());
    QVERIFY(running.isNull() && waiting.isNull());
    QCOMPARE(page_->log(), QStringLiteral("begin a, job a"));
    page_->runner_.stop();
    QCOMPARE(page_->log(), QString());
}

void TestJobRunnerEnd::stopLeavesNothingBehind()
{
    page_->ask(&JobPage::held, "a");
    waitForJob(1);
    page_->runner_.stop();
    QVERIFY(page_->runner_.isIdle());
    turnEventLoop();
    page_->ask(&JobPage::quick, "b");
    waitUntilIdle();
    QCOMPARE(page_->log(), QStringLiteral("begin a, job a, begin b, job b, end B"));
}

void TestJobRunnerEnd::stopWaitsForAJobThatDoesNotListen()
{
    page_->ask(&JobPage::deaf, "a");
    waitForJob(1);
    // Let go from outside, some time after the stop has begun to wait.
    JobThread helper([this] {
        while (!page_->jobThreads_.first()->isInterruptionRequested()) {
            QThread::yieldCurrentThread();
        }
        page_->gate_.release();
    });
    helper.start();
    page_->runner_.stop();
    QVERIFY(!page_->isInJob());
    helper.wait();
}

void TestJobRunnerEnd::stopWhenIdle()
{
    page_->runner_.stop();
    QVERIFY(page_->runner_.isIdle());
    page_->ask(&JobPage::quick, "a");
    waitUntilIdle();
    page_->runner_.stop();
    page_->afterwards("b");
    QCOMPARE(page_->log(), QStringLiteral("begin a, job a, end A, then b"));
}

void TestJobRunnerEnd::endsWithItsPage()
{
    for (const bool inJob : {false, true}) {
        page_ = std::make_unique<JobPage>();
        const QPointer<QThread> running(page_->ask(&JobPage::held, "a"));
        const QPointer<QThread> waiting(page_->ask(&JobPage::quick, "b"));
        bool done = false;
        page_->runner_.afterwards([&done] { done = true; });
        if (inJob) {
            waitForJob(1);
        }
        page_.reset();
        QVERIFY(running.isNull() && waiting.isNull());
        turnEventLoop();
        QVERIFY(!done);
    }
}

void TestJobRunnerEnd::pageEndsInItsFinishSlot_data()
{
    QTest::addColumn<Ending>("ending");
    QTest::newRow("at once") << &deleteAtOnce;
    QTest::newRow("behind a dialog") << &deleteBehindDialog;
}

void TestJobRunnerEnd::pageEndsInItsFinishSlot()
{
    QFETCH(Ending, ending);
    const QPointer<JobPage> page(page_.release());
    bool more = false;
    page->inFinish_ = [&] { ending(page); };
    const QPointer<QThread> running(page->ask(&JobPage::quick, "a"));
    const QPointer<QThread> waiting(page->runner_.run(&JobPage::quick, QStringLiteral("b"),
                                                      &JobPage::finish, [&more] { more = true; }));
    page->runner_.afterwards([&more] { more = true; });
    QTRY_VERIFY_WITH_TIMEOUT(page.isNull(), patience);
    turnEventLoop();
    QVERIFY(running.isNull() && waiting.isNull());
    QVERIFY(!more);
}

STALLO_TEST_MAIN(TestJobRunnerEnd)
#include "tst_jobrunnerend.moc"
