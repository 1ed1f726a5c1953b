// SPDX-License-Identifier: MIT
#include "net/filetransfer.h"

#include "app/settings.h"
#include "net/deadpeer.h"
#include "net/fileprotocol.h"
#include "net/requestpace.h"

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
    noteOutcome();
    SocketWait::close(*this, patience(), cancelled_);
}

void FileTransfer::noteOutcome() const
{
    if (!failed_ || FileProtocol::isRefusal(answer_)) {
        RequestPace::answered(host_, port());
    } else if (state() == UnconnectedState &&
               (error() == ConnectionRefusedError || error() == RemoteHostClosedError ||
                error() == NetworkError)) {
        RequestPace::hungUp(host_, port());
    }
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
    setSocketError(UnknownSocketError);
    if (!waitForTurn()) {
        return false;
    }
    switch (SocketWait::connectToHost(*this, host_, port(), patience(), cancelled_)) {
    case SocketWait::Outcome::Connected:
        DeadPeer::watchTransfer(*this);
        return true;
    case SocketWait::Outcome::TimedOut:
        setSocketError(SocketTimeoutError);
        setErrorString(QAbstractSocket::tr("Socket operation timed out"));
        return false;
    case SocketWait::Outcome::HungUp:
        setSocketError(RemoteHostClosedError);
        setErrorString(SocketWait::hungUpText());
        return false;
    case SocketWait::Outcome::Failed:
    case SocketWait::Outcome::CalledOff:
        break;
    }
    return false;
}

quint16 FileTransfer::port() const
{
    return static_cast<quint16>(settings_ != nullptr ? settings_->fileTransferPort() : 0);
}

bool FileTransfer::waitForTurn()
{
    constexpr int pollMsec = 50;
    while (!RequestPace::mayAsk(host_, port())) {
        if (givesWay_ || started_.hasExpired(timeout_) ||
            !SocketWait::pause(pollMsec, [this] { return isOver(); })) {
            setErrorString(QAbstractSocket::tr("Socket operation timed out"));
            return false;
        }
    }
    return true;
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
