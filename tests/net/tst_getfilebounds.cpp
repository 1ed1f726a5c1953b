// SPDX-License-Identifier: MIT
#include "net/getfile.h"

#include "app/settings.h"
#include "tests/support/blackhole.h"
#include "tests/support/devices.h"
#include "tests/support/testmain.h"

#include <QElapsedTimer>
#include <QTemporaryDir>

namespace
{

const QString path = QStringLiteral("/data/file");
const QByteArray lateText = "Timeout when reading file from vask";
const QByteArray refusedText = "Can't download proper data";

QByteArray content(int size)
{
    QByteArray bytes(size, '\0');
    for (int at = 0; at < size; ++at) {
        bytes[at] = static_cast<char>(at * 7 + at / 251);
    }
    return bytes;
}

} // namespace

Q_DECLARE_METATYPE(Fault)

// How long and how large a download may become, and downloads into memory.
class TestGetFileBounds : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        folder_ = std::make_unique<QTemporaryDir>();
        devices_ = std::make_unique<Devices>();
        local_ = folder_->filePath(QStringLiteral("local"));
    }
    void cleanup() { devices_.reset(); }

    void allowsTimeForTheSize_data();
    void allowsTimeForTheSize();
    void endsSteadyTrickleAfterAMinute();
    void endsInTotalTime_data();
    void endsInTotalTime();
    void totalTimeIsForEachCall();
    void fetchesIntoMemory_data();
    void fetchesIntoMemory();
    void failsInMemory_data();
    void failsInMemory();
    void takesNoMoreThanIsAllowed_data();
    void takesNoMoreThanIsAllowed();

private:
    DeviceHost &device() { return devices_->first(); }

    std::unique_ptr<QTemporaryDir> folder_;
    std::unique_ptr<Devices> devices_;
    QString local_;
};

void TestGetFileBounds::allowsTimeForTheSize_data()
{
    QTest::addColumn<qint64>("size");
    QTest::addColumn<qint64>("msec");

    QTest::newRow("empty") << qint64(0) << qint64(60000);
    QTest::newRow("a photo") << qint64(60000) << qint64(60000);
    QTest::newRow("a minute's worth") << qint64(1200000) << qint64(60000);
    QTest::newRow("a little more") << qint64(1200020) << qint64(60001);
    QTest::newRow("a list") << qint64(11600000) << qint64(580000);
    QTest::newRow("beyond 32 bits") << (qint64(1) << 40) << qint64(54975581388);
}

void TestGetFileBounds::allowsTimeForTheSize()
{
    QFETCH(qint64, size);
    QTEST(FileTransfer::longestReceipt(size), "msec");
}

void TestGetFileBounds::endsSteadyTrickleAfterAMinute()
{
    // 80 s if nothing ended it, although no block ever takes too long.
    device().files().set(path, content(204800));
    device().faults().add(Fault::trickle(1024, 400).on(path));
    GetFile get(device().address(), local_, nullptr);
    QElapsedTimer clock;
    clock.start();
    QVERIFY(!get(path));
    QCOMPARE(get.transferError().toLatin1(), lateText);
    QVERIFY2(clock.elapsed() >= 60000 && clock.elapsed() < 65000,
             qPrintable(QString::number(clock.elapsed())));
}

void TestGetFileBounds::endsInTotalTime_data()
{
    QTest::addColumn<Fault>("fault");
    QTest::addColumn<bool>("blackHole");

    QTest::newRow("never answers") << Fault::silent().on(path) << false;
    QTest::newRow("answers too late") << Fault::delay(1200).on(path) << false;
    QTest::newRow("trickles") << Fault::trickle(1024, 300).on(path) << false;
    QTest::newRow("pauses") << Fault::pause(5000, 60000).on(path) << false;
    QTest::newRow("black hole") << Fault::silent().on(path) << true;
}

