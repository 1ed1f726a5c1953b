// SPDX-License-Identifier: MIT
#include "net/deadpeer.h"

#include "net/getfile.h"
#include "tests/net/onlineclientcase.h"

#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTimer>

// Devices that are gone without a word. The simulated one has its packets dropped at its own
// sockets, so neither privileges nor a network namespace are needed.
class TestDeadPeer : public OnlineClientCase
{
    Q_OBJECT

private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void tellsLossAndComesBack_data()
    {
        QTest::addColumn<double>("rate");
        QTest::newRow("silent line") << 0.0;
        QTest::newRow("a record a second") << 1.0;
        QTest::newRow("twenty records a second") << 20.0;
    }
    void tellsLossAndComesBack()
    {
        QFETCH(double, rate);
        connectClient();
        device().push(record(1));
        QTRY_COMPARE(log_->passages.size(), 1);
        device().setRate(rate);
        QTRY_VERIFY(rate <= 0 || log_->passages.size() > 3);
        QTRY_VERIFY(rate > 0 || device().keepAliveCount() > 1);

        QVERIFY(device().setCutOff(true));
        QElapsedTimer clock;
        clock.start();
        const int before = log_->pipes.size();
        const auto loss = [this, before] {
            return std::find_if(log_->pipes.cbegin() + before, log_->pipes.cend(),
                                [](const EventLog::Pipe &pipe) {
                                    return pipe.state == QAbstractSocket::UnconnectedState &&
                                           !pipe.message.isEmpty();
                                });
        };
        QTRY_VERIFY_WITH_TIMEOUT(loss() != log_->pipes.cend(), 3 * DeadPeer::longestSilence);
        const qint64 noticed = clock.elapsed();
        qInfo("noticed after %lld ms: %s", noticed, qPrintable(loss()->message));
        QVERIFY2(noticed <= DeadPeer::longestSilence, qPrintable(QString::number(noticed)));
        // A line that is only slow for a moment is kept.
        QVERIFY2(noticed > DeadPeer::longestSilence / 2, qPrintable(QString::number(noticed)));
        QTRY_VERIFY(!client_->isConnected());

        device().setRate(0);
        const int connects = log_->connects();
        const int accepted = device().journal().count(JournalEntry::Kind::OnLineOpened);
        QVERIFY(device().setCutOff(false));
        QTRY_COMPARE_WITH_TIMEOUT(log_->connects(), connects + 1, 2 * patience);
        QTRY_VERIFY(client_->isConnected());
        QTRY_COMPARE(device().journal().count(JournalEntry::Kind::OnLineOpened), accepted + 1);
        // What was kept for the former connection ends that one.
        device().push(record(2));
        QTRY_COMPARE(device().onLineConnections(), 1);
        // Late photos of records before may be told behind it.
        const auto isSecond = [](const EventLog::Passage &passage) {
            return bytes(passage.record) == bytes(record(2));
        };
        QTRY_VERIFY_WITH_TIMEOUT(
            std::any_of(log_->passages.cbegin(), log_->passages.cend(), isSecond), patience);
    }

    // What the system does where the panel does not ask: for transfers, and as a second net for
    // lines.
    void systemEndsConnection_data()
    {
        QTest::addColumn<bool>("line");
        QTest::addColumn<bool>("sends");
        QTest::newRow("line, sending") << true << true;
        QTest::newRow("line, sending nothing") << true << false;
        QTest::newRow("transfer, sending") << false << true;
    }
    void systemEndsConnection()
    {
        QFETCH(bool, line);
        QFETCH(bool, sends);
        QTcpSocket socket;
        socket.connectToHost(device().address(), device().onLinePort());
        QVERIFY(socket.waitForConnected(patience));
        QTRY_COMPARE(device().onLineConnections(), 1);
        (line ? DeadPeer::watchLine : DeadPeer::watchTransfer)(socket);
        QVERIFY(!DeadPeer::isGone(socket));

        QVERIFY(device().setCutOff(true));
        QElapsedTimer clock;
        clock.start();
        if (sends) {
            socket.write("\xFF", 1);
        }
        QTRY_COMPARE_WITH_TIMEOUT(socket.state(), QAbstractSocket::UnconnectedState,
                                  3 * DeadPeer::longestSilence);
        qInfo("ended after %lld ms: %s", clock.elapsed(), qPrintable(socket.errorString()));
        // The system looks at its clock about every two seconds.
        QVERIFY2(clock.elapsed() <= DeadPeer::longestSilence + 2500,
                 qPrintable(QString::number(clock.elapsed())));
        QVERIFY(clock.elapsed() > DeadPeer::longestSilence / 2);
    }

    void endsDownload()
    {
        const QString path = QStringLiteral("/data/file");
        device().files().set(path, QByteArray(1000000, 'x'));
        device().faults().add(Fault::trickle(1024, 20).on(path));
        const QTemporaryDir folder;
        QElapsedTimer clock;
        bool cut = false;
        GetFile get(device().address(), folder.filePath(QStringLiteral("local")), nullptr);
        // Asked in every wait of the transfer: some blocks have come by then.
        get.setCancelled([&] {
            if (!clock.isValid()) {
                clock.start();
            } else if (!cut && clock.elapsed() > 500) {
                cut = device().setCutOff(true);
                clock.start();
            }
            return false;
        });
        QVERIFY(!get(path));
        QVERIFY(cut);
        QCOMPARE(get.transferError(), QStringLiteral("Timeout when reading file from vask"));
        QVERIFY2(clock.elapsed() < 2500, qPrintable(QString::number(clock.elapsed())));
        QVERIFY(device().setCutOff(false));
        device().faults().clear();
        QVERIFY2(get(path), qPrintable(get.transferError()));
    }
};

STALLO_TEST_MAIN(TestDeadPeer)
#include "tst_deadpeer.moc"
