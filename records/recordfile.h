// SPDX-License-Identifier: MIT
#pragma once

#include <QFile>
#include <QVector>

// A headerless file of records of one fixed size: record n lies at n x size. A partial record at
// the end is not counted; the next append writes over it. Unbuffered, so that what is written is in
// the file at once and other handles on the same file see it. Only a regular file is opened.
//
// Used by one thread at a time; every worker and every model has a handle of its own. Nothing is
// reported but success: a short read or write is a failure, and the caller decides what it means.
class RecordFile
{
public:
    RecordFile(const QString &name, int recordSize);

    bool open(QIODevice::OpenMode mode = QIODevice::ReadWrite);
    QString fileName() const;
    QString errorString() const;

    int count() const;
    bool read(int record, char *bytes);
    // As many of so many records as can be read, from the first on; how many those are.
    int readSeveral(int first, int records, char *bytes);
    // Only these bytes of the record.
    bool readPart(int record, int offset, int size, char *bytes);
    bool write(int record, const char *bytes);

    // As the record behind the last whole one, or not at all: what a failed write left is cut off
    // again. The file grows by exactly one record.
    bool append(const char *bytes);
    // The same with zeros.
    bool grow();
    // Takes back the bytes of one record at the end.
    bool shrink();
    // Records first to last, both included; those behind move up. The same for single records, in
    // rising order. All of them are gone or none: what stays is written beside, flushed, and put in
    // the file's place in one step, after which this handle is one of the new file. Other handles
    // keep the old one.
    bool removeRange(int first, int last);
    bool remove(const QVector<int> &records);

private:
    bool resizeExactly(qint64 size);
    bool copyOthers(const QVector<int> &records, QFile &destination);
    bool copyRange(qint64 from, qint64 to, QFile &destination);
    bool putInPlace(QFile &beside, const QString &name);

    QString name_;
    QFile file_;
    QString refusal_; // why it was not opened
    int recordSize_;
};
