// SPDX-License-Identifier: MIT
#include "tests/net/onlineclientcase.h"

#include "tests/support/blackhole.h"

#include <QTcpSocket>

class TestOnlineClient : public OnlineClientCase
{
    Q_OBJECT

private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void onlyStoresHostWhileStopped()
    {
        client_->connectToHost(device().address());
        QCOMPARE(client_->hostName(), device().address());
        QVERIFY(!client_->isRunning());
        QVERIFY(!client_->isConnected());
        QCOMPARE(device().onLineConnections(), 0);
    }

    void leavesWithoutHost()
    {
        client_->start();
        QTRY_VERIFY(client_->isFinished());
        QVERIFY(log_->pipes.isEmpty());
    }

    void reportsPassageWithPicture()
    {
        connectClient();
        QCOMPARE(log_->pipes.size(), 1);
        QCOMPARE(log_->pipes.first().state, int(QAbstractSocket::ConnectedState));
        QCOMPARE(log_->pipes.first().channel, 1);
        QTRY_VERIFY(client_->isConnected());
        const OnLine sent = record(1);
        const QByteArray photo = "a photo";
        device().files().set(sent.fileName(), photo);
        device().push(sent);
        QTRY_COMPARE(log_->passages.size(), 1);
        const EventLog::Passage &passage = log_->passages.first();
        QCOMPARE(bytes(passage.record), bytes(sent));
        QCOMPARE(passage.hostName, device().address());
        QCOMPARE(passage.vaskId, device().deviceId());
        QVERIFY(!passage.repost);
        QCOMPARE(passage.fileName, Settings::instance()->onLineTempDirectory() +
                                       QStringLiteral("/jpegdata/") +
                                       VaskSettings::picFileName(sent));
        QFile file(passage.fileName);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), photo);
        QCOMPARE(device().journal().countRequests(DevicePaths::streams()), 1);
    }

    void keepsOrderOfOneSegment()
    {
        connectClient();
        const QVector<OnLine> sent = records(3);
        device().pushAll(sent);
        expectPassages(sent);
    }

    void joinsPieces()
    {
        connectClient();
        device().pushInPieces(record(1), 7, 5);
        QTRY_COMPARE_WITH_TIMEOUT(log_->passages.size(), 1, patience);
        QCOMPARE(bytes(log_->passages.first().record), bytes(record(1)));
    }

    void waitsForLastByteAndKeepsAlive()
    {
        connectClient();
        device().pushSplit(record(1), 191, 2500);
        QTRY_COMPARE_WITH_TIMEOUT(log_->passages.size(), 1, patience);
        QCOMPARE(bytes(log_->passages.first().record), bytes(record(1)));
        QVERIFY(device().keepAliveCount() >= 1);
        QCOMPARE(device().unexpectedBytes(), QByteArray());
        QCOMPARE(log_->connects(), 1);
    }

    void translatesLocalLetters()
    {
        VaskSettings::localSymbols = QStringLiteral("A");
        VaskSettings::latinSymbols = QStringLiteral("X");
        connectClient();
        device().push(record(1));
        QTRY_COMPARE(log_->passages.size(), 1);
        QCOMPARE(log_->passages.first().record.number(), QStringLiteral("X001BC77"));
        VaskSettings::init();
    }

    void readsOddRecords()
    {
        connectClient();
        const QVector<OnLine> odd = SampleRecords::all(startTime());
        device().pushAll(odd);
        QTRY_COMPARE_WITH_TIMEOUT(log_->passages.size(), odd.size(), patience);
        for (int n = 0; n < odd.size(); ++n) {
            OnLine expected = odd.at(n);
            expected.translateFromLocal();
            QCOMPARE(bytes(log_->passages.at(n).record), bytes(expected));
        }
    }

    void losesNothingOfBurst()
    {
        connectClient();
        const QVector<OnLine> sent = records(1000);
        device().pushAll(sent);
        expectPassages(sent);
    }

    void readsWhatWasSentBeforeTheLineWentDown()
    {
        connectClient();
        const QVector<OnLine> sent = records(20);
        device().pushAll(sent);
        device().dropOnLine();
        expectPassages(sent);
        QTRY_COMPARE_WITH_TIMEOUT(log_->connects(), 2, patience);
    }

    void connectsAgain_data()
    {
        QTest::addColumn<QString>("loss");
        for (const char *loss : {"drop", "reset", "mid-record", "gone"}) {
            QTest::newRow(loss) << QString::fromLatin1(loss);
        }
    }
    void connectsAgain()
    {
        QFETCH(QString, loss);
        connectClient();
        device().push(record(1));
        QTRY_COMPARE(log_->passages.size(), 1);
        if (loss == QLatin1String("drop")) {
            device().dropOnLine();
        } else if (loss == QLatin1String("reset")) {
            device().resetOnLine();
        } else if (loss == QLatin1String("mid-record")) {
            device().pushBytes(bytes(record(7)).left(100));
            device().dropOnLine();
        } else {
            device().goneFor(1500);
        }
        QTRY_COMPARE_WITH_TIMEOUT(log_->connects(), 2, patience);
        QTRY_COMPARE(device().onLineConnections(), 1);
        QTRY_VERIFY(client_->isConnected());
        device().push(record(2));
        QVector<OnLine> both;
        both.append(record(1));
        both.append(record(2));
        expectPassages(both);
        // The loss was told, without a slot's number.
        const auto told = [](const EventLog::Pipe &pipe) {
            return pipe.state == QAbstractSocket::UnconnectedState && pipe.channel == -1 &&
                   !pipe.message.isEmpty();
        };
        QVERIFY(std::any_of(log_->pipes.cbegin(), log_->pipes.cend(), told));
    }

    void triesAtMostOnceASecond()
    {
        device().setOnLineListening(false);
        client_->connectToHost(device().address());
        client_->start();
        QTRY_VERIFY_WITH_TIMEOUT(!log_->pipes.isEmpty(), patience);
        QElapsedTimer clock;
        clock.start();
        QTRY_COMPARE_WITH_TIMEOUT(log_->pipes.size(), 4, patience);
        QVERIFY(clock.elapsed() > 2500);
        for (const EventLog::Pipe &pipe : qAsConst(log_->pipes)) {
            QCOMPARE(pipe.state, int(QAbstractSocket::UnconnectedState));
            QCOMPARE(pipe.channel, 1);
            QVERIFY(!pipe.message.isEmpty());
        }
        device().setOnLineListening(true);
        QTRY_COMPARE_WITH_TIMEOUT(log_->connects(), 1, patience);
    }

    void switchesDevice()
    {
        connectClient();
        DeviceHost &second = devices_->second();
        client_->connectToHost(second.address());
        QTRY_COMPARE_WITH_TIMEOUT(second.onLineConnections(), 1, patience);
        QTRY_COMPARE(device().onLineConnections(), 0);
        second.push(record(5));
        QTRY_COMPARE(log_->passages.size(), 1);
        QCOMPARE(log_->passages.first().hostName, second.address());
        // Fetched once, of the device that the client was started with.
        QCOMPARE(log_->passages.first().vaskId, device().deviceId());
    }

    void forgetsConnectionOnSwitch()
    {
        connectClient();
        QTRY_VERIFY(client_->isConnected());
        client_->connectToHost(Devices::refused());
        QTRY_VERIFY_WITH_TIMEOUT(!client_->isConnected(), patience);
    }

    void switchCallsOffTransfer()
    {
        device().faults().add(Fault::silent().on(record(1).fileName()));
        connectClient();
        device().push(record(1));
        QTRY_COMPARE(device().journal().countRequests(record(1).fileName()), 1);
        const int pipes = log_->pipes.size();
        QElapsedTimer clock;
        clock.start();
        client_->connectToHost(devices_->second().address());
        QTRY_COMPARE_WITH_TIMEOUT(devices_->second().onLineConnections(), 1, patience);
        QVERIFY(clock.elapsed() < 1500);
        QTRY_COMPARE(log_->connects(), 2);
        // Nothing of the first device's passage: it would enable the second one's buttons.
        QCOMPARE(log_->pipes.size(), pipes + 1);
        QVERIFY(log_->passages.isEmpty());
    }

    void goesOnWithoutIdentifier()
    {
        device().files().remove(DevicePaths::streams());
        QElapsedTimer clock;
        clock.start();
        connectClient();
        QVERIFY(clock.elapsed() > 9000);
        device().push(record(1));
        QTRY_COMPARE(log_->passages.size(), 1);
        QCOMPARE(log_->passages.first().vaskId, QStringLiteral("Not defined"));
    }

    void stopsInEveryState_data()
    {
        QTest::addColumn<QString>("state");
        for (const char *state :
             {"identifier refused", "identifier silent", "not listening", "black hole", "connected",
              "picture silent", "loaders", "burst", "not started"}) {
            QTest::newRow(state) << QString::fromLatin1(state);
        }
    }
    void stopsInEveryState()
    {
        QFETCH(QString, state);
        std::unique_ptr<BlackHole> hole;
        if (state == QLatin1String("identifier refused")) {
            device().files().remove(DevicePaths::streams());
            startClient();
            QTRY_COMPARE(device().journal().countRequests(DevicePaths::streams()), 1);
        } else if (state == QLatin1String("identifier silent")) {
            device().faults().add(Fault::silent().on(DevicePaths::streams()));
            startClient();
            QTRY_COMPARE(device().journal().countRequests(DevicePaths::streams()), 1);
        } else if (state == QLatin1String("not listening")) {
            device().setOnLineListening(false);
            startClient();
            QTRY_VERIFY_WITH_TIMEOUT(!log_->pipes.isEmpty(), patience);
        } else if (state == QLatin1String("black hole")) {
            hole = std::make_unique<BlackHole>(QHostAddress::LocalHost);
            Settings::instance()->setVaskParkingPort(hole->port());
            startClient();
            QTRY_COMPARE(device().journal().countRequests(DevicePaths::streams()), 1);
        } else if (state == QLatin1String("picture silent")) {
            device().faults().add(Fault::silent().on(record(1).fileName()));
            connectClient();
            device().push(record(1));
            QTRY_COMPARE(device().journal().countRequests(record(1).fileName()), 1);
        } else if (state == QLatin1String("loaders")) {
            device().faults().add(Fault::answer("Error"));
            connectClient();
            device().pushAll(records(20));
            QTRY_COMPARE_WITH_TIMEOUT(log_->passages.size(), 20, patience);
        } else if (state == QLatin1String("burst")) {
            connectClient();
            device().pushAll(records(1000));
            QTRY_VERIFY(log_->passages.size() > 3);
        } else if (state == QLatin1String("connected")) {
            connectClient();
        }
        QElapsedTimer clock;
        clock.start();
        client_.reset();
        QVERIFY2(clock.elapsed() < 1000, qPrintable(QString::number(clock.elapsed())));
    }

    void forgetsQuitWhenTheLineIsLost()
    {
        connectClient();
        client_->setQuit(true);
        QMetaObject::invokeMethod(client_.get(), "disconnected", Qt::DirectConnection);
        QVERIFY(!client_->quit());
        QVERIFY(!client_->isConnected());
    }

    void startsAgainAfterDisconnect()
    {
        connectClient();
        client_->disconnectFromHost();
        client_->requestInterruption();
        client_->connectToHost(QString());
        QTRY_VERIFY(client_->isFinished());
        connectClient();
        device().push(record(3));
        QTRY_COMPARE(log_->passages.size(), 1);
    }

    void readsRecordFromSocket()
    {
        QTcpSocket socket;
        socket.connectToHost(device().address(), device().onLinePort());
        QVERIFY(socket.waitForConnected());
        QTRY_COMPARE(device().onLineConnections(), 1);
        device().pushSplit(record(4), 100, 200);
        OnLine read;
        socket >> read;
        QCOMPARE(bytes(read), bytes(record(4)));
    }
};

STALLO_TEST_MAIN(TestOnlineClient)
#include "tst_onlineclient.moc"
