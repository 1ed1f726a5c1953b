// SPDX-License-Identifier: MIT
#include "simulator/photopainter.h"
#include "simulator/samplefiles.h"
#include "tests/simulator/devicefixture.h"
#include "tests/simulator/rawclient.h"
#include "tests/support/testmain.h"

#include <QImage>
#include <QSettings>
#include <QTemporaryDir>

// Start and stop of a device, its file port and its journal, as a panel sees them.
class SimulatedDeviceTest : public QObject, private DeviceFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void startsAndStops();
    void tellsAPortThatIsTaken();
    void livesOnAnotherAddress();
    void servesItsFiles();
    void refusesWhatItHasNot_data();
    void refusesWhatItHasNot();
    void toleratesAClientThatCloses();
    void servesManyAtOnce();
    void servesALargeArchiveInPieces();
    void servesThePhotoOfARecord();
    void takesAnUpload();
    void putsAListInForceOnReload();
    void hasAwkwardStreams();
    void makesPhotosLate();
    void writesAJournal();
};

void SimulatedDeviceTest::init()
{
    startHost();
    QVERIFY(host_->isRunning());
}

void SimulatedDeviceTest::cleanup()
{
    host_.reset();
}

void SimulatedDeviceTest::startsAndStops()
{
    QVERIFY(host_->isRunning());
    const quint16 onLinePort = host_->onLinePort();
    const quint16 filePort = host_->filePort();
    QVERIFY(onLinePort != 0);
    QVERIFY(filePort != 0);
    QVERIFY(filePort != onLinePort);
    const auto socket = connectOnLine();
    host_->stop();
    QVERIFY(!host_->isRunning());
    QVERIFY(socket->waitForDisconnected(patience));
    QCOMPARE(RawClient(host_->address(), onLinePort).end(), RawClient::End::Refused);
    QCOMPARE(RawClient(host_->address(), filePort).end(), RawClient::End::Refused);
    QCOMPARE(host_->push(record()), 0);
    QVERIFY(host_->start());
    QCOMPARE(host_->onLinePort(), onLinePort);
    QCOMPARE(host_->filePort(), filePort);
    QVERIFY(connectOnLine()->isValid());
}

void SimulatedDeviceTest::tellsAPortThatIsTaken()
{
    DeviceConfig config;
    config.onLinePort = host_->onLinePort();
    DeviceHost second(config);
    QString error;
    QVERIFY(!second.start(&error));
    QVERIFY2(error.contains(QString::number(config.onLinePort)), qPrintable(error));
    QVERIFY(!second.isRunning());
    config.onLinePort = 0;
    config.filePort = host_->filePort();
    DeviceHost third(config);
    QVERIFY(!third.start(&error));
    QVERIFY2(error.contains(QString::number(config.filePort)), qPrintable(error));
}

void SimulatedDeviceTest::livesOnAnotherAddress()
{
    DeviceConfig config;
    config.address = QStringLiteral("127.0.0.2");
    config.onLinePort = host_->onLinePort();
    config.filePort = host_->filePort();
    config.deviceId = QStringLiteral("OTHER");
    host_ = std::make_unique<DeviceHost>(config);
    QString error;
    QVERIFY2(host_->start(&error), qPrintable(error));
    QCOMPARE(host_->address(), QStringLiteral("127.0.0.2"));
    QVERIFY(fetch(DevicePaths::streams()).contains("OTHER"));
}

void SimulatedDeviceTest::servesItsFiles()
{
    QByteArray answer;
    const QByteArray streams = fetch(DevicePaths::streams(), &answer);
    QCOMPARE(streams, QByteArray("[common]\ndeviceid=VASK-0001\n"));
    QCOMPARE(answer, "File size=" + QByteArray::number(streams.size()));
    QCOMPARE(fetch(DevicePaths::accessList()).size(), 40 * 116);
    QCOMPARE(fetch(DevicePaths::archive(), &answer), QByteArray());
    QCOMPARE(answer, QByteArray("File size=0"));
    QVERIFY(!QImage::fromData(fetch(DevicePaths::videoFrame())).isNull());
    host_->files().set(QStringLiteral("/any/where"), "content");
    QCOMPARE(fetch(QStringLiteral("/any/where")), QByteArray("content"));
}

