// SPDX-License-Identifier: MIT
#include "net/onlineclient.h"

#include "app/settings.h"
#include "net/devicecommand.h"
#include "net/deviceidentity.h"
#include "net/events.h"
#include "net/getfile.h"
#include "net/socketwait.h"
#include "records/photoclaims.h"
#include "records/vasksettings.h"

#include <QDir>
#include <QElapsedTimer>
#include <QMutexLocker>
#include <QTcpSocket>

#include <algorithm>

namespace
{

constexpr int connectTimeout = 30000;
constexpr int attemptInterval = 1000;
constexpr int waitStep = 10;
// Waits without a whole record before a keep-alive: about a second.
constexpr int silentWaits = 100;
// How long a passage waits for its picture, each for the connection and for the answer. A picture
// that a device keeps back longer follows later.
constexpr int livePictureTimeout = 3000;
constexpr DeviceIdentity::Patience identityPatience{10000, 3000};
constexpr std::size_t mostLoaders = 16;
constexpr std::size_t mostWaitingLoaders = 1000;

QString livePicturePath(const Settings &settings, const OnLine &onLine)
{
    return settings.absolute(settings.onLineTempDirectory()) + QDir::separator() +
           VaskSettings::picFileDir() + QDir::separator() + VaskSettings::picFileName(onLine);
}

} // namespace

// The state of run(): the worker's own, never seen by another thread.
struct OnlineClient::Line {
    QTcpSocket socket;
    QString host;
    QString vaskId;
    int channel = -1;
    int silence = 0;
    bool quiet = false;
    bool given = false; // up: the line does not answer and is to be made anew
    QElapsedTimer sinceAttempt;
};

OnlineClient::OnlineClient(QObject *parent)
    : TcpClient(parent)
{
}

OnlineClient::~OnlineClient()
{
    stopAndWait(); // run() calls the loaders off at its end
    for (const RunningPicture &job : loaders_) {
        job.thread->wait();
        delete job.thread->result();
    }
}

void OnlineClient::setChannel(int channel)
{
    const QMutexLocker lock(&mutex_);
    channel_ = channel;
}

void OnlineClient::run()
{
    setQuit(false);
    setConnected(false);
    if (hostName().isEmpty()) {
        return;
    }
    Line line;
    {
        const QMutexLocker lock(&mutex_);
        line.channel = channel_;
    }
    line.vaskId = identify();
    watch(line);
    while (!stopRequested()) {
        const bool recordsLeft = line.socket.bytesAvailable() >= OnLine::size;
        const bool lost = line.socket.state() == QAbstractSocket::UnconnectedState && !recordsLeft;
        if ((lost || line.given || hostChanged()) && !connectLine(line)) {
            if (line.host.isEmpty()) {
                break;
            }
            continue;
        }
        waitForRecord(line);
        if (!line.given && !hostChanged() && !stopRequested()) {
            receiveRecord(line);
        }
    }
    line.socket.disconnectFromHost();
    abortQuietly(line);
    forgetConnected();
    const QMutexLocker lock(&mutex_);
    waitingLoaders_.clear();
    for (const RunningPicture &job : loaders_) {
        job.thread->requestInterruption();
    }
}

QString OnlineClient::identify()
{
    QString host;
    QString id;
    // The answer of the device named when the fetch began; should another be named meanwhile, of
    // that.
    while (host != hostName() && !stopRequested()) {
        host = hostName();
        id = DeviceIdentity::fetch(host, identityPatience, tr("Not defined"),
                                   [&] { return stopRequested() || hostName() != host; });
    }
    return id;
}

void OnlineClient::watch(Line &line)
{
    connect(&line.socket, &QTcpSocket::connected, this, &OnlineClient::connected);
    // Captured here in the worker: by the time the slot runs the socket may be in another state.
    connect(&line.socket, &QTcpSocket::disconnected, &line.socket, [this, &line] {
        if (!line.quiet) {
            reportLoss(line.socket.state(), line.socket.errorString());
        }
    });
}

bool OnlineClient::connectLine(Line &line)
{
    const auto calledOff = [this] { return stopRequested() || hostChanged(); };
    if (!hostChanged() && line.sinceAttempt.isValid() &&
        !SocketWait::pause(attemptInterval - line.sinceAttempt.elapsed(), calledOff)) {
        return false;
    }
    line.host = takeHost();
    line.given = false;
    abortQuietly(line);
    forgetConnected();
    if (line.host.isEmpty()) {
        return false;
    }
    line.sinceAttempt.start();
    const auto port = static_cast<quint16>(settings_ != nullptr ? settings_->vaskParkingPort() : 0);
    const auto outcome =
        SocketWait::connectToHost(line.socket, line.host, port, connectTimeout, calledOff);
    if (outcome == SocketWait::Outcome::CalledOff) {
        return false;
    }
    const bool timedOut = outcome == SocketWait::Outcome::TimedOut;
    postPipe(line.socket.state(),
             timedOut ? QAbstractSocket::tr("Socket operation timed out")
                      : line.socket.errorString(),
             line.channel);
    return outcome == SocketWait::Outcome::Connected;
}

