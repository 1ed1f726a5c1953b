// SPDX-License-Identifier: MIT
#include "tests/simulator/devicefixture.h"
#include "tests/simulator/rawclient.h"
#include "tests/support/testmain.h"

#include <QElapsedTimer>
#include <QTemporaryDir>

// A device's on-line port as a panel sees it.
class OnLinePortTest : public QObject, private DeviceFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void pushesToEveryConnection();
    void sendsNothingToNobody();
    void sendsSeveralInOneSegment();
    void splitsARecord();
    void sendsARecordInPieces();
    void forgetsARecordBrokenOff();
    void countsCommands();
    void takesCommandsOnConnectionsOfTheirOwn();
    void dropsAndResets();
    void isGoneForAWhile();
    void isCutOffForAWhile();
    void stopsReading();
    void sendsBursts();
    void sendsByItself();
    void sendsTheSameForTheSameSeed();
    void burstsToTheFirstThatConnects();
    void appendsWhatItSentToAFile();
};

void OnLinePortTest::init()
{
    startHost();
    QVERIFY(host_->isRunning());
}

void OnLinePortTest::cleanup()
{
    host_.reset();
}

void OnLinePortTest::pushesToEveryConnection()
{
    const auto first = connectOnLine();
    const auto second = connectOnLine();
    QCOMPARE(host_->onLineConnections(), 2);
    const OnLine passage = record();
    QCOMPARE(host_->push(passage), 2);
    QCOMPARE(read(first.get(), 192), SampleRecords::bytes(passage));
    QCOMPARE(read(second.get(), 192), SampleRecords::bytes(passage));
    QCOMPARE(bytesOf(host_->sentRecords()), SampleRecords::bytes(passage));
    second->disconnectFromHost();
    QTRY_COMPARE(host_->onLineConnections(), 1);
    host_->clearSentRecords();
    QVERIFY(host_->sentRecords().isEmpty());
}

void OnLinePortTest::sendsNothingToNobody()
{
    QCOMPARE(host_->push(record()), 0);
    QCOMPARE(host_->burst(5), 0);
    QVERIFY(host_->sentRecords().isEmpty());
    const auto socket = connectOnLine();
    const OnLine passage = record("B456CE78");
    QCOMPARE(host_->push(passage), 1);
    QCOMPARE(read(socket.get(), 192), SampleRecords::bytes(passage));
}

void OnLinePortTest::sendsSeveralInOneSegment()
{
    RawClient client(host_->address(), host_->onLinePort());
    QTRY_COMPARE(host_->onLineConnections(), 1);
    const QVector<OnLine> all = SampleRecords::all(now());
    QCOMPARE(host_->pushAll(all), 1);
    client.read(1, patience); // a single read takes what has come together
    QCOMPARE(client.received(), bytesOf(all));
    QCOMPARE(bytesOf(host_->sentRecords()), bytesOf(all));
}

void OnLinePortTest::splitsARecord()
{
    RawClient client(host_->address(), host_->onLinePort());
    QTRY_COMPARE(host_->onLineConnections(), 1);
    const OnLine passage = record();
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(host_->pushSplit(passage, 191, 700), 1);
    client.read(1, patience);
    QCOMPARE(client.received(), SampleRecords::bytes(passage).left(191));
    QVERIFY(host_->sentRecords().isEmpty());
    client.read(192, patience);
    QCOMPARE(client.received(), SampleRecords::bytes(passage));
    QVERIFY(timer.elapsed() >= 695);
    QTRY_COMPARE(host_->sentRecords().size(), 1);
}

void OnLinePortTest::sendsARecordInPieces()
{
    const auto socket = connectOnLine();
    const OnLine passage = record();
    QCOMPARE(host_->pushInPieces(passage, 7, 1), 1);
    QCOMPARE(read(socket.get(), 192), SampleRecords::bytes(passage));
    QTRY_COMPARE(host_->sentRecords().size(), 1);
}

