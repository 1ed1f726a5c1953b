// SPDX-License-Identifier: MIT
#include "tests/pages/archivefilescase.h"

#include "net/threadrun.h"
#include "pages/archiveintervaldialog.h"
#include "tests/support/filelimit.h"

#include <QElapsedTimer>
#include <QRadioButton>

namespace
{

using Thread = ThreadRun<ArchiveWidget, QString, QString>;

// What the operator may wait for.
constexpr qint64 cancelMsec = 200;
constexpr qint64 endMsec = 2000;
// More than any machine copies at a glance.
constexpr int manyRows = 1000000;

} // namespace

// The jobs of the page that work on files: called off, cut short by the page's end, and those that
// no button starts.
class TestArchiveWidgetJobs : public ArchiveFilesCase
{
    Q_OBJECT

private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void cancels_data() { jobs(); }
    void cancels();
    void cancelsCopyOfDump();
    void endsDuringJob_data();
    void endsDuringJob();

    void savesAndClears_data() { threads(); }
    void savesAndClears();
    void clearsWithoutSaving_data();
    void clearsWithoutSaving();
    void keepsQuietAboutFailedSave_data() { threads(); }
    void keepsQuietAboutFailedSave();
    void savesAndClearsInRelativeFolder();

    void makesPhotoFolders();
    void copiesPhotos();
    void reportsPhotosThatCannotBeCopied();

private:
    static void jobs()
    {
        QTest::addColumn<QByteArray>("job");
        for (const char *job : {"load CSV", "save CSV", "save dump"}) {
            QTest::newRow(job) << QByteArray(job);
        }
    }
    static void threads()
    {
        QTest::addColumn<bool>("inWorker");
        QTest::newRow("in the GUI thread") << false;
        QTest::newRow("in a worker") << true;
    }
    // Starts a job that takes long, and lets it come as far as a percent.
    void beginLongJob(const QByteArray &job)
    {
        if (job == "load CSV") {
            const QString list = onStick(QStringLiteral("list.csv"));
            Page::write(
                list,
                "titles" + QByteArray("\n01.02.2026 03:04:05;A001BC77;1;1;1;c;k").repeated(300000));
            load(makeDump(QStringLiteral("table.tpp"), 3));
            beginLoad(list);
        } else {
            load(makeLargeDump(QStringLiteral("table.tpp"), manyRows));
            beginSave(Page::folder() + QStringLiteral("/saved"), job == "save CSV" ? csv : dump);
        }
        QTRY_VERIFY_WITH_TIMEOUT(page_->progress() > 0 && page_->progress() < 100, patience);
        QVERIFY(page_->isBusy());
    }
    // How long the busy face stays after a press on Cancel.
    qint64 cancel()
    {
        QElapsedTimer clock;
        clock.start();
        page_->press("cancelProgress");
        while (page_->isBusy() && clock.elapsed() < patience) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        }
        return clock.elapsed();
    }
    QString saveAndClear(const QString &name, bool inWorker)
    {
        ArchiveWidget &page = page_->page();
        if (!inWorker) {
            return page.saveTableToDatFileAndClear(name);
        }
        Thread thread(&page, &ArchiveWidget::saveTableToDatFileAndClear, name);
        thread.start();
        [&] { QTRY_VERIFY(thread.isFinished()); }();
        return thread.result();
    }
    // A table with a chosen row and a photo, and an interval that was chosen for it.
    void loadWithInterval()
    {
        load(makeDump(QStringLiteral("table.tpp"), 4, {1, 2}));
        page_->clickRow(1);
        expectShown(1, 1, true);
        interval()->setFromTime(QDateTime(QDate(2020, 5, 6), QTime(7, 8)));
        interval()->setToTime(QDateTime(QDate(2020, 5, 7), QTime(7, 8)));
        interval()->findChild<QRadioButton *>(QStringLiteral("rbBySelection"))->setChecked(true);
    }
    void expectCleared() const
    {
        QTRY_VERIFY(interval()->allArchive());
        QVERIFY(interval()->fromTime() > QDateTime::currentDateTime().addDays(-2));
        QCOMPARE(page_->rows(), 0);
        expectNothingShown();
        QVERIFY(!page_->find<QPushButton>("buttonSave")->isEnabled());
        // What was loaded stays where it is.
        QCOMPARE(Page::content(onStick(QStringLiteral("table.tpp"))), tableOf(4));
    }
    ArchiveIntervalDialog *interval() const
    {
        return page_->page().findChild<ArchiveIntervalDialog *>();
    }
    static QString inWorkingFolder(const QString &name)
    {
        return Settings::instance()->absoluteWorkingDirectory() + QLatin1Char('/') + name;
    }
};

