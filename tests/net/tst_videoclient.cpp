// SPDX-License-Identifier: MIT
#include "net/videoclient.h"

#include "app/settings.h"
#include "tests/support/devices.h"
#include "tests/support/eventlog.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QElapsedTimer>

namespace
{

constexpr int patience = 15000;

} // namespace

Q_DECLARE_METATYPE(Fault)

class TestVideoClient : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        TestSurroundings::freshSettings();
        QVERIFY(QDir().mkpath(Settings::instance()->videoTempDirectory()));
        Settings::instance()->setVideoTimeout(50);
        devices_ = std::make_unique<Devices>();
        log_ = std::make_unique<EventLog>();
    }

    void cleanup()
    {
        log_.reset();
        devices_.reset();
    }

    void refreshes()
    {
        const auto client = start(devices_->first(), 1);
        QTRY_VERIFY_WITH_TIMEOUT(log_->frames.size() > 5, patience);
        for (const EventLog::Frame &frame : qAsConst(log_->frames)) {
            QCOMPARE(frame.hostName, devices_->first().address());
            QCOMPARE(frame.photo, Settings::instance()->videoTempFile(0));
            QCOMPARE(frame.channel, 1);
            QVERIFY(frame.content.startsWith("\xFF\xD8"));
        }
        QVERIFY(devices_->first().journal().countRequests(QStringLiteral("/tmp/video0.jpeg")) > 5);
    }

    void keepsPeriod()
    {
        Settings::instance()->setVideoTimeout(400);
        const auto client = start(devices_->first(), 0);
        QTRY_VERIFY_WITH_TIMEOUT(log_->frames.size() >= 1, patience);
        QElapsedTimer clock;
        clock.start();
        const int before = log_->frames.size();
        QTRY_VERIFY_WITH_TIMEOUT(log_->frames.size() >= before + 4, patience);
        QVERIFY(clock.elapsed() > 1100);
    }

    void doesNotSpinWithoutPeriod_data()
    {
        QTest::addColumn<int>("period");
        QTest::newRow("zero") << 0;
        QTest::newRow("negative") << -5;
    }
    void doesNotSpinWithoutPeriod()
    {
        QFETCH(int, period);
        Settings::instance()->setVideoTimeout(period);
        const auto client = start(devices_->first(), 0);
        QTRY_VERIFY_WITH_TIMEOUT(log_->frames.size() >= 1, patience);
        QElapsedTimer clock;
        clock.start();
        const int before = log_->frames.size();
        QTRY_VERIFY_WITH_TIMEOUT(log_->frames.size() >= before + 10, patience);
        QVERIFY(clock.elapsed() > 150);
    }

    // Both write the same local file; each event must still bring its own device's whole frame.
    void neverMixesTwoDevices()
    {
        devices_->first().files().set(QStringLiteral("/tmp/video0.jpeg"), QByteArray(70000, 'a'));
        devices_->second().files().set(QStringLiteral("/tmp/video0.jpeg"), QByteArray(50000, 'b'));
        Settings::instance()->setVideoTimeout(1);
        const auto one = start(devices_->first(), 0);
        const auto two = start(devices_->second(), 1);
        QTRY_VERIFY_WITH_TIMEOUT(log_->frames.size() > 200, 60000);
        int ofFirst = 0;
        for (const EventLog::Frame &frame : qAsConst(log_->frames)) {
            QCOMPARE(frame.content,
                     frame.channel == 0 ? QByteArray(70000, 'a') : QByteArray(50000, 'b'));
            ofFirst += frame.channel == 0 ? 1 : 0;
        }
        QVERIFY(ofFirst > 50 && ofFirst < log_->frames.size() - 50);
    }

    // A device that gives its frame in drops, or never, does not cost the other one a frame: many
    // come while the slow one is in the same try.
    void slowDeviceDoesNotSlowTheOther_data()
    {
        QTest::addColumn<Fault>("fault");
        QTest::newRow("trickle") << Fault::trickle(64, 5);
        QTest::newRow("silent") << Fault::silent();
        QTest::newRow("stops in a block") << Fault::pause(500, 60000);
    }
    void slowDeviceDoesNotSlowTheOther()
    {
        QFETCH(Fault, fault);
        DeviceHost &slow = devices_->second();
        slow.files().set(QStringLiteral("/tmp/video0.jpeg"), QByteArray(2000000, 'b'));
        slow.faults().add(fault);
        const auto silent = start(slow, 1);
        QTRY_VERIFY_WITH_TIMEOUT(slow.journal().countRequests() > 0, patience);
        const int triesBefore = slow.journal().countRequests();
        const auto one = start(devices_->first(), 0);
        QTRY_VERIFY_WITH_TIMEOUT(framesOf(0) >= 30, patience);
        const int tries = 1 + slow.journal().countRequests() - triesBefore;
        QVERIFY2(framesOf(0) >= 4 * tries, qPrintable(QString::number(tries)));
    }

    // Who still reads the former frame reads that one whole.
    void replacesFramesWhole()
    {
        const QString remote = QStringLiteral("/tmp/video0.jpeg");
        devices_->first().files().set(remote, QByteArray(70000, 'a'));
        auto client = start(devices_->first(), 0);
        QTRY_VERIFY_WITH_TIMEOUT(framesOf(0) > 0, patience);
        QFile former(Settings::instance()->videoTempFile(0));
        QVERIFY(former.open(QIODevice::ReadOnly | QIODevice::Unbuffered));
        devices_->first().files().set(remote, QByteArray(50000, 'b'));
        QTRY_VERIFY_WITH_TIMEOUT(log_->frames.last().content == QByteArray(50000, 'b'), patience);
        QCOMPARE(former.readAll(), QByteArray(70000, 'a'));
        client.reset();
        QCOMPARE(QDir(Settings::instance()->videoTempDirectory()).entryList(QDir::Files).size(), 1);
    }

    void failedFrameLeavesTheFormer_data()
    {
        QTest::addColumn<Fault>("fault");
        QTest::newRow("breaks off") << Fault::closeAfter(3000);
        QTest::newRow("larger than a frame may be") << Fault::declaredSize("16777217");
        QTest::newRow("refused") << Fault::answer("Error");
    }
    void failedFrameLeavesTheFormer()
    {
        QFETCH(Fault, fault);
        const QString local = Settings::instance()->videoTempFile(0);
        QFile file(local);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("the former frame");
        file.close();
        devices_->first().faults().add(fault);
        const auto client = start(devices_->first(), 0);
        QTRY_VERIFY_WITH_TIMEOUT(log_->frames.size() >= 2, patience);
        QCOMPARE(log_->frames.first().photo, QString());
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray("the former frame"));
    }

    void unwritableFrameIsNone()
    {
        const QString local = Settings::instance()->videoTempFile(0);
        QFile::remove(local);
        QVERIFY(QDir().mkpath(local + QStringLiteral(".part")));
        const auto client = start(devices_->first(), 0);
        QTRY_VERIFY_WITH_TIMEOUT(log_->frames.size() >= 2, patience);
        QCOMPARE(log_->frames.first().photo, QString());
        QVERIFY(!QFile::exists(local));
        QVERIFY(QDir().rmdir(local + QStringLiteral(".part")));
    }

    void tellsOfSilenceAtOnceWhenThereNeverWasAFrame()
    {
        devices_->first().faults().add(Fault::answer("Error"));
        const auto client = start(devices_->first(), 0);
        QTRY_VERIFY_WITH_TIMEOUT(log_->frames.size() >= 2, patience);
        QCOMPARE(log_->frames.first().photo, QString());
        QCOMPARE(log_->frames.first().hostName, devices_->first().address());
    }

    void tellsOfSilenceAfterFiveSeconds()
    {
        const auto client = start(devices_->first(), 0);
        QTRY_VERIFY_WITH_TIMEOUT(log_->frames.size() >= 1, patience);
        devices_->first().faults().add(Fault::answer("Error"));
        QElapsedTimer clock;
        clock.start();
        QTRY_VERIFY_WITH_TIMEOUT(log_->frames.last().photo.isEmpty(), patience);
        QVERIFY(clock.elapsed() > 4500);
    }

    void stopsInEveryState_data()
    {
        QTest::addColumn<QString>("state");
        for (const char *state :
             {"idle", "silent", "no listener", "in a block", "waiting for the token"}) {
            QTest::newRow(state) << QString::fromLatin1(state);
        }
    }
    void stopsInEveryState()
    {
        QFETCH(QString, state);
        VideoFrameToken token;
        if (state == QLatin1String("silent")) {
            devices_->first().faults().add(Fault::silent());
        } else if (state == QLatin1String("no listener")) {
            devices_->first().setFileListening(false);
        } else if (state == QLatin1String("in a block")) {
            devices_->first().faults().add(Fault::pause(500, 60000));
        } else if (state == QLatin1String("waiting for the token")) {
            token = VideoFrameToken::take([] { return false; });
        } else {
            Settings::instance()->setVideoTimeout(60000);
        }
        auto client = start(devices_->first(), 0);
        if (state == QLatin1String("idle") || state == QLatin1String("no listener")) {
            QTRY_VERIFY(!log_->frames.isEmpty());
        } else if (state != QLatin1String("waiting for the token")) {
            QTRY_VERIFY(devices_->first().journal().countRequests() > 0);
        }
        QElapsedTimer clock;
        clock.start();
        client.reset();
        QVERIFY(clock.elapsed() < 500);
    }

    void postsNothingAfterQuit()
    {
        devices_->first().faults().add(Fault::delay(300));
        const auto client = start(devices_->first(), 0);
        QTRY_VERIFY(devices_->first().journal().countRequests() > 0);
        client->setQuit(true);
        QTRY_VERIFY_WITH_TIMEOUT(client->isFinished(), patience);
        QCoreApplication::sendPostedEvents();
        QVERIFY(log_->frames.isEmpty());
    }

    void givesTokenBackWhenEventDies()
    {
        {
            VideoEvent event(QString(), QString(), 0, VideoFrameToken::take([] { return false; }));
            const VideoFrameToken none = VideoFrameToken::take([] { return true; });
            QVERIFY(none.isNull());
        }
        QVERIFY(!VideoFrameToken::take([] { return true; }).isNull());
    }

private:
    std::unique_ptr<VideoClient> start(DeviceHost &device, int channel)
    {
        auto client = std::make_unique<VideoClient>(log_.get());
        client->setChannel(channel);
        client->connectToHost(device.address());
        client->start();
        return client;
    }

    int framesOf(int channel) const
    {
        return static_cast<int>(std::count_if(
            log_->frames.cbegin(), log_->frames.cend(), [channel](const EventLog::Frame &each) {
                return each.channel == channel && !each.photo.isEmpty();
            }));
    }

    std::unique_ptr<Devices> devices_;
    std::unique_ptr<EventLog> log_;
};

STALLO_TEST_MAIN(TestVideoClient)
#include "tst_videoclient.moc"
