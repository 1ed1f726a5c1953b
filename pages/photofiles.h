// SPDX-License-Identifier: MIT
#pragma once

#include "records/scan.h"

#include <QString>

// Where the photos of a table lie: in a folder beside the table's file, each under a name made of
// its passage's time and number; see PhotoName. Any thread.
namespace PhotoFiles
{

// folder/pictureFolder/name of the picture of a passage that this device reported.
QString path(const QString &folder, const QString &pictureFolder, const Scan &scan,
             const QString &vaskId);

// Makes the picture folder in folder where it does not exist; false when it cannot be made.
bool makeFolder(const QString &folder, const QString &pictureFolder);

// Copies over whatever stands at the destination, which is replaced in one step. Empty, or the
// error's text; a file onto itself is refused and stays, and so
// is a source that is no regular file. Ends with a text when the thread is
// interrupted. The flushed copy is on the disk then; for the other one the caller flushes the file
// system behind the last of many.
QString copyFlushed(const QString &source, const QString &destination);
QString copy(const QString &source, const QString &destination);

// Whether both names mean one existing file.
bool isSameFile(const QString &one, const QString &other);

} // namespace PhotoFiles
