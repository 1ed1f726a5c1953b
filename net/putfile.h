// SPDX-License-Identifier: MIT
#pragma once

#include "net/filetransfer.h"

class QFile;

// Uploads one local file to a device. Blocks; see FileTransfer. The device confirms nothing after
// the last byte, so success means that every byte was handed to the network before the connection
// was closed. A refusal's text is the device's own line.
class PutFile : public FileTransfer
{
    Q_OBJECT

public:
    PutFile(const QString &host, const QString &fileName, QObject *parent);
    // Error, host and local name are copied, nothing else.
    PutFile(const PutFile &other);
    PutFile &operator=(const PutFile &other);

    bool operator()(const QString &remotePath);

private:
    bool sendPiece(QFile &file, qint64 size);
    bool sendAll(QFile &file, qint64 size);
};
