// SPDX-License-Identifier: MIT
#include "records/deviceindex.h"
#include "records/scan.h"
#include "records/vasksettings.h"
#include "simulator/livefeed.h"
#include "tests/app/panelprogram.h"
#include "tests/support/archivedevice.h"
#include "tests/support/devices.h"
#include "tests/support/testmain.h"

#include <QDirIterator>

#include <sys/stat.h>

namespace
{

constexpr int patience = PanelProgram::patience;
const QDateTime time0 = QDateTime(QDate(2026, 11, 21), QTime(12, 0), Qt::UTC);
const QString liveTable = QStringLiteral("OnLineTemp/tmponline.tpp");

OnLine record(int n)
{
    OnLine one = SampleRecords::plain(
        QStringLiteral("A%1BC77").arg(n % 1000, 3, 10, QLatin1Char('0')), time0.addSecs(n));
    one.setFileName(DevicePaths::photoFolder() + VaskSettings::picFileName(one));
    return one;
}

void write(const QString &file, const QByteArray &content)
{
    QVERIFY(QDir().mkpath(QFileInfo(file).path()));
    QFile to(file);
    QVERIFY(to.open(QIODevice::WriteOnly));
    QCOMPARE(to.write(content), content.size());
}

} // namespace

// The program itself, how it starts after whatever end, against a simulated device.
class TestProgramStart : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void recoversTheTableOfAKilledRun();
    void recoversNothing_data();
    void recoversNothing();
    void crashLoopPushesNothingOut();
    void secondStartRecoversNothing();
    void startsWithAnyLockFile_data();
    void startsWithAnyLockFile();
    void abandonedSettingsLockCostsNoTime_data();
    void abandonedSettingsLockCostsNoTime();
    void startsInAHugeWindow();
    void tellsOfAnUnusableWorkingDirectory();
    void keepsItsFilesToItself();
    void startsNoSessionBus();
    void leavesNothingOfAKilledDownload();

private:
    DeviceHost &device() { return devices_->first(); }
    void writeSettings(const QByteArray &further = QByteArray())
    {
        panel_->writeSettings(device().onLinePort(), device().filePort(), further);
    }
    void startWatching(int connections = 1)
    {
        panel_->start({device().address()});
        QTRY_COMPARE_WITH_TIMEOUT(device().onLineConnections(), connections, patience);
    }
    void pass(int first, int count)
    {
        for (int n = first; n < first + count; ++n) {
            device().push(record(n));
        }
        QTRY_COMPARE_WITH_TIMEOUT(QFileInfo(panel_->stallo(liveTable)).size(),
                                  qint64(count) * Scan::size, patience);
    }
    void killAndForget()
    {
        panel_->kill();
        QTRY_COMPARE_WITH_TIMEOUT(device().onLineConnections(), 0, patience);
    }
    QStringList recovered() const
    {
        return QDir(panel_->stallo(QStringLiteral("Recovered")))
            .entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    }
    void expectRecovered(const QString &name, int first, int count)
    {
        const QString folder = panel_->stallo(QStringLiteral("Recovered/") + name);
        QByteArray table;
        QByteArray index;
        for (int n = first; n < first + count; ++n) {
            table.append(Scan(record(n)).data(), Scan::size);
            index += DeviceIndex::entry(device().deviceId());
            QCOMPARE(PanelProgram::content(folder + QStringLiteral("/tmponline.jpegdata/") +
                                           VaskSettings::picFileName(record(n))),
                     device().files().get(record(n).fileName()));
        }
        QCOMPARE(PanelProgram::content(folder + QStringLiteral("/tmponline.tpp")), table);
        QCOMPARE(PanelProgram::content(folder + QStringLiteral("/tmponline.tpp.index")), index);
    }

    std::unique_ptr<Devices> devices_;
    std::unique_ptr<PanelProgram> panel_;
};

void TestProgramStart::init()
{
    devices_ = std::make_unique<Devices>();
    panel_ = std::make_unique<PanelProgram>(QStringLiteral(STALLO_PROGRAM));
    writeSettings();
}

void TestProgramStart::cleanup()
{
    panel_.reset();
    devices_.reset();
}

