// SPDX-License-Identifier: MIT
#pragma once

#include "net/onlinepictureloader.h"
#include "net/passagetickets.h"
#include "net/tcpclient.h"
#include "net/threadrun.h"

#include <deque>
#include <memory>
#include <vector>

class OnLineEvent;
class QTcpSocket;

// Keeps the connection to one device's live port and turns every record that the device pushes into
// an OnLineEvent for the page, its picture fetched first. Records come back to back, 192 bytes
// each, without any framing, so a short read is out of step for good and the line is dropped and
// made anew. The only byte ever sent is the keep-alive, after about a second without a whole
// record.
//
// The client connects again for ever, at most once a second, and tells each attempt and each loss
// as a PipeEvent. A device that is gone without a word is a loss after 10 s. A passage whose
// picture fails, or takes more than 3 s, goes out at once without it; the picture is then tried for
// a minute on a thread of its own and announced by a repost. At most 16 such threads run at once,
// the rest wait their turn; another address calls them off.
//
// At most 256 passages are on their way to the page, and 64 KiB of records are read ahead; a device
// that sends more waits. Nothing is dropped.
//
// run() in its own thread; everything else in the GUI thread. The page outlives the client.
class OnlineClient : public TcpClient
{
    Q_OBJECT

public:
    explicit OnlineClient(QObject *parent);
    ~OnlineClient() override;

    // Before start().
    void setChannel(int channel);

public Q_SLOTS:
    // Of a picture loader's thread.
    void onLoaderFinished();

protected:
    void run() override;

private:
    using LoaderThread = ThreadRun<OnlinePictureLoader, QString, OnLineEvent *>;
    struct WaitingPicture {
        std::unique_ptr<OnlinePictureLoader> loader;
        QString localPath;
    };
    // The thread object lives in the GUI thread and is deleted there.
    struct RunningPicture {
        std::unique_ptr<OnlinePictureLoader> loader;
        std::unique_ptr<LoaderThread> thread;
        bool former = false; // of an address that the client no longer watches
    };
    struct Line;

    int channel() const;
    QString identify();
    void watch(Line &line);
    bool connectLine(Line &line);
    void waitForRecord(Line &line);
    void keepAlive(Line &line);
    void receiveRecord(Line &line);
    void abortQuietly(Line &line);
    void tellSilence(Line &line);

    void loadLater(const OnLine &onLine, const Line &line, const QString &localPath);
    void startWaitingLoaders();
    // Of all addresses but this one.
    void callOffLoaders(const QString &host);

    // Guarded by the mutex.
    int channel_ = -1;
    const PassageTickets tickets_;
    std::vector<RunningPicture> loaders_;
    std::deque<WaitingPicture> waitingLoaders_;
};

// Blocks until a record has come or the line is gone, then reads what there is. No translation.
QTcpSocket &operator>>(QTcpSocket &socket, OnLine &onLine);
