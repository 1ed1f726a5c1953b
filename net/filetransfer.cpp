// SPDX-License-Identifier: MIT
#include "net/filetransfer.h"

#include "app/settings.h"
#include "net/deadpeer.h"
#include "net/fileprotocol.h"

FileTransfer::FileTransfer(const QString &host, const QString &fileName, int timeout,
                           QObject *parent)
    : QTcpSocket(parent)
    , host_(host)
    , fileName_(fileName)
    , settings_(Settings::instance())
    , timeout_(timeout)
{
}

void FileTransfer::copyTexts(const FileTransfer &other)
{
    errorText_ = other.errorText_;
    host_ = other.host_;
    fileName_ = other.fileName_;
}

void FileTransfer::end(bool error, const QString &message)
{
    if (error) {
        failed_ = true;
        errorText_ = message.isEmpty() ? errorString() : message;
    }
    SocketWait::close(*this, patience(), cancelled_);
}

bool FileTransfer::fail(const QString &message)
{
    end(true, message);
    return false;
}

qint64 FileTransfer::longestReceipt(qint64 size)
{
    constexpr qint64 shortest = 60000;
    constexpr qint64 bytesPerMsec = 20;
    return qMax(shortest, size / bytesPerMsec);
}

int FileTransfer::patience() const
{
    if (totalTimeout_ == 0) {
        return timeout_;
    }
    return static_cast<int>(qBound<qint64>(0, totalTimeout_ - started_.elapsed(), timeout_));
}

bool FileTransfer::openConnection()
{
    started_.start();
    failed_ = false;
    errorText_.clear();
    answer_.clear();
    if (state() != UnconnectedState) {
        disconnectFromHost();
        if (state() != UnconnectedState) {
            abort();
        }
    }
    const auto port =
        static_cast<quint16>(settings_ != nullptr ? settings_->fileTransferPort() : 0);
    switch (SocketWait::connectToHost(*this, host_, port, patience(), cancelled_)) {
    case SocketWait::Outcome::Connected:
        DeadPeer::watchTransfer(*this);
        return true;
    case SocketWait::Outcome::TimedOut:
        setSocketError(SocketTimeoutError);
        setErrorString(QAbstractSocket::tr("Socket operation timed out"));
        return false;
    case SocketWait::Outcome::Failed:
    case SocketWait::Outcome::CalledOff:
        break;
    }
    return false;
}

bool FileTransfer::sendRequest(const QByteArray &request)
{
    if (write(request) < request.size()) {
        return false;
    }
    while (flush()) {
    }
    return true;
}

bool FileTransfer::receiveAnswer()
{
    QElapsedTimer clock;
    clock.start();
    while (!canReadLine() && isConnected()) {
        if (bytesAvailable() > FileProtocol::longestAnswer || clock.hasExpired(timeout_) ||
            isOver()) {
            setErrorString(QAbstractSocket::tr("Socket operation timed out"));
            return false;
        }
        waitForReadyRead(10);
    }
    // A device may answer, send everything and close: the line may be gone and the answer here.
    if (!canReadLine()) {
        return false;
    }
    const QByteArray line = readLine();
    if (line.size() > FileProtocol::longestAnswer) {
        setErrorString(QAbstractSocket::tr("Socket operation timed out"));
        return false;
    }
    answer_ = FileProtocol::stripped(line);
    return true;
}