void OnlineClient::abortQuietly(Line &line)
{
    line.quiet = true;
    line.socket.abort();
    line.quiet = false;
}

void OnlineClient::waitForRecord(Line &line)
{
    while (line.socket.bytesAvailable() < OnLine::size && !line.given && !hostChanged()) {
        if (line.socket.state() != QAbstractSocket::ConnectedState || stopRequested()) {
            return;
        }
        line.socket.waitForReadyRead(waitStep);
        if (++line.silence >= silentWaits) {
            keepAlive(line);
            line.silence = 0;
        }
    }
}

void OnlineClient::keepAlive(Line &line)
{
    const bool sent = line.socket.write(&DeviceCommand::keepAlive, 1) == 1;
    line.socket.flush();
    if (sent && line.socket.state() == QAbstractSocket::ConnectedState) {
        return;
    }
    if (line.socket.bytesAvailable() >= OnLine::size) {
        return; // the device has gone, but not before it had sent more; that is read first
    }
    const QString error = line.socket.errorString();
    line.given = true;
    line.socket.abort();
    postPipe(QAbstractSocket::UnconnectedState, error, line.channel);
}

void OnlineClient::receiveRecord(Line &line)
{
    OnLine record;
    if (line.socket.read(record.data(), OnLine::size) < OnLine::size) {
        abortQuietly(line);
        return;
    }
    record.translateFromLocal();
    const QString common = livePicturePath(*settings_, record);
    const QString localPath = PhotoClaims::claim(common, line.host, line.vaskId);
    GetFile get(line.host, QString(), nullptr);
    get.setTimeout(livePictureTimeout);
    get.setCancelled([this] { return stopRequested() || hostChanged(); });
    if (!localPath.isEmpty() && !OnlinePictureLoader::fetch(get, record.fileName(), localPath)) {
        if (stopRequested() || hostChanged()) {
            return;
        }
        loadLater(record, line, localPath);
        postPipe(line.socket.state(),
                 get.transferError() + QStringLiteral(" : ") + record.fileName(), line.channel);
    }
    if (!hostChanged()) {
        post(new OnLineEvent(line.host, record, localPath.isEmpty() ? common : localPath,
                             line.vaskId, false));
    }
}

void OnlineClient::loadLater(const OnLine &onLine, const Line &line, const QString &localPath)
{
    const QMutexLocker lock(&mutex_);
    if (waitingLoaders_.size() < mostWaitingLoaders) {
        waitingLoaders_.push_back(
            {std::make_unique<OnlinePictureLoader>(onLine, line.host, line.vaskId), localPath});
        startWaitingLoaders();
    }
}

void OnlineClient::startWaitingLoaders()
{
    while (loaders_.size() < mostLoaders && !waitingLoaders_.empty()) {
        WaitingPicture next = std::move(waitingLoaders_.front());
        waitingLoaders_.pop_front();
        auto run = std::make_unique<LoaderThread>(next.loader.get(), &OnlinePictureLoader::load,
                                                  next.localPath);
        run->moveToThread(thread());
        connect(run.get(), &QThread::finished, this, &OnlineClient::onLoaderFinished);
        run->start();
        loaders_.push_back({std::move(next.loader), std::move(run)});
    }
}

void OnlineClient::onLoaderFinished()
{
    RunningPicture done;
    {
        const QMutexLocker lock(&mutex_);
        const auto finished =
            std::find_if(loaders_.begin(), loaders_.end(), [this](const RunningPicture &job) {
                return job.thread.get() == sender();
            });
        if (finished == loaders_.end()) {
            return;
        }
        done = std::move(*finished);
        loaders_.erase(finished);
        startWaitingLoaders();
    }
    done.thread->wait();
    if (done.thread->result() != nullptr) {
        post(done.thread->result());
    }
}

QTcpSocket &operator>>(QTcpSocket &socket, OnLine &onLine)
{
    while (socket.bytesAvailable() < OnLine::size &&
           socket.state() == QAbstractSocket::ConnectedState) {
        socket.waitForReadyRead(waitStep);
    }
    if (socket.isValid()) {
        socket.read(onLine.data(), OnLine::size);
    }
    return socket;
}