void SimulatedDeviceTest::refusesWhatItHasNot_data()
{
    QTest::addColumn<QByteArray>("request");
    QTest::addColumn<QByteArray>("answer");
    QTest::newRow("missing file") << QByteArray("GET_IMMEDIATE_FILE:/no/such/file")
                                  << QByteArray("Error=Can't open file");
    QTest::newRow("unknown request")
        << QByteArray("DELETE:/etc/streams.ini") << QByteArray("Error=Unknown request");
    QTest::newRow("empty request") << QByteArray() << QByteArray("Error=Unknown request");
    QTest::newRow("upload without a size")
        << QByteArray("PUT_IMMEDIATE_FILE:/x") << QByteArray("Error=Bad request");
    QTest::newRow("upload of a negative size")
        << QByteArray("PUT_IMMEDIATE_FILE:/x,-1") << QByteArray("Error=Bad request");
    QTest::newRow("upload of too much")
        << QByteArray("PUT_IMMEDIATE_FILE:/x,99999999999") << QByteArray("Error=Bad request");
}

void SimulatedDeviceTest::refusesWhatItHasNot()
{
    QFETCH(QByteArray, request);
    QFETCH(QByteArray, answer);
    RawClient client(host_->address(), host_->filePort());
    client.send(request + "\r\n");
    client.read(answer.size() + 2, patience);
    QCOMPARE(client.received(), answer + "\r\n");
    QCOMPARE(client.end(), RawClient::End::Open);
}

void SimulatedDeviceTest::toleratesAClientThatCloses()
{
    host_->files().set(QStringLiteral("/large"), QByteArray(8 * 1024 * 1024, 'l'));
    {
        RawClient client(host_->address(), host_->filePort());
        client.send("GET_IMMEDIATE_FILE:/large\r\n");
        client.read(100000, patience);
        QTRY_COMPARE(host_->fileConnections(), 1);
    }
    QTRY_COMPARE(host_->fileConnections(), 0);
    QCOMPARE(fetch(DevicePaths::streams()).size(), 28);
    QTRY_COMPARE(host_->journal().count(JournalEntry::Kind::FileClosed), 2);
}

void SimulatedDeviceTest::servesManyAtOnce()
{
    std::vector<std::unique_ptr<RawClient>> clients;
    for (int client = 0; client < 50; ++client) {
        clients.push_back(std::make_unique<RawClient>(host_->address(), host_->filePort()));
        QVERIFY(clients.back()->isConnected());
    }
    for (const auto &client : clients) {
        client->send("GET_IMMEDIATE_FILE:/etc/streams.ini\r\n");
    }
    for (const auto &client : clients) {
        client->read(14 + 28, patience);
        QCOMPARE(client->received(), QByteArray("File size=28\r\n[common]\ndeviceid=VASK-0001\n"));
    }
}

void SimulatedDeviceTest::servesALargeArchiveInPieces()
{
    DeviceConfig config;
    config.archive = 30000;
    startHost(config);
    const QByteArray archive = fetch(DevicePaths::archive());
    QCOMPARE(archive.size(), 30000 * 116);
    QCOMPARE(archive, host_->files().get(DevicePaths::archive()));
}

void SimulatedDeviceTest::servesThePhotoOfARecord()
{
    const OnLine passage = record();
    const QByteArray photo = fetch(passage.fileName());
    QVERIFY(photo.size() > 40 * 1024);
    QVERIFY(!QImage::fromData(photo).isNull());
    QCOMPARE(fetch(passage.fileName()), photo);
    QCOMPARE(host_->files().get(passage.fileName()), photo);
    host_->files().set(passage.fileName(), PhotoPainter::cut(photo, 30));
    QCOMPARE(fetch(passage.fileName()).size(), photo.size() * 30 / 100);
    host_->files().remove(passage.fileName());
    QByteArray answer;
    fetch(passage.fileName(), &answer);
    QCOMPARE(answer, QByteArray("Error=Can't open file"));
}

void SimulatedDeviceTest::takesAnUpload()
{
    QTcpSocket socket;
    socket.connectToHost(host_->address(), host_->filePort());
    socket.write("PUT_IMMEDIATE_FILE:/a,b,5\r\n");
    QCOMPARE(read(&socket, 4), QByteArray("OK\r\n"));
    socket.write("12");
    socket.waitForBytesWritten(patience);
    QVERIFY(!host_->files().contains(QStringLiteral("/a,b")));
    socket.write("345");
    socket.waitForBytesWritten(patience);
    QTRY_COMPARE(host_->files().get(QStringLiteral("/a,b")), QByteArray("12345"));

    QTcpSocket empty;
    empty.connectToHost(host_->address(), host_->filePort());
    empty.write("PUT_IMMEDIATE_FILE:/empty,0\r\n");
    QCOMPARE(read(&empty, 4), QByteArray("OK\r\n"));
    QTRY_VERIFY(host_->files().contains(QStringLiteral("/empty")));

    QTcpSocket broken;
    broken.connectToHost(host_->address(), host_->filePort());
    broken.write("PUT_IMMEDIATE_FILE:/a,b,100\r\n");
    QCOMPARE(read(&broken, 4), QByteArray("OK\r\n"));
    broken.write("half");
    broken.disconnectFromHost();
    const auto received = [this] {
        return host_->journal().entries(JournalEntry::Kind::ContentReceived);
    };
    QTRY_COMPARE(received().size(), 3);
    QCOMPARE(received().last().text, QStringLiteral("4 of 100 bytes"));
    QCOMPARE(host_->files().get(QStringLiteral("/a,b")), QByteArray("12345"));
}

