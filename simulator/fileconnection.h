// SPDX-License-Identifier: MIT
#pragma once

#include "simulator/devicetexts.h"
#include "simulator/faults.h"
#include "simulator/filesender.h"
#include "simulator/filetree.h"
#include "simulator/journal.h"

#include <QByteArray>
#include <QObject>
#include <QTcpSocket>

#include <memory>

// One connection to a device's file port, which carries one request:
//     GET_IMMEDIATE_FILE:path CR LF         answered "File size=N" CR LF and N bytes
//     PUT_IMMEDIATE_FILE:path,size CR LF    answered "OK" CR LF, then takes size bytes
// or "Error=reason" CR LF. The path of an upload ends at the last comma. The other side closes; it
// is given a minute after the last byte. An upload that breaks off changes nothing. A request line
// without an end is closed at 4096 bytes.
//
// What goes wrong on the way is decided by the faults, once when the connection begins and once
// when the request is there. Owned by its service and deleted when finished() is emitted; tree,
// faults and journal must outlive it. Lives in the device's thread.
class FileConnection : public QObject
{
    Q_OBJECT

public:
    // Takes the socket, which must be connected.
    FileConnection(QTcpSocket *socket, int number, FileTree *tree, Faults *faults, Journal *journal,
                   const DeviceTexts &texts, QObject *parent);
    ~FileConnection() override;

    // Acts on a fault of the connection itself, or waits for the request.
    void begin();
    void drop();
    void reset();
    // On: the packets that come are thrown away, and nothing more is sent until it is off.
    void setCutOff(bool on);

Q_SIGNALS:
    // A whole file was uploaded and stored.
    void uploaded(const QString &path);
    void finished();

private:
    enum class State { Request, Receiving, Idle };

    void onReadyRead();
    void onDisconnected();
    void takeRequest(const QByteArray &line);
    void takeGet(const QByteArray &path);
    void takePut(const QByteArray &rest);
    // Does what a fault asks for before the answer; false when there is to be one.
    bool endsBeforeAnswer();
    // At once, or late when a fault asks for it.
    void inTime(void (FileConnection::*step)());
    void take(void (FileConnection::*step)());
    void answerGet();
    void answerPut();
    void answer(const QByteArray &line);
    void send(std::shared_ptr<const FileContent> content, qint64 size);
    void onSent(FileSender::End how);
    void receive();
    void breakOff();
    void close(const QString &why);
    void resetWhenWritten();
    void waitForClient();
    void note(JournalEntry::Kind kind, const QString &text, const QByteArray &data = QByteArray());

    QTcpSocket *socket_; // a child
    int number_;
    QString peer_;
    FileTree *tree_;
    Faults *faults_;
    Journal *journal_;
    DeviceTexts texts_;
    State state_ = State::Request;
    bool cutOff_ = false;
    void (FileConnection::*heldBack_)() = nullptr; // the answer, until the cut is over
    bool faulty_ = false;
    Fault fault_;
    FileSender *sender_ = nullptr; // a child, while it sends
    QByteArray buffer_;            // of the request line, then of what is uploaded
    QString path_;
    qint64 uploadSize_ = 0;
    QString closedBy_;
};
