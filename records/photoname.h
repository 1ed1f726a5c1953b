// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

// Which file holds the photo of a passage.
//
// A photo is named by time and number alone. When two devices report the same number in the same
// second, as two barriers opened by hand at once do, the photo of the first keeps that name, and
// that of the other has the device's identifier in its name as well, before the ending. Such a file
// is made at once, empty, whether its photo ever comes or not: a row whose device has a file of its
// own is never shown another one's photo. An empty file is no photo.
//
// Identifiers are taken as an index file gives them back. Devices with the same identifier cannot
// be told apart by their rows: then neither row shows a photo, and the first one's file stays.
//
// Any thread.
namespace PhotoName
{

// The name for a device that is not the first; picture is what VaskSettings::picFileName() gives.
// What is no letter, digit, ".", "_" or "-" of the identifier is written as %XX, byte by byte.
QString ofDevice(const QString &picture, const QString &vaskId);

// The identifier as the index file gives it back.
QString storedId(const QString &vaskId);

// The file of a passage's photo in the folder: the device's own, if it is there, or the common one.
QString path(const QString &folder, const QString &picture, const QString &vaskId);

// Whether the file holds a photo, for all one can tell without reading it.
bool isThere(const QString &path);

// Makes the empty file of a photo that may come; one that is there stays.
void reserve(const QString &path);

// Frees the room that a passage's photo takes; false when it takes none. Of a device's own file the
// name stays.
bool discard(const QString &folder, const QString &picture, const QString &vaskId);

} // namespace PhotoName
