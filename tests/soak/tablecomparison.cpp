// SPDX-License-Identifier: MIT
#include "tests/soak/tablecomparison.h"

#include "records/deviceindex.h"
#include "records/scan.h"

#include <algorithm>

namespace
{

constexpr int mostExamples = 10;

void note(ComparisonCounts *counts, const char *what, int place, const QByteArray &passage)
{
    if (counts->examples.size() < mostExamples) {
        counts->examples.append(QStringLiteral("%1 at %2: %3")
                                    .arg(QLatin1String(what))
                                    .arg(place)
                                    .arg(QString::fromLatin1(passage.left(20).toHex(' '))));
    }
}

// The rows that stand for a passage that was sent; what is too much of them is counted.
QVector<QByteArray> knownRows(const QVector<SentPassage> &sent, const QVector<QByteArray> &rows,
                              ComparisonCounts *counts)
{
    QHash<QByteArray, int> left;
    for (const SentPassage &each : sent) {
        ++left[each.passage];
    }
    QVector<QByteArray> known;
    for (int row = 0; row < rows.size(); ++row) {
        const auto found = left.find(rows.at(row));
        if (found == left.end()) {
            ++counts->foreign;
            note(counts, "foreign", row, rows.at(row));
        } else if (*found == 0) {
            ++counts->doubled;
            note(counts, "doubled", row, rows.at(row));
        } else {
            --*found;
            known.append(rows.at(row));
        }
    }
    return known;
}

} // namespace

void ComparisonCounts::add(const ComparisonCounts &other)
{
    sent += other.sent;
    stored += other.stored;
    lost += other.lost;
    lostWithKill += other.lostWithKill;
    doubled += other.doubled;
    foreign += other.foreign;
    misplaced += other.misplaced;
    examples = (examples + other.examples).mid(0, mostExamples);
}

QString ComparisonCounts::text() const
{
    return QStringLiteral("sent %1, stored %2, lost %3, lost with a kill %4, doubled %5, foreign "
                          "%6, misplaced %7")
        .arg(sent)
        .arg(stored)
        .arg(lost)
        .arg(lostWithKill)
        .arg(doubled)
        .arg(foreign)
        .arg(misplaced);
}

TableComparison::TableComparison(qint64 end, int graceMsec)
    : end_(end)
    , grace_(graceMsec)
{
}

ComparisonCounts TableComparison::compare(const QVector<SentPassage> &sent,
                                          const QVector<QByteArray> &rows) const
{
    ComparisonCounts counts;
    counts.sent = sent.size();
    counts.stored = rows.size();
    const QVector<QByteArray> known = knownRows(sent, rows, &counts);
    QHash<QByteArray, int> stored;
    for (const QByteArray &row : known) {
        ++stored[row];
    }
    // Of passages with the same bytes the first ones count as stored.
    QVector<int> missing;
    QVector<QByteArray> expected;
    for (int place = 0; place < sent.size(); ++place) {
        if (stored[sent.at(place).passage]-- > 0) {
            expected.append(sent.at(place).passage);
        } else {
            missing.append(place);
        }
    }
    int tail = sent.size();
    for (int place = missing.size() - 1; place >= 0 && missing.at(place) == tail - 1; --place) {
        --tail;
    }
    for (const int place : qAsConst(missing)) {
        const bool withKill = place >= tail && sent.at(place).msec > end_ - grace_;
        ++(withKill ? counts.lostWithKill : counts.lost);
        if (!withKill) {
            note(&counts, "lost", place, sent.at(place).passage);
        }
    }
    for (int place = 0; place < expected.size(); ++place) {
        if (expected.at(place) != known.at(place)) {
            ++counts.misplaced;
            note(&counts, "misplaced", place, known.at(place));
        }
    }
    return counts;
}

QHash<QByteArray, QVector<QByteArray>> TableComparison::byDevice(const QByteArray &table,
                                                                 const QByteArray &index)
{
    constexpr int size = Scan::size;
    QHash<QByteArray, QVector<QByteArray>> result;
    for (int row = 0; row * size < table.size(); ++row) {
        const QByteArray entry = index.mid(row * DeviceIndex::entrySize, DeviceIndex::entrySize);
        const bool whole = entry.size() == DeviceIndex::entrySize;
        result[whole ? QByteArray(entry.constData()) : QByteArray()].append(
            table.mid(row * size, size));
    }
    return result;
}
