// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QElapsedTimer>
#include <QString>

// A TCP client without the toolkit, which cannot tell an orderly close from a reset. Blocking, with
// a time limit on every wait.
class RawClient
{
public:
    enum class End { Open, Closed, Reset, Refused };

    RawClient(const QString &address, quint16 port);
    ~RawClient();
    RawClient(const RawClient &) = delete;
    RawClient &operator=(const RawClient &) = delete;

    bool isConnected() const { return socket_ >= 0; }
    void send(const QByteArray &bytes);
    // Reads until there are so many bytes altogether, the other side ends, or msec have passed
    // without a byte.
    void read(qint64 bytes, int msec);

    const QByteArray &received() const { return received_; }
    qint64 count() const { return count_; }
    // How the connection stands after the last read.
    End end() const { return end_; }
    // The time from the last send to the first byte.
    qint64 firstByte() const { return firstByte_; }
    // Only counts from now on, for more bytes than one wants to keep.
    void keepNothing() { keeps_ = false; }

private:
    int socket_ = -1;
    QByteArray received_;
    qint64 count_ = 0;
    bool keeps_ = true;
    End end_ = End::Open;
    QElapsedTimer sinceSend_;
    qint64 firstByte_ = -1;
};
