// SPDX-License-Identifier: MIT
#include "net/putfile.h"

#include "net/threadrun.h"
#include "tests/support/devices.h"
#include "tests/support/testmain.h"

#include <QElapsedTimer>
#include <QTemporaryDir>

namespace
{

const QString path = QStringLiteral("/data/list");

} // namespace

Q_DECLARE_METATYPE(Fault)

class TestPutFile : public QObject
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

    void sendsSizes_data()
    {
        QTest::addColumn<int>("size");
        for (const int size : {0, 1, 1023, 1024, 1025, 116000, 3000000}) {
            QTest::addRow("%d bytes", size) << size;
        }
    }
    void sendsSizes()
    {
        QFETCH(int, size);
        const QByteArray bytes = write(size);
        PutFile put(device().address(), local_, nullptr);
        QVERIFY2(put(path), qPrintable(put.transferError()));
        QTRY_COMPARE(device().files().get(path), bytes);
        QCOMPARE(put.timeout(), 5000);
    }

    void survivesFaults_data()
    {
        QTest::addColumn<Fault>("fault");
        QTest::addColumn<QString>("error"); // "*" for any text
        const QString any = QStringLiteral("*");
        QTest::newRow("refused") << Fault::answer("Error=Disk is full").on(path)
                                 << QStringLiteral("Error=Disk is full");
        QTest::newRow("not answered") << Fault::silent().on(path) << any;
        QTest::newRow("closes on accept") << Fault::closeOnAccept() << any;
        QTest::newRow("closes after the request") << Fault::closeAfterRequest().on(path) << any;
        QTest::newRow("not read") << Fault::stopReading().on(path) << any;
        QTest::newRow("closed half-way") << Fault::closeAfter(1000000).on(path) << any;
        QTest::newRow("reset half-way") << Fault::resetAfter(1000000).on(path) << any;
        QTest::newRow("no line end") << Fault::flood().on(path) << any;
    }
    void survivesFaults()
    {
        QFETCH(Fault, fault);
        QFETCH(QString, error);
        // More than the buffers between the two ends can take.
        const QByteArray bytes = write(20 * 1000 * 1000);
        device().faults().add(fault);
        PutFile put(device().address(), local_, nullptr);
        put.setTimeout(1500);
        QVERIFY(!put(path));
        QVERIFY(put.transferFailed());
        if (error == QLatin1String("*")) {
            QVERIFY(!put.transferError().isEmpty());
        } else {
            QCOMPARE(put.transferError(), error);
        }
        device().faults().clear();
        put.setTimeout(5000);
        QVERIFY2(put(path), qPrintable(put.transferError()));
        QTRY_COMPARE(device().files().get(path), bytes);
    }

    void reportsMissingListener()
    {
        write(10);
        PutFile put(Devices::refused(), local_, nullptr);
        QVERIFY(!put(path));
        QCOMPARE(put.transferError(), put.errorString());
        QVERIFY(!put.transferError().isEmpty());
    }

    void reportsMissingFile()
    {
        PutFile put(device().address(), local_, nullptr);
        QVERIFY(!put(path));
        QVERIFY(put.transferError().startsWith(local_ + QStringLiteral(": ")));
        QCOMPARE(device().journal().countRequests(), 0);
    }

    void endsOnInterruption()
    {
        write(20 * 1000 * 1000);
        device().faults().add(Fault::stopReading().on(path));
        ThreadRun<TestPutFile, QString, bool> run(this, &TestPutFile::send, device().address());
        run.start();
        QTRY_COMPARE(device().journal().countRequests(path), 1);
        QElapsedTimer clock;
        clock.start();
        run.requestInterruption();
        run.wait();
        QVERIFY(clock.elapsed() < 300);
        QVERIFY(!run.result());
    }

private:
    bool send(QString host)
    {
        PutFile put(host, local_, nullptr);
        put.setTimeout(60000);
        return put(path);
    }

    DeviceHost &device() { return devices_->first(); }

    QByteArray write(int size)
    {
        QByteArray bytes(size, '\0');
        for (int at = 0; at < size; ++at) {
            bytes[at] = static_cast<char>(at * 13 + at / 257);
        }
        QFile file(local_);
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != size) {
            qFatal("cannot write the file to send");
        }
        return bytes;
    }

    std::unique_ptr<QTemporaryDir> folder_;
    std::unique_ptr<Devices> devices_;
    QString local_;
};

STALLO_TEST_MAIN(TestPutFile)
#include "tst_putfile.moc"
