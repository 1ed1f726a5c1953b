// SPDX-License-Identifier: MIT
#include "pages/accesstransfer.h"

#include "app/settings.h"
#include "simulator/filetree.h"
#include "tests/support/blackhole.h"
#include "tests/support/devices.h"
#include "tests/support/filelimit.h"
#include "tests/support/listpage.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QThread>

namespace
{

using Page = ListPage;

constexpr int patience = 30000;
const QString busy = QStringLiteral("Vask is busy now. Please try again later.");
const QString damaged = QStringLiteral("The access list of Vask is damaged.");
const QString tooLong = QStringLiteral("The access list is longer than 100,000 entries");
const QString noList = QStringLiteral("No access base on Vask find out");

} // namespace

Q_DECLARE_METATYPE(Fault)

// The transfers of access lists without a page, in a worker's thread.
class TestAccessTransfer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void moves_data();
    void moves();
    void tellsRefusalsApart_data();
    void tellsRefusalsApart();
    void takesNoRubbish_data();
    void takesNoRubbish();
    void tellsDamageApart_data();
    void tellsDamageApart();
    void sendsWholeEntries_data();
    void sendsWholeEntries();
    void namesNothingOfLocalTrouble();
    void appends_data();
    void appends();
    void appendsTranslatedNumber();
    void appendsToNothingElse_data();
    void appendsToNothingElse();
    void appendsByFileThatGoesAgain();
    void needsPlaceToAppend();
    void sendsOneByte();
    void passesOverRefusedReload();
    void givesUpReload();
    void endsWhenInterrupted_data();
    void endsWhenInterrupted();
    void reloadsAlthoughInterrupted();

private:
    DeviceHost &device() { return devices_->first(); }
    QString host() { return device().address(); }
    void setDeviceList(const QByteArray &list)
    {
        device().files().set(DevicePaths::accessList(), list);
    }
    QString below(const char *name) const { return folder_->filePath(QString::fromLatin1(name)); }
    static QString inWorker(const std::function<QString()> &work)
    {
        QString result;
        const std::unique_ptr<QThread> thread(QThread::create([&] { result = work(); }));
        thread->start();
        return thread->wait(patience) ? result : QStringLiteral("it goes on and on");
    }
    QString fetch()
    {
        return inWorker([this] { return AccessTransfer(host()).fetch(below("fetched")); });
    }
    QString append(const Access &entry)
    {
        return inWorker([&] { return AccessTransfer(host()).append(entry); });
    }
    // How long a worker goes on after it has done its request and is interrupted.
    template <typename Requested>
    static qint64 endsWithin(const std::function<void()> &work, const Requested &requested)
    {
        const std::unique_ptr<QThread> thread(QThread::create(work));
        thread->start();
        [&] { QTRY_VERIFY(requested()); }();
        QElapsedTimer clock;
        clock.start();
        thread->requestInterruption();
        thread->wait();
        return clock.elapsed();
    }
    QStringList temporaryFiles() const
    {
        return QDir(below("tmp")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    }

    std::unique_ptr<QTemporaryDir> folder_;
    std::unique_ptr<Devices> devices_;
};

void TestAccessTransfer::init()
{
    Page::prepare();
    folder_ = std::make_unique<QTemporaryDir>();
    QVERIFY(QDir(folder_->path()).mkdir(QStringLiteral("tmp")));
    Settings::instance()->setSufferedTempDirectory(below("tmp"));
    devices_ = std::make_unique<Devices>();
}

void TestAccessTransfer::cleanup()
{
    devices_.reset();
    folder_.reset();
}

void TestAccessTransfer::moves_data()
{
    QTest::addColumn<int>("entries");
    for (const int entries : {0, 1, 8, 9, 40, 999, 1000, 1200}) {
        QTest::addRow("%d entries", entries) << entries;
    }
}

