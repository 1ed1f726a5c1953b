// SPDX-License-Identifier: MIT
#pragma once

#include <QDateTime>

// The moments that dates and times of the local day name, where clocks are put forward and back.
//
// Functions only, callable from any thread. The rules are those by which the toolkit shows a
// moment, so what is read here is shown as it was read, also in years of which the system has no
// rules yet.
namespace LocalTime
{

// The moment that shows this date and time. Where the clocks left it out when they were put
// forward, the moment at which they went on: the end of the missing hour. Where it comes twice, the
// first.
//
// before is the moment that an operator has found in the edits and has perhaps changed. While date
// and time are still those that it shows, it is what is meant, and if it is the second of its hour,
// so is what it was changed to within that hour.
QDateTime moment(const QDate &date, const QTime &time, const QDateTime &before = QDateTime());

} // namespace LocalTime
