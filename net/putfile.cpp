// SPDX-License-Identifier: MIT
#include "net/putfile.h"

#include "net/fileprotocol.h"

#include <QFile>

namespace
{

constexpr int connectTimeout = 5000;
constexpr qint64 blockSize = 1024;

} // namespace

PutFile::PutFile(const QString &host, const QString &fileName, QObject *parent)
    : FileTransfer(host, fileName, connectTimeout, parent)
{
}

PutFile::PutFile(const PutFile &other)
    : FileTransfer(other.host(), other.fileName(), connectTimeout, nullptr)
{
    copyTexts(other);
}

PutFile &PutFile::operator=(const PutFile &other)
{
    copyTexts(other);
    return *this;
}

bool PutFile::operator()(const QString &remotePath)
{
    if (!openConnection()) {
        return fail();
    }
    QFile file(fileName());
    if (!file.open(QIODevice::ReadOnly)) {
        return fail(fileName() + QStringLiteral(": ") + file.errorString());
    }
    const qint64 size = file.size();
    if (!sendRequest(FileProtocol::putRequest(remotePath, size)) || !receiveAnswer()) {
        return fail();
    }
    if (FileProtocol::isRefusal(answer())) {
        return fail(QString::fromLocal8Bit(answer()));
    }
    return sendAll(file, size);
}

bool PutFile::sendAll(QFile &file, qint64 size)
{
    // Counted where the bytes leave for the network; what is only buffered may never go out.
    qint64 sent = 0;
    const auto counter =
        connect(this, &QIODevice::bytesWritten, this, [&sent](qint64 bytes) { sent += bytes; });
    bool queued = true;
    for (qint64 block = 0; queued && block < size / blockSize; ++block) {
        queued = sendPiece(file, blockSize);
    }
    queued = queued && sendPiece(file, size % blockSize);
    end(!queued, QString());
    disconnect(counter);
    if (queued && sent < size) {
        return fail();
    }
    return queued;
}

bool PutFile::sendPiece(QFile &file, qint64 size)
{
    if (size == 0) {
        return true; // nothing to send; the device may have hung up
    }
    if (!isConnected()) {
        return false;
    }
    const QByteArray piece = file.read(size);
    if (piece.size() != size) {
        setErrorString(fileName() + QStringLiteral(": ") + file.errorString());
        return false;
    }
    return write(piece) == size;
}
