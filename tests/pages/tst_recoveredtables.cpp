// SPDX-License-Identifier: MIT
#include "records/vasksettings.h"
#include "tests/pages/recoveredcase.h"
#include "tests/support/smalldisk.h"
#include "tests/support/testmain.h"

#include <sys/mount.h>
#include <sys/vfs.h>

namespace
{

constexpr int unbounded = 60000;

} // namespace

// What is kept of a run that was killed, and how long.
class TestRecoveredTables : public QObject, private RecoveredCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void movesAllByRenaming();
    void archivePageShowsIt();
    void leavesWhatIsNoTable_data();
    void leavesWhatIsNoTable();
    void endsARescueThatWasKilled_data();
    void endsARescueThatWasKilled();
    void keepsTheLastThree();
    void namesFollowEachOtherWhateverTheClock();
    void touchesNothingElse();
    void followsNoLink();
    void givesWayToTheReserve();
    void givesWayWhilePassagesCome();
    void makesRoomForItsFolders();
};

void TestRecoveredTables::init()
{
    OnlinePage::prepare();
    Startup::initTempDirectories();
}

void TestRecoveredTables::movesAllByRenaming()
{
    leaveTable(3);
    const auto serial = [](const QString &folder) {
        return QFile(folder).exists() ? QFileInfo(folder).lastModified() : QDateTime();
    };
    const QDateTime written = serial(OnlinePage::folder() + QStringLiteral("/jpegdata"));
    QCOMPARE(int(RecoveredTables::rescue()), int(Rescue::Done));
    QCOMPARE(kept().size(), 1);
    QVERIFY(!only().contains(QLatin1Char(':')));
    QCOMPARE(RecoveredTables::newest(), QStringLiteral("Recovered/") + only());
    expectWhole(only(), 3);
    QCOMPARE(serial(recovered(only() + QStringLiteral("/tmponline.jpegdata"))), written);
    expectEmptyLiveTable();
    const auto rights = QFile::permissions(recovered(only()));
    QCOMPARE(rights & (QFile::ReadGroup | QFile::ExeGroup | QFile::ReadOther | QFile::ExeOther),
             QFile::Permissions());
}

void TestRecoveredTables::archivePageShowsIt()
{
    leaveTable(2, 0, OnlinePage::jpeg(40, 30));
    QCOMPARE(int(RecoveredTables::rescue()), int(Rescue::Done));
    ArchivePage page;
    QCOMPARE(page.page().loadTableFromDatFile(table(only())), QString());
    QCOMPARE(page.rows(), 2);
    page.clickRow(1);
    QCOMPARE(page.cell(1, ScanModel::DeviceColumn), QStringLiteral("gate 1"));
    // Enabled where the passage's photo is found.
    QVERIFY(page.find<QPushButton>("buttonSavePhoto")->isEnabled());
}

void TestRecoveredTables::leavesWhatIsNoTable_data()
{
    QTest::addColumn<QString>("kind");
    for (const char *kind : {"no table", "empty", "half a passage", "a link", "elsewhere"}) {
        QTest::newRow(kind) << QString::fromLatin1(kind);
    }
}

void TestRecoveredTables::leavesWhatIsNoTable()
{
    QFETCH(QString, kind);
    Settings *settings = Settings::instance();
    const QString file = settings->onLineTempFile();
    const QString other = working().filePath(QStringLiteral("elsewhere.tpp"));
    if (kind == QLatin1String("empty")) {
        OnlinePage::write(file, QByteArray());
    } else if (kind == QLatin1String("half a passage")) {
        OnlinePage::write(file, QByteArray(Scan::size - 1, 'x'));
    } else if (kind == QLatin1String("a link")) {
        OnlinePage::write(other, QByteArray(Scan::size, 'x'));
        QVERIFY(QFile::link(other, file));
    } else if (kind == QLatin1String("elsewhere")) {
        OnlinePage::write(other, QByteArray(Scan::size, 'x'));
        settings->setOnLineTempFile(other); // the page does not empty it either
    }
    QCOMPARE(int(RecoveredTables::rescue()), int(Rescue::Nothing));
    QVERIFY(!QFile::exists(recovered()));
    QCOMPARE(RecoveredTables::newest(), QString());
    QCOMPARE(QFile::exists(other),
             kind == QLatin1String("a link") || kind == QLatin1String("elsewhere"));
}

