// SPDX-License-Identifier: MIT
#pragma once

#include "records/online.h"
#include "simulator/journal.h"

#include <QByteArray>
#include <QObject>
#include <QTcpServer>
#include <QVector>

#include <functional>
#include <vector>

class QTcpSocket;

// A device's on-line port. Whoever connects gets every record that is sent from then on, and may
// send commands of one byte, which are counted: 0xFF keep-alive, 0xFD open the barrier, 0xEF reload
// the access list. Other bytes are collected, the newest thousand of them.
//
// The journal must outlive it. Lives in the device's thread.
class OnLineService : public QObject
{
    Q_OBJECT

public:
    OnLineService(Journal *journal, int *connectionNumbers, QObject *parent);
    ~OnLineService() override;

    QTcpServer &server() { return server_; }

    // To every open connection; how many there were.
    int send(const QByteArray &bytes);
    // The pieces one after the other, msec apart, to those that are connected now and still are
    // then. What else is sent meanwhile comes between them. done is called after the last.
    int sendPieces(const QVector<QByteArray> &pieces, int msec, const std::function<void()> &done);

    int connections() const { return static_cast<int>(connections_.size()); }
    int barrierCount() const { return barriers_; }
    int reloadCount() const { return reloads_; }
    int keepAliveCount() const { return keepAlives_; }
    QByteArray unexpectedBytes() const { return unexpected_; }

    void drop();
    void reset();
    void setReading(bool on);
    // On: the packets of all connections, also of those that come by way of the listener, are
    // thrown away, and what is sent is held back; off, it goes out.
    void setCutOff(bool on);

Q_SIGNALS:
    void opened();
    void reloadRequested();

private:
    struct Connection {
        QTcpSocket *socket; // a child
        int number;
        QString peer;
        QByteArray heldBack;
    };

    void onNewConnection();
    void read(QTcpSocket *socket);
    void onDisconnected(QTcpSocket *socket);
    void take(char command);
    // False when the connection is no more.
    bool write(QTcpSocket *socket, const QByteArray &bytes);
    std::vector<Connection>::iterator find(QTcpSocket *socket);

    Journal *journal_;
    int *connectionNumbers_;
    QTcpServer server_;
    std::vector<Connection> connections_;
    bool reading_ = true;
    bool cutOff_ = false;
    int barriers_ = 0;
    int reloads_ = 0;
    int keepAlives_ = 0;
    QByteArray unexpected_;
};
