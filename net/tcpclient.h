// SPDX-License-Identifier: MIT
#pragma once

#include <QMutex>
#include <QThread>

class QEvent;
class Settings;

// The base of a client that keeps a connection to one device on a thread of its own. Host and flags
// are set from any thread under one mutex, which is never held over a blocking call; run() of the
// derived class looks at them. Everything that a client has to say goes as an event to its parent,
// the page that made it and outlives it.
//
// A stop is asked for twice: by the quit flag, which a lost connection clears again, and by the
// thread's interruption, which nothing clears. The destructor of every derived class must call
// stopAndWait(), since run() uses its members.
class TcpClient : public QThread
{
    Q_OBJECT

public:
    explicit TcpClient(QObject *parent);
    ~TcpClient() override;

    // Names the device; a running client drops its line and connects anew. Starts nothing.
    void connectToHost(const QString &host);
    // The same as setQuit(true).
    void disconnectFromHost();
    QString hostName() const;

    void setQuit(bool quit);
    bool quit() const;
    void setConnected(bool connected);
    bool isConnected() const;

public Q_SLOTS:
    void connected();
    // Reports the loss that reportLoss() kept, with channel -1, and then forgets a wish to quit: a
    // lost connection must never end the client by itself.
    void disconnected();

protected:
    void stopAndWait();
    bool stopRequested() const;

    bool hostChanged() const;
    // The host to connect to; from now on the change counts as seen.
    QString takeHost();

    // In the worker, before it connects. Also behind a report that is still on its way to the
    // slots.
    void forgetConnected();

    // In the worker, when the line goes: by the time the slot runs the socket may be connected
    // again.
    void reportLoss(int state, const QString &message);

    // To the page; any thread.
    void post(QEvent *event) const;
    void postPipe(int state, const QString &message, int channel,
                  const QString &host = QString()) const;

    mutable QMutex mutex_;
    const Settings *const settings_;

private:
    QObject *const receiver_;
    QString host_;
    int lossState_ = 0;
    QString lossMessage_;
    bool hostChanged_ = false;
    bool connected_ = false;
    bool quit_ = false;
};
