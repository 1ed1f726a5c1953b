// SPDX-License-Identifier: MIT
#include "records/oldphotos.h"

#include "records/deviceindex.h"
#include "records/localtext.h"
#include "records/photoname.h"
#include "records/scan.h"
#include "records/vasksettings.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>

#include <algorithm>

namespace
{

constexpr int mostMsec = 3;
// Of reading and deleting; on a machine that is busy with other things time says little.
constexpr int leastSteps = 16;
// A passage, its photo and those that come until the next call has its turn. While the disk has
// less, a call is not cut off by time: the next photo, or the passage itself, would be lost though
// there are older photos to be given for it.
constexpr qint64 nextNeed = 1024 * 1024;
constexpr int blockRows = 512;

QString indexOf(const QString &recordFile)
{
    const QFileInfo record(recordFile);
    return record.absolutePath() + QLatin1Char('/') + record.baseName() +
           VaskSettings::passbaseIndexSuffix();
}

quint32 secondOf(const char *record)
{
    return qFromLittleEndian<quint32>(record + ScanLayout::dateTime.offset);
}

} // namespace

OldPhotos::OldPhotos(const QString &recordFile)
    : records_(recordFile, Scan::size)
    , index_(indexOf(recordFile), DeviceIndex::entrySize)
    , block_(blockRows * int(Scan::size), '\0')
{
    const QFileInfo record(recordFile);
    const QDir folder = record.absoluteDir();
    ownFolder_ = folder.filePath(VaskSettings::picFileDir(record.baseName()));
    commonFolder_ = folder.filePath(VaskSettings::picFileDir());
    records_.open(QIODevice::ReadOnly); // without it there are no rows
    index_.open(QIODevice::ReadOnly);   // and without this no identifiers
}

void OldPhotos::free(qint64 reserve, const Available &available)
{
    const qint64 urgent = qMin(reserve / 2, nextNeed);
    QElapsedTimer clock;
    clock.start();
    int rows = records_.count();
    bool begun = false;
    qint64 now = available();
    for (int step = 0; now < reserve && rows > 0; now = available(), ++step) {
        if (now >= urgent && step >= leastSteps && clock.hasExpired(mostMsec)) {
            return;
        }
        if (listing_.readMore()) {
            continue;
        }
        if (left_ > 0 && !listing_.isEmpty()) {
            rows -= walk();
        } else if (!begun) {
            begun = true;
            beginRound();
        } else {
            return;
        }
    }
}

void OldPhotos::beginRound()
{
    end_ = records_.count();
    left_ = end_;
    listing_.begin({ownFolder_, commonFolder_});
}

int OldPhotos::walk()
{
    if (place_ >= end_) {
        place_ = 0;
    }
    const auto block = static_cast<std::size_t>(place_ / blockRows);
    const int first = place_ % blockRows;
    const int most = qMin(left_, qMin(blockRows - first, end_ - place_));
    int done = most;
    if (!isPassedBy(block)) {
        const int read = records_.readSeveral(place_, most, block_.data());
        Span span{noTime, 0};
        done = 0;
        while (done < read) {
            const char *record = block_.constData() + done * Scan::size;
            const int row = place_ + done++;
            const quint32 second = secondOf(record);
            span = {qMin(span.first, second), qMax(span.last, second)};
            if (listing_.has(second) && removePhoto(record, row)) {
                listing_.remove(second);
                break;
            }
        }
        if (done == blockRows) {
            spans_.resize(qMax(spans_.size(), block + 1));
            spans_[block] = span;
        }
        done = qMax(done, 1); // past the row that cannot be read
    }
    place_ += done;
    left_ -= done;
    return done;
}

bool OldPhotos::isPassedBy(std::size_t block) const
{
    return block < spans_.size() && spans_[block].first <= spans_[block].last &&
           !listing_.hasBetween(spans_[block].first, spans_[block].last);
}

bool OldPhotos::removePhoto(const char *record, int row)
{
    Scan scan;
    std::copy_n(record, Scan::size, scan.data());
    char entry[DeviceIndex::entrySize] = {};
    const QString id =
        index_.read(row, entry) ? LocalText::decoded(entry, DeviceIndex::entrySize) : QString();
    const QString picture = VaskSettings::picFileName(scan);
    return PhotoName::discard(ownFolder_, picture, id) ||
           PhotoName::discard(commonFolder_, picture, id);
}