void TestRecoveredTables::endsARescueThatWasKilled_data()
{
    QTest::addColumn<int>("moved"); // of photos, index, table
    for (int moved = 0; moved <= 3; ++moved) {
        QTest::addRow("%d", moved) << moved;
    }
}

void TestRecoveredTables::endsARescueThatWasKilled()
{
    QFETCH(int, moved);
    leaveTable(3);
    const QString half = recovered(QStringLiteral(".unfinished/"));
    QVERIFY(QDir().mkpath(half));
    const QString live = OnlinePage::folder() + QLatin1Char('/');
    const QStringList from = {QStringLiteral("jpegdata"), QStringLiteral("tmponline.tpp.index"),
                              QStringLiteral("tmponline.tpp")};
    const QStringList to = {QStringLiteral("tmponline.jpegdata"), from.at(1), from.at(2)};
    for (int n = 0; n < moved; ++n) {
        QVERIFY(QDir().rename(live + from.at(n), half + to.at(n)));
    }
    Startup::initTempDirectories(); // the next start
    QCOMPARE(int(RecoveredTables::rescue()), int(Rescue::Done));
    QCOMPARE(kept().size(), 1);
    expectWhole(only(), 3);
    expectEmptyLiveTable();
    QCOMPARE(int(RecoveredTables::rescue()), int(Rescue::Nothing));
}

void TestRecoveredTables::keepsTheLastThree()
{
    for (int run = 0; run < 5; ++run) {
        leaveTable(2, 10 * run);
        QCOMPARE(int(RecoveredTables::rescue()), int(Rescue::Done));
        // Runs that are killed at once leave nothing and push nothing out.
        QCOMPARE(int(RecoveredTables::rescue()), int(Rescue::Nothing));
    }
    QCOMPARE(kept().size(), 3);
    for (int place = 0; place < 3; ++place) {
        expectWhole(kept().at(place), 2, 10 * (place + 2));
    }
}

void TestRecoveredTables::namesFollowEachOtherWhateverTheClock()
{
    // Of a day on which the clock was wrong.
    QVERIFY(QDir().mkpath(recovered(QStringLiteral("2099-12-31_23-59-59"))));
    leaveTable(1);
    QCOMPARE(int(RecoveredTables::rescue()), int(Rescue::Done));
    QCOMPARE(kept(), (QStringList{QStringLiteral("2099-12-31_23-59-59"),
                                  QStringLiteral("2100-01-01_00-00-00")}));
    expectWhole(kept().at(1), 1);
}

void TestRecoveredTables::touchesNothingElse()
{
    const QString foreign = recovered(QStringLiteral("mine/kept"));
    QVERIFY(QDir().mkpath(recovered(QStringLiteral("mine"))));
    OnlinePage::write(foreign, "x");
    for (int run = 0; run < 5; ++run) {
        leaveTable(1);
        QCOMPARE(int(RecoveredTables::rescue()), int(Rescue::Done));
    }
    QCOMPARE(kept().size(), 4);
    QVERIFY(QFile::exists(foreign));
}

void TestRecoveredTables::followsNoLink()
{
    const QString elsewhere = working().filePath(QStringLiteral("elsewhere"));
    QVERIFY(QDir().mkpath(elsewhere + QStringLiteral("/2000-01-01_00-00-00")));
    QVERIFY(QFile::link(elsewhere, recovered().chopped(1)));
    leaveTable(1);
    QCOMPARE(int(RecoveredTables::rescue()), int(Rescue::Failed));
    RecoveredTables().makeRoom(unbounded);
    QCOMPARE(QDir(elsewhere).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size(), 1);
}

