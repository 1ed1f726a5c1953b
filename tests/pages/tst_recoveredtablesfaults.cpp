// SPDX-License-Identifier: MIT
#include "app/runmark.h"
#include "tests/pages/recoveredcase.h"
#include "tests/support/smalldisk.h"
#include "tests/support/testmain.h"

// What stands in the way of keeping the table of a run that was killed, and of deleting old ones.
class TestRecoveredTablesFaults : public QObject, private RecoveredCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void passesByWhatCannotBeDeleted();
    void deletesTooManyWithThePassages();
    void passesByNamesThatAreNoTimes_data();
    void passesByNamesThatAreNoTimes();
    void endsBothThatWereKilled_data();
    void endsBothThatWereKilled();
    void deletesNothingWhenItFails_data();
    void deletesNothingWhenItFails();
    void goesOnWithATableThatCannotBeMoved();
};

void TestRecoveredTablesFaults::init()
{
    OnlinePage::prepare();
    Startup::initTempDirectories();
}

void TestRecoveredTablesFaults::passesByWhatCannotBeDeleted()
{
    if (!SmallDisk::isAllowed()) {
        QSKIP("no file system can be mounted here");
    }
    const QString oldest = QStringLiteral("2000-01-01_00-00-00");
    QVERIFY(QDir().mkpath(recovered(oldest)));
    const SmallDisk disk(recovered(oldest), 10); // is in use
    for (int run = 0; run < 5; ++run) {
        leaveTable(1, run);
        QCOMPARE(int(RecoveredTables::rescue()), int(Rescue::Done));
    }
    QCOMPARE(kept().size(), 4);
    QCOMPARE(kept().first(), oldest);
    expectWhole(kept().at(1), 1, 2);
}

void TestRecoveredTablesFaults::deletesTooManyWithThePassages()
{
    for (int day = 1; day <= 5; ++day) {
        QVERIFY(QDir().mkpath(recovered(QStringLiteral("2000-01-0%1_00-00-00").arg(day))));
    }
    OnlinePage page;
    QCOMPARE(kept().size(), 5);
    pass(page, 50);
    QCOMPARE(kept().size(), 3);
    QCOMPARE(kept().first(), QStringLiteral("2000-01-03_00-00-00"));
}

void TestRecoveredTablesFaults::passesByNamesThatAreNoTimes_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"9999-99-99_99-99-99", "9999-12-31_23-59-59", "2026-02-30_12-00-00",
                             "2026-11-21_24-00-00"}) {
        QTest::newRow(name) << QString::fromLatin1(name);
    }
}

void TestRecoveredTablesFaults::passesByNamesThatAreNoTimes()
{
    QFETCH(QString, name);
    QVERIFY(QDir().mkpath(recovered(name)));
    for (int run = 0; run < 4; ++run) {
        leaveTable(1, run);
        QCOMPARE(int(RecoveredTables::rescue()), int(Rescue::Done));
        QVERIFY(!RecoveredTables::newest().contains(name));
    }
    QStringList tables = kept();
    QVERIFY(tables.removeOne(name));
    QCOMPARE(tables.size(), 3);
    expectWhole(tables.at(2), 1, 3);
}

void TestRecoveredTablesFaults::endsBothThatWereKilled_data()
{
    QTest::addColumn<int>("first"); // of what could not be given its name
    QTest::addColumn<int>("rows");
    QTest::addColumn<int>("tables");
    QTest::newRow("another run's table") << 10 << 3 << 2;
    QTest::newRow("another run's, as long") << 10 << 4 << 2;
    QTest::newRow("half a copy of the same") << 0 << 2 << 1;
}

void TestRecoveredTablesFaults::endsBothThatWereKilled()
{
    QFETCH(int, first);
    QFETCH(int, rows);
    QFETCH(int, tables);
    leaveTable(rows, first);
    const QString half = recovered(QStringLiteral(".unfinished/"));
    QVERIFY(QDir().mkpath(half));
    const QString live = OnlinePage::folder() + QLatin1Char('/');
    const QString index = QStringLiteral("tmponline.tpp.index");
    const QString passages = QStringLiteral("tmponline.tpp");
    QVERIFY(QDir().rename(live + passages, half + passages));
    if (tables == 2) {
        QVERIFY(QDir().rename(live + index, half + index));
        QVERIFY(QDir().rename(live + QStringLiteral("jpegdata"),
                              half + QStringLiteral("tmponline.jpegdata")));
    }
    leaveTable(4);
    QCOMPARE(int(RecoveredTables::rescue()), int(Rescue::Done));
    QCOMPARE(kept().size(), tables);
    expectWhole(kept().constLast(), 4);
    if (tables == 2) {
        expectWhole(kept().constFirst(), rows, first);
    }
    expectEmptyLiveTable();
}

