// SPDX-License-Identifier: MIT
#include "net/videoclient.h"

#include "app/settings.h"
#include "net/events.h"
#include "net/getfile.h"
#include "net/socketwait.h"
#include "net/videoframetoken.h"
#include "records/filewrite.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QMutexLocker>

#include <cstdio>

namespace
{

constexpr int frameTimeout = 2000;
constexpr int silentForLong = 4999;
constexpr int shortestPeriod = 20;
constexpr qint64 mostFrameBytes = 16 * 1024 * 1024;

// Whole or not at all: written beside and then renamed, for whoever reads the former one meanwhile.
// Only by the holder of the token.
bool writeFrame(const QString &name, const QByteArray &frame)
{
    const QString beside = name + QStringLiteral(".part");
    QFile file(beside);
    const bool written =
        file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) && FileWrite::all(file, frame);
    file.close();
    if (written && std::rename(QFile::encodeName(beside).constData(),
                               QFile::encodeName(name).constData()) == 0) {
        return true;
    }
    QFile::remove(beside);
    return false;
}

} // namespace

VideoClient::VideoClient(QObject *parent)
    : QThread(parent)
    , receiver_(parent)
{
}

VideoClient::~VideoClient()
{
    setQuit(true);
    requestInterruption();
    wait();
}

void VideoClient::setChannel(int channel)
{
    const QMutexLocker lock(&mutex_);
    channel_ = channel;
}

void VideoClient::connectToHost(const QString &host)
{
    const QMutexLocker lock(&mutex_);
    host_ = host;
}

void VideoClient::disconnectFromHost()
{
    setQuit(true);
}

QString VideoClient::hostName() const
{
    const QMutexLocker lock(&mutex_);
    return host_;
}

void VideoClient::setQuit(bool quit)
{
    const QMutexLocker lock(&mutex_);
    quit_ = quit;
}

bool VideoClient::quit() const
{
    const QMutexLocker lock(&mutex_);
    return quit_;
}

bool VideoClient::stopRequested() const
{
    return quit() || isInterruptionRequested();
}

void VideoClient::run()
{
    setQuit(false);
    const Settings *settings = Settings::instance();
    if (settings == nullptr) {
        return;
    }
    const int channel = [this] {
        const QMutexLocker lock(&mutex_);
        return channel_;
    }();
    const int stored = settings->videoTimeout();
    const int period = stored > 0 ? stored : shortestPeriod;
    const QString localPath = settings->absolute(settings->videoTempFile(0));
    const QString remotePath = settings->vaskVideoTempFile(0);
    const auto calledOff = [this] { return stopRequested(); };
    GetFile get;
    get.setTimeout(frameTimeout);
    QElapsedTimer lastFrame;
    QElapsedTimer thisTry;
    while (!stopRequested()) {
        thisTry.start();
        const QString host = hostName();
        if (host.isEmpty()) {
            break;
        }
        get.setHost(host);
        const std::optional<QByteArray> frame = get.fetch(remotePath, mostFrameBytes);
        // Not before: a device that takes its time must not keep the other one's frames waiting.
        VideoFrameToken token = frame ? VideoFrameToken::take(calledOff) : VideoFrameToken();
        if (stopRequested()) {
            break;
        }
        if (!token.isNull() && writeFrame(localPath, *frame)) {
            lastFrame.start();
            QCoreApplication::postEvent(receiver_,
                                        new VideoEvent(host, localPath, channel, std::move(token)));
        } else {
            token.giveBack();
            if (!lastFrame.isValid() || lastFrame.elapsed() > silentForLong) {
                QCoreApplication::postEvent(receiver_, new VideoEvent(host, QString(), channel));
            }
        }
        SocketWait::pause(qBound<qint64>(0, period - thisTry.elapsed(), period), calledOff);
    }
}
