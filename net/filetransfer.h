// SPDX-License-Identifier: MIT
#pragma once

#include "net/socketwait.h"

#include <QByteArray>
#include <QElapsedTimer>
#include <QTcpSocket>

class Settings;

// What a download and an upload have in common: one blocking request over a connection of its own,
// closed at the end whatever the outcome. The object may be called again and again; each call
// begins with a clean slate.
//
// A worker's object: made, called and destroyed in one thread. Every wait ends within 100 ms of
// that thread's interruption; the call then fails. The device is never believed: its line is
// bounded in length and time, its contents in time.
class FileTransfer : public QTcpSocket
{
    Q_OBJECT

public:
    // Whether the last call failed, and why; empty when it did not.
    bool transferFailed() const { return failed_; }
    QString transferError() const { return errorText_; }
    // The device's answer line without CR and LF, empty before an answer.
    QByteArray answer() const { return answer_; }

    QString host() const { return host_; }
    void setHost(const QString &host) { host_ = host; }
    // The local file.
    QString fileName() const { return fileName_; }
    void setFileName(const QString &name) { fileName_ = name; }

    // Bound, each, for connecting, for the answer line and for closing.
    int timeout() const { return timeout_; }
    void setTimeout(int msec) { timeout_ = msec; }

    // Bound for a whole call: connecting, answer and contents together. 0, as it begins, is none
    // but those of its parts.
    void setTotalTimeout(int msec) { totalTimeout_ = msec; }

    // How long contents of this size may take, however steadily they come: 20,000 bytes a second,
    // and a minute at least.
    static qint64 longestReceipt(qint64 size);

    // Whether a call fails at once, instead of waiting, where the device has just hung up on
    // somebody and is not to be asked again yet; see RequestPace.
    void setGivingWay(bool on) { givesWay_ = on; }

    // What calls a transfer off, asked in every wait, instead of the thread's interruption.
    void setCancelled(const SocketWait::Cancelled &cancelled) { cancelled_ = cancelled; }

    // The way out of every call: keeps the failure, with the socket's own text where message is
    // empty, and closes the connection.
    void end(bool error, const QString &message);

protected:
    FileTransfer(const QString &host, const QString &fileName, int timeout, QObject *parent);

    // Error text, host and local name: what copies of a transfer share.
    void copyTexts(const FileTransfer &other);

    // Each returns false when the transfer cannot go on; end() is left to the caller, who knows the
    // text. An empty text means the socket's.
    bool openConnection();
    bool sendRequest(const QByteArray &request);
    bool receiveAnswer();

    // Called off, or beyond the bound of the whole call.
    bool isOver() const { return cancelled_() || isOverdue(); }
    bool isConnected() const { return state() == ConnectedState; }
    const Settings *settings() const { return settings_; }

    // end() with a failure; false, for returning it.
    bool fail(const QString &message = QString());

private:
    bool isOverdue() const { return totalTimeout_ > 0 && started_.hasExpired(totalTimeout_); }
    // What is left of the timeout of one wait.
    int patience() const;
    quint16 port() const;
    bool waitForTurn();
    void noteOutcome() const;

    QString errorText_;
    QString host_;
    QString fileName_;
    bool failed_ = false;
    bool givesWay_ = false;
    const Settings *settings_;
    int timeout_;
    int totalTimeout_ = 0;
    QElapsedTimer started_;
    QByteArray answer_;
    SocketWait::Cancelled cancelled_ = SocketWait::interrupted;
};
