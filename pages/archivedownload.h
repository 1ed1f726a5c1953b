// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QDateTime>
#include <QString>
#include <QTemporaryDir>

#include <functional>

class PhotoOwners;
class QFile;
class RecordFile;
class Scan;

// What the operator asked for, and the table that the passages are added to.
struct ArchiveRequest {
    QString host;
    // Whole archive, or the passages between two moments, both included.
    bool wholeArchive = true;
    QDateTime from;
    QDateTime to;
    // The table's file with its index beside it, and how many rows it has.
    QString recordFile;
    int rows = 0;
};

// The steps of a download, for a worker thread: fetch(), then append() while no table is bound to
// the file, then photos(). Every step ends within 200 ms of the thread's interruption; then, as
// after any other failure, file and index hold what they held before.
//
// Texts are those to show, empty when nothing went wrong or the thread was interrupted.
class ArchiveDownload
{
    Q_DECLARE_TR_FUNCTIONS(ArchiveDownload)

public:
    explicit ArchiveDownload(const ArchiveRequest &request);

    // The device's identifier and archive, and which passages of it are wanted.
    QString fetch();
    // Adds the passages, each with the device's identifier in the index.
    QString append();
    // How many were added, or are to be.
    int added() const { return last_ - first_ + 1; }
    // Fetches the photos of the added rows into the folder, newest first, as long as the disk has
    // the configured reserve and the next one fits above it; a photo that cannot be had is left
    // out. progress is called with 1 to
    // 100. False when the disk ran short.
    bool photos(const QString &folder, const std::function<void(int)> &progress) const;

private:
    QString archiveFile() const;
    void chooseRows();
    QString appendTo(QFile &records, QFile &index) const;
    void reservePhotos(RecordFile &records, const PhotoOwners &owners, const QString &folder) const;
    QString photoPath(const Scan &scan, const PhotoOwners &owners, const QString &folder) const;

    ArchiveRequest request_;
    QTemporaryDir downloads_; // in the temporary directory: the archive as it came
    QString deviceId_;
    int first_ = 0;
    int last_ = -1;
};
