// SPDX-License-Identifier: MIT
#include "simulator/journal.h"

#include <QMutexLocker>

#include <algorithm>

namespace
{

bool isPlainText(const QByteArray &data)
{
    return std::all_of(data.begin(), data.end(), [](char c) { return c >= ' ' && c <= '~'; });
}

} // namespace

const char *JournalEntry::name(Kind kind)
{
    switch (kind) {
    case Kind::Started:
        return "started";
    case Kind::Stopped:
        return "stopped";
    case Kind::OnLineOpened:
        return "online-opened";
    case Kind::OnLineClosed:
        return "online-closed";
    case Kind::Received:
        return "received";
    case Kind::RecordSent:
        return "record-sent";
    case Kind::RawSent:
        return "raw-sent";
    case Kind::FileOpened:
        return "file-opened";
    case Kind::FileClosed:
        return "file-closed";
    case Kind::Request:
        return "request";
    case Kind::Answer:
        return "answer";
    case Kind::ContentSent:
        return "content-sent";
    case Kind::ContentReceived:
        return "content-received";
    case Kind::FaultUsed:
        return "fault";
    case Kind::Control:
        return "control";
    }
    return "unknown";
}

QByteArray JournalEntry::line() const
{
    QByteArray result =
        QByteArray::number(msec) + ' ' + name(kind) + " #" + QByteArray::number(connection);
    if (!peer.isEmpty()) {
        result += ' ' + peer.toLocal8Bit();
    }
    if (!text.isEmpty()) {
        result += ' ' + text.toLocal8Bit();
    }
    if (!data.isEmpty()) {
        result += isPlainText(data) ? " \"" + data + '"' : " 0x" + data.toHex();
    }
    return result.replace('\r', ' ').replace('\n', ' ') + '\n';
}

Journal::Journal()
{
    timer_.start();
}

Journal::~Journal() = default;

void Journal::setLimit(int entries)
{
    const QMutexLocker lock(&mutex_);
    limit_ = static_cast<std::size_t>(std::max(entries, 0));
}

bool Journal::openFile(const QString &path, QString *error)
{
    const QMutexLocker lock(&mutex_);
    file_.close();
    file_.setFileName(path);
    if (!file_.open(QIODevice::WriteOnly | QIODevice::Append)) {
        *error = path + QStringLiteral(": ") + file_.errorString();
        return false;
    }
    return true;
}

void Journal::add(JournalEntry::Kind kind, int connection, const QString &peer, const QString &text,
                  const QByteArray &data)
{
    const QMutexLocker lock(&mutex_);
    JournalEntry entry;
    entry.msec = timer_.elapsed();
    entry.kind = kind;
    entry.connection = connection;
    entry.peer = peer;
    entry.text = text;
    entry.data = data;
    if (file_.isOpen()) {
        file_.write(entry.line());
        file_.flush();
    }
    entries_.push_back(entry);
    while (limit_ > 0 && entries_.size() > limit_) {
        entries_.pop_front();
    }
}

QVector<JournalEntry> Journal::entries() const
{
    const QMutexLocker lock(&mutex_);
    return QVector<JournalEntry>(entries_.begin(), entries_.end());
}

QVector<JournalEntry> Journal::entries(JournalEntry::Kind kind) const
{
    const QMutexLocker lock(&mutex_);
    QVector<JournalEntry> result;
    std::copy_if(entries_.begin(), entries_.end(), std::back_inserter(result),
                 [kind](const JournalEntry &entry) { return entry.kind == kind; });
    return result;
}

int Journal::count(JournalEntry::Kind kind) const
{
    const QMutexLocker lock(&mutex_);
    return static_cast<int>(
        std::count_if(entries_.begin(), entries_.end(),
                      [kind](const JournalEntry &entry) { return entry.kind == kind; }));
}

int Journal::countRequests(const QString &path) const
{
    const QMutexLocker lock(&mutex_);
    return static_cast<int>(
        std::count_if(entries_.begin(), entries_.end(), [&path](const JournalEntry &entry) {
            return entry.kind == JournalEntry::Kind::Request &&
                   (path.isEmpty() || entry.text == path);
        }));
}

void Journal::clear()
{
    const QMutexLocker lock(&mutex_);
    entries_.clear();
}

qint64 Journal::elapsed() const
{
    return timer_.elapsed();
}
