// SPDX-License-Identifier: MIT
#pragma once

#include <QMutex>
#include <QThread>

// A slowly refreshed camera picture of one device: fetches the frame that the device keeps
// overwriting, once a period, and tells the page of each with a VideoEvent. When none has come for
// 5 s it says so with an empty photo after every further try. A frame is downloaded into memory, at
// most 16 MiB. All video clients of the process then write it to the same local file, one after the
// other and each frame whole; see VideoFrameToken.
//
// run() in its own thread; everything else from any thread. The page, its parent, outlives it. A
// stop is asked for by the quit flag or the thread's interruption.
class VideoClient : public QThread
{
    Q_OBJECT

public:
    explicit VideoClient(QObject *parent);
    ~VideoClient() override;

    // Before start().
    void setChannel(int channel);

    // The next download asks this device. Starts and connects nothing.
    void connectToHost(const QString &host);
    // The same as setQuit(true).
    void disconnectFromHost();
    QString hostName() const;

    void setQuit(bool quit);
    bool quit() const;

protected:
    void run() override;

private:
    bool stopRequested() const;

    QObject *const receiver_;
    mutable QMutex mutex_;
    QString host_;
    int channel_ = -1;
    bool quit_ = false;
};