// 8 and 9 are on both sides of the transfer's block.
void TestAccessTransfer::moves()
{
    QFETCH(int, entries);
    const QByteArray list = Page::list(entries);
    setDeviceList(list);
    QCOMPARE(fetch(), QString());
    QCOMPARE(Page::content(below("fetched")), list);
    QCOMPARE(device().reloadCount(), 0);

    const QByteArray other = Page::list(entries, 500);
    Page::write(below("edited"), other);
    QCOMPARE(inWorker([this] { return AccessTransfer(host()).send(below("edited")); }), QString());
    QTRY_COMPARE(device().storedAccessList(), other);
    QCOMPARE(device().reloadCount(), 0);
    inWorker([this] {
        AccessTransfer::reload(host());
        return QString();
    });
    QTRY_COMPARE(device().activeAccessList(), other);
}

void TestAccessTransfer::tellsRefusalsApart_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<QString>("text");
    QTest::newRow("no list") << QByteArray("Error=Can't open file") << noList;
    QTest::newRow("blanks") << QByteArray("Error= Can't open file ") << noList;
    QTest::newRow("other reason") << QByteArray("Error=Can't open files") << busy;
    QTest::newRow("other spelling") << QByteArray("Error=can't open file") << busy;
    QTest::newRow("without a sign") << QByteArray("Error Can't open file") << busy;
    QTest::newRow("no reason") << QByteArray("Error") << busy;
    QTest::newRow("busy") << QByteArray("Error=Busy") << busy;
    QTest::newRow("no refusal") << QByteArray("Can't open file") << busy;
}

void TestAccessTransfer::tellsRefusalsApart()
{
    QFETCH(QByteArray, answer);
    device().faults().add(Fault::answer(answer));
    QTEST(fetch(), "text");
}

void TestAccessTransfer::takesNoRubbish_data()
{
    QTest::addColumn<Fault>("fault");
    QTest::newRow("empty line") << Fault::answer("");
    QTest::newRow("bytes") << Fault::garbage();
    QTest::newRow("a word") << Fault::answer("OK");
    QTest::newRow("size is no number") << Fault::declaredSize("many");
    QTest::newRow("no size") << Fault::declaredSize("");
    QTest::newRow("negative size") << Fault::declaredSize("-116");
    QTest::newRow("an entry too many") << Fault::sizeOffset(116);
    // Behind the last whole block, where the transfer does not mind a line that is lost.
    QTest::newRow("closed before the last byte") << Fault::closeAfter(-1);
    QTest::newRow("closed before the last entry") << Fault::closeAfter(-116);
    QTest::newRow("closed before four entries") << Fault::closeAfter(-4 * 116);
    QTest::newRow("reset before the last entry") << Fault::resetAfter(-116);
    QTest::newRow("closed at once") << Fault::closeAfter(0);
}

void TestAccessTransfer::takesNoRubbish()
{
    QFETCH(Fault, fault);
    const QByteArray list = Page::list(40);
    QVERIFY(list.size() % 1024 > 4 * 116);
    setDeviceList(list);
    device().faults().add(fault.onlyFor(Fault::Method::Get));
    QCOMPARE(fetch(), busy);
    // Nor is anything added to it.
    QVERIFY(!append(Page::entry(7)).isEmpty());
    QCOMPARE(device().storedAccessList(), list);
    QCOMPARE(device().journal().countRequests(), 2);
    device().faults().clear();
    QCOMPARE(fetch(), QString());
}

