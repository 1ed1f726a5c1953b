// SPDX-License-Identifier: MIT
#include "simulator/onlineservice.h"

#include "simulator/packetdrop.h"
#include "simulator/tcpreset.h"

#include <QHostAddress>
#include <QPointer>
#include <QTcpSocket>
#include <QTimer>

#include <algorithm>

namespace
{

constexpr char keepAlive = '\xFF';
constexpr char openBarrier = '\xFD';
constexpr char reloadList = '\xEF';
constexpr int unexpectedLimit = 1000;
// One byte: the smallest buffer that is not "without limit".
constexpr int notReading = 1;

} // namespace

OnLineService::OnLineService(Journal *journal, int *connectionNumbers, QObject *parent)
    : QObject(parent)
    , journal_(journal)
    , connectionNumbers_(connectionNumbers)
    , server_(this)
{
    connect(&server_, &QTcpServer::newConnection, this, &OnLineService::onNewConnection);
}

OnLineService::~OnLineService()
{
    for (const Connection &connection : connections_) {
        connection.socket->disconnect(this);
    }
}

void OnLineService::onNewConnection()
{
    while (QTcpSocket *socket = server_.nextPendingConnection()) {
        socket->setParent(this);
        socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
        if (!reading_) {
            socket->setReadBufferSize(notReading);
        }
        PacketDrop::set(socket->socketDescriptor(), cutOff_);
        const Connection connection{
            socket, ++*connectionNumbers_,
            QStringLiteral("%1:%2").arg(socket->peerAddress().toString()).arg(socket->peerPort()),
            QByteArray()};
        connections_.push_back(connection);
        journal_->add(JournalEntry::Kind::OnLineOpened, connection.number, connection.peer,
                      QString());
        connect(socket, &QTcpSocket::readyRead, this, [this, socket] { read(socket); });
        connect(socket, &QTcpSocket::disconnected, this,
                [this, socket] { onDisconnected(socket); });
        if (socket->bytesAvailable() > 0) {
            read(socket);
        }
        Q_EMIT opened();
    }
}

void OnLineService::read(QTcpSocket *socket)
{
    if (!reading_ || !socket->isOpen()) {
        return;
    }
    const QByteArray bytes = socket->readAll();
    const auto connection = find(socket);
    if (bytes.isEmpty() || connection == connections_.end()) {
        return;
    }
    journal_->add(JournalEntry::Kind::Received, connection->number, connection->peer, QString(),
                  bytes);
    std::for_each(bytes.begin(), bytes.end(), [this](char command) { take(command); });
}

void OnLineService::take(char command)
{
    switch (command) {
    case keepAlive:
        ++keepAlives_;
        break;
    case openBarrier:
        ++barriers_;
        break;
    case reloadList:
        ++reloads_;
        Q_EMIT reloadRequested();
        break;
    default:
        unexpected_ = (unexpected_ + command).right(unexpectedLimit);
        break;
    }
}

void OnLineService::onDisconnected(QTcpSocket *socket)
{
    read(socket);
    const auto connection = find(socket);
    if (connection != connections_.end()) {
        journal_->add(JournalEntry::Kind::OnLineClosed, connection->number, connection->peer,
                      socket->errorString());
        connections_.erase(connection);
    }
    socket->deleteLater();
}

std::vector<OnLineService::Connection>::iterator OnLineService::find(QTcpSocket *socket)
{
    return std::find_if(
        connections_.begin(), connections_.end(),
        [socket](const Connection &connection) { return connection.socket == socket; });
}

int OnLineService::send(const QByteArray &bytes)
{
    int reached = 0;
    const std::vector<Connection> all = connections_;
    for (const Connection &connection : all) {
        reached += write(connection.socket, bytes) ? 1 : 0;
    }
    return reached;
}

bool OnLineService::write(QTcpSocket *socket, const QByteArray &bytes)
{
    const auto connection = find(socket);
    if (connection == connections_.end() || socket->state() != QAbstractSocket::ConnectedState) {
        return false;
    }
    if (cutOff_) {
        connection->heldBack += bytes;
        return true;
    }
    socket->write(bytes);
    socket->flush();
    return true;
}

int OnLineService::sendPieces(const QVector<QByteArray> &pieces, int msec,
                              const std::function<void()> &done)
{
    QVector<QPointer<QTcpSocket>> sockets;
    for (const Connection &connection : connections_) {
        sockets.append(connection.socket);
    }
    for (int place = 0; place < pieces.size(); ++place) {
        const bool last = place == pieces.size() - 1;
        const auto step = [this, sockets, piece = pieces.at(place), last, done] {
            bool reached = false;
            for (const QPointer<QTcpSocket> &socket : sockets) {
                reached = (socket && write(socket, piece)) || reached;
            }
            if (last && reached) {
                done();
            }
        };
        if (place == 0) {
            step();
        } else {
            QTimer::singleShot(msec * place, Qt::PreciseTimer, this, step);
        }
    }
    return static_cast<int>(sockets.size());
}

void OnLineService::drop()
{
    const std::vector<Connection> all = connections_;
    for (const Connection &connection : all) {
        connection.socket->disconnectFromHost();
    }
}

void OnLineService::reset()
{
    const std::vector<Connection> all = connections_;
    for (const Connection &connection : all) {
        TcpReset::reset(connection.socket);
    }
}

void OnLineService::setReading(bool on)
{
    reading_ = on;
    const std::vector<Connection> all = connections_;
    for (const Connection &connection : all) {
        connection.socket->setReadBufferSize(on ? 0 : notReading);
        read(connection.socket);
    }
}

void OnLineService::setCutOff(bool on)
{
    cutOff_ = on;
    const std::vector<Connection> all = connections_;
    for (const Connection &connection : all) {
        PacketDrop::set(connection.socket->socketDescriptor(), on);
        const auto still = find(connection.socket);
        if (!on && still != connections_.end()) {
            still->heldBack.clear();
            write(connection.socket, connection.heldBack);
        }
    }
}
