// SPDX-License-Identifier: MIT
#include "simulator/fileconnection.h"

#include "simulator/packetdrop.h"
#include "simulator/tcpreset.h"

#include <QHostAddress>
#include <QTimer>

#include <algorithm>
#include <utility>

namespace
{

constexpr int requestLimit = 4096;
constexpr qint64 uploadLimit = 256000000;
constexpr int closeByClient = 60 * 1000;

constexpr char getCommand[] = "GET_IMMEDIATE_FILE:";
constexpr char putCommand[] = "PUT_IMMEDIATE_FILE:";

} // namespace

FileConnection::FileConnection(QTcpSocket *socket, int number, FileTree *tree, Faults *faults,
                               Journal *journal, const DeviceTexts &texts, QObject *parent)
    : QObject(parent)
    , socket_(socket)
    , number_(number)
    , peer_(QStringLiteral("%1:%2").arg(socket->peerAddress().toString()).arg(socket->peerPort()))
    , tree_(tree)
    , faults_(faults)
    , journal_(journal)
    , texts_(texts)
{
    socket_->setParent(this);
    socket_->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    note(JournalEntry::Kind::FileOpened, QString());
    connect(socket_, &QTcpSocket::readyRead, this, &FileConnection::onReadyRead);
    connect(socket_, &QTcpSocket::disconnected, this, &FileConnection::onDisconnected);
}

FileConnection::~FileConnection()
{
    socket_->disconnect(this);
}

void FileConnection::begin()
{
    Fault fault;
    if (faults_->takeOnAccept(&fault)) {
        note(JournalEntry::Kind::FaultUsed, fault.name());
        if (fault.kind == Fault::Kind::ResetOnAccept) {
            reset();
        } else {
            close(QStringLiteral("by fault"));
        }
        return;
    }
    if (socket_->bytesAvailable() > 0) {
        onReadyRead();
    }
}

void FileConnection::drop()
{
    close(QStringLiteral("dropped"));
}

void FileConnection::setCutOff(bool on)
{
    cutOff_ = on;
    PacketDrop::set(socket_->socketDescriptor(), on);
    if (sender_ != nullptr) {
        sender_->setHeldBack(on);
    }
    if (!on && heldBack_ != nullptr) {
        take(std::exchange(heldBack_, nullptr));
    }
}

void FileConnection::onReadyRead()
{
    if (state_ == State::Receiving) {
        receive();
        return;
    }
    if (state_ != State::Request) {
        socket_->readAll();
        return;
    }
    buffer_ += socket_->read(requestLimit - buffer_.size());
    const int end = buffer_.indexOf('\n');
    if (end >= 0) {
        QByteArray line = buffer_.left(end);
        buffer_.remove(0, end + 1);
        state_ = State::Idle;
        takeRequest(line.replace('\r', QByteArray()));
    } else if (buffer_.size() >= requestLimit) {
        note(JournalEntry::Kind::Request, QString(), buffer_);
        close(QStringLiteral("request too long"));
    }
}

void FileConnection::onDisconnected()
{
    if (sender_ != nullptr) {
        note(JournalEntry::Kind::ContentSent,
             QStringLiteral("%1 of %2 bytes").arg(sender_->sent()).arg(sender_->size()));
        delete std::exchange(sender_, nullptr);
    }
    if (state_ == State::Receiving) {
        note(JournalEntry::Kind::ContentReceived,
             QStringLiteral("%1 of %2 bytes").arg(buffer_.size()).arg(uploadSize_));
    }
    state_ = State::Idle;
    note(JournalEntry::Kind::FileClosed,
         closedBy_.isEmpty() ? QStringLiteral("by the client") : closedBy_);
    Q_EMIT finished();
}

void FileConnection::takeRequest(const QByteArray &line)
{
    if (line.startsWith(getCommand)) {
        takeGet(line.mid(static_cast<int>(sizeof getCommand) - 1));
    } else if (line.startsWith(putCommand)) {
        takePut(line.mid(static_cast<int>(sizeof putCommand) - 1));
    } else {
        note(JournalEntry::Kind::Request, QString(), line);
        answer("Error=Unknown request");
        waitForClient();
    }
}

void FileConnection::takeGet(const QByteArray &path)
{
    path_ = texts_.decoded(path);
    note(JournalEntry::Kind::Request, path_, getCommand + path);
    faulty_ = faults_->take(Fault::Method::Get, path_, &fault_);
    if (!endsBeforeAnswer()) {
        inTime(&FileConnection::answerGet);
    }
}

void FileConnection::takePut(const QByteArray &rest)
{
    const int comma = rest.lastIndexOf(',');
    bool good = false;
    uploadSize_ = comma < 0 ? 0 : rest.mid(comma + 1).toLongLong(&good);
    path_ = texts_.decoded(rest.left(comma < 0 ? rest.size() : comma));
    note(JournalEntry::Kind::Request, path_, putCommand + rest);
    if (!good || uploadSize_ < 0 || uploadSize_ > uploadLimit || path_.isEmpty()) {
        answer("Error=Bad request");
        waitForClient();
        return;
    }
    faulty_ = faults_->take(Fault::Method::Put, path_, &fault_);
    if (!endsBeforeAnswer()) {
        inTime(&FileConnection::answerPut);
    }
}

