// SPDX-License-Identifier: MIT
#include "pages/onlinechannel.h"

#include "net/commandsender.h"
#include "net/devicecommand.h"
#include "net/events.h"
#include "net/onlineclient.h"
#include "net/videoclient.h"
#include "pages/proportionalsclalewidget.h"

#include <QAbstractButton>
#include <QVBoxLayout>

OnlineChannel::OnlineChannel(int number, QWidget *page, QWidget *place,
                             QAbstractButton *disconnectButton, QAbstractButton *barrierButton)
    : view_(new ProportionalSclaleWidget(tr("Not Assigned"), place))
    , disconnectButton_(disconnectButton)
    , barrierButton_(barrierButton)
    , online_(std::make_unique<OnlineClient>(page))
    , video_(std::make_unique<VideoClient>(page))
{
    auto *layout = new QVBoxLayout(place);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(view_);
    disconnectButton_->setEnabled(false);
    barrierButton_->setEnabled(false);
    online_->setChannel(number);
    video_->setChannel(number);
    // A slot that was released and assigned again before its threads had ended.
    connect(online_.get(), &QThread::finished, this, [this] { startAgain(*online_); });
    connect(video_.get(), &QThread::finished, this, [this] { startAgain(*video_); });
}

OnlineChannel::~OnlineChannel()
{
    // All at once: each of them ends within 100 ms, and there are as many as impatient presses.
    const auto presses = findChildren<CommandSender *>();
    for (CommandSender *press : presses) {
        press->requestInterruption();
    }
}

void OnlineChannel::assign(const QString &address)
{
    view_->clear();
    view_->setStatistics({tr("Connecting to %1 ...").arg(address)});
    view_->setObjectName(address);
    view_->setEmptyText(tr("No Data"));
    online_->connectToHost(address);
    // A running client drops its line for the new host without a word.
    online_->setConnected(false);
    online_->start(); // a running one stays as it is
    video_->connectToHost(address);
    video_->start();
}

void OnlineChannel::release()
{
    view_->clear();
    view_->setObjectName(QString());
    disconnectButton_->setEnabled(false);
    barrierButton_->setEnabled(false);
    online_->disconnectFromHost();
    online_->requestInterruption();
    online_->connectToHost(QString());
    online_->setConnected(false);
    video_->disconnectFromHost();
    video_->requestInterruption();
    view_->setEmptyText(tr("Not Assigned"));
}

bool OnlineChannel::isAssigned() const
{
    return !view_->objectName().isEmpty();
}

QString OnlineChannel::host() const
{
    return online_->hostName();
}

bool OnlineChannel::isConnected() const
{
    return online_->isConnected();
}

void OnlineChannel::openBarrier()
{
    auto *press = new CommandSender(host(), DeviceCommand::openBarrier, this);
    connect(press, &QThread::finished, this, [this, press] {
        press->deleteLater();
        if (!press->error().isEmpty()) {
            Q_EMIT barrierFailed(press->error());
        }
    });
    press->start();
}

void OnlineChannel::showConnected()
{
    if (!isAssigned()) {
        return;
    }
    disconnectButton_->setEnabled(true);
    barrierButton_->setEnabled(true);
    view_->setStatistics({view_->objectName()});
}

void OnlineChannel::showFrame(const VideoEvent &event)
{
    if (!isAssigned() || event.photo().isEmpty() || event.hostName() != video_->hostName()) {
        return;
    }
    // The file is this frame's as long as the token is held.
    view_->replacePhoto(event.photo(), std::make_shared<VideoFrameToken>(event.token()));
}

void OnlineChannel::startAgain(QThread &client)
{
    if (isAssigned()) {
        client.start();
    }
}