void TestGetFileBounds::endsInTotalTime()
{
    QFETCH(Fault, fault);
    QFETCH(bool, blackHole);
    std::unique_ptr<BlackHole> hole;
    if (blackHole) {
        hole = std::make_unique<BlackHole>(QHostAddress::LocalHost);
        Settings::instance()->setFileTransferPort(hole->port());
    }
    device().files().set(path, content(60000));
    device().faults().add(fault);
    GetFile get(device().address(), local_, nullptr);
    get.setTotalTimeout(1000);
    QElapsedTimer clock;
    clock.start();
    QVERIFY(!get(path));
    QVERIFY(!get.transferError().isEmpty());
    QVERIFY2(clock.elapsed() < 1500, qPrintable(QString::number(clock.elapsed())));
    QCOMPARE(get.state(), QAbstractSocket::UnconnectedState);
}

void TestGetFileBounds::totalTimeIsForEachCall()
{
    device().files().set(path, content(5000));
    device().faults().add(Fault::delay(600).on(path));
    GetFile get(device().address(), local_, nullptr);
    get.setTotalTimeout(1000);
    for (int n = 0; n < 3; ++n) {
        QVERIFY2(get(path), qPrintable(get.transferError()));
    }
}

void TestGetFileBounds::fetchesIntoMemory_data()
{
    QTest::addColumn<int>("size");
    for (const int size : {0, 1, 1023, 1024, 1025, 2048, 100000, 3000000}) {
        QTest::addRow("%d bytes", size) << size;
    }
}

void TestGetFileBounds::fetchesIntoMemory()
{
    QFETCH(int, size);
    device().files().set(path, content(size));
    GetFile get(device().address(), local_, nullptr);
    const std::optional<QByteArray> fetched = get.fetch(path, size);
    QVERIFY2(fetched.has_value(), qPrintable(get.transferError()));
    QCOMPARE(*fetched, content(size));
    QVERIFY(!get.transferFailed());
    QVERIFY(!QFile::exists(local_));
    QCOMPARE(get.state(), QAbstractSocket::UnconnectedState);
}

void TestGetFileBounds::failsInMemory_data()
{
    QTest::addColumn<Fault>("fault");
    QTest::addColumn<int>("bytes"); // -1 for nothing

    QTest::newRow("refused") << Fault::answer("Error=Can't open file").on(path) << -1;
    QTest::newRow("silent") << Fault::silent().on(path) << -1;
    QTest::newRow("resets") << Fault::resetOnAccept() << -1;
    QTest::newRow("closes in a block") << Fault::closeAfter(1500).on(path) << -1;
    QTest::newRow("closes in the remainder") << Fault::closeAfter(4900).on(path) << 4900;
    QTest::newRow("garbage") << Fault::garbage().on(path) << 0;
}

void TestGetFileBounds::failsInMemory()
{
    QFETCH(Fault, fault);
    QFETCH(int, bytes);
    device().files().set(path, content(5000));
    device().faults().add(fault);
    GetFile get(device().address(), local_, nullptr);
    get.setTimeout(1000);
    const std::optional<QByteArray> fetched = get.fetch(path, 16 << 20);
    QCOMPARE(fetched.has_value(), bytes >= 0);
    QCOMPARE(get.transferFailed(), bytes < 0);
    QCOMPARE(get.transferError().isEmpty(), bytes >= 0);
    if (fetched) {
        QCOMPARE(*fetched, content(5000).left(bytes));
    }
    device().faults().clear();
    QCOMPARE(get.fetch(path, 5000).value_or(QByteArray()), content(5000));
}

void TestGetFileBounds::takesNoMoreThanIsAllowed_data()
{
    QTest::addColumn<Fault>("fault");
    QTest::addColumn<int>("most");

    QTest::newRow("a byte too large") << Fault::closeAtEnd().on(path) << 4999;
    QTest::newRow("said to be huge") << Fault::declaredSize("99999999999999").on(path) << 16777216;
}

void TestGetFileBounds::takesNoMoreThanIsAllowed()
{
    QFETCH(Fault, fault);
    QFETCH(int, most);
    device().files().set(path, content(5000));
    device().faults().add(fault);
    GetFile get(device().address(), local_, nullptr);
    QVERIFY(!get.fetch(path, most).has_value());
    QCOMPARE(get.transferError().toLatin1(), refusedText);
}

STALLO_TEST_MAIN(TestGetFileBounds)
#include "tst_getfilebounds.moc"
