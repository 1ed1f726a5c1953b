// SPDX-License-Identifier: MIT
#pragma once

#include <QElapsedTimer>
#include <QString>

#include <memory>

class QStringList;
class RecordFile;

// What killed runs had on the live table: each in a folder of its own under "Recovered" in the
// working directory, named by the time of the recovery, as a dump that the Archive page opens: the
// record file, its index beside it, and its photos in the folder of the table's name.
//
// The last three are kept, and only as long as the disk has the configured reserve without them:
// the oldest give way first, of each the photos from the first passage on, then the rest. Folders
// with other names, and links, are never touched.
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
    // killed is brought to its end.
    static Rescue rescue();

    // The folder that was made last, from the working directory on; empty when there is none.
    static QString newest();

    // Deletes until the disk has its reserve, for so long at the most.
    void makeRoom(int mostMsec);

private:
    // False when there is nothing left to delete.
    bool removeNext();
    bool openOldest();

    QString folder_; // the oldest, while its photos are being deleted
    std::unique_ptr<RecordFile> rows_;
    int row_ = 0;
};
