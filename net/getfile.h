// SPDX-License-Identifier: MIT
#pragma once

#include "net/filetransfer.h"

#include <QDeadlineTimer>

#include <limits>
#include <optional>

class QIODevice;

// Downloads one file of a device, into a local file, which is overwritten, or into memory. Blocks;
// see FileTransfer.
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

    // What is announced as larger fails before the local file is touched.
    void setLargest(qint64 bytes) { largest_ = bytes; }

    bool operator()(const QString &remotePath);

    // Into memory; the local file is not touched. Nothing when it failed, or when the device
    // announces more than so many bytes, which counts as no proper data.
    std::optional<QByteArray> fetch(const QString &remotePath, qint64 mostBytes);

    // Bytes of the disk that the file must leave available; none of them without this call, since
    // what is live goes before the reserve. Not copied.
    void setSpared(qint64 bytes) { spared_ = bytes; }
    // Whether the last call failed because the announced size does not fit on the disk beside what
    // is spared.
    bool hadNoRoom() const { return noRoom_; }

private:
    // The announced size; nothing after a failure.
    std::optional<qint64> request(const QString &remotePath);
    bool receiveFile(qint64 size);
    bool receive(QIODevice &target, qint64 size);
    bool receivePiece(QIODevice &target, qint64 size, bool lossAllowed);
    bool fits(qint64 size) const;

    QDeadlineTimer receipt_;
    qint64 spared_ = 0;
    bool noRoom_ = false;
    qint64 largest_ = std::numeric_limits<qint64>::max();
};
