// SPDX-License-Identifier: MIT
#pragma once

#include "records/access.h"

#include <QStringList>

// The fields of an access entry in CSV files: id, number, from, till, key, comment.
namespace AccessCsv
{

// Times in CSV::dateFormat().
QStringList fields(const Access &access);

// Times in the toolkit's default text form, or else in CSV::dateFormat(). Both of them go into the
// entry's begin, the till field last, and the entry has no end: so the lists of the devices' other
// programs are read, and so a list that was saved here comes back. Missing and unreadable fields
// read as empty, an unreadable time as none.
Access access(const QStringList &fields);

// Whether the line has an id that can be read, as every entry that was saved has.
bool hasId(const QStringList &fields);
// Whether these are titles of as many columns as an entry has, and no entry.
bool areTitles(const QStringList &fields);

} // namespace AccessCsv