bool FileConnection::endsBeforeAnswer()
{
    if (!faulty_) {
        return false;
    }
    note(JournalEntry::Kind::FaultUsed, fault_.name());
    switch (fault_.kind) {
    case Fault::Kind::Silent:
        return true;
    case Fault::Kind::CloseAfterRequest:
        close(QStringLiteral("by fault"));
        return true;
    case Fault::Kind::ResetAfterRequest:
        reset();
        return true;
    case Fault::Kind::Answer:
        answer(fault_.text);
        waitForClient();
        return true;
    case Fault::Kind::Flood:
        send(nullptr, fault_.bytes);
        return true;
    default:
        return false;
    }
}

void FileConnection::inTime(void (FileConnection::*step)())
{
    if (faulty_ && fault_.kind == Fault::Kind::Delay) {
        QTimer::singleShot(fault_.msec, Qt::PreciseTimer, this, [this, step] { take(step); });
    } else {
        take(step);
    }
}

void FileConnection::take(void (FileConnection::*step)())
{
    if (cutOff_) {
        heldBack_ = step;
    } else {
        (this->*step)();
    }
}

void FileConnection::answer(const QByteArray &line)
{
    note(JournalEntry::Kind::Answer, QString(), line);
    socket_->write(line + "\r\n");
}

void FileConnection::answerGet()
{
    std::shared_ptr<const FileContent> content = tree_->open(path_);
    if (!content) {
        answer("Error=Can't open file");
        waitForClient();
        return;
    }
    const qint64 size = content->size();
    QByteArray said = QByteArray::number(size);
    if (faulty_ && fault_.kind == Fault::Kind::Size) {
        said = fault_.text;
    } else if (faulty_ && fault_.kind == Fault::Kind::SizeOffset) {
        said = QByteArray::number(size + fault_.bytes);
    }
    answer("File size=" + said);
    send(std::move(content), size);
}

void FileConnection::send(std::shared_ptr<const FileContent> content, qint64 size)
{
    sender_ = new FileSender(socket_, std::move(content), size, faulty_ ? &fault_ : nullptr, this);
    connect(sender_, &FileSender::ended, this, &FileConnection::onSent);
    sender_->start();
}

void FileConnection::onSent(FileSender::End how)
{
    note(JournalEntry::Kind::ContentSent,
         QStringLiteral("%1 of %2 bytes").arg(sender_->sent()).arg(sender_->size()));
    sender_->deleteLater();
    sender_ = nullptr;
    switch (how) {
    case FileSender::End::Complete:
        waitForClient();
        break;
    case FileSender::End::Close:
        close(QStringLiteral("by fault"));
        break;
    case FileSender::End::Reset:
        resetWhenWritten();
        break;
    }
}

void FileConnection::answerPut()
{
    if (faulty_ && fault_.kind == Fault::Kind::StopReading) {
        // As little as the system allows, so that what is not read piles up at the client.
        socket_->setSocketOption(QAbstractSocket::ReceiveBufferSizeSocketOption, 4096);
        socket_->setReadBufferSize(4096);
    }
    answer("OK");
    state_ = State::Receiving;
    receive();
}

void FileConnection::receive()
{
    const bool breaks = faulty_ && (fault_.kind == Fault::Kind::StopReading ||
                                    fault_.kind == Fault::Kind::CloseAfter ||
                                    fault_.kind == Fault::Kind::ResetAfter);
    qint64 stop = uploadSize_;
    if (breaks) {
        stop = std::clamp<qint64>(fault_.bytes < 0 ? uploadSize_ + fault_.bytes : fault_.bytes, 0,
                                  uploadSize_);
    }
    buffer_ += socket_->read(std::max<qint64>(stop - buffer_.size(), 0));
    if (buffer_.size() < stop) {
        return;
    }
    state_ = State::Idle;
    note(JournalEntry::Kind::ContentReceived,
         QStringLiteral("%1 of %2 bytes").arg(stop).arg(uploadSize_));
    if (breaks) {
        breakOff();
        return;
    }
    buffer_.truncate(static_cast<int>(uploadSize_));
    if (!tree_->store(path_, buffer_)) {
        note(JournalEntry::Kind::Control, QStringLiteral("cannot be written: ") + path_);
    }
    Q_EMIT uploaded(path_);
    if (faulty_ && fault_.kind == Fault::Kind::CloseAtEnd) {
        close(QStringLiteral("by fault"));
    } else {
        waitForClient();
    }
}

// In the midst of an upload, as the fault asks for.
void FileConnection::breakOff()
{
    if (fault_.kind == Fault::Kind::CloseAfter) {
        close(QStringLiteral("by fault"));
    } else if (fault_.kind == Fault::Kind::ResetAfter) {
        reset();
    } else {
        // With a full buffer the toolkit reads no more, and the system's own buffers fill up.
        disconnect(socket_, &QTcpSocket::readyRead, this, nullptr);
        socket_->setReadBufferSize(1);
        waitForClient();
    }
}

void FileConnection::close(const QString &why)
{
    closedBy_ = why;
    socket_->disconnectFromHost();
}

void FileConnection::reset()
{
    closedBy_ = QStringLiteral("reset");
    TcpReset::reset(socket_);
}

// A reset throws away what has not gone out yet.
void FileConnection::resetWhenWritten()
{
    if (socket_->bytesToWrite() == 0) {
        reset();
        return;
    }
    connect(socket_, &QTcpSocket::bytesWritten, this, [this] {
        if (socket_->bytesToWrite() == 0) {
            reset();
        }
    });
}

void FileConnection::waitForClient()
{
    QTimer::singleShot(closeByClient, this, [this] { close(QStringLiteral("timeout")); });
}

void FileConnection::note(JournalEntry::Kind kind, const QString &text, const QByteArray &data)
{
    journal_->add(kind, number_, peer_, text, data);
}
