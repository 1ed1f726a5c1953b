// SPDX-License-Identifier: MIT
#include "fuzz/playedpeer.h"

#include "fuzz/loopback.h"

#include <algorithm>

namespace
{

constexpr int mostPieces = 48;
// After the last piece: a silent device is left soon, one that hung up only if the other end does
// not notice.
constexpr qint64 silence = 20;
constexpr qint64 unnoticed = 2000;

} // namespace

PlayedPeer::PlayedPeer()
    : listener_(Loopback::listen(&port_))
{
}

PlayedPeer::~PlayedPeer()
{
    finish();
    Loopback::closeWithoutTrace(listener_);
}

void PlayedPeer::begin(const QByteArray &answer, int pieceSize, End end)
{
    finish();
    answer_ = answer;
    sent_ = 0;
    const int whole = std::max(1, answer.size());
    pieceSize_ = pieceSize == 0 ? whole : std::max(pieceSize, whole / mostPieces + 1);
    end_ = end;
    ended_ = false;
    received_.clear();
    sincePiece_.start();
}

bool PlayedPeer::step()
{
    if (line_ < 0 && !ended_) {
        line_ = Loopback::accept(listener_);
    }
    received_ += Loopback::receive(line_);
    if (line_ >= 0 && sent_ < answer_.size()) {
        Loopback::send(line_, answer_.mid(sent_, pieceSize_));
        sent_ = std::min(sent_ + pieceSize_, answer_.size());
        sincePiece_.start();
    }
    // Not before the request: a device answers.
    if (line_ >= 0 && sent_ == answer_.size() && received_.contains('\n') && !ended_) {
        hangUp();
    }
    return sincePiece_.hasExpired(end_ == End::Silence ? silence : unnoticed);
}

void PlayedPeer::hangUp()
{
    ended_ = true;
    if (end_ == End::HangUp) {
        Loopback::endSending(line_);
    } else if (end_ == End::Reset) {
        Loopback::closeWithoutTrace(line_);
        line_ = -1;
    }
}

void PlayedPeer::finish()
{
    received_ += Loopback::receive(line_);
    Loopback::closeWithoutTrace(line_);
    line_ = -1;
    // A connection that was made and not taken would be the next round's.
    for (int late = Loopback::accept(listener_); late >= 0; late = Loopback::accept(listener_)) {
        Loopback::closeWithoutTrace(late);
    }
}
