// SPDX-License-Identifier: MIT
#include "net/deviceidentity.h"

#include "net/devicecommand.h"
#include "tests/support/devices.h"
#include "tests/support/testmain.h"

#include <QElapsedTimer>

class TestDeviceIdentity : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void parses_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QString>("id");
        const QString none = QStringLiteral("none");
        QTest::newRow("plain") << QByteArray("[common]\ndeviceid=gate 1\n")
                               << QStringLiteral("gate 1");
        QTest::newRow("CRLF") << QByteArray("[common]\r\ndeviceid=gate 1\r\n")
                              << QStringLiteral("gate 1");
        QTest::newRow("list") << QByteArray("[common]\ndeviceid=gate, 1\n")
                              << QStringLiteral("gate, 1");
        QTest::newRow("quoted") << QByteArray("[common]\ndeviceid=\"gate, 1\"\n")
                                << QStringLiteral("gate, 1");
        QTest::newRow("40 characters") << QByteArray("[common]\ndeviceid=") + QByteArray(40, 'x')
                                       << QString(40, QLatin1Char('x'));
        QTest::newRow("local letters")
            << QByteArray("[common]\ndeviceid=") + QString(QChar(0x416)).toLocal8Bit()
            << QString(QChar(0x416));
        QTest::newRow("other group") << QByteArray("[other]\ndeviceid=gate\n") << none;
        QTest::newRow("other key") << QByteArray("[common]\nid=gate\n") << none;
        QTest::newRow("empty") << QByteArray() << none;
        QTest::newRow("object") << QByteArray("[common]\ndeviceid=@Variant(\\0\\0\\0\\x7f\\0)\n")
                                << none;
        QTest::newRow("object elsewhere")
            << QByteArray("[a]\nb=@Variant(\\0)\n[common]\ndeviceid=gate\n") << none;
        QTest::newRow("escaped object")
            << QByteArray("[common]\ndeviceid=\\x40Variant(\\0\\0)\n") << none;
        QTest::newRow("half escaped object")
            << QByteArray("[common]\ndeviceid=@\\x56ariant(\\0\\0)\n") << none;
        QTest::newRow("largest") << QByteArray("[common]\ndeviceid=gate\n") +
                                        QByteArray(256 * 1024 - 23, '\n')
                                 << QStringLiteral("gate");
        QTest::newRow("too large")
            << QByteArray("[common]\ndeviceid=gate\n") + QByteArray(1024 * 1024, '\n') << none;
        QTest::newRow("noise") << QByteArray("\xFF\x00\x01[[[=\n=\n", 10) << none;
    }
    void parses()
    {
        QFETCH(QByteArray, file);
        QTEST(DeviceIdentity::parse(file, QStringLiteral("none")), "id");
    }

    void fetches()
    {
        Devices devices;
        QCOMPARE(fetch(devices, {10000, 20}), devices.first().deviceId());
        devices.first().faults().add(Fault::answer("Error").times(3));
        QCOMPARE(fetch(devices, {10000, 20}), devices.first().deviceId());
        QCOMPARE(devices.first().journal().countRequests(DevicePaths::streams()), 5);
    }

    void givesUp()
    {
        Devices devices;
        devices.first().files().remove(DevicePaths::streams());
        QElapsedTimer clock;
        clock.start();
        QCOMPARE(fetch(devices, {300, 20}), QStringLiteral("none"));
        QVERIFY(clock.elapsed() >= 300);
        QVERIFY(devices.first().journal().countRequests(DevicePaths::streams()) > 2);
    }

    void sendsOneByteCommands()
    {
        Devices devices;
        QCOMPARE(DeviceCommand::send(devices.first().address(), DeviceCommand::openBarrier),
                 QString());
        QTRY_COMPARE(devices.first().barrierCount(), 1);
        QCOMPARE(DeviceCommand::send(devices.first().address(), DeviceCommand::reloadAccessList),
                 QString());
        QTRY_COMPARE(devices.first().reloadCount(), 1);
        QCOMPARE(devices.first().barrierCount(), 1);
        QCOMPARE(devices.first().keepAliveCount(), 0);
        QCOMPARE(devices.first().unexpectedBytes(), QByteArray());
        QVERIFY(!DeviceCommand::send(Devices::refused(), DeviceCommand::openBarrier).isEmpty());
        QVERIFY(!DeviceCommand::send(QString(), DeviceCommand::openBarrier).isEmpty());
    }

private:
    static QString fetch(Devices &devices, DeviceIdentity::Patience patience)
    {
        return DeviceIdentity::fetch(devices.first().address(), patience, QStringLiteral("none"),
                                     [] { return false; });
    }
};

STALLO_TEST_MAIN(TestDeviceIdentity)
#include "tst_deviceidentity.moc"
