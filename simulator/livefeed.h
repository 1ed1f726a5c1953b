// SPDX-License-Identifier: MIT
#pragma once

#include "records/access.h"
#include "records/online.h"
#include "simulator/devicetexts.h"
#include "simulator/mixer.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QVector>

#include <vector>

// What passes before a simulated device. Shares are 0 to 1 of all records; manual and card openings
// are taken off first, and what remains is divided into unreadable, unknown and known numbers.
struct FeedConfig {
    double rate = 0;       // records per second, 0 for none by itself
    int count = -1;        // stops by itself after so many, -1 never
    double unreadable = 0; // numbers with one to three "?"
    double unknown = 0.25; // numbers that are not in the access list
    double manual = 0;     // "O000OO00" without a key: the operator pressed the button
    double card = 0;       // "O000OO00" with a key: somebody held a card
    double latePhotos = 0; // records whose photo comes later
    int lateMsec = 5000;   // by how much
    quint32 seed = 1;
    DeviceTexts texts;
};

// The records that a simulated device sends, one after the other. The same configuration, access
// list and times give the same records in every run and on every machine. Not thread-safe: lives
// where its device lives.
class LiveFeed
{
public:
    explicit LiveFeed(const FeedConfig &config);

    const FeedConfig &config() const { return config_; }

    // The entries that known numbers and their verdicts are taken from. An incomplete entry at the
    // end is ignored; with an empty list every number is unknown.
    void setAccessList(const QByteArray &list);

    // The next record, passing at this time.
    OnLine next(const QDateTime &time);
    // A record of this number as it is given, with the verdict that the access list gives it.
    OnLine record(const QString &number, const QDateTime &time);
    // Whether the photo of the record made last comes late.
    bool isPhotoLate() const { return photoLate_; }

    // A list of so many entries with ids from 0: the residents of a simulated device.
    static QByteArray makeAccessList(int entries, quint32 seed,
                                     const DeviceTexts &texts = DeviceTexts());
    // A complete Latin number; the same for the same seed and place.
    static QString makeNumber(quint32 seed, quint32 place);

private:
    QString numberOf(const Access &entry) const;
    static QString unreadable(QString number, quint32 pick);

    FeedConfig config_;
    Mixer mixer_;
    std::vector<Access> accessList_;
    bool photoLate_ = false;
};

// Records with contents that a panel must be able to bear. All but the raw ones have a picture name
// as a device gives it.
namespace SampleRecords
{
// A plain passage: incoming, known, granted, with comment and key.
OnLine plain(const QString &number, const QDateTime &time);
// Field bytes as they stand, for what the setters would not let through; cut to the field.
OnLine withNumberBytes(const QByteArray &number, const QDateTime &time);
OnLine withCommentBytes(OnLine record, const QByteArray &comment);
OnLine withKeyBytes(OnLine record, const QByteArray &key);
// Ten bytes of number without a zero.
OnLine fullNumber(const QDateTime &time);
// 64 bytes of comment and 32 of key without a zero.
OnLine fullTexts(const QString &number, const QDateTime &time);
OnLine withoutTime(const QString &number);
// Cyrillic letters in the encoding of the locale, cut to what fits.
OnLine localLetters(const QDateTime &time);
// Every awkward record once: "?", "*", "/", blanks, full fields, local letters, no time, the same
// second twice, and a time before the one in front of it.
QVector<OnLine> all(const QDateTime &time);
// The bytes as they go over the wire.
QByteArray bytes(const OnLine &record);
} // namespace SampleRecords
