// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

// Which device's photo a file of the live table belongs to. Devices report passages of one name at
// the same time and from different threads; the first that claims the name has it (see PhotoName).
//
// One list for the process, from any thread. It remembers the last 16384 names, hours of passages,
// and is forgotten with the table.
namespace PhotoClaims
{

// The file for the photo of a passage that this device reports; path is the described one. Empty
// when the photo is not to be stored, because another device with the same identifier has the name.
QString claim(const QString &path, const QString &host, const QString &vaskId);

void forget();

} // namespace PhotoClaims
