// SPDX-License-Identifier: MIT
#pragma once

#include <QElapsedTimer>
#include <QStringList>

#include <memory>

class RecordFile;

// What killed runs had on the live table: each in a folder of its own under "Recovered" in the
// working directory, named by the time of the recovery, as a dump that the Archive page opens: the
// record file, its index beside it, and its photos in the folder of the table's name.
//
// The last three are kept, and only as long as the disk has the configured reserve without them:
// the oldest give way first, of each the photos from the first passage on, then the rest. A disk
// that could never have the reserve keeps them. Folders with other names, links, and what cannot be
// deleted are passed over.
//
// A rescue that fails deletes nothing. The table is then put beside the folder of the live table,
// where nothing deletes it, or stays where it is.
//
// GUI thread, before the live table is bound to its file (rescue()) and while passages come
// (makeRoom()). Used by the process that holds the lock of the working directory.
class RecoveredTables
{
public:
    enum class Rescue { Nothing, Done, Failed };

    RecoveredTables();
    ~RecoveredTables();

    // Moves the live table of the former run, and only renames to do so. A table without passages,
    // or in a place that the On-line page would not empty, stays where it is. A rescue that was
    // killed is brought to its end. There is a folder for live photos afterwards.
    static Rescue rescue();
    // Whether the last rescue could not move the table at all: the run then goes on with it, and is
    // followed by another rescue, unless the operator has deleted it.
    static bool isLeftInPlace();
    static void forgetLeft();

    // The folder that was made last, from the working directory on; empty when there is none.
    static QString newest();

    // Deletes until there are three and the disk has its reserve, for so long at the most.
    void makeRoom(int mostMsec);

private:
    // False when there is nothing left to delete.
    bool removeNext();
    bool openOldest();
    QStringList removable() const;

    QString folder_; // the oldest, while its photos are being deleted
    std::unique_ptr<RecordFile> rows_;
    int row_ = 0;
    QStringList stuck_; // what could not be deleted
};
