// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QThread>

// Sends one command to a device on a thread of its own, for callers that must not wait. start() it;
// after finished() error() tells how it went. Deleting it while it runs calls it off, which takes
// at most 100 ms.
class CommandSender : public QThread
{
    Q_OBJECT

public:
    CommandSender(QString host, char command, QObject *parent);
    ~CommandSender() override;

    // Empty when the command was sent.
    QString error() const { return error_; }

protected:
    void run() override;

private:
    const QString host_;
    const char command_;
    QString error_; // written by run()
};
