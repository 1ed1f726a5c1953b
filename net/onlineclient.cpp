// SPDX-License-Identifier: MIT
#include "net/onlineclient.h"

#include "app/settings.h"
#include "net/deadpeer.h"
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
// How long a passage waits for its picture in all. One that a device keeps back longer, or sends
// more slowly, follows later.
constexpr int livePictureTimeout = 3000;
constexpr DeviceIdentity::Patience identityPatience{10000, 3000};
constexpr std::size_t mostLoaders = 16;
constexpr std::size_t mostWaitingLoaders = 1000;
constexpr int mostPassages = 256;
constexpr qint64 readAhead = 64 * 1024;

QString silenceText()
{
    return QAbstractSocket::tr("Socket operation timed out");
}

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
    bool given = false;  // up: the line does not answer and is to be made anew
    bool silent = false; // the device is gone, with records of it still to be read
    QElapsedTimer sinceAttempt;
};

OnlineClient::OnlineClient(QObject *parent)
    : TcpClient(parent)
    , tickets_(mostPassages)
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

int OnlineClient::channel() const
{
    const QMutexLocker lock(&mutex_);
    return channel_;
}

void OnlineClient::run()
{
    setQuit(false);
    setConnected(false);
    if (hostName().isEmpty()) {
        return;
    }
    Line line;
    line.channel = channel();
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
    callOffLoaders(QString());
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
    line.socket.setReadBufferSize(readAhead);
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
    line.silent = false;
    abortQuietly(line);
    forgetConnected();
    callOffLoaders(line.host);
    if (line.host.isEmpty()) {
        return false;
    }
    line.sinceAttempt.start();
    const auto port = static_cast<quint16>(settings_ != nullptr ? settings_->vaskParkingPort() : 0);
    const auto outcome =
        SocketWait::connectToHost(line.socket, line.host, port, connectTimeout, calledOff);
    // Connected at the last moment is called off as well: it would be told of the new address.
    if (outcome == SocketWait::Outcome::CalledOff || calledOff()) {
        return false;
    }
    if (outcome == SocketWait::Outcome::Connected) {
        DeadPeer::watchLine(line.socket);
    }
    const QString text = outcome == SocketWait::Outcome::TimedOut ? silenceText()
                         : outcome == SocketWait::Outcome::HungUp ? SocketWait::hungUpText()
                                                                  : line.socket.errorString();
    postPipe(line.socket.state(), text, line.channel, line.host);
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
        // With a whole record there is no silence; and the records of a device that has sent much
        // and gone would be lost with a keep-alive that fails.
        if (++line.silence >= silentWaits && line.socket.bytesAvailable() < OnLine::size) {
            keepAlive(line);
            line.silence = 0;
        }
    }
}

void OnlineClient::keepAlive(Line &line)
{
    const bool sent = line.socket.write(&DeviceCommand::keepAlive, 1) == 1;
    line.socket.flush();
    const bool silent = DeadPeer::isGone(line.socket);
    if (sent && !silent && line.socket.state() == QAbstractSocket::ConnectedState) {
        return;
    }
    if (line.socket.bytesAvailable() >= OnLine::size) {
        return; // the device has gone, but not before it had sent more; that is read first
    }
    const QString error = silent ? silenceText() : line.socket.errorString();
    line.given = true;
    line.socket.abort();
    postPipe(QAbstractSocket::UnconnectedState, error, line.channel, line.host);
}

void OnlineClient::tellSilence(Line &line)
{
    const bool silent = DeadPeer::isGone(line.socket);
    if (silent == line.silent || line.socket.state() != QAbstractSocket::ConnectedState) {
        return;
    }
    line.silent = silent;
    setConnected(!silent);
    postPipe(silent ? QAbstractSocket::UnconnectedState : line.socket.state(),
             silent ? silenceText() : QString(), line.channel, line.host);
}

void OnlineClient::receiveRecord(Line &line)
{
    OnLine record;
    if (line.socket.read(record.data(), OnLine::size) < OnLine::size) {
        abortQuietly(line);
        return;
    }
    record.translateFromLocal();
    tellSilence(line);
    const auto calledOff = [this] { return stopRequested() || hostChanged(); };
    const QString common = livePicturePath(*settings_, record);
    // Empty where the photo is not to be stored.
    const QString localPath = PhotoClaims::claim(common, line.host, line.vaskId);
    GetFile get(line.host, QString(), nullptr);
    get.setTotalTimeout(livePictureTimeout);
    get.setGivingWay(true);
    get.setCancelled(calledOff);
    const bool late =
        !localPath.isEmpty() &&
        (line.silent || !OnlinePictureLoader::fetch(get, record.fileName(), localPath));
    const PassageTickets::Ticket ticket = tickets_.take(calledOff);
    if (ticket == nullptr || hostChanged() || (late && stopRequested())) {
        return;
    }
    if (late) {
        loadLater(record, line, localPath);
    }
    if (late && !line.silent) {
        postPipe(line.socket.state(),
                 get.transferError() + QStringLiteral(" : ") + record.fileName(), line.channel,
                 line.host);
    }
    auto *event = new OnLineEvent(line.host, record, localPath.isEmpty() ? common : localPath,
                                  line.vaskId, false);
    event->setOrigin(line.channel, ticket);
    post(event);
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

void OnlineClient::callOffLoaders(const QString &host)
{
    const QMutexLocker lock(&mutex_);
    const auto isFormer = [&host](const WaitingPicture &picture) {
        return picture.loader->host() != host;
    };
    waitingLoaders_.erase(std::remove_if(waitingLoaders_.begin(), waitingLoaders_.end(), isFormer),
                          waitingLoaders_.end());
    for (RunningPicture &job : loaders_) {
        if (job.loader->host() != host) {
            job.former = true;
            job.thread->requestInterruption();
        }
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
        loaders_.push_back({std::move(next.loader), std::move(run), false});
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
    std::unique_ptr<OnLineEvent> late(done.thread->result());
    // The address may have changed since the worker called off the former one's.
    if (late && !done.former && done.loader->host() == hostName()) {
        late->setOrigin(channel(), tickets_.takeAtOnce());
        post(late.release());
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