void TestRecoveredTablesFaults::deletesNothingWhenItFails_data()
{
    QTest::addColumn<QString>("kind");
    for (const char *kind : {"a file", "a link", "unfinished is a file", "unfinished is a link",
                             "index in the way", "photos moved before"}) {
        QTest::newRow(kind) << QString::fromLatin1(kind);
    }
}

void TestRecoveredTablesFaults::deletesNothingWhenItFails()
{
    QFETCH(QString, kind);
    const QString root = recovered().chopped(1);
    const QString half = recovered(QStringLiteral(".unfinished"));
    const QString elsewhere = working().filePath(QStringLiteral("elsewhere"));
    QVERIFY(QDir().mkpath(elsewhere + QStringLiteral("/2000-01-01_00-00-00")));
    OnlinePage::write(elsewhere + QStringLiteral("/2000-01-01_00-00-00/mine"), "x");
    leaveTable(3);
    if (kind == QLatin1String("a file")) {
        OnlinePage::write(root, "a file");
    } else if (kind == QLatin1String("a link")) {
        QVERIFY(QFile::link(elsewhere, root));
    } else if (kind == QLatin1String("unfinished is a file")) {
        QVERIFY(QDir().mkpath(root));
        OnlinePage::write(half, "a file");
    } else if (kind == QLatin1String("unfinished is a link")) {
        QVERIFY(QDir().mkpath(root));
        QVERIFY(QFile::link(elsewhere, half));
    } else {
        QVERIFY(QDir().mkpath(half + QStringLiteral("/tmponline.tpp.index/mine")));
        if (kind == QLatin1String("photos moved before")) {
            QVERIFY(QDir().rename(OnlinePage::folder() + QStringLiteral("/jpegdata"),
                                  half + QStringLiteral("/tmponline.jpegdata")));
            Startup::initTempDirectories();
        }
    }
    QCOMPARE(int(RecoveredTables::rescue()), int(Rescue::Failed));
    expectEmptyLiveTable();
    OnlinePage page;
    QCOMPARE(page.rows(), 0);
    pass(page, 50);
    QCOMPARE(OnlinePage::content(OnlinePage::pictureFile(OnlinePage::record(50))), photo(50));
    const QStringList aside = working().entryList({QStringLiteral("tmponline-*.tpp")});
    QCOMPARE(aside.size(), 1);
    expectWholeTable(working().filePath(aside.first()), 3);
    QVERIFY(QFile::exists(elsewhere + QStringLiteral("/2000-01-01_00-00-00/mine")));
}

void TestRecoveredTablesFaults::goesOnWithATableThatCannotBeMoved()
{
    if (!SmallDisk::isAllowed()) {
        QSKIP("no file system can be mounted here");
    }
    Settings::instance()->SetMinReservedFreeSpace(0);
    const SmallDisk disk(OnlinePage::folder(), 200); // nothing can be renamed out of it
    leaveTable(3);
    OnlinePage::write(recovered().chopped(1), "a file");
    RunMark::set();
    QCOMPARE(Startup::settleFormerRun(), QStringLiteral("The former table could not be kept."));
    QVERIFY(RecoveredTables::isLeftInPlace());
    {
        OnlinePage page;
        QCOMPARE(page.rows(), 3);
        QVERIFY(page.button("buttonSave")->isEnabled());
        pass(page, 3);
        Startup::markCleanEnd();
    }
    QCOMPARE(OnlinePage::tableBytes(), OnlinePage::tableOf(OnlinePage::records(4)));
    QCOMPARE(OnlinePage::indexBytes(),
             OnlinePage::indexOf({QStringLiteral("gate 0"), QStringLiteral("gate 1"),
                                  QStringLiteral("gate 2"), QStringLiteral("gate 3")}));
    for (int n = 0; n < 4; ++n) {
        QCOMPARE(OnlinePage::content(OnlinePage::pictureFile(OnlinePage::record(n))), photo(n));
    }
    QVERIFY(RunMark::isLeft()); // so that the next start tries again
    OnlinePage page;
    page.press("buttonNewTable");
    QTRY_COMPARE(page.rows(), 0);
    Startup::markCleanEnd();
    QVERIFY(!RunMark::isLeft());
}

int main(int argc, char *argv[])
{
    SmallDisk::prepare();
    TestSurroundings surroundings(argc, argv);
    TestRecoveredTablesFaults test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_recoveredtablesfaults.moc"