void TestRecoveredTables::givesWayToTheReserve()
{
    if (!SmallDisk::isAllowed()) {
        QSKIP("no file system can be mounted here");
    }
    const SmallDisk disk(working().path(), 200);
    Startup::initTempDirectories();
    const QByteArray large(10 * SmallDisk::pageSize, 'x');
    leaveTable(5, 0, large);
    Settings::instance()->SetMinReservedFreeSpace(0);
    QCOMPARE(int(RecoveredTables::rescue()), int(Rescue::Done));
    leaveTable(5, 10, large);
    // Three photos more than there is room for: the oldest of the oldest table.
    Settings::instance()->SetMinReservedFreeSpace(
        int(disk.available() + 3 * large.size() - SmallDisk::pageSize));
    QCOMPARE(int(RecoveredTables::rescue()), int(Rescue::Done));
    QCOMPARE(kept().size(), 2);
    const auto photos = [](int place) {
        return QDir(recovered(kept().value(place) + QStringLiteral("/tmponline.jpegdata")))
            .entryList(QDir::Files, QDir::Name);
    };
    QCOMPARE(photos(0), (QStringList{VaskSettings::picFileName(OnlinePage::record(3)),
                                     VaskSettings::picFileName(OnlinePage::record(4))}));
    QCOMPARE(photos(1).size(), 5);
    QVERIFY(disk.available() >= Settings::instance()->minReservedFreeSpace());
    // A disk that could never have the reserve keeps them.
    Settings::instance()->SetMinReservedFreeSpace(200 * SmallDisk::pageSize);
    RecoveredTables().makeRoom(unbounded);
    QCOMPARE(kept().size(), 2);
    QCOMPARE(photos(1).size(), 5);
    Settings::instance()->SetMinReservedFreeSpace(200 * SmallDisk::pageSize - 1);
    RecoveredTables().makeRoom(unbounded);
    QCOMPARE(kept(), QStringList());
}

void TestRecoveredTables::givesWayWhilePassagesCome()
{
    if (!SmallDisk::isAllowed()) {
        QSKIP("no file system can be mounted here");
    }
    const SmallDisk disk(working().path(), 200);
    Startup::initTempDirectories();
    leaveTable(5, 0, QByteArray(10 * SmallDisk::pageSize, 'x'));
    Settings::instance()->SetMinReservedFreeSpace(0);
    QCOMPARE(int(RecoveredTables::rescue()), int(Rescue::Done));
    OnlinePage page;
    page.page().selectDevice(OnlinePage::nowhere());
    const OnLine first = OnlinePage::record(50);
    OnlinePage::write(OnlinePage::pictureFile(first), photo(50));
    Settings::instance()->SetMinReservedFreeSpace(int(disk.available()));
    page.tellPassage(first, OnlinePage::nowhere());
    QTRY_COMPARE(page.rows(), 1);
    // The photo that came now stays, one that a former run has left goes.
    QCOMPARE(OnlinePage::content(OnlinePage::pictureFile(first)), photo(50));
    QCOMPARE(QDir(recovered(only() + QStringLiteral("/tmponline.jpegdata")))
                 .entryList(QDir::Files)
                 .size(),
             4);
}

void TestRecoveredTables::makesRoomForItsFolders()
{
    if (!SmallDisk::isAllowed()) {
        QSKIP("no file system can be mounted here");
    }
    const SmallDisk disk(working().path(), 200);
    Settings::instance()->SetMinReservedFreeSpace(0);
    leaveTable(5);
    // Not one file or folder more than there are.
    struct statfs is = {};
    const QByteArray place = QFile::encodeName(working().path());
    QCOMPARE(statfs(place.constData(), &is), 0);
    const QByteArray full = "nr_inodes=" + QByteArray::number(qint64(is.f_files - is.f_ffree));
    QCOMPARE(mount(nullptr, place.constData(), nullptr, MS_REMOUNT, full.constData()), 0);
    QVERIFY(!working().mkdir(QStringLiteral("one more")));
    QCOMPARE(int(RecoveredTables::rescue()), int(Rescue::Done));
    QCOMPARE(ScanModel(table(only()), nullptr).rowCount(), 5);
    const QDir photos(recovered(only() + QStringLiteral("/tmponline.jpegdata")));
    QCOMPARE(photos.entryList(QDir::Files).size(), 2); // three folders
    expectEmptyLiveTable();
    QVERIFY(!photos.exists(VaskSettings::picFileName(OnlinePage::record(0))));
    QVERIFY(photos.exists(VaskSettings::picFileName(OnlinePage::record(4))));
}

int main(int argc, char *argv[])
{
    SmallDisk::prepare();
    TestSurroundings surroundings(argc, argv);
    TestRecoveredTables test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_recoveredtables.moc"
