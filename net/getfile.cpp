// SPDX-License-Identifier: MIT
#include "net/getfile.h"

#include "app/settings.h"
#include "net/fileprotocol.h"
#include "records/diskspace.h"
#include "records/filewrite.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>

namespace
{

Q_LOGGING_CATEGORY(logNet, "stallo.net", QtWarningMsg)

constexpr int connectTimeout = 30000;
constexpr qint64 blockSize = 1024;
constexpr int waitStep = 10;
// Of one block, however much of it comes meanwhile.
constexpr int blockTimeout = 510;

} // namespace

GetFile::GetFile()
    : GetFile(QString(), QString(), nullptr)
{
}

GetFile::GetFile(const QString &host, const QString &fileName, QObject *parent)
    : FileTransfer(host, fileName, connectTimeout, parent)
{
}

GetFile::GetFile(const GetFile &other)
    : FileTransfer(other.host(), other.fileName(), connectTimeout, nullptr)
{
    copyTexts(other);
}

GetFile &GetFile::operator=(const GetFile &other)
{
    copyTexts(other);
    return *this;
}

bool GetFile::operator()(const QString &remotePath)
{
    const std::optional<qint64> size = request(remotePath);
    if (!size) {
        return false;
    }
    noRoom_ = !fits(*size);
    if (noRoom_ || *size > largest_) {
        return fail(tr("Can't download proper data"));
    }
    return receiveFile(*size);
}

std::optional<QByteArray> GetFile::fetch(const QString &remotePath, qint64 mostBytes)
{
    const std::optional<qint64> size = request(remotePath);
    if (!size) {
        return std::nullopt;
    }
    if (*size > mostBytes) {
        fail(tr("Can't download proper data"));
        return std::nullopt;
    }
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    if (!receive(buffer, *size)) {
        return std::nullopt;
    }
    end(false, QString());
    return buffer.data();
}

std::optional<qint64> GetFile::request(const QString &remotePath)
{
    noRoom_ = false;
    if (!openConnection()) {
        fail(tr("Connection timeout"));
        return std::nullopt;
    }
    if (!sendRequest(FileProtocol::getRequest(remotePath)) || !receiveAnswer()) {
        fail();
        return std::nullopt;
    }
    if (answer().isEmpty()) {
        qCDebug(logNet) << "FileTransfer response not valid!!!" << bytesAvailable() << state();
    }
    if (FileProtocol::isRefusal(answer())) {
        fail(tr("Can't download proper data"));
        return std::nullopt;
    }
    return FileProtocol::announcedSize(answer());
}

bool GetFile::fits(qint64 size) const
{
    if (size == 0) {
        return true;
    }
    const DiskSpace disk = DiskSpace::of(QFileInfo(fileName()).absolutePath());
    // Where there is no folder, opening the file says so.
    return disk.total == 0 || size <= disk.available - spared_;
}

bool GetFile::receiveFile(qint64 size)
{
    QFile file(fileName());
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered)) {
        return fail(fileName() + QStringLiteral(": ") + file.errorString());
    }
    if (!receive(file, size)) {
        return false;
    }
    file.close();
    end(false, QString());
    return true;
}

bool GetFile::receive(QIODevice &target, qint64 size)
{
    receipt_.setRemainingTime(longestReceipt(size));
    for (qint64 block = 0; block < size / blockSize; ++block) {
        if (!receivePiece(target, blockSize, false)) {
            return false;
        }
    }
    return receivePiece(target, size % blockSize, true);
}

bool GetFile::receivePiece(QIODevice &target, qint64 size, bool lossAllowed)
{
    const QString late = QStringLiteral("Timeout when reading file from vask");
    if (isOver() || receipt_.hasExpired()) {
        return fail(late); // a fast line never gets to the wait below
    }
    for (int waited = 0; bytesAvailable() < size && isConnected(); waited += waitStep) {
        if (waited == blockTimeout || isOver()) {
            return fail(late);
        }
        waitForReadyRead(waitStep);
    }
    if (bytesAvailable() < size && !lossAllowed) {
        return fail();
    }
    const QByteArray piece = read(size);
    if (!FileWrite::all(target, piece)) {
        return fail(fileName() + QStringLiteral(": ") + target.errorString());
    }
    return true;
}
