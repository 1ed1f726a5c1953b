// SPDX-License-Identifier: MIT
#include "simulator/archive.h"

#include "simulator/livefeed.h"
#include "simulator/mixer.h"

#include <algorithm>

Archive::Archive(int rows, qint64 end, int step, quint32 seed, int residents, bool unordered,
                 const DeviceTexts &texts)
    : rows_(rows)
    , end_(end)
    , step_(step)
    , seed_(seed)
    , residents_(residents)
    , unordered_(unordered)
    , texts_(texts)
{
}

Scan Archive::scan(int row) const
{
    Mixer mixer(seed_ ^ 0x41524348U, static_cast<quint32>(row));
    // The last place of an archive with an odd number of rows has no neighbour to change with.
    const int place = unordered_ && (row ^ 1) < rows_ ? row ^ 1 : row;
    const qint64 early = static_cast<qint64>(mixer.below(static_cast<std::size_t>(step_)));
    const qint64 seconds = end_ - static_cast<qint64>(rows_ - 1 - place) * step_ - early;
    const quint32 kind = mixer.below(10);
    const quint32 pick = mixer.next();
    const bool known = kind < 7 && residents_ > 0;
    QString number = known ? LiveFeed::makeNumber(seed_, pick % static_cast<quint32>(residents_))
                           : LiveFeed::makeNumber(seed_ ^ 0x55555555U, pick);
    if (kind == 9) {
        number[static_cast<int>(pick % static_cast<quint32>(number.size()))] = QLatin1Char('?');
    }
    Scan result;
    result.setDateTime(QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC));
    texts_.put(&result, ScanLayout::number, texts_.plate(number));
    result.setIncoming(mixer.below(2) == 0);
    result.setInAccessList(known);
    result.setAccessGranted(known);
    if (known) {
        texts_.put(&result, ScanLayout::comment, texts_.passage(row));
        texts_.put(&result, ScanLayout::accessKey, texts_.key(pick % 100000000U));
    }
    return result;
}

qint64 Archive::size() const
{
    return static_cast<qint64>(rows_) * Scan::size;
}

QByteArray Archive::read(qint64 offset, qint64 length) const
{
    const qint64 end = std::min(offset + length, size());
    if (offset >= end) {
        return QByteArray();
    }
    const auto first = static_cast<int>(offset / Scan::size);
    const auto last = static_cast<int>((end - 1) / Scan::size);
    QByteArray result;
    result.reserve((last - first + 1) * Scan::size);
    for (int row = first; row <= last; ++row) {
        result.append(scan(row).data(), Scan::size);
    }
    return result.mid(static_cast<int>(offset % Scan::size), static_cast<int>(end - offset));
}
