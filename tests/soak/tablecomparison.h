// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QHash>
#include <QStringList>
#include <QVector>

// A passage that a device sent, as the panel's table must hold it, and when it was sent.
struct SentPassage {
    qint64 msec = 0;
    QByteArray passage;
};

// What a comparison found. Sums of several tables are made by add().
struct ComparisonCounts {
    int sent = 0;
    int stored = 0;
    int lost = 0;         // the panel had time enough, or has stored later ones, and has it not
    int lostWithKill = 0; // among the last ones when the panel was killed
    int doubled = 0;      // stored more often than sent
    int foreign = 0;      // stored, and no device has sent these bytes
    int misplaced = 0;    // not in the order in which they were sent
    QStringList examples; // of what is wrong, a few

    void add(const ComparisonCounts &other);
    bool isGood() const { return lost + doubled + foreign + misplaced == 0; }
    QString text() const;
};

// Compares what the panel has stored of one device with what that device sent, byte by byte and in
// order.
//
// What a kill may cost is defined here: the passages behind the last one that is stored, and of
// these only those that were sent less than the grace before the panel's end. A passage that is
// missing in front of a stored one is lost, whenever it was sent.
class TableComparison
{
public:
    // end is the panel's, in the time of the passages.
    TableComparison(qint64 end, int graceMsec);

    ComparisonCounts compare(const QVector<SentPassage> &sent,
                             const QVector<QByteArray> &rows) const;

    // The rows of a table by the identifier that stands in its index for them; those that the index
    // has no entry for are under an empty one. Half a row at the end is a row of its own, which
    // equals none.
    static QHash<QByteArray, QVector<QByteArray>> byDevice(const QByteArray &table,
                                                           const QByteArray &index);

private:
    qint64 end_;
    int grace_;
};
