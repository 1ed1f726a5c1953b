// SPDX-License-Identifier: MIT
#include "net/videoclient.h"

#include "app/settings.h"
#include "net/events.h"
#include "net/getfile.h"
#include "net/socketwait.h"
#include "net/videoframetoken.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QMutexLocker>

namespace
{

constexpr int frameTimeout = 2000;
constexpr int silentForLong = 4999;
constexpr int shortestPeriod = 20;

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
        VideoFrameToken token = VideoFrameToken::take(calledOff);
        const QString host = hostName();
        if (token.isNull() || host.isEmpty()) {
            break;
        }
        get.setHost(host);
        get.setFileName(localPath);
        if (get(remotePath)) {
            if (stopRequested()) {
                break;
            }
            lastFrame.start();
            QCoreApplication::postEvent(receiver_,
                                        new VideoEvent(host, localPath, channel, std::move(token)));
        } else {
            token.giveBack();
            if (!stopRequested() && (!lastFrame.isValid() || lastFrame.elapsed() > silentForLong)) {
                QCoreApplication::postEvent(receiver_, new VideoEvent(host, QString(), channel));
            }
        }
        SocketWait::pause(qBound<qint64>(0, period - thisTry.elapsed(), period), calledOff);
    }
}