void TestAccessTransfer::tellsDamageApart_data()
{
    QTest::addColumn<QByteArray>("list");
    QTest::addColumn<Fault>("fault");
    QTest::addColumn<QString>("text");
    const QByteArray list = Page::list(40);
    const Fault none = Fault::sizeOffset(0);
    QTest::newRow("an entry and a byte") << Page::list(1) + 'x' << none << damaged;
    QTest::newRow("one byte") << QByteArray("x") << none << damaged;
    QTest::newRow("a byte less") << list.chopped(1) << none << damaged;
    QTest::newRow("half an entry more") << list + "half an entry" << none << damaged;
    QTest::newRow("said to be shorter") << list << Fault::sizeOffset(-50) << damaged;
    QTest::newRow("said to be longer") << list << Fault::sizeOffset(50) << damaged;
    QTest::newRow("damaged and cut") << list + 'x' << Fault::closeAfter(2000) << damaged;
    QTest::newRow("whole and cut") << list << Fault::closeAfter(2000) << busy;
    QTest::newRow("whole") << list << none << QString();
    QTest::newRow("the longest")
        << QByteArray(100000 * int(Access::size), '\1') << none << QString();
    QTest::newRow("one more")
        << QByteArray(100001 * int(Access::size), '\1') << none << tooLong;
    QTest::newRow("endless") << list << Fault::declaredSize("1160000000116") << tooLong;
    QTest::newRow("endless and damaged") << list << Fault::declaredSize("9999999999") << damaged;
}

void TestAccessTransfer::tellsDamageApart()
{
    QFETCH(QByteArray, list);
    QFETCH(Fault, fault);
    QFETCH(QString, text);
    setDeviceList(list);
    device().faults().add(fault.onlyFor(Fault::Method::Get));
    Page::write(below("fetched"), "older");
    QCOMPARE(fetch(), text);
    if (text == tooLong) {
        QCOMPARE(Page::content(below("fetched")), QByteArray("older"));
    }
    QCOMPARE(device().storedAccessList(), list);
}

void TestAccessTransfer::sendsWholeEntries_data()
{
    QTest::addColumn<QByteArray>("list");
    QTest::addColumn<int>("entries");
    QTest::newRow("half an entry more") << Page::list(9) + "half an entry" << 9;
    QTest::newRow("a byte less") << Page::list(9).chopped(1) << 8;
    QTest::newRow("half an entry") << QByteArray("half an entry") << 0;
}

void TestAccessTransfer::sendsWholeEntries()
{
    QFETCH(QByteArray, list);
    QFETCH(int, entries);
    setDeviceList(Page::list(40));
    Page::write(below("edited"), list);
    QCOMPARE(inWorker([this] { return AccessTransfer(host()).send(below("edited")); }), QString());
    QTRY_COMPARE(device().storedAccessList(), Page::list(entries));
    QCOMPARE(Page::content(below("edited")), list);
    QCOMPARE(temporaryFiles(), QStringList());
}

void TestAccessTransfer::namesNothingOfLocalTrouble()
{
    setDeviceList(Page::list(40));
    {
        const FileLimit fullDisk(2000);
        QCOMPARE(fetch(), busy);
    }
    const QString nowhere = below("missing/list");
    QCOMPARE(inWorker([&] { return AccessTransfer(host()).fetch(nowhere); }), busy);
    QCOMPARE(inWorker([&] { return AccessTransfer(host()).send(nowhere); }), busy);
    QCOMPARE(inWorker([&] { return AccessTransfer(host()).send(QString()); }), busy);
    QCOMPARE(inWorker([&] { return AccessTransfer(Devices::refused()).fetch(below("x")); }), busy);
    QCOMPARE(device().storedAccessList(), Page::list(40));
}

void TestAccessTransfer::appends_data()
{
    QTest::addColumn<int>("entries");
    QTest::addColumn<int>("id");
    QTest::newRow("empty") << 0 << 1;
    QTest::newRow("one") << 1 << 2;
    QTest::newRow("many") << 999 << 1000;
}

void TestAccessTransfer::appends()
{
    QFETCH(int, entries);
    QFETCH(int, id);
    setDeviceList(Page::list(entries));
    Access entry = Page::entry(500);
    entry.setId(33);
    QCOMPARE(append(entry), QString());
    entry.setId(static_cast<qint16>(id));
    QTRY_COMPARE(device().storedAccessList(), Page::list(entries) + Page::bytes(entry));
    QCOMPARE(temporaryFiles(), QStringList());
}

