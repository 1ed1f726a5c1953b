// SPDX-License-Identifier: MIT
#include "net/getfile.h"

#include "app/settings.h"
#include "net/threadrun.h"
#include "records/diskspace.h"
#include "tests/support/devices.h"
#include "tests/support/filelimit.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QSignalSpy>
#include <QTemporaryDir>

namespace
{

const QString path = QStringLiteral("/data/file");

QByteArray content(int size)
{
    QByteArray bytes(size, '\0');
    for (int at = 0; at < size; ++at) {
        bytes[at] = static_cast<char>(at * 7 + at / 251);
    }
    return bytes;
}

// A stream of zeros, as fast as it can be taken.
class Zeros : public FileContent
{
public:
    explicit Zeros(qint64 size)
        : size_(size)
    {
    }
    qint64 size() const override { return size_; }
    QByteArray read(qint64 offset, qint64 length) const override
    {
        return QByteArray(static_cast<int>(qMin(length, size_ - offset)), '\0');
    }

private:
    qint64 size_;
};

const char *timeoutText = "Timeout when reading file from vask";
const char *refusedText = "Can't download proper data";
const char *connectText = "Connection timeout";

} // namespace

Q_DECLARE_METATYPE(Fault)

class TestGetFile : public QObject
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

    void fetchesSizes_data()
    {
        QTest::addColumn<int>("size");
        for (const int size : {0, 1, 1023, 1024, 1025, 2048, 100000, 3000000}) {
            QTest::addRow("%d bytes", size) << size;
        }
    }
    void fetchesSizes()
    {
        QFETCH(int, size);
        device().files().set(path, content(size));
        GetFile get(device().address(), local_, nullptr);
        QVERIFY2(get(path), qPrintable(get.transferError()));
        QCOMPARE(localContent(), content(size));
        QVERIFY(!get.transferFailed());
        QCOMPARE(get.transferError(), QString());
        QCOMPARE(get.answer(), "File size=" + QByteArray::number(size));
        QCOMPARE(device().journal().countRequests(path), 1);
    }

    void survivesFaults_data()
    {
        QTest::addColumn<Fault>("fault");
        QTest::addColumn<bool>("success");
        QTest::addColumn<QString>("error"); // "*" for any text
        QTest::addColumn<int>("bytes");     // in the local file; -1 for the old file
        const auto row = [](const char *name, const Fault &fault, bool success, const char *error,
                            int bytes) {
            QTest::newRow(name) << fault << success << QString::fromLatin1(error) << bytes;
        };
        const int size = 5000;
        row("closes on accept", Fault::closeOnAccept(), false, "*", -1);
        row("resets on accept", Fault::resetOnAccept(), false, "*", -1);
        row("closes after the request", Fault::closeAfterRequest().on(path), false, "*", -1);
        row("resets after the request", Fault::resetAfterRequest().on(path), false, "*", -1);
        row("stays silent", Fault::silent().on(path), false, "*", -1);
        row("closes in a block", Fault::closeAfter(1500).on(path), false, "*", 1024);
        row("resets in a block", Fault::resetAfter(1500).on(path), false, "*", -2);
        row("closes in the remainder", Fault::closeAfter(4900).on(path), true, "", 4900);
        row("closes at a block's end", Fault::closeAfter(4096).on(path), true, "", 4096);
        row("closes after the last byte", Fault::closeAtEnd().on(path), true, "", size);
        row("Error=", Fault::answer("Error=Can't open file").on(path), false, refusedText, -1);
        row("Error", Fault::answer("Error").on(path), false, refusedText, -1);
        row("error", Fault::answer("error").on(path), true, "", 0);
        row("empty answer", Fault::answer("").on(path), true, "", 0);
        row("garbage", Fault::garbage().on(path), true, "", 0);
        row("50 MB without a line end", Fault::flood().on(path), false, "*", -1);
        row("size -5", Fault::declaredSize("-5").on(path), true, "", 0);
        row("size 0", Fault::declaredSize("0").on(path), true, "", 0);
        row("size abc", Fault::declaredSize("abc").on(path), true, "", 0);
        row("size beyond the disk", Fault::declaredSize("99999999999999").on(path), false,
            refusedText, -1);
        row("size too small", Fault::sizeOffset(-900).on(path), true, "", size - 900);
        row("size too large", Fault::sizeOffset(3000).on(path), false, timeoutText, 4096);
        row("pause of 400 ms", Fault::pause(1500, 400).on(path), true, "", size);
        row("pause of 900 ms", Fault::pause(1500, 900).on(path), false, timeoutText, 1024);
        row("16 bytes at a time", Fault::trickle(16, 12).on(path), false, timeoutText, 0);
        row("answer after 1.5 s", Fault::delay(1500).on(path), true, "", size);
        row("answer after 2.5 s", Fault::delay(2500).on(path), false, "*", -1);
    }
    void survivesFaults()
    {
        QFETCH(Fault, fault);
        QFETCH(bool, success);
        QFETCH(QString, error);
        QFETCH(int, bytes);
        writeOld();
        device().files().set(path, content(5000));
        device().faults().add(fault);
        GetFile get(device().address(), local_, nullptr);
        get.setTimeout(2000);
        QElapsedTimer clock;
        clock.start();
        QCOMPARE(get(path), success);
        QVERIFY2(clock.elapsed() < 8000, "a fault must not hold the worker");
        QCOMPARE(get.transferFailed(), !success);
        if (error == QLatin1String("*")) {
            QVERIFY(!get.transferError().isEmpty());
        } else {
            QCOMPARE(get.transferError(), error);
        }
        if (bytes == -1) {
            QCOMPARE(localContent(), QByteArray("old"));
        } else if (bytes >= 0) {
            QCOMPARE(localContent(), content(5000).left(bytes));
        }
        // The same object serves again.
        device().faults().clear();
        QVERIFY2(get(path), qPrintable(get.transferError()));
        QCOMPARE(localContent(), content(5000));
        QCOMPARE(get.transferError(), QString());
        QVERIFY(!get.transferFailed());
    }

    void keepsRawAnswer()
    {
        device().faults().add(Fault::answer("Error=Can't open file").on(path));
        GetFile get(device().address(), local_, nullptr);
        QCOMPARE(get.answer(), QByteArray());
        QVERIFY(!get(path));
        QCOMPARE(get.answer(), QByteArray("Error=Can't open file"));
        get.setHost(Devices::refused());
        QVERIFY(!get(path));
        QCOMPARE(get.answer(), QByteArray());
    }

    void reportsMissingListener()
    {
        GetFile get(Devices::refused(), local_, nullptr);
        QVERIFY(!get(path));
        QCOMPARE(get.transferError(), QString::fromLatin1(connectText));
        QVERIFY(!QFile::exists(local_));
    }

    void reportsUnwritableFile()
    {
        device().files().set(path, content(10));
        const QString folder = folder_->path();
        GetFile get(device().address(), folder, nullptr);
        QVERIFY(!get(path));
        QVERIFY(get.transferError().startsWith(folder + QStringLiteral(": ")));
    }

    void reportsFullDisk()
    {
        device().files().set(path, content(100000));
        GetFile get(device().address(), local_, nullptr);
        {
            const FileLimit fullDisk(50000);
            QVERIFY(!get(path));
        }
        QVERIFY(get.transferError().startsWith(local_ + QStringLiteral(": ")));
        QVERIFY(get(path));
    }

    // Only what the disk cannot take is refused; the reserve is for others to keep.
    void asksForRoomFirst_data()
    {
        QTest::addColumn<qint64>("size");
        QTest::addColumn<qint64>("reserve");
        QTest::addColumn<qint64>("spared");
        QTest::addColumn<bool>("fits");
        const qint64 disk = DiskSpace::of(QDir::tempPath()).total;
        QTest::newRow("reserve of the whole disk") << qint64(5000) << 2 * disk << qint64(0) << true;
        QTest::newRow("something spared") << qint64(5000) << qint64(0) << qint64(100) << true;
        QTest::newRow("whole disk spared") << qint64(5000) << qint64(0) << disk << false;
        QTest::newRow("nothing beside the spared") << qint64(0) << qint64(0) << disk << true;
        QTest::newRow("larger than the disk") << disk + 1 << qint64(0) << qint64(0) << false;
    }
    void asksForRoomFirst()
    {
        QFETCH(qint64, size);
        QFETCH(qint64, reserve);
        QFETCH(qint64, spared);
        QFETCH(bool, fits);
        Settings::instance()->SetMinReservedFreeSpace(reserve);
        device().files().setMaker(
            path, [size](const QString &) { return std::make_shared<Zeros>(size); });
        writeOld();
        GetFile get(device().address(), local_, nullptr);
        get.setSpared(spared);
        QCOMPARE(get(path), fits);
        QCOMPARE(get.hadNoRoom(), !fits);
        QCOMPARE(get.transferError(), QString::fromLatin1(fits ? "" : refusedText));
        QCOMPARE(localContent(), fits ? QByteArray(int(size), '\0') : QByteArray("old"));
        // Any other failure is told from this one.
        device().faults().add(Fault::answer("Error=No").on(path));
        QVERIFY(!get(path));
        QVERIFY(!get.hadNoRoom());
        TestSurroundings::freshSettings();
    }

    void endsOnInterruption_data()
    {
        QTest::addColumn<Fault>("fault");
        QTest::newRow("waiting for the answer") << Fault::silent().on(path);
        QTest::newRow("in a block") << Fault::pause(100, 60000).on(path);
        QTest::newRow("in the remainder") << Fault::pause(4200, 60000).on(path);
    }
    void endsOnInterruption()
    {
        QFETCH(Fault, fault);
        device().files().set(path, content(4500));
        device().faults().add(fault);
        ThreadRun<TestGetFile, QString, bool> run(this, &TestGetFile::fetch, device().address());
        run.start();
        QTRY_VERIFY(device().journal().countRequests(path) == 1);
        QElapsedTimer clock;
        clock.start();
        run.requestInterruption();
        run.wait();
        QVERIFY(clock.elapsed() < 300);
        QVERIFY(!run.result());
    }

    void endsOnInterruptionWhileDataStreamIn()
    {
        device().files().setMaker(
            path, [](const QString &) { return std::make_shared<Zeros>(qint64(300) << 20); });
        ThreadRun<TestGetFile, QString, bool> run(this, &TestGetFile::fetch, device().address());
        run.start();
        QTRY_VERIFY(QFileInfo(local_).size() > 1 << 20);
        QElapsedTimer clock;
        clock.start();
        run.requestInterruption();
        run.wait();
        QVERIFY(clock.elapsed() < 300);
        QVERIFY(!run.result());
    }

    void endsWithTheNextBlock_data()
    {
        QTest::addColumn<int>("limit");
        for (const int limit : {0, 1, 20000, 1000000}) {
            QTest::addRow("%d bytes", limit) << limit;
        }
    }
    void endsWithTheNextBlock()
    {
        // However much has come by then: it need not wait for anything to be called off.
        QFETCH(int, limit);
        device().files().set(path, content(3000000));
        GetFile get(device().address(), local_, nullptr);
        bool calledOff = false;
        get.setCancelled([&] {
            const QFileInfo file(local_);
            calledOff = calledOff || (file.exists() && file.size() >= limit);
            return calledOff;
        });
        QVERIFY(!get(path));
        QVERIFY(get.transferFailed());
        QCOMPARE(get.transferError(), QString::fromLatin1(timeoutText));
        QCOMPARE(get.state(), QAbstractSocket::UnconnectedState);
        QVERIFY2(localContent().size() < limit + 1024,
                 qPrintable(QString::number(localContent().size())));
        QCOMPARE(localContent(), content(3000000).left(localContent().size()));
    }

    void calledOffBeforeItBegins()
    {
        writeOld();
        device().files().set(path, content(5000));
        GetFile get(device().address(), local_, nullptr);
        get.setCancelled([] { return true; });
        QVERIFY(!get(path));
        QVERIFY(!get.transferError().isEmpty());
        QCOMPARE(localContent(), QByteArray("old"));
        QCOMPARE(device().journal().countRequests(path), 0);
        get.setCancelled([] { return false; });
        QVERIFY(get(path));
        QCOMPARE(localContent(), content(5000));
    }

    void copiesTexts()
    {
        GetFile get(Devices::refused(), local_, nullptr);
        get.setTimeout(100);
        QVERIFY(!get(path));
        const GetFile copy(get);
        QCOMPARE(copy.host(), Devices::refused());
        QCOMPARE(copy.fileName(), local_);
        QCOMPARE(copy.transferError(), QString::fromLatin1(connectText));
        QVERIFY(!copy.transferFailed());
        QCOMPARE(copy.timeout(), 30000);
        GetFile assigned;
        assigned.setTimeout(7);
        assigned = get;
        QCOMPARE(assigned.host(), Devices::refused());
        QCOMPARE(assigned.timeout(), 7);
        QCOMPARE(GetFile().timeout(), 30000);
    }

private:
    bool fetch(QString host)
    {
        GetFile get(host, local_, nullptr);
        return get(path);
    }

    DeviceHost &device() { return devices_->first(); }

    void writeOld()
    {
        QFile file(local_);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("old");
    }
    QByteArray localContent() const
    {
        QFile file(local_);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
    }

    std::unique_ptr<QTemporaryDir> folder_;
    std::unique_ptr<Devices> devices_;
    QString local_;
};

STALLO_TEST_MAIN(TestGetFile)
#include "tst_getfile.moc"
