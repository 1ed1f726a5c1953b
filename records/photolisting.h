// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <bitset>
#include <memory>
#include <vector>

#include <dirent.h>

// Which seconds have photos in some folders. Picture names begin with the passage's time, so one
// reading of the folders tells of every row of a table whether it may have a photo, without a look
// at the disk for each. A second that has one may have it from another passage; a second without
// has none, until the next listing. Other files do not count.
//
// The folders are read in pieces, between which they may change. Four bytes of memory for each
// photo. Any thread, one at a time.
class PhotoListing
{
public:
    // Forgets what is known and begins with the first of the folders. A missing one is empty.
    void begin(const QStringList &folders);
    // Reads some more names; false when there are none left. Nothing is asked for before.
    bool readMore();

    bool isEmpty() const { return seconds_.empty(); }
    // As in a record's time word, noTime included.
    bool has(quint32 second) const;
    // Whether there is one from first to last, both included.
    bool hasBetween(quint32 first, quint32 last) const;
    // One photo of that second is gone.
    void remove(quint32 second);

    // The second that a picture name begins with. False for any other name.
    static bool secondOf(const char *name, quint32 *second);

private:
    struct Close {
        void operator()(DIR *folder) const { closedir(folder); }
    };
    static std::size_t mark(quint32 second) { return (second * 2654435761U) >> markShift; }
    bool openNext();
    void finish();

    static constexpr int markBits = 16;
    static constexpr int markShift = 32 - markBits;

    QStringList folders_; // still to be read
    std::unique_ptr<DIR, Close> open_;
    bool reading_ = false;
    std::vector<quint32> seconds_; // in order when all are read; one for each photo
    // Most rows have no photo, or all have: a look here spares them the search.
    std::bitset<std::size_t(1) << markBits> marks_;
};