void OnLinePortTest::forgetsARecordBrokenOff()
{
    RawClient client(host_->address(), host_->onLinePort());
    QTRY_COMPARE(host_->onLineConnections(), 1);
    QCOMPARE(host_->pushBytes(SampleRecords::bytes(record()).left(100)), 1);
    host_->dropOnLine();
    client.read(192, patience);
    QCOMPARE(client.count(), qint64(100));
    QCOMPARE(client.end(), RawClient::End::Closed);
    QVERIFY(host_->sentRecords().isEmpty());
}

void OnLinePortTest::countsCommands()
{
    const auto socket = connectOnLine();
    socket->write("\xFF\xFF\xFD\xEF\xFFx\x01");
    QVERIFY(socket->waitForBytesWritten(patience));
    QTRY_COMPARE(host_->unexpectedBytes(), QByteArray("x\x01"));
    QCOMPARE(host_->keepAliveCount(), 3);
    QCOMPARE(host_->barrierCount(), 1);
    QCOMPARE(host_->reloadCount(), 1);
}

void OnLinePortTest::takesCommandsOnConnectionsOfTheirOwn()
{
    for (int press = 1; press <= 3; ++press) {
        {
            RawClient client(host_->address(), host_->onLinePort());
            client.send("\xFD");
        }
        QTRY_COMPARE(host_->barrierCount(), press);
    }
    QTRY_COMPARE(host_->onLineConnections(), 0);
}

void OnLinePortTest::dropsAndResets()
{
    RawClient dropped(host_->address(), host_->onLinePort());
    QTRY_COMPARE(host_->onLineConnections(), 1);
    host_->dropOnLine();
    dropped.read(1, patience);
    QCOMPARE(dropped.end(), RawClient::End::Closed);
    RawClient reset(host_->address(), host_->onLinePort());
    QTRY_COMPARE(host_->onLineConnections(), 1);
    host_->resetOnLine();
    reset.read(1, patience);
    QCOMPARE(reset.end(), RawClient::End::Reset);
    RawClient file(host_->address(), host_->filePort());
    QTRY_COMPARE(host_->fileConnections(), 1);
    host_->dropFileConnections();
    file.read(1, patience);
    QCOMPARE(file.end(), RawClient::End::Closed);
}

void OnLinePortTest::isGoneForAWhile()
{
    const auto socket = connectOnLine();
    QElapsedTimer timer;
    timer.start();
    host_->goneFor(800);
    QVERIFY(socket->waitForDisconnected(patience) ||
            socket->state() == QAbstractSocket::UnconnectedState);
    QCOMPARE(RawClient(host_->address(), host_->onLinePort()).end(), RawClient::End::Refused);
    QCOMPARE(RawClient(host_->address(), host_->filePort()).end(), RawClient::End::Refused);
    QTRY_VERIFY(RawClient(host_->address(), host_->onLinePort()).isConnected());
    QVERIFY(timer.elapsed() >= 795);
    QTRY_VERIFY(RawClient(host_->address(), host_->filePort()).isConnected());
}

void OnLinePortTest::isCutOffForAWhile()
{
    const auto socket = connectOnLine();
    QVERIFY(host_->setCutOff(true));
    const OnLine passage = record();
    QCOMPARE(host_->push(passage), 1);
    socket->write("\xFF", 1);
    QVERIFY(socket->waitForBytesWritten(patience));
    // Neither answered nor refused, on both ports.
    for (const quint16 port : {host_->onLinePort(), host_->filePort()}) {
        QTcpSocket other;
        other.connectToHost(host_->address(), port);
        QVERIFY(!other.waitForConnected(500));
        QCOMPARE(other.error(), QAbstractSocket::SocketTimeoutError);
    }
    QCOMPARE(socket->state(), QAbstractSocket::ConnectedState);
    QCOMPARE(socket->bytesAvailable(), 0);
    QCOMPARE(host_->keepAliveCount(), 0);
    QVERIFY(host_->setCutOff(false));
    QCOMPARE(read(socket.get(), 192), SampleRecords::bytes(passage));
    QTRY_COMPARE(host_->keepAliveCount(), 1);
    QVERIFY(RawClient(host_->address(), host_->filePort()).isConnected());
}

