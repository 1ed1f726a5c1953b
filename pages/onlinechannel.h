// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include <memory>

class OnlineClient;
class ProportionalSclaleWidget;
class QAbstractButton;
class QThread;
class QWidget;
class VideoClient;
class VideoEvent;

// One device slot of the On-line page: its camera view, its two clients and the buttons that need a
// connection. Unassigned at first; assigned by an address until it is released, through any number
// of lost lines. The view's object name holds the address, and is empty while unassigned.
//
// GUI thread. The page outlives it: the clients post to the page, and the view, which shows the
// slot to the operator, belongs to the page's form. Destroying it stops the clients within 100 ms.
class OnlineChannel : public QObject
{
    Q_OBJECT

public:
    // number is 0 or 1; the view is put into place.
    OnlineChannel(int number, QWidget *page, QWidget *place, QAbstractButton *disconnectButton,
                  QAbstractButton *barrierButton);
    ~OnlineChannel() override;

    void assign(const QString &address);
    void release();
    bool isAssigned() const;

    // The device of the live records; empty while unassigned.
    QString host() const;
    bool isConnected() const;

    // Sends the command on a thread of its own, over a connection of its own.
    void openBarrier();

    // The line is there. Nothing, when the slot was released meanwhile.
    void showConnected();
    // A frame of this slot's device; others, and a picture that cannot be read, change nothing.
    void showFrame(const VideoEvent &event);

    ProportionalSclaleWidget *view() const { return view_; }

Q_SIGNALS:
    void barrierFailed(const QString &error);

private:
    void startAgain(QThread &client);

    ProportionalSclaleWidget *view_;
    QAbstractButton *disconnectButton_;
    QAbstractButton *barrierButton_;
    std::unique_ptr<OnlineClient> online_;
    std::unique_ptr<VideoClient> video_;
};
