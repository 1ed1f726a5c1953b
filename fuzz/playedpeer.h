// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QElapsedTimer>

// The other end of a file transfer, in the same thread: it goes one step further each time the
// transfer asks whether it was called off, which it does in every wait. So the pieces of an answer
// arrive at the same places in every run, and a run takes no longer than its bytes do.
//
// It listens on a free port of 127.0.0.1 as long as it lives and takes one connection per round.
class PlayedPeer
{
public:
    enum class End { HangUp, Reset, Silence };

    PlayedPeer();
    ~PlayedPeer();
    PlayedPeer(const PlayedPeer &) = delete;
    PlayedPeer &operator=(const PlayedPeer &) = delete;

    quint16 port() const { return port_; }

    // A new round: what is sent, in pieces of pieceSize bytes (0: at once; there are never more
    // than some dozens), and how it ends.
    void begin(const QByteArray &answer, int pieceSize, End end);

    // Takes what has come and sends the next piece. True when a transfer has nothing more to wait
    // for and is to be called off.
    bool step();

    // Takes the rest and ends the connection without leaving a trace in the kernel.
    void finish();

    // Everything that came in this round.
    QByteArray received() const { return received_; }

private:
    void hangUp();

    quint16 port_ = 0;
    int listener_;
    int line_ = -1;
    QByteArray answer_;
    int sent_ = 0;
    int pieceSize_ = 0;
    End end_ = End::HangUp;
    bool ended_ = false;
    QByteArray received_;
    QElapsedTimer sincePiece_;
};
