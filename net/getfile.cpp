// SPDX-License-Identifier: MIT
#include "net/getfile.h"

#include "app/settings.h"
#include "net/fileprotocol.h"
#include "records/diskspace.h"
#include "records/filewrite.h"

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
    if (!openConnection()) {
        return fail(tr("Connection timeout"));
    }
    if (!sendRequest(FileProtocol::getRequest(remotePath)) || !receiveAnswer()) {
        return fail();
    }
    if (answer().isEmpty()) {
        qCDebug(logNet) << "FileTransfer response not valid!!!" << bytesAvailable() << state();
    }
    if (FileProtocol::isRefusal(answer())) {
        return fail(tr("Can't download proper data"));
    }
    const qint64 size = FileProtocol::announcedSize(answer());
    if (!fits(size)) {
        return fail(tr("Can't download proper data"));
    }
    return receive(size);
}

bool GetFile::fits(qint64 size) const
{
    if (size == 0 || settings() == nullptr) {
        return true;
    }
    const DiskSpace disk = DiskSpace::of(QFileInfo(fileName()).absolutePath());
    // Where there is no folder, opening the file says so.
    return disk.total == 0 || size <= disk.available - settings()->minReservedFreeSpace();
}

bool GetFile::receive(qint64 size)
{
    QFile file(fileName());
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered)) {
        return fail(fileName() + QStringLiteral(": ") + file.errorString());
    }
    for (qint64 block = 0; block < size / blockSize; ++block) {
        if (!receivePiece(file, blockSize, false)) {
            return false;
        }
    }
    if (!receivePiece(file, size % blockSize, true)) {
        return false;
    }
    file.close();
    end(false, QString());
    return true;
}

bool GetFile::receivePiece(QFile &file, qint64 size, bool lossAllowed)
{
    const QString late = QStringLiteral("Timeout when reading file from vask");
    if (isCancelled()) {
        return fail(late); // a fast line never gets to the wait below
    }
    for (int waited = 0; bytesAvailable() < size && isConnected(); waited += waitStep) {
        if (waited == blockTimeout || isCancelled()) {
            return fail(late);
        }
        waitForReadyRead(waitStep);
    }
    if (bytesAvailable() < size && !lossAllowed) {
        return fail();
    }
    const QByteArray piece = read(size);
    if (!FileWrite::all(file, piece)) {
        return fail(fileName() + QStringLiteral(": ") + file.errorString());
    }
    return true;
}
