// SPDX-License-Identifier: MIT
#pragma once

#include "simulator/devicetexts.h"

#include <QObject>
#include <QTcpServer>

#include <vector>

class FileConnection;
class FileTree;
class Faults;
class Journal;

// A device's file port: makes a FileConnection of every connection, any number at once.
//
// Tree, faults and journal must outlive it. Lives in the device's thread.
class FileService : public QObject
{
    Q_OBJECT

public:
    FileService(FileTree *tree, Faults *faults, Journal *journal, int *connectionNumbers,
                const DeviceTexts &texts, QObject *parent);
    ~FileService() override;

    QTcpServer &server() { return server_; }
    int connections() const { return static_cast<int>(connections_.size()); }
    void drop();
    void reset();
    // As of the on-line service.
    void setCutOff(bool on);

Q_SIGNALS:
    void uploaded(const QString &path);

private:
    void onNewConnection();

    FileTree *tree_;
    Faults *faults_;
    Journal *journal_;
    int *connectionNumbers_;
    DeviceTexts texts_;
    QTcpServer server_;
    bool cutOff_ = false;
    std::vector<FileConnection *> connections_; // children
};
