// SPDX-License-Identifier: MIT
#pragma once

#include "simulator/faults.h"
#include "simulator/filetree.h"

#include <QByteArray>
#include <QObject>

#include <memory>

class QTcpSocket;

// Sends one file's content over a connection, never more ahead than the line needs, so that of a
// large archive only a little is in memory; and does on the way what a fault asks for. Without
// content it sends bytes 'x'.
//
// Lives in the device's thread; the socket must outlive it. When ended() is emitted it is done, and
// what becomes of the connection is the receiver's business.
class FileSender : public QObject
{
    Q_OBJECT

public:
    enum class End { Complete, Close, Reset };

    // fault is null when nothing goes wrong, and copied otherwise.
    FileSender(QTcpSocket *socket, std::shared_ptr<const FileContent> content, qint64 size,
               const Fault *fault, QObject *parent);
    ~FileSender() override;

    void start();
    // On: sends nothing more, as when the line does not take it; off: goes on.
    void setHeldBack(bool on);
    qint64 sent() const { return sent_; }
    qint64 size() const { return size_; }

Q_SIGNALS:
    void ended(FileSender::End how);

private:
    void send();
    void atStop();
    void pause();
    QByteArray piece(qint64 length) const;
    bool is(Fault::Kind kind) const { return faulty_ && fault_.kind == kind; }

    QTcpSocket *socket_;
    std::shared_ptr<const FileContent> content_;
    qint64 size_;
    bool faulty_;
    Fault fault_;
    qint64 sent_ = 0;
    qint64 stop_ = 0; // the next place where something happens
    bool resting_ = true;
    bool heldBack_ = false;
};