void TestArchiveWidgetJobs::cancels()
{
    QFETCH(QByteArray, job);
    beginLongJob(job);
    const qint64 msec = cancel();

    QVERIFY2(msec < cancelMsec, qPrintable(QString::number(msec)));
    // The operator knows that he did it.
    QCOMPARE(page_->answers().unexpected(), QStringList());
    if (job == "load CSV") {
        QCOMPARE(page_->rows(), 3);
        QCOMPARE(Page::content(onStick(QStringLiteral("table.tpp"))), tableOf(3));
    } else {
        QCOMPARE(page_->rows(), manyRows);
        const QStringList saved = {QStringLiteral("saved.tpp"), QStringLiteral("saved.tpp.index")};
        QCOMPARE(filesIn(Page::folder()), job == "save dump" ? saved : QStringList());
    }
    // The next job is not cancelled.
    load(makeDump(QStringLiteral("other.tpp"), 2));
    QCOMPARE(numbers(), numbersOf(2));
    save(onStick(QStringLiteral("again")), csv);
    QVERIFY(QFile::exists(onStick(QStringLiteral("again.csv"))));
}

void TestArchiveWidgetJobs::cancelsCopyOfDump()
{
    load(makeLargeDump(QStringLiteral("table.tpp"), 4 * manyRows));
    Page::write(onStick(QStringLiteral("saved.tpp")), "an older one");
    beginSave(onStick(QStringLiteral("saved")), dump);
    const qint64 msec = cancel();

    QVERIFY2(msec < cancelMsec, qPrintable(QString::number(msec)));
    QCOMPARE(page_->answers().unexpected(), QStringList());
    QCOMPARE(Page::content(onStick(QStringLiteral("saved.tpp"))), QByteArray("an older one"));
    QCOMPARE(stickFiles(), (QStringList{QStringLiteral("saved.tpp"), QStringLiteral("table.tpp"),
                                        QStringLiteral("table.tpp.index")}));
    QCOMPARE(page_->rows(), 4 * manyRows);
}

void TestArchiveWidgetJobs::endsDuringJob_data()
{
    jobs();
    QTest::newRow("load dump") << QByteArray("load dump");
    QTest::newRow("copy dump") << QByteArray("copy dump");
}

void TestArchiveWidgetJobs::endsDuringJob()
{
    QFETCH(QByteArray, job);
    if (job == "load dump") {
        beginLoad(makeDump(QStringLiteral("table.tpp"), 3));
    } else if (job == "copy dump") {
        load(makeLargeDump(QStringLiteral("table.tpp"), 4 * manyRows));
        beginSave(Page::folder() + QStringLiteral("/saved"), dump);
    } else {
        beginLongJob(job);
    }
    const qint64 msec = page_->end();

    QVERIFY2(msec < endMsec, qPrintable(QString::number(msec)));
    // Nothing of a run outlives it, not half a file either.
    QCOMPARE(filesIn(Page::folder()), QStringList());
    QVERIFY(QFile::exists(onStick(QStringLiteral("table.tpp"))));
    page_.reset();
}

