// SPDX-License-Identifier: MIT
#pragma once

#include "records/diskspace.h"
#include "records/oldphotos.h"
#include "records/scan.h"
#include "records/structurefilemodel.h"

#include <QFile>

// How the table and the details of a passage print its time.
extern const QString scanModelDateTimeFormat;

// The table of passages. Beside the record file lies its index file, with the identifier of the
// device that each passage came from: the record file's base name (up to the first dot) and the
// index suffix. The table creates it empty when missing and only reads it; who writes records
// writes the index.
//
// The table of a view lives in the GUI thread; a worker may make one of its own over a file that
// nobody else uses. One row is cached, so a view that asks for all columns and roles of a row reads
// the files once; changing the cached row does not refresh it until another row was read. A row
// that the index has no entry for shows the identifier of the row read before it. A row that cannot
// be read shows nothing.
class ScanModel : public StructureFileModel<Scan>
{
    Q_OBJECT

public:
    enum Column {
        DateColumn,
        NumberColumn,
        InListColumn,
        GrantedColumn,
        DeviceColumn,
        CommentColumn,
        KeyColumn,
        columns
    };

    explicit ScanModel(QObject *parent);
    ScanModel(const QString &fileName, QObject *parent);

    // The index file that belongs to a record file.
    static QString indexFileOf(const QString &recordFile);

    // A passage's number as the table shows it: in Latin capitals, with "#" for what was not
    // readable.
    static QString shownNumber(Scan scan);

    void setFileName(const QString &name) override;
    QString indexFile() const;
    // The identifier of the device that the row came from; empty when the index has none.
    QString deviceOf(int row) const;

    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    QVariant data(const QModelIndex &index, int role) const override;

    using StructureFileModel<Scan>::removeRows;
    bool removeRows(int first, int last, const QModelIndex &parent) override;

    // Deletes photos of the oldest passages until the disk has the configured reserve. Passages
    // stay. Each call goes on where the last one stopped, see OldPhotos.
    void freeSpace();

protected:
    // The seam at which tests put a full disk.
    virtual DiskSpace diskSpace() const;

private:
    void readRow(int row) const;
    QVariant display(int column) const;
    QVariant edit(int column) const;
    QVariant foreground(int column) const;

    QString indexName_;
    mutable QFile indexFile_;
    mutable int cachedRow_ = -1;
    mutable bool cachedRead_ = false; // whether that row could be read
    mutable Scan cachedScan_;
    mutable QString cachedDevice_;
    std::unique_ptr<OldPhotos> oldPhotos_; // of these rows, made when the disk first runs short
};

// Comparators for binary searches with the table's iterators over rows in time order. An index
// without a model counts as a row without a time.
bool isIndexEqualDateTime(const QModelIndex &index, const QDateTime &dateTime);
bool indexLessThanDateTime(const QModelIndex &index, const QDateTime &dateTime);
bool dateTimeLessThanIndex(const QDateTime &dateTime, const QModelIndex &index);