void TestAccessTransfer::appendsTranslatedNumber()
{
    setDeviceList(QByteArray());
    Access entry = Page::entry(5);
    entry.setNumber(QStringLiteral("a005bc77"));
    QCOMPARE(append(entry), QString());
    QTRY_COMPARE(device().storedAccessList().mid(2, 10), QByteArray("A005BC77\0\0", 10));
}

void TestAccessTransfer::appendsToNothingElse_data()
{
    QTest::addColumn<QString>("state");
    QTest::addColumn<QString>("error");
    const auto row = [](const char *state, const char *error) {
        QTest::newRow(state) << QString::fromLatin1(state) << QString::fromLatin1(error);
    };
    row("full", "The access list of the device is full");
    row("missing", "Can't download proper data");
    row("half an entry", "The access list of Vask is damaged.");
    row("endless", "The access list is longer than 100,000 entries");
    row("refused upload", "Error=Disk is full");
}

void TestAccessTransfer::appendsToNothingElse()
{
    QFETCH(QString, state);
    const bool upload = state == QLatin1String("refused upload");
    QByteArray list = Page::list(40);
    if (state == QLatin1String("full")) {
        list = Page::list(1000);
    } else if (state == QLatin1String("half an entry")) {
        list += "half an entry";
    }
    setDeviceList(list);
    if (state == QLatin1String("endless")) {
        device().faults().add(Fault::declaredSize("1160000000116").onlyFor(Fault::Method::Get));
    } else if (state == QLatin1String("missing")) {
        device().files().remove(DevicePaths::accessList());
        list.clear();
    } else if (upload) {
        device().faults().add(Fault::answer("Error=Disk is full").onlyFor(Fault::Method::Put));
    }
    QTEST(append(Page::entry(1)), "error");
    QCOMPARE(device().journal().countRequests(), upload ? 2 : 1);
    QCOMPARE(device().storedAccessList(), list);
    QCOMPARE(temporaryFiles(), QStringList());
}

void TestAccessTransfer::appendsByFileThatGoesAgain()
{
    setDeviceList(Page::list(40));
    device().faults().add(Fault::pause(2000, 300).onlyFor(Fault::Method::Get));
    QStringList seen;
    const std::unique_ptr<QThread> thread(
        QThread::create([this] { AccessTransfer(host()).append(Page::entry(1)); }));
    thread->start();
    QTRY_VERIFY(!(seen = temporaryFiles()).isEmpty());
    QVERIFY(thread->wait(patience));
    QCOMPARE(seen.size(), 1);
    QVERIFY2(seen.first().startsWith(QLatin1String("stallo-transfer-")), qPrintable(seen.first()));
    QCOMPARE(temporaryFiles(), QStringList());
    QTRY_COMPARE(device().storedAccessList().size(), int(41 * Access::size));
}

void TestAccessTransfer::needsPlaceToAppend()
{
    setDeviceList(Page::list(40));
    Settings::instance()->setSufferedTempDirectory(QStringLiteral("/proc")); // makes no files
    QVERIFY(!append(Page::entry(1)).isEmpty());
    Page::write(below("edited"), "half an entry");
    QVERIFY(!inWorker([this] { return AccessTransfer(host()).send(below("edited")); }).isEmpty());
    QCOMPARE(device().journal().countRequests(), 0);
    Settings::instance()->setSufferedTempDirectory(below("tmp"));
    {
        const FileLimit fullDisk(40 * Access::size);
        QVERIFY(!append(Page::entry(1)).isEmpty());
    }
    QCOMPARE(device().journal().countRequests(), 1);
    QCOMPARE(device().storedAccessList(), Page::list(40));
    QCOMPARE(temporaryFiles(), QStringList());
}

