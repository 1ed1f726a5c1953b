// SPDX-License-Identifier: MIT
#pragma once

#include "records/photolisting.h"
#include "records/recordfile.h"

#include <QByteArray>

#include <functional>
#include <vector>

// Deletes the photos of a table's oldest passages, for room on the disk; the passages stay. The
// photos lie beside the record file, in a folder named after it or, for the live table, in the
// common one. Which of them is a row's, the index tells; see PhotoName.
//
// It goes round the table: a listing of the photos, then the rows from where it stopped last time
// to the end, and on from the first row to there, for photos that came late. So the oldest go
// first, and a call goes on where the last one stopped, whether that had made room or run out of
// time. Rows whose second has no photo are passed by in blocks, and a block that was read once is
// not read again to learn that. A row that cannot be read is passed by as well.
//
// For a table that only grows; whoever removes rows makes a new object. GUI thread: a call lasts a
// few milliseconds, longer only while the disk has no room for the next passage and there are
// photos left to be found, and goes round at most once.
class OldPhotos
{
public:
    using Available = std::function<qint64()>;

    explicit OldPhotos(const QString &recordFile);

    // Until so many bytes of the disk are available.
    void free(qint64 reserve, const Available &available);

private:
    // The earliest and the latest time word of a block of rows; nothing is known of it when the
    // earliest is the later one.
    struct Span {
        quint32 first = 1;
        quint32 last = 0;
    };

    void beginRound();
    // Passes by rows or removes one photo; how many rows it took.
    int walk();
    bool isPassedBy(std::size_t block) const;
    bool removePhoto(const char *record, int row);

    QString ownFolder_;
    QString commonFolder_;
    RecordFile records_;
    RecordFile index_;
    PhotoListing listing_;
    int place_ = 0; // the next row
    int end_ = 0;   // the rows that the listing knows of
    int left_ = 0;  // the rows of this round
    std::vector<Span> spans_;
    QByteArray block_;
};