void SimulatedDeviceTest::putsAListInForceOnReload()
{
    const QByteArray before = host_->activeAccessList();
    QCOMPARE(before.size(), 40 * 116);
    QCOMPARE(host_->storedAccessList(), before);
    const QByteArray changed = LiveFeed::makeAccessList(3, 99);
    QTcpSocket socket;
    socket.connectToHost(host_->address(), host_->filePort());
    socket.write("PUT_IMMEDIATE_FILE:/mnt/usb/accessbase.tpa,348\r\n");
    QCOMPARE(read(&socket, 4), QByteArray("OK\r\n"));
    socket.write(changed);
    socket.waitForBytesWritten(patience);
    QTRY_COMPARE(host_->storedAccessList(), changed);
    QCOMPARE(host_->activeAccessList(), before);
    const auto onLine = connectOnLine();
    onLine->write("\xEF");
    onLine->waitForBytesWritten(patience);
    QTRY_COMPARE(host_->activeAccessList(), changed);
    QCOMPARE(host_->reloadCount(), 1);
}

void SimulatedDeviceTest::hasAwkwardStreams()
{
    QVERIFY(SampleFiles::streamsWithComma().contains("=Gate 1, North\n"));
    QVERIFY(SampleFiles::streamsInCp1251().contains("=\xc2\xfa\xe5\xe7\xe4"));
    QVERIFY(SampleFiles::streamsWithVariant().contains("@Variant("));
    QVERIFY(SampleFiles::streamsWithLongId().contains("=" + QByteArray("0123456789").repeated(4)));
    const QByteArray huge = SampleFiles::hugeStreams(QStringLiteral("ID"));
    QVERIFY(huge.size() > 1024 * 1024);
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("streams.ini")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(huge);
    file.close();
    const QSettings settings(file.fileName(), QSettings::IniFormat);
    QCOMPARE(settings.value(QStringLiteral("common/deviceid")).toString(), QStringLiteral("ID"));
    host_->files().remove(DevicePaths::streams());
    QByteArray answer;
    fetch(DevicePaths::streams(), &answer);
    QCOMPARE(answer, QByteArray("Error=Can't open file"));
}

void SimulatedDeviceTest::makesPhotosLate()
{
    DeviceConfig config;
    config.feed.latePhotos = 1;
    config.feed.lateMsec = 600;
    startHost(config);
    const auto socket = connectOnLine();
    host_->burst(1);
    const QString photo = host_->sentRecords().first().fileName();
    QByteArray answer;
    fetch(photo, &answer);
    QCOMPARE(answer, QByteArray("Error=Can't open file"));
    QTRY_VERIFY(fetch(photo).size() > 40 * 1024);
}

void SimulatedDeviceTest::writesAJournal()
{
    using Kind = JournalEntry::Kind;
    Journal &journal = host_->journal();
    const auto socket = connectOnLine();
    socket->write("\xFF");
    host_->push(record());
    fetch(DevicePaths::streams());
    QTRY_COMPARE(journal.count(Kind::Received), 1);
    QTRY_COMPARE(journal.count(Kind::FileClosed), 1);
    QCOMPARE(journal.count(Kind::OnLineOpened), 1);
    QCOMPARE(journal.entries(Kind::Received).first().data, QByteArray("\xFF"));
    QCOMPARE(journal.entries(Kind::RecordSent).first().data.size(), 192);
    QCOMPARE(journal.entries(Kind::Request).first().data,
             QByteArray("GET_IMMEDIATE_FILE:/etc/streams.ini"));
    QCOMPARE(journal.entries(Kind::Answer).first().data, QByteArray("File size=28"));
    QCOMPARE(journal.entries(Kind::ContentSent).first().text, QStringLiteral("28 of 28 bytes"));
    QCOMPARE(journal.countRequests(DevicePaths::streams()), 1);
    QVERIFY(journal.entries(Kind::Request).first().peer.startsWith(QLatin1String("127.0.0.1:")));
}

STALLO_TEST_MAIN(SimulatedDeviceTest)
#include "tst_simulateddevice.moc"
