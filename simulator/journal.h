// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QElapsedTimer>
#include <QFile>
#include <QMutex>
#include <QString>
#include <QVector>

#include <deque>

// One line of a device's journal.
struct JournalEntry {
    enum class Kind {
        Started,         // text: address and ports
        Stopped,         //
        OnLineOpened,    // a connection to the on-line port
        OnLineClosed,    // text: who closed it, or the error
        Received,        // data: bytes that came on an on-line connection
        RecordSent,      // data: the 192 bytes
        RawSent,         // data: bytes that are no whole record
        FileOpened,      // a connection to the file port
        FileClosed,      // text: as above
        Request,         // text: the remote path; data: the request line without CR LF
        Answer,          // data: the answer line without CR LF
        ContentSent,     // text: "SENT of SIZE bytes"
        ContentReceived, // text: "RECEIVED of SIZE bytes"
        FaultUsed,       // text: what goes wrong now
        Control          // text: what was changed at run time
    };

    qint64 msec = 0; // since the journal was made
    Kind kind = Kind::Started;
    int connection = 0; // number of the connection, 0 for none; never used twice
    QString peer;       // address:port of the other side
    QString text;
    QByteArray data;

    // The name of the kind as written to a journal file, such as "request".
    static const char *name(Kind kind);
    // One line, data in hexadecimal when it is not plain text.
    QByteArray line() const;
};

// What happened to a device, with times: every connection, every request, every byte of a command.
// Keeps the newest entries up to a limit, and writes all of them to a file if there is one.
//
// Every function may be called from any thread.
class Journal
{
public:
    Journal();
    ~Journal();
    Journal(const Journal &) = delete;
    Journal &operator=(const Journal &) = delete;

    // At most this many entries are kept; 0 for no limit, which is how it begins.
    void setLimit(int entries);
    // Appends every further entry to the file as a line. False with the reason when it cannot.
    bool openFile(const QString &path, QString *error);

    void add(JournalEntry::Kind kind, int connection, const QString &peer, const QString &text,
             const QByteArray &data = QByteArray());

    QVector<JournalEntry> entries() const;
    QVector<JournalEntry> entries(JournalEntry::Kind kind) const;
    // Kept entries of a kind.
    int count(JournalEntry::Kind kind) const;
    // Kept requests for a remote path, or for any when it is empty.
    int countRequests(const QString &path = QString()) const;
    // Empties the list; the times go on.
    void clear();
    qint64 elapsed() const;

private:
    mutable QMutex mutex_;
    QElapsedTimer timer_;
    std::deque<JournalEntry> entries_;
    std::size_t limit_ = 0;
    QFile file_;
};
