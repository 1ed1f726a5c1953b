// SPDX-License-Identifier: MIT
#pragma once

class QAbstractSocket;

// Noticing that the other side is gone without a word: a cable pulled, a device without power. The
// system would go on sending the same bytes again for a quarter of an hour, and would never notice
// on a line on which nothing is sent.
//
// The limits are set on a connected socket, in its thread, so that connecting lasts as long as its
// caller waits. A socket that is not connected is left alone.
namespace DeadPeer
{

// How long the other side may owe the receipt of a byte.
constexpr int longestSilence = 10000;

// For one transfer.
void watchTransfer(QAbstractSocket &socket);

// For a line that stays open; also while nothing is sent on it.
void watchLine(QAbstractSocket &socket);

// Whether nothing has come back on a watched line for nearly longestSilence, although it was asked
// for. Asked once a second it tells in time what the system would tell a moment too late: that
// counts from the next byte sent, not from the last one received. Any thread.
bool isGone(const QAbstractSocket &socket);

} // namespace DeadPeer
