// SPDX-License-Identifier: MIT
#pragma once

#include "net/onlineclient.h"

#include "app/settings.h"
#include "records/vasksettings.h"
#include "simulator/livefeed.h"
#include "tests/support/devices.h"
#include "tests/support/eventlog.h"
#include "tests/support/testmain.h"

#include <QAbstractSocket>
#include <QDir>
#include <QElapsedTimer>

#include <algorithm>

// A client on channel 1 with a page that only writes down what it is told, and a simulated device.
class OnlineClientCase : public QObject
{
    Q_OBJECT

protected:
    // Longer than the pauses between attempts, and than loaded machines take.
    static constexpr int patience = 15000;

    static QDateTime startTime() { return QDateTime(QDate(2026, 11, 21), QTime(12, 0), Qt::UTC); }
    static QByteArray bytes(const OnLine &record)
    {
        return QByteArray(record.data(), OnLine::size);
    }
    static OnLine record(int n)
    {
        OnLine one =
            SampleRecords::plain(QStringLiteral("A%1BC77").arg(n % 1000, 3, 10, QLatin1Char('0')),
                                 startTime().addSecs(n));
        one.setFileName(DevicePaths::photoFolder() + VaskSettings::picFileName(one));
        return one;
    }
    static QVector<OnLine> records(int count)
    {
        QVector<OnLine> all;
        for (int n = 0; n < count; ++n) {
            all.append(record(n));
        }
        return all;
    }

    void setUp()
    {
        TestSurroundings::freshSettings();
        const QString folder =
            Settings::instance()->onLineTempDirectory() + QStringLiteral("/jpegdata");
        QDir(folder).removeRecursively();
        QVERIFY(QDir().mkpath(folder));
        devices_ = std::make_unique<Devices>();
        log_ = std::make_unique<EventLog>();
        client_ = std::make_unique<OnlineClient>(log_.get());
        client_->setChannel(1);
    }

    void tearDown()
    {
        client_.reset();
        log_.reset();
        devices_.reset();
    }

    DeviceHost &device() { return devices_->first(); }

    void startClient()
    {
        client_->connectToHost(device().address());
        client_->start();
    }
    void connectClient()
    {
        const int before = log_->connects();
        startClient();
        QTRY_COMPARE_WITH_TIMEOUT(log_->connects(), before + 1, patience);
        QTRY_COMPARE(device().onLineConnections(), 1);
    }
    void expectPassages(const QVector<OnLine> &sent)
    {
        QTRY_COMPARE_WITH_TIMEOUT(log_->passages.size(), sent.size(), 60000);
        for (int n = 0; n < sent.size(); ++n) {
            QCOMPARE(bytes(log_->passages.at(n).record), bytes(sent.at(n)));
        }
    }

    std::unique_ptr<Devices> devices_;
    std::unique_ptr<EventLog> log_;
    std::unique_ptr<OnlineClient> client_;
};