void TestAccessTransfer::sendsOneByte()
{
    AccessTransfer::reload(host()); // in any thread
    QTRY_COMPARE(device().reloadCount(), 1);
    QTRY_COMPARE(device().onLineConnections(), 0);
    QCOMPARE(device().journal().count(JournalEntry::Kind::OnLineOpened), 1);
    const auto received = device().journal().entries(JournalEntry::Kind::Received);
    QCOMPARE(received.size(), 1);
    QCOMPARE(received.first().data, QByteArray("\xEF"));
    QCOMPARE(device().barrierCount() + device().keepAliveCount(), 0);
    QCOMPARE(device().journal().countRequests(), 0);
}

void TestAccessTransfer::passesOverRefusedReload()
{
    device().setOnLineListening(false);
    QElapsedTimer clock;
    clock.start();
    AccessTransfer::reload(host());
    QVERIFY2(clock.elapsed() < 1000, qPrintable(QString::number(clock.elapsed())));
    QCOMPARE(device().reloadCount(), 0);
}

void TestAccessTransfer::givesUpReload()
{
    const BlackHole hole(QHostAddress::LocalHost);
    Settings::instance()->setVaskParkingPort(hole.port());
    QElapsedTimer clock;
    clock.start();
    AccessTransfer::reload(host());
    QVERIFY2(clock.elapsed() >= 3000 && clock.elapsed() < 4000,
             qPrintable(QString::number(clock.elapsed())));
}

void TestAccessTransfer::endsWhenInterrupted_data()
{
    QTest::addColumn<QString>("step");
    QTest::addColumn<int>("bound");
    QTest::newRow("fetch") << QStringLiteral("fetch") << 200;
    QTest::newRow("send") << QStringLiteral("send") << 200;
    QTest::newRow("append, getting") << QStringLiteral("append get") << 200;
    QTest::newRow("append, putting") << QStringLiteral("append put") << 200;
    // Goes on for a second: the list is there and only the word is missing.
    QTest::newRow("reload") << QStringLiteral("reload") << 1500;
}

void TestAccessTransfer::endsWhenInterrupted()
{
    QFETCH(QString, step);
    QFETCH(int, bound);
    setDeviceList(Page::list(40));
    Page::write(below("edited"), Page::list(1000));
    std::unique_ptr<BlackHole> hole;
    int requests = 1;
    std::function<void()> work = [this] { AccessTransfer(host()).append(Page::entry(1)); };
    auto method = Fault::Method::Any;
    if (step == QLatin1String("fetch")) {
        work = [this] { AccessTransfer(host()).fetch(below("fetched")); };
    } else if (step == QLatin1String("send")) {
        work = [this] { AccessTransfer(host()).send(below("edited")); };
    } else if (step == QLatin1String("append put")) {
        requests = 2;
        method = Fault::Method::Put;
    } else if (step == QLatin1String("reload")) {
        hole = std::make_unique<BlackHole>(QHostAddress::LocalHost);
        Settings::instance()->setVaskParkingPort(hole->port());
        work = [this] { AccessTransfer::reload(host()); };
        requests = 0;
    }
    device().faults().add(Fault::silent().onlyFor(method));
    const qint64 taken = endsWithin(
        work, [this, requests] { return device().journal().countRequests() == requests; });
    QVERIFY2(taken <= bound, qPrintable(QString::number(taken)));
    QCOMPARE(device().storedAccessList(), Page::list(40));
    QCOMPARE(temporaryFiles(), QStringList());
}

void TestAccessTransfer::reloadsAlthoughInterrupted()
{
    inWorker([this] {
        QThread::currentThread()->requestInterruption();
        AccessTransfer::reload(host());
        return QString();
    });
    QTRY_COMPARE(device().reloadCount(), 1);
}

STALLO_TEST_MAIN(TestAccessTransfer)
#include "tst_accesstransfer.moc"
