// SPDX-License-Identifier: MIT
#include "simulator/fileservice.h"

#include "simulator/fileconnection.h"

#include <algorithm>

FileService::FileService(FileTree *tree, Faults *faults, Journal *journal, int *connectionNumbers,
                         const DeviceTexts &texts, QObject *parent)
    : QObject(parent)
    , tree_(tree)
    , faults_(faults)
    , journal_(journal)
    , connectionNumbers_(connectionNumbers)
    , texts_(texts)
    , server_(this)
{
    // A panel that fetches the photos of a whole burst opens many connections at once.
    server_.setMaxPendingConnections(200);
    connect(&server_, &QTcpServer::newConnection, this, &FileService::onNewConnection);
}

FileService::~FileService()
{
    for (FileConnection *connection : connections_) {
        connection->disconnect(this);
    }
}

void FileService::onNewConnection()
{
    while (QTcpSocket *socket = server_.nextPendingConnection()) {
        auto *connection = new FileConnection(socket, ++*connectionNumbers_, tree_, faults_,
                                              journal_, texts_, this);
        connections_.push_back(connection);
        connect(connection, &FileConnection::uploaded, this, &FileService::uploaded);
        connect(connection, &FileConnection::finished, this, [this, connection] {
            connections_.erase(std::remove(connections_.begin(), connections_.end(), connection),
                               connections_.end());
            connection->deleteLater();
        });
        connection->setCutOff(cutOff_);
        connection->begin();
    }
}

void FileService::reset()
{
    const std::vector<FileConnection *> all = connections_;
    for (FileConnection *connection : all) {
        connection->reset();
    }
}

void FileService::drop()
{
    const std::vector<FileConnection *> all = connections_;
    for (FileConnection *connection : all) {
        connection->drop();
    }
}

void FileService::setCutOff(bool on)
{
    cutOff_ = on;
    const std::vector<FileConnection *> all = connections_;
    for (FileConnection *connection : all) {
        connection->setCutOff(on);
    }
}