void TestProgramStart::recoversTheTableOfAKilledRun()
{
    startWatching();
    pass(0, 30);
    killAndForget();
    startWatching();
    QCOMPARE(recovered().size(), 1);
    expectRecovered(recovered().first(), 0, 30);
    pass(100, 2); // begins anew
    panel_->end();
    startWatching();
    QCOMPARE(recovered().size(), 1);
    panel_->end();
}

void TestProgramStart::recoversNothing_data()
{
    QTest::addColumn<int>("passages");
    QTest::addColumn<bool>("killed");
    QTest::newRow("after a clean end") << 3 << false;
    QTest::newRow("of an empty table") << 0 << true;
}

void TestProgramStart::recoversNothing()
{
    QFETCH(int, passages);
    QFETCH(bool, killed);
    startWatching();
    pass(0, passages);
    if (killed) {
        killAndForget();
    } else {
        panel_->end();
    }
    QTRY_COMPARE(device().onLineConnections(), 0);
    startWatching();
    QCOMPARE(recovered(), QStringList());
    QTRY_COMPARE(QFileInfo(panel_->stallo(liveTable)).size(), 0);
    panel_->end();
}

void TestProgramStart::crashLoopPushesNothingOut()
{
    startWatching();
    pass(0, 5);
    killAndForget();
    for (int run = 0; run < 5; ++run) {
        startWatching();
        killAndForget();
    }
    QCOMPARE(recovered().size(), 1);
    expectRecovered(recovered().first(), 0, 5);
}

void TestProgramStart::secondStartRecoversNothing()
{
    startWatching();
    pass(0, 5);
    QProcess second;
    second.setProcessEnvironment(panel_->process().processEnvironment());
    second.start(QStringLiteral(STALLO_PROGRAM), {});
    QVERIFY(second.waitForStarted());
    QTRY_VERIFY_WITH_TIMEOUT(PanelProgram::isShown(QStringLiteral("^Error$")), patience);
    QCOMPARE(recovered(), QStringList());
    QCOMPARE(QFileInfo(panel_->stallo(liveTable)).size(), qint64{5 * Scan::size});
    second.kill();
    QVERIFY(second.waitForFinished());
    panel_->end();
}

void TestProgramStart::startsWithAnyLockFile_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("rubbish") << QByteArray(3000, '\xFF');
}

void TestProgramStart::startsWithAnyLockFile()
{
    QFETCH(QByteArray, content);
    write(panel_->stallo(QStringLiteral("stallo.lock")), content);
    startWatching();
    panel_->end();
    QVERIFY(!QFile::exists(panel_->stallo(QStringLiteral("stallo.lock"))));
}

void TestProgramStart::abandonedSettingsLockCostsNoTime_data()
{
    QTest::addColumn<QString>("ending");
    QTest::addColumn<bool>("atTheStart");
    QTest::newRow("before the start") << QStringLiteral(".lock") << true;
    QTest::newRow("while it runs") << QStringLiteral(".lock") << false;
    QTest::newRow("of a removal") << QStringLiteral(".lock.rmlock") << true;
}

void TestProgramStart::abandonedSettingsLockCostsNoTime()
{
    QFETCH(QString, ending);
    QFETCH(bool, atTheStart);
    const QString file = panel_->path(QStringLiteral(".config/Dorvel Ltd/Stallo.conf"));
    if (atTheStart) {
        write(file + ending, QByteArray());
        write(file + QStringLiteral(".lock"), QByteArray());
    }
    startWatching();
    pass(0, 1); // the window's thread does not wait
    if (!atTheStart) {
        write(file + ending, QByteArray());
    }
    panel_->end();
    QVERIFY(PanelProgram::content(file).contains("LastWindowPosition"));
}

void TestProgramStart::startsInAHugeWindow()
{
    writeSettings("[General]\nLastWindowSize=@Size(40000 40000)\n");
    startWatching();
    QTRY_VERIFY_WITH_TIMEOUT(PanelProgram::isShown(QStringLiteral("^Stallo")), patience);
    panel_->end();
    const QByteArray settings =
        PanelProgram::content(panel_->path(QStringLiteral(".config/Dorvel Ltd/Stallo.conf")));
    QVERIFY(settings.contains("LastWindowsize=@Size(1920 1080)"));
}

