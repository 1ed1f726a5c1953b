// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

// The text lines of the file transfer service, as bytes. Lines are in the local 8-bit encoding and
// end in CR LF; contents follow them raw. No sockets here, so every line that a device may send can
// be tried without one.
namespace FileProtocol
{

// No honest answer is longer; more without a line end is a failure.
constexpr int longestAnswer = 64 * 1024;

// "GET_IMMEDIATE_FILE:path"
QByteArray getRequest(const QString &remotePath);

// "PUT_IMMEDIATE_FILE:path,size"
QByteArray putRequest(const QString &remotePath, qint64 size);

// The line without every CR and LF in it.
QByteArray stripped(QByteArray line);

// Whether a stripped answer is a refusal: "Error" at its very beginning, in this spelling.
bool isRefusal(const QByteArray &answer);

// The size in a stripped answer "File size=123"; 0 when it is no number or not positive.
qint64 announcedSize(QByteArray answer);

} // namespace FileProtocol
