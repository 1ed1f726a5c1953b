// SPDX-License-Identifier: MIT
#include "tests/net/onlineclientcase.h"

// The pictures of live passages: late, failing, many at once.
class TestOnlinePictures : public OnlineClientCase
{
    Q_OBJECT

private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void postsLatePictureAsRepost()
    {
        connectClient();
        const OnLine sent = record(1);
        device().faults().add(Fault::answer("Error=Can't open file").on(sent.fileName()).times(1));
        device().files().set(sent.fileName(), "late photo");
        device().push(sent);
        QTRY_COMPARE_WITH_TIMEOUT(log_->reposts(), 1, patience);
        QCOMPARE(log_->passages.size(), 2);
        QVERIFY(!log_->passages.first().repost);
        QCOMPARE(bytes(log_->passages.last().record), bytes(sent));
        QFile file(log_->passages.last().fileName);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray("late photo"));
        const auto told = [&sent](const EventLog::Pipe &pipe) {
            return pipe.message ==
                       QStringLiteral("Can't download proper data : ") + sent.fileName() &&
                   pipe.channel == 1;
        };
        QVERIFY(std::any_of(log_->pipes.cbegin(), log_->pipes.cend(), told));
    }

    void fetchesEveryLatePictureOfABurst()
    {
        connectClient();
        const QVector<OnLine> sent = records(40);
        for (const OnLine &each : sent) {
            device().files().set(each.fileName(), each.number().toLatin1());
            device().faults().add(Fault::answer("Error").on(each.fileName()).times(1));
        }
        device().pushAll(sent);
        QTRY_COMPARE_WITH_TIMEOUT(log_->passages.size() - log_->reposts(), sent.size(), patience);
        QTRY_COMPARE_WITH_TIMEOUT(log_->reposts(), sent.size(), patience);
    }

    void silentFileServiceDelaysPassageByThreeSecondsAtMost()
    {
        device().faults().add(Fault::silent().on(record(1).fileName()));
        connectClient();
        QElapsedTimer clock;
        clock.start();
        device().push(record(1));
        QTRY_COMPARE_WITH_TIMEOUT(log_->passages.size(), 1, patience);
        QVERIFY(clock.elapsed() < 5000);
    }

    void slowPicturesDelayPassagesByThreeSecondsEach()
    {
        // Never silent for long, and 26 s for each picture.
        const QVector<OnLine> sent = records(3);
        for (const OnLine &each : sent) {
            device().files().set(each.fileName(), QByteArray(60000, 'p'));
        }
        connectClient();
        device().faults().add(Fault::trickle(1024, 450));
        QElapsedTimer clock;
        clock.start();
        device().pushAll(sent);
        expectPassages(sent);
        QVERIFY2(clock.elapsed() < 11000, qPrintable(QString::number(clock.elapsed())));
        // The loader goes on.
        device().faults().clear();
        QTRY_COMPARE_WITH_TIMEOUT(log_->reposts(), 3, 60000);
    }

    void switchCallsOffLatePictures()
    {
        // More than run at once.
        const QVector<OnLine> sent = records(20);
        for (const OnLine &each : sent) {
            device().faults().add(Fault::answer("Error").on(each.fileName()).times(1));
            device().faults().add(Fault::silent().on(each.fileName()));
        }
        connectClient();
        device().pushAll(sent);
        QTRY_COMPARE_WITH_TIMEOUT(log_->passages.size(), sent.size(), patience);
        QTRY_VERIFY_WITH_TIMEOUT(device().fileConnections() == 16, patience);
        const int asked = device().journal().countRequests();
        client_->connectToHost(devices_->second().address());
        QTRY_COMPARE_WITH_TIMEOUT(device().fileConnections(), 0, 2000);
        QTRY_COMPARE_WITH_TIMEOUT(devices_->second().onLineConnections(), 1, patience);
        // Those that waited for a place do not begin in the others' stead.
        QCOMPARE(device().journal().countRequests(), asked);
        QCOMPARE(log_->reposts(), 0);
    }

    void keepsLatePicturesWhenTheSameDeviceIsSelectedAgain()
    {
        connectClient();
        device().files().set(record(1).fileName(), "late");
        device().faults().add(Fault::answer("Error").on(record(1).fileName()).times(2));
        device().push(record(1));
        QTRY_COMPARE(device().journal().countRequests(record(1).fileName()), 2);
        client_->connectToHost(device().address());
        QTRY_COMPARE_WITH_TIMEOUT(log_->reposts(), 1, patience);
    }

    void dropsLatePictureThatArrivedAsTheDeviceWasSwitched()
    {
        connectClient();
        const OnLine sent = record(1);
        device().files().set(sent.fileName(), "late");
        device().faults().add(Fault::answer("Error").on(sent.fileName()).times(1));
        device().faults().add(Fault::delay(1500).on(sent.fileName()));
        device().push(sent);
        QTRY_COMPARE(log_->passages.size(), 1);
        const QString local = log_->passages.first().fileName;
        // The window is busy meanwhile: what the loader has to say waits.
        QElapsedTimer clock;
        clock.start();
        while (!QFile::exists(local) && !clock.hasExpired(patience)) {
            QThread::msleep(1);
        }
        QVERIFY(QFile::exists(local));
        client_->connectToHost(devices_->second().address());
        QTRY_COMPARE_WITH_TIMEOUT(devices_->second().onLineConnections(), 1, patience);
        QCOMPARE(log_->reposts(), 0);
    }

    void disconnectEndsPictureRetries()
    {
        connectClient();
        for (int n = 0; n < 20; ++n) {
            device().faults().add(Fault::answer("Error").on(record(n).fileName()));
        }
        device().pushAll(records(20));
        QTRY_COMPARE_WITH_TIMEOUT(log_->passages.size(), 20, patience);
        client_->disconnectFromHost();
        client_->requestInterruption();
        QTRY_VERIFY(client_->isFinished());
        const auto running = [] {
            return QDir(QStringLiteral("/proc/self/task"))
                .entryList(QDir::Dirs | QDir::NoDotAndDotDot)
                .size();
        };
        const int withLoaders = running();
        QTRY_VERIFY_WITH_TIMEOUT(running() <= withLoaders - 10 || running() < 8, 1000);
        // The next run begins with free slots.
        device().faults().clear();
        connectClient();
        device().faults().add(Fault::answer("Error").on(record(30).fileName()).times(1));
        device().push(record(30));
        QTRY_COMPARE_WITH_TIMEOUT(log_->reposts(), 1, patience);
    }

    void failedPictureLeavesNoHalfFile()
    {
        connectClient();
        device().files().set(record(1).fileName(), QByteArray(50000, 'x'));
        device().faults().add(Fault::closeAfter(20000).on(record(1).fileName()).times(1));
        device().push(record(1));
        QTRY_COMPARE_WITH_TIMEOUT(log_->reposts(), 1, patience);
        QCOMPARE(QFileInfo(log_->passages.last().fileName).size(), qint64(50000));
        const QDir folder = QFileInfo(log_->passages.last().fileName).dir();
        QCOMPARE(folder.entryList(QDir::Files).size(), 1);
    }
};

STALLO_TEST_MAIN(TestOnlinePictures)
#include "tst_onlinepictures.moc"