void TestProgramStart::tellsOfAnUnusableWorkingDirectory()
{
    write(panel_->path(QStringLiteral("Stallo")), "a file");
    startWatching(); // the lanes are watched all the same
    QTRY_VERIFY_WITH_TIMEOUT(PanelProgram::isShown(QStringLiteral("^Error$")), patience);
    panel_->end();
}

void TestProgramStart::keepsItsFilesToItself()
{
    QVERIFY(QDir().mkpath(panel_->stallo(QStringLiteral("OnLineTemp/jpegdata"))));
    QVERIFY(QDir().mkpath(panel_->stallo(QStringLiteral("VideoTemp"))));
    startWatching();
    pass(0, 3);
    QTRY_VERIFY(QFile::exists(panel_->stallo(QStringLiteral("VideoTemp/video0.jpeg"))));
    const auto expectPrivate = [](const QString &path) {
        struct stat is = {};
        if (lstat(QFile::encodeName(path).constData(), &is) == 0) {
            const int wanted = S_ISDIR(is.st_mode) ? 0700 : 0600;
            QVERIFY2(int(is.st_mode & 0777) == wanted, qPrintable(path));
        }
    };
    int seen = 0;
    const auto expectAllPrivate = [&] {
        expectPrivate(panel_->stallo().chopped(1));
        QDirIterator all(panel_->stallo(), QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                         QDirIterator::Subdirectories);
        for (seen = 0; all.hasNext(); ++seen) {
            expectPrivate(all.next());
        }
    };
    expectAllPrivate();
    QVERIFY2(seen > 12, qPrintable(QString::number(seen)));
    killAndForget();
    startWatching();
    expectAllPrivate(); // with what was recovered
    panel_->end();
}

// A library of the toolkit would start one, found by its name, where it finds no bus.
void TestProgramStart::startsNoSessionBus()
{
    const QString started = panel_->path(QStringLiteral("started"));
    const QString launcher = panel_->path(QStringLiteral("bin/dbus-launch"));
    write(launcher, "#!/bin/sh\n: >'" + QFile::encodeName(started) + "'\nexit 1\n");
    QVERIFY(QFile::setPermissions(launcher, QFile::ReadOwner | QFile::ExeOwner));
    QProcessEnvironment &environment = panel_->environment();
    environment.insert(QStringLiteral("PATH"), panel_->path(QStringLiteral("bin")) +
                                                   QLatin1Char(':') +
                                                   environment.value(QStringLiteral("PATH")));
    environment.remove(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"));
    environment.remove(QStringLiteral("XDG_RUNTIME_DIR"));
    environment.insert(QStringLiteral("QT_LINUX_ACCESSIBILITY_ALWAYS_ON"), QStringLiteral("1"));
    startWatching();
    pass(0, 1);
    panel_->end();
    QVERIFY(!QFile::exists(started));
}

void TestProgramStart::leavesNothingOfAKilledDownload()
{
    const ArchiveDevice archive(device(), ArchiveDevice::passages(200));
    device().faults().add(Fault::trickle(4, 1).on(DevicePaths::archive()));
    panel_->start({QStringLiteral("--archive"), device().address()});
    const auto pieces = [this] {
        QStringList all;
        QDirIterator files(panel_->stallo(QStringLiteral("ArchiveTemp")), QDir::Files,
                           QDirIterator::Subdirectories);
        while (files.hasNext()) {
            all.append(files.next());
        }
        return all;
    };
    QTRY_VERIFY_WITH_TIMEOUT(!pieces().filter(QStringLiteral("stallo-transfer-")).isEmpty(),
                             patience);
    panel_->kill();
    QVERIFY(!pieces().isEmpty());
    QCOMPARE(QDir(panel_->path(QStringLiteral("tmp")))
                 .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList());
    device().faults().clear();
    startWatching();
    QCOMPARE(pieces(), QStringList());
    QCOMPARE(QDir(panel_->stallo(QStringLiteral("ArchiveTemp")))
                 .entryList(QDir::Dirs | QDir::NoDotAndDotDot),
             QStringList(QStringLiteral("jpegdata")));
    panel_->end();
}

STALLO_TEST_MAIN(TestProgramStart)
#include "tst_programstart.moc"
