// SPDX-License-Identifier: MIT
#pragma once

#include "net/filetransfer.h"

class QFile;

// Downloads one file of a device into a local file, which is overwritten. Blocks; see FileTransfer.
//
// A failed download leaves a partial or empty local file, but a refusal, a file larger than the
// disk can take and a failed connection leave the old one untouched. An answer that is neither
// refusal nor size reads as size 0: an empty file and success. What is missing behind the last
// whole block of 1024 bytes when the device hangs up is not missed: that file is called complete.
class GetFile : public FileTransfer
{
    Q_OBJECT

public:
    GetFile();
    GetFile(const QString &host, const QString &fileName, QObject *parent);
    // Error, host and local name are copied, nothing else.
    GetFile(const GetFile &other);
    GetFile &operator=(const GetFile &other);

    bool operator()(const QString &remotePath);

private:
    bool receive(qint64 size);
    bool receivePiece(QFile &file, qint64 size, bool lossAllowed);
    bool fits(qint64 size) const;
};