void OnLinePortTest::stopsReading()
{
    host_->setOnLineReading(false);
    const auto socket = connectOnLine();
    constexpr int many = 32 * 1024 * 1024;
    socket->write(QByteArray(many, '\xFF'));
    while (socket->waitForBytesWritten(300)) {
    }
    QVERIFY(socket->bytesToWrite() > 0);
    QCOMPARE(host_->keepAliveCount(), 0);
    host_->setOnLineReading(true);
    while (socket->bytesToWrite() > 0 && socket->waitForBytesWritten(patience)) {
    }
    QTRY_COMPARE_WITH_TIMEOUT(host_->keepAliveCount(), many, 10000);
}

void OnLinePortTest::sendsBursts()
{
    const auto socket = connectOnLine();
    QCOMPARE(host_->burst(1000), 1000);
    const QByteArray bytes = read(socket.get(), 192000);
    QCOMPARE(bytes.size(), 192000);
    const QVector<OnLine> sent = host_->sentRecords();
    QCOMPARE(bytes, bytesOf(sent));
    for (int place = 1; place < sent.size(); ++place) {
        QVERIFY(sent.at(place - 1).dateTime() <= sent.at(place).dateTime());
    }
    QVERIFY(sent.last().dateTime() <= now());
}

void OnLinePortTest::sendsByItself()
{
    const auto socket = connectOnLine();
    host_->setRate(100, 20);
    const QByteArray bytes = read(socket.get(), 20 * 192);
    QCOMPARE(bytes.size(), 20 * 192);
    QCOMPARE(bytes, bytesOf(host_->sentRecords()));
    QVERIFY(!socket->waitForReadyRead(100));
    QCOMPARE(host_->sentRecords().size(), 20);
}

void OnLinePortTest::sendsTheSameForTheSameSeed()
{
    const auto numbers = [](quint32 seed) {
        DeviceConfig config;
        config.feed.seed = seed;
        config.feed.unreadable = 0.3;
        DeviceHost host(config);
        host.start();
        const RawClient client(host.address(), host.onLinePort());
        while (host.onLineConnections() == 0) {
            QThread::yieldCurrentThread();
        }
        host.burst(100);
        QStringList result;
        const QVector<OnLine> sent = host.sentRecords();
        for (const OnLine &entry : sent) {
            result += entry.number() + entry.comment();
        }
        return result;
    };
    const QStringList first = numbers(7);
    QCOMPARE(first.size(), 100);
    QCOMPARE(numbers(7), first);
    QVERIFY(numbers(8) != first);
}

void OnLinePortTest::burstsToTheFirstThatConnects()
{
    DeviceConfig config;
    config.burstOnConnect = 10;
    startHost(config);
    const auto first = connectOnLine();
    QCOMPARE(read(first.get(), 1920).size(), 1920);
    const auto second = connectOnLine();
    QVERIFY(!second->waitForReadyRead(100));
    QCOMPARE(host_->sentRecords().size(), 10);
}

void OnLinePortTest::appendsWhatItSentToAFile()
{
    const QTemporaryDir folder;
    DeviceConfig config;
    config.sentFile = folder.filePath(QStringLiteral("sent"));
    config.sentLimit = 3;
    startHost(config);
    const auto socket = connectOnLine();
    host_->burst(10);
    QFile file(config.sentFile);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray sent = file.readAll();
    QCOMPARE(read(socket.get(), 1920), sent);
    QCOMPARE(bytesOf(host_->sentRecords()), sent.right(3 * 192));
}

STALLO_TEST_MAIN(OnLinePortTest)
#include "tst_onlineport.moc"
