// SPDX-License-Identifier: MIT
#include "simulator/filesender.h"

#include <QTcpSocket>
#include <QTimer>

#include <algorithm>

namespace
{

constexpr qint64 sendAhead = 262144;
constexpr qint64 pieceLimit = 65536;

} // namespace

FileSender::FileSender(QTcpSocket *socket, std::shared_ptr<const FileContent> content, qint64 size,
                       const Fault *fault, QObject *parent)
    : QObject(parent)
    , socket_(socket)
    , content_(std::move(content))
    , size_(size)
    , faulty_(fault != nullptr)
    , fault_(fault != nullptr ? *fault : Fault())
    , stop_(size)
{
    if (is(Fault::Kind::CloseAfter) || is(Fault::Kind::ResetAfter)) {
        stop_ = fault_.bytes < 0 ? size_ + fault_.bytes : fault_.bytes;
    } else if (is(Fault::Kind::Pause) || is(Fault::Kind::Replace) || is(Fault::Kind::Trickle)) {
        stop_ = fault_.bytes;
    }
    stop_ = std::clamp<qint64>(stop_, 0, size_);
    connect(socket_, &QTcpSocket::bytesWritten, this, &FileSender::send);
}

FileSender::~FileSender() = default;

void FileSender::start()
{
    resting_ = false;
    send();
}

void FileSender::setHeldBack(bool on)
{
    heldBack_ = on;
    send();
}

void FileSender::send()
{
    while (!resting_ && !heldBack_ && socket_->bytesToWrite() < sendAhead) {
        const qint64 length = std::min(pieceLimit, stop_ - sent_);
        const QByteArray bytes = piece(length);
        socket_->write(bytes);
        sent_ += bytes.size();
        if (bytes.size() < length) {
            // The file became shorter; what was promised cannot be kept.
            resting_ = true;
            Q_EMIT ended(End::Close);
        } else if (sent_ == stop_) {
            atStop();
        }
    }
}

void FileSender::atStop()
{
    const bool complete = sent_ == size_;
    if (is(Fault::Kind::CloseAfter) || is(Fault::Kind::ResetAfter) || complete) {
        resting_ = true;
        content_.reset();
        const bool closes = is(Fault::Kind::CloseAfter) || is(Fault::Kind::CloseAtEnd);
        Q_EMIT ended(is(Fault::Kind::ResetAfter) ? End::Reset
                     : closes                    ? End::Close
                                                 : End::Complete);
    } else if (is(Fault::Kind::Trickle)) {
        stop_ = std::min(size_, sent_ + fault_.bytes);
        pause();
    } else {
        stop_ = size_;
        if (is(Fault::Kind::Pause)) {
            pause();
        }
    }
}

void FileSender::pause()
{
    resting_ = true;
    QTimer::singleShot(fault_.msec, Qt::PreciseTimer, this, &FileSender::start);
}

QByteArray FileSender::piece(qint64 length) const
{
    if (!content_) {
        return QByteArray(static_cast<int>(length), 'x');
    }
    if (!is(Fault::Kind::Replace) || sent_ < fault_.bytes) {
        return content_->read(sent_, length);
    }
    const QByteArray bytes = sent_ < fault_.text.size() ? fault_.text.mid(static_cast<int>(sent_),
                                                                          static_cast<int>(length))
                                                        : QByteArray();
    // The new file may be shorter, but its size has been told.
    return bytes.leftJustified(static_cast<int>(length), '\0');
}
