// SPDX-License-Identifier: MIT
#include "records/recordfile.h"

RecordFile::RecordFile(const QString &name, int recordSize)
    : file_(name)
    , recordSize_(recordSize)
{
}

bool RecordFile::open(QIODevice::OpenMode mode)
{
    return file_.open(mode | QIODevice::Unbuffered);
}

QString RecordFile::fileName() const
{
    return file_.fileName();
}

QString RecordFile::errorString() const
{
    return file_.errorString();
}

int RecordFile::count() const
{
    return static_cast<int>(file_.size() / recordSize_);
}

bool RecordFile::read(int record, char *bytes)
{
    return readPart(record, 0, recordSize_, bytes);
}

bool RecordFile::readPart(int record, int offset, int size, char *bytes)
{
    return file_.seek(qint64(record) * recordSize_ + offset) && file_.read(bytes, size) == size;
}

bool RecordFile::write(int record, const char *bytes)
{
    return file_.seek(qint64(record) * recordSize_) &&
           file_.write(bytes, recordSize_) == recordSize_;
}

bool RecordFile::append(const char *bytes)
{
    const qint64 end = file_.size();
    const qint64 place = qint64(count()) * recordSize_;
    // A partial record is written over, which keeps the records aligned, and put back on failure.
    const QByteArray partial = file_.seek(place) ? file_.read(end - place) : QByteArray();
    if (write(count(), bytes) && resizeExactly(end + recordSize_)) {
        return true;
    }
    if (!partial.isEmpty() && file_.seek(place)) {
        file_.write(partial);
    }
    file_.resize(end);
    return false;
}

bool RecordFile::grow()
{
    const qint64 end = file_.size();
    if (resizeExactly(end + recordSize_)) {
        return true;
    }
    file_.resize(end);
    return false;
}

bool RecordFile::shrink()
{
    return resizeExactly(file_.size() - recordSize_);
}

bool RecordFile::removeRange(int first, int last)
{
    QByteArray scratch(recordSize_, '\0');
    int to = first;
    for (int from = last + 1; from < count(); ++from, ++to) {
        if (!read(from, scratch.data()) || !write(to, scratch.constData())) {
            return false;
        }
    }
    return resizeExactly(file_.size() - qint64(last - first + 1) * recordSize_);
}

bool RecordFile::resizeExactly(qint64 size)
{
    return file_.resize(size) && file_.size() == size;
}
