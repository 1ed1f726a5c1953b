// SPDX-License-Identifier: MIT
#pragma once

class QByteArray;
class QIODevice;

// Writing to disks that may fill up. Any thread.
namespace FileWrite
{

// Writes all of it; after false the device's errorString() tells why. A disk that fills up takes a
// part first, without an error, and only the next call tells the reason. The device is unbuffered,
// since a buffer that fails to empty itself keeps none.
bool all(QIODevice &file, const QByteArray &bytes);

} // namespace FileWrite
