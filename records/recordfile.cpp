// SPDX-License-Identifier: MIT
#include "records/recordfile.h"

#include "records/filewrite.h"
#include "records/flush.h"
#include "records/regularfile.h"

#include <QFileInfo>
#include <QTemporaryFile>

#include <cstdio>
#include <fcntl.h>
#include <numeric>
#include <unistd.h>

namespace
{

constexpr qint64 copyStep = qint64{64} * 1024;
constexpr int recordsAtOnce = 512;

} // namespace

RecordFile::RecordFile(const QString &name, int recordSize)
    : name_(name)
    , file_(name)
    , recordSize_(recordSize)
{
}

bool RecordFile::open(QIODevice::OpenMode mode)
{
    refusal_ = RegularFile::open(file_, mode | QIODevice::Unbuffered);
    return refusal_.isEmpty();
}

QString RecordFile::fileName() const
{
    return name_;
}

QString RecordFile::errorString() const
{
    return refusal_.isEmpty() ? file_.errorString() : refusal_;
}

int RecordFile::count() const
{
    return static_cast<int>(file_.size() / recordSize_);
}

bool RecordFile::read(int record, char *bytes)
{
    return readPart(record, 0, recordSize_, bytes);
}

int RecordFile::readSeveral(int first, int records, char *bytes)
{
    const qint64 size = qint64(records) * recordSize_;
    if (!file_.seek(qint64(first) * recordSize_)) {
        return 0;
    }
    qint64 done = 0;
    while (done < size) {
        const qint64 now = file_.read(bytes + done, size - done);
        if (now <= 0) {
            break; // what came before can be read all the same
        }
        done += now;
    }
    return static_cast<int>(done / recordSize_);
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
    QVector<int> records(last - first + 1);
    std::iota(records.begin(), records.end(), first);
    return remove(records);
}

bool RecordFile::remove(const QVector<int> &records)
{
    if (records.isEmpty() || records.first() < 0 || records.last() >= count()) {
        return false;
    }
    const qint64 end = file_.size();
    if (records.first() == count() - records.size()) {
        return resizeExactly(end - qint64(records.size()) * recordSize_); // nothing moves up
    }
    const QString name = QFileInfo(fileName()).canonicalFilePath();
    QTemporaryFile beside(name + QStringLiteral(".XXXXXX"));
    if (name.isEmpty() || !beside.open()) {
        return false; // somebody has deleted the file, or the folder takes none
    }
    const qint64 partial = qint64(count()) * recordSize_;
    return copyOthers(records, beside) && copyRange(partial, end, beside) && beside.flush() &&
           putInPlace(beside, name);
}

bool RecordFile::copyOthers(const QVector<int> &records, QFile &destination)
{
    // Piece by piece, also where what stays are single records.
    const int all = count();
    auto next = records.cbegin();
    for (int first = 0; first < all; first += recordsAtOnce) {
        const int size = qMin(recordsAtOnce, all - first) * recordSize_;
        if (!file_.seek(qint64(first) * recordSize_)) {
            return false;
        }
        const QByteArray piece = file_.read(size);
        if (piece.size() != size) {
            return false;
        }
        QByteArray stays;
        for (int at = 0; at < size; at += recordSize_) {
            if (next != records.cend() && *next == first + at / recordSize_) {
                ++next;
            } else {
                stays.append(piece.constData() + at, recordSize_);
            }
        }
        if (!FileWrite::all(destination, stays)) {
            return false;
        }
    }
    return true;
}

bool RecordFile::copyRange(qint64 from, qint64 to, QFile &destination)
{
    if (!file_.seek(from)) {
        return false;
    }
    for (qint64 rest = to - from; rest > 0;) {
        const QByteArray piece = file_.read(qMin(rest, copyStep));
        if (piece.isEmpty() || !FileWrite::all(destination, piece)) {
            return false;
        }
        rest -= piece.size();
    }
    return true;
}

bool RecordFile::putInPlace(QFile &beside, const QString &name)
{
    const QByteArray from = QFile::encodeName(beside.fileName());
    beside.setPermissions(file_.permissions()); // where the file system has any
    if (!Flush::file(beside.handle()).isEmpty() ||
        std::rename(from.constData(), QFile::encodeName(name).constData()) != 0) {
        return false;
    }
    // The handle is turned to the new file rather than opened anew, which could fail.
    ::dup3(beside.handle(), file_.handle(), O_CLOEXEC);
    Flush::folderOf(name); // what fails here can at worst bring the removed records back
    return true;
}

bool RecordFile::resizeExactly(qint64 size)
{
    return file_.resize(size) && file_.size() == size;
}
