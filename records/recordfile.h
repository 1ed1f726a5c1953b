// SPDX-License-Identifier: MIT
#pragma once

#include <QFile>

// A headerless file of records of one fixed size: record n lies at n x size. A partial record at
// the end is not counted; the next append writes over it. Unbuffered, so that what is written is in
// the file at once and other handles on the same file see it.
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
    // Records first to last, both included; those behind move up. A failure half-way leaves the
    // file partly moved.
    bool removeRange(int first, int last);

private:
    bool resizeExactly(qint64 size);

    QFile file_;
    int recordSize_;
};