void TestArchiveWidgetJobs::savesAndClears()
{
    QFETCH(bool, inWorker);
    loadWithInterval();
    // A job of the page's own, which a worker takes its table from.
    save(onStick(QStringLiteral("list")), csv);
    // Only the last part of the name counts.
    QCOMPARE(saveAndClear(onStick(QStringLiteral("may.2026.tpp")), inWorker), QString());
    expectCleared();
    const QString folder = inWorkingFolder(QStringLiteral("may.2026.tpp/"));
    QVERIFY(QFileInfo(folder).isDir());
    QCOMPARE(Page::content(folder + QStringLiteral("may.2026.tpp")), tableOf(4));
    QCOMPARE(Page::content(folder + QStringLiteral("may.tpp.index")), indexOf(4));
    QCOMPARE(filesIn(folder + QStringLiteral("may.jpegdata")),
             (QStringList{photoName(1), photoName(2)}));
    QCOMPARE(Page::content(folder + QStringLiteral("may.jpegdata/") + photoName(2)), photoOf(2));
    QVERIFY(!QFile::exists(onStick(QStringLiteral("may.2026.tpp"))));
    // It can be opened like any other.
    load(folder + QStringLiteral("may.2026.tpp"));
    QCOMPARE(devices(), devicesOf(4));
    page_->clickRow(2);
    expectShown(2, 2, true);
}

void TestArchiveWidgetJobs::clearsWithoutSaving_data()
{
    QTest::addColumn<QString>("inTheWay");
    QTest::addColumn<bool>("inWorker");
    for (const bool inWorker : {false, true}) {
        for (const char *way : {"folder", "file", "no working folder"}) {
            QTest::addRow("%s, %s", way, inWorker ? "in a worker" : "in the GUI thread")
                << QString::fromLatin1(way) << inWorker;
        }
    }
}

void TestArchiveWidgetJobs::clearsWithoutSaving()
{
    QFETCH(QString, inTheWay);
    QFETCH(bool, inWorker);
    loadWithInterval();
    const QString there = inWorkingFolder(QStringLiteral("may"));
    QString expected = QStringLiteral("Can't create dump directory");
    if (inTheWay == QLatin1String("folder")) {
        QVERIFY(QDir().mkpath(there));
        Page::write(there + QStringLiteral("/may"), "an older dump");
        expected = QStringLiteral("The dump has already been created");
    } else if (inTheWay == QLatin1String("file")) {
        Page::write(there, "a file");
    } else {
        Settings::instance()->setWorkingDirectory(onStick(QStringLiteral("missing")));
    }
    const QString text = saveAndClear(QStringLiteral("may"), inWorker);
    QCOMPARE(text, expected);
    expectCleared();
    if (inTheWay == QLatin1String("folder")) {
        QCOMPARE(filesIn(there), QStringList(QStringLiteral("may")));
        QCOMPARE(Page::content(there + QStringLiteral("/may")), QByteArray("an older dump"));
    } else if (inTheWay == QLatin1String("file")) {
        QCOMPARE(Page::content(there), QByteArray("a file"));
    } else {
        QVERIFY(!QFile::exists(onStick(QStringLiteral("missing"))));
    }
}

void TestArchiveWidgetJobs::keepsQuietAboutFailedSave()
{
    QFETCH(bool, inWorker);
    loadWithInterval();
    {
        const FileLimit full(100);
        QCOMPARE(saveAndClear(QStringLiteral("may"), inWorker), QString());
    }
    expectCleared();
    QVERIFY(QFileInfo(inWorkingFolder(QStringLiteral("may"))).isDir());
    QCOMPARE(filesIn(inWorkingFolder(QStringLiteral("may"))), QStringList());
}

