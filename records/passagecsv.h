// SPDX-License-Identifier: MIT
#pragma once

#include "records/scan.h"

#include <QStringList>

// The fields of a passage in CSV files, the same for saving and loading: time (CSV::dateFormat()),
// number, incoming, in access list, access granted (0 or 1), comment, access key. The files' title
// row holds the table's column titles, which name other columns; both are kept for the programs
// that read these files.
namespace PassageCsv
{

QStringList fields(const Scan &scan);

// Missing fields read as empty, so a short line gives a passage with what it has; a time that
// cannot be read gives a passage without one.
Scan scan(const QStringList &fields);

} // namespace PassageCsv
