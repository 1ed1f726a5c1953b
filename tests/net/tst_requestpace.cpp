// SPDX-License-Identifier: MIT
#include "net/requestpace.h"

#include "net/deviceidentity.h"
#include "net/getfile.h"
#include "net/putfile.h"
#include "net/videoclient.h"
#include "simulator/tcpreset.h"
#include "tests/net/onlineclientcase.h"

#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>

Q_DECLARE_METATYPE(Fault)

namespace
{

// Less than a second, by what two clocks may differ.
constexpr qint64 shortest = 950;

} // namespace

// Devices that hang up on whoever asks, and everything of the panel that asks again.
class TestRequestPace : public OnlineClientCase
{
    Q_OBJECT

private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void remembersServices()
    {
        const QString host = QStringLiteral("127.0.0.1");
        QVERIFY(RequestPace::mayAsk(host, 1));
        QVERIFY(RequestPace::mayAsk(host, 1));
        RequestPace::hungUp(host, 1);
        QVERIFY(!RequestPace::mayAsk(host, 1));
        QVERIFY(RequestPace::mayAsk(host, 2));
        QVERIFY(RequestPace::mayAsk(QStringLiteral("127.0.0.2"), 1));
        bool asked = false; // asking again changes the answer
        QTRY_VERIFY(asked = asked || RequestPace::mayAsk(host, 1));
        QVERIFY(!RequestPace::mayAsk(host, 1));
        RequestPace::answered(host, 1);
        QVERIFY(RequestPace::mayAsk(host, 1));
        QVERIFY(RequestPace::mayAsk(host, 1));
    }

    void asksOnceASecond_data()
    {
        QTest::addColumn<Fault>("fault");
        QTest::addColumn<QString>("who");
        const Fault reset = Fault::resetOnAccept();
        QTest::newRow("identifier, reset") << reset << "identifier";
        QTest::newRow("identifier, closed") << Fault::closeOnAccept() << "identifier";
        QTest::newRow("identifier, hangs up on requests")
            << Fault::closeAfterRequest() << "identifier";
        QTest::newRow("camera, reset") << reset << "camera";
        QTest::newRow("late pictures, reset") << reset << "pictures";
        QTest::newRow("late pictures, hangs up on requests")
            << Fault::closeAfterRequest() << "pictures";
    }
    void asksOnceASecond()
    {
        QFETCH(Fault, fault);
        QFETCH(QString, who);
        VideoClient video(log_.get());
        if (who == QLatin1String("pictures")) {
            connectClient();
        }
        device().journal().clear();
        device().faults().add(fault);
        if (who == QLatin1String("camera")) {
            Settings::instance()->setVideoTimeout(20);
            video.connectToHost(device().address());
            video.start();
        } else if (who == QLatin1String("pictures")) {
            device().pushAll(records(30));
            QTRY_COMPARE_WITH_TIMEOUT(log_->passages.size(), 30, patience);
        } else {
            DeviceIdentity::fetch(device().address(), {3500, 20}, QString(), [] { return false; });
        }
        const auto opened = [this] {
            return device().journal().entries(JournalEntry::Kind::FileOpened);
        };
        QTRY_VERIFY_WITH_TIMEOUT(opened().size() >= 4, patience);
        const QVector<JournalEntry> all = opened();
        for (int n = 1; n < all.size(); ++n) {
            const qint64 between = all.at(n).msec - all.at(n - 1).msec;
            QVERIFY2(between >= shortest, qPrintable(QString::number(between)));
        }
    }

    void latePicturesComeWhenTheDeviceAnswersAgain()
    {
        connectClient();
        const QVector<OnLine> sent = records(30);
        for (const OnLine &each : sent) {
            device().files().set(each.fileName(), "photo");
        }
        device().faults().add(Fault::resetOnAccept().times(2));
        device().pushAll(sent);
        QTRY_COMPARE_WITH_TIMEOUT(log_->passages.size() - log_->reposts(), sent.size(), patience);
        QTRY_VERIFY_WITH_TIMEOUT(log_->reposts() > 0, patience);
        for (const OnLine &each : sent) {
            const QString local = Settings::instance()->onLineTempDirectory() +
                                  QStringLiteral("/jpegdata/") + VaskSettings::picFileName(each);
            QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(local), patience);
        }
    }

    void transferWaitsForItsTurn()
    {
        // What the operator asked for does not fail because somebody else was hung up on.
        const QTemporaryDir folder;
        const QString path = QStringLiteral("/data/list");
        device().files().set(path, "content");
        device().faults().add(Fault::resetOnAccept().times(1));
        GetFile get(device().address(), folder.filePath(QStringLiteral("list")), nullptr);
        QVERIFY(!get(path));
        QVERIFY2(get(path), qPrintable(get.transferError()));
        device().faults().add(Fault::resetOnAccept().times(1));
        PutFile put(device().address(), folder.filePath(QStringLiteral("list")), nullptr);
        QVERIFY(!put(path));
        QVERIFY2(put(path), qPrintable(put.transferError()));
    }

    void firstTryOfAPictureGivesWay()
    {
        GetFile get(device().address(), QString(), nullptr);
        get.setGivingWay(true);
        device().faults().add(Fault::resetOnAccept().times(1));
        QVERIFY(!get.fetch(DevicePaths::streams(), 1000).has_value());
        device().journal().clear();
        QVERIFY(!get.fetch(DevicePaths::streams(), 1000).has_value());
        QVERIFY(!get.transferError().isEmpty());
        QCOMPARE(device().journal().count(JournalEntry::Kind::FileOpened), 0);
        QTRY_VERIFY(get.fetch(DevicePaths::streams(), 1000).has_value());
    }

    void liveLineConnectsOnceASecond()
    {
        const QHostAddress address(QStringLiteral("127.0.0.7"));
        QVector<qint64> times;
        bool listening = true;
        // In a thread of its own, so that it resets before the client has seen the connection.
        const std::unique_ptr<QThread> rudeDevice(
            QThread::create([&, port = device().onLinePort()] {
                QTcpServer rude;
                listening = rude.listen(address, port);
                QElapsedTimer clock;
                clock.start();
                while (listening && times.size() < 5 && rude.waitForNewConnection(20000)) {
                    times.append(clock.elapsed());
                    TcpReset::reset(rude.nextPendingConnection());
                }
            }));
        rudeDevice->start();
        client_->connectToHost(address.toString());
        client_->start();
        QTRY_VERIFY_WITH_TIMEOUT(rudeDevice->isFinished(), 40000);
        QVERIFY(listening);
        QCOMPARE(times.size(), 5);
        for (int n = 1; n < times.size(); ++n) {
            QVERIFY2(times.at(n) - times.at(n - 1) >= shortest,
                     qPrintable(QString::number(times.at(n) - times.at(n - 1))));
        }
    }
};

STALLO_TEST_MAIN(TestRequestPace)
#include "tst_requestpace.moc"