void TestArchiveWidgetJobs::savesAndClearsInRelativeFolder()
{
    loadWithInterval();
    QVERIFY(QDir::home().mkpath(QStringLiteral("dumps")));
    Settings::instance()->setWorkingDirectory(QStringLiteral("dumps"));
    QCOMPARE(saveAndClear(QStringLiteral("may"), false), QString());
    expectCleared();
    QCOMPARE(Page::content(TestSurroundings::home() + QStringLiteral("/dumps/may/may")),
             tableOf(4));
    QVERIFY(QDir(TestSurroundings::home() + QStringLiteral("/dumps")).removeRecursively());
}

void TestArchiveWidgetJobs::makesPhotoFolders()
{
    load(makeDump(QStringLiteral("table.may.tpp"), 2));
    ArchiveWidget &page = page_->page();
    const QString refusal = QStringLiteral("Can't create dir");
    for (int time = 0; time < 2; ++time) {
        QCOMPARE(page.createPhotoDirs(Page::folder(), QStringLiteral("other")), QString());
        QVERIFY(QFileInfo(Page::folder() + QStringLiteral("/other.jpegdata")).isDir());
        // Without a name that of the table.
        QCOMPARE(page.createPhotoDirs(Page::folder(), QString()), QString());
        QVERIFY(QFileInfo(Page::folder() + QStringLiteral("/table.jpegdata")).isDir());
    }
    QCOMPARE(page.createPhotoDirs(onStick(QStringLiteral("missing")), QStringLiteral("other")),
             refusal);
    QVERIFY(!QFile::exists(onStick(QStringLiteral("missing"))));
    Page::write(onStick(QStringLiteral("other.jpegdata")), "in the way");
    QCOMPARE(page.createPhotoDirs(stick_->path(), QStringLiteral("other")), refusal);
    QCOMPARE(Page::content(onStick(QStringLiteral("other.jpegdata"))), QByteArray("in the way"));
}

void TestArchiveWidgetJobs::copiesPhotos()
{
    load(makeDump(QStringLiteral("table.tpp"), 5, {1, 3}));
    const QString photos = Page::folder() + QStringLiteral("/dump.jpegdata/");
    QVERIFY(QDir().mkpath(photos));
    Page::write(photos + photoName(1), QByteArray(9000, 'x'));
    Page::write(photos + photoName(0), "of a passage that has none now");
    QCOMPARE(page_->page().copyPhotos(Page::folder() + QStringLiteral("/dump.tpp")), QString());
    QCOMPARE(filesIn(photos), (QStringList{photoName(0), photoName(1), photoName(3)}));
    QCOMPARE(Page::content(photos + photoName(0)), QByteArray("of a passage that has none now"));
    QCOMPARE(Page::content(photos + photoName(1)), photoOf(1));
    QCOMPARE(Page::content(photos + photoName(3)), photoOf(3));
    QTRY_COMPARE(page_->progress(), 100);
    // Onto themselves they stay.
    QCOMPARE(page_->page().copyPhotos(onStick(QStringLiteral("table.tpp"))), QString());
    QCOMPARE(Page::content(onStick(QStringLiteral("table.jpegdata/") + photoName(3))), photoOf(3));
}

void TestArchiveWidgetJobs::reportsPhotosThatCannotBeCopied()
{
    load(makeDump(QStringLiteral("table.tpp"), 5, {0, 1, 3}));
    ArchiveWidget &page = page_->page();
    QCOMPARE(page.copyPhotos(onStick(QStringLiteral("missing/dump.tpp"))),
             QStringLiteral("Can't create dir"));
    const QString photos = Page::folder() + QStringLiteral("/dump.jpegdata/");
    for (const int n : {0, 3}) {
        QVERIFY(QDir().mkpath(photos + photoName(n)));
    }
    const QStringList texts =
        page.copyPhotos(Page::folder() + QStringLiteral("/dump.tpp")).split(QLatin1Char('\n'));
    QCOMPARE(texts.size(), 2);
    QVERIFY(!texts.contains(QString()));
    QCOMPARE(filesIn(photos), QStringList(photoName(1)));
}

STALLO_TEST_MAIN(TestArchiveWidgetJobs)
#include "tst_archivewidgetjobs.moc"
