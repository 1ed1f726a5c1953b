// SPDX-License-Identifier: MIT
#pragma once

#include "records/online.h"
#include "simulator/deviceconfig.h"
#include "simulator/fileservice.h"
#include "simulator/livefeed.h"
#include "simulator/onlineservice.h"

#include <QByteArray>
#include <QDateTime>
#include <QElapsedTimer>
#include <QFile>
#include <QObject>
#include <QTimer>
#include <QVector>

#include <deque>

class Faults;
class FileTree;
class Journal;

// One plate recognition device: its on-line port, its file port, and what passes before it.
//
// Asynchronous on one event loop; lives in one thread, where every function must be called. Files,
// faults and journal belong to whoever makes the device, may be used from other threads at any
// time, and must outlive it. Made, it has its files in place and is stopped.
class SimulatedDevice : public QObject
{
    Q_OBJECT

public:
    SimulatedDevice(const DeviceConfig &config, FileTree *files, Faults *faults, Journal *journal,
                    QObject *parent = nullptr);
    ~SimulatedDevice() override;

    bool start(QString *error);
    void stop();
    bool isRunning() const { return running_; }
    quint16 onLinePort() const { return config_.onLinePort; }
    quint16 filePort() const { return config_.filePort; }

    OnLineService &onLine() { return onLine_; }
    FileService &fileService() { return fileService_; }
    LiveFeed &feed() { return feed_; }

    // As the functions of DeviceHost of the same names.
    int push(const OnLine &record);
    int pushAll(const QVector<OnLine> &records);
    int pushBytes(const QByteArray &bytes);
    int pushPieces(const OnLine &record, const QVector<QByteArray> &pieces, int msec);
    int burst(int records);
    void setRate(double perSecond, int count);
    QVector<OnLine> sentRecords() const;
    void clearSentRecords();
    // Also those that are no longer remembered.
    qint64 sentCount() const { return sentCount_; }
    bool setOnLineListening(bool on, QString *error = nullptr);
    bool setFileListening(bool on, QString *error = nullptr);
    void goneFor(int msec);
    bool setCutOff(bool on);
    QByteArray storedAccessList() const;
    QByteArray activeAccessList() const { return activeList_; }

private:
    void makeFiles();
    void reload();
    void onTick();
    // Sends up to so many records of the feed, those of the past at one second's distance.
    int sendFromFeed(int records, bool backlog);
    void remember(const OnLine &record);
    bool listen(QTcpServer *server, quint16 *port, QString *error);
    void control(const QString &text);

    DeviceConfig config_;
    FileTree *files_;
    Faults *faults_;
    Journal *journal_;
    int connectionNumbers_ = 0;
    OnLineService onLine_;
    FileService fileService_;
    LiveFeed feed_;
    QByteArray activeList_;
    bool running_ = false;
    bool cutOff_ = false;
    QTimer tick_;
    QTimer comeBack_;
    QElapsedTimer sinceRate_;
    double rate_ = 0;
    int left_ = -1;      // records that the feed may still send by itself, -1 any number
    qint64 ticked_ = 0;  // records due since the rate was set
    QDateTime lastTime_; // of a record of the feed
    std::deque<OnLine> sent_;
    qint64 sentCount_ = 0;
    QFile sentFile_;
};
