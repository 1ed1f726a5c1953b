// SPDX-License-Identifier: MIT
#include "records/localtime.h"

namespace
{

// Further from a change of the clocks than any change reaches; the longest left out a whole day.
constexpr qint64 farSeconds = 2 * 86400;

// By how much local clocks are ahead of UTC at a moment.
qint64 offsetAt(qint64 moment)
{
    const QDateTime shown = QDateTime::fromSecsSinceEpoch(moment);
    return QDateTime(shown.date(), shown.time(), Qt::UTC).toSecsSinceEpoch() - moment;
}

// The first moment with the later offset; there is one change between the two.
qint64 changeBetween(qint64 earlier, qint64 later)
{
    const qint64 offset = offsetAt(later);
    while (later - earlier > 1) {
        const qint64 middle = earlier + (later - earlier) / 2;
        (offsetAt(middle) == offset ? later : earlier) = middle;
    }
    return later;
}

// Whether the moment is the second one that shows its time, between clocks with these offsets.
bool isSecond(const QDateTime &moment, qint64 before, qint64 after)
{
    if (!moment.isValid() || after >= before) {
        return false;
    }
    const qint64 seconds = moment.toSecsSinceEpoch();
    return offsetAt(seconds) == after && offsetAt(seconds - (before - after)) == before;
}

} // namespace

QDateTime LocalTime::moment(const QDate &date, const QTime &time, const QDateTime &before)
{
    if (before.isValid() && before.date() == date && before.time() == time) {
        return before;
    }
    const QDateTime clock(date, time, Qt::UTC);
    if (!clock.isValid()) {
        return QDateTime();
    }
    const qint64 shown = clock.toSecsSinceEpoch();
    const qint64 offsets[] = {offsetAt(shown - farSeconds), offsetAt(shown + farSeconds)};
    const bool isThere[] = {offsetAt(shown - offsets[0]) == offsets[0],
                            offsetAt(shown - offsets[1]) == offsets[1]};
    if (!isThere[0] && !isThere[1]) {
        return QDateTime::fromSecsSinceEpoch(changeBetween(shown - farSeconds, shown + farSeconds));
    }
    const bool isLater = !isThere[0] || (isThere[1] && isSecond(before, offsets[0], offsets[1]));
    return QDateTime::fromSecsSinceEpoch(shown - offsets[isLater ? 1 : 0]).addMSecs(time.msec());
}
