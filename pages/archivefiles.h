// SPDX-License-Identifier: MIT
#pragma once

#include "records/scan.h"

#include <QString>

// Where the Archive page keeps things, by whole paths. Any thread.
namespace ArchiveFiles
{

// The temporary archive that downloads add up in.
QString record();
QString folder();
// For the temporary folder of a download in it.
QString transferTemplate();

// The folder of a table's photos, beside its file and named after it; and the one of a passage
// that this device reported.
QString photosOf(const QString &table);
QString photo(const QString &table, const Scan &scan, const QString &vaskId);

// Deletes the temporary archive and its index; or everything that was downloaded. No table is bound
// to the archive then. Nothing happens without settings.
void removeArchive();
void removeAll();

} // namespace ArchiveFiles
