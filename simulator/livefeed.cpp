// SPDX-License-Identifier: MIT
#include "simulator/livefeed.h"

#include "records/vasksettings.h"
#include "simulator/filetree.h"
#include "simulator/mixer.h"

#include <algorithm>

namespace
{

constexpr char openedByHand[] = "O000OO00";

const char *const families[] = {"Abel",   "Brandt", "Corso",   "Dietz",  "Ekman", "Ferrer",
                                "Gruber", "Halas",  "Ivanova", "Jensen", "Kovac", "Lindqvist",
                                "Moreau", "Novak",  "Orlova",  "Petrov", "Quint", "Rossi"};

QDateTime startOfYear(int year)
{
    return QDateTime(QDate(year, 1, 1), QTime(0, 0), Qt::UTC);
}

Access resident(int id, quint32 seed)
{
    Mixer mixer(seed, 0x52455349U + static_cast<quint32>(id));
    Access entry;
    entry.setId(static_cast<qint16>(id));
    entry.setNumber(LiveFeed::makeNumber(seed, static_cast<quint32>(id)));
    entry.setDateTimeFrom(startOfYear(2020));
    // One in ten has moved out.
    entry.setDateTimeTill(startOfYear(mixer.below(10) == 0 ? 2021 : 2037));
    entry.setAccessKey(QStringLiteral("%1").arg(mixer.below(100000000), 8, 10, QLatin1Char('0')));
    entry.setComment(QStringLiteral("%1, flat %2")
                         .arg(QLatin1String(families[mixer.below(std::size(families))]))
                         .arg(1 + mixer.below(180)));
    return entry;
}

void setPhotoName(OnLine *record)
{
    record->setFileName(DevicePaths::photoFolder() + VaskSettings::picFileName(*record));
}

void putBytes(OnLine *record, const RecordField &field, const QByteArray &bytes)
{
    const QByteArray cut = bytes.left(static_cast<int>(field.size));
    std::memset(record->data() + field.offset, 0, field.size);
    std::memcpy(record->data() + field.offset, cut.constData(),
                static_cast<std::size_t>(cut.size()));
}

} // namespace

LiveFeed::LiveFeed(const FeedConfig &config)
    : config_(config)
    , mixer_(config.seed, 0x46454544U)
{
}

void LiveFeed::setAccessList(const QByteArray &list)
{
    accessList_.clear();
    for (int place = 0; place + Access::size <= list.size(); place += Access::size) {
        Access entry;
        std::memcpy(entry.data(), list.constData() + place, Access::size);
        if (entry.isValid() && !entry.number().isEmpty()) {
            accessList_.push_back(entry);
        }
    }
}

OnLine LiveFeed::next(const QDateTime &time)
{
    // Each record takes the same number of draws, so that changing a share does not change the
    // rest.
    const double opening = mixer_.share();
    const double kind = mixer_.share();
    const quint32 pick = mixer_.next();
    const bool incoming = mixer_.below(2) == 0;
    photoLate_ = mixer_.share() < config_.latePhotos;

    OnLine result;
    if (opening < config_.manual + config_.card) {
        result = record(QLatin1String(openedByHand), time);
        result.setAccessGranted(true);
        if (opening >= config_.manual && !accessList_.empty()) {
            const Access &entry = accessList_[pick % accessList_.size()];
            result.setAccessKey(entry.accessKey());
            result.setComment(entry.comment());
        } else if (opening >= config_.manual) {
            result.setAccessKey(QStringLiteral("00000000"));
        }
    } else if (kind < config_.unreadable) {
        result = record(unreadable(LiveFeed::makeNumber(config_.seed, pick), pick), time);
    } else if (kind < config_.unreadable + config_.unknown || accessList_.empty()) {
        result = record(LiveFeed::makeNumber(config_.seed ^ 0x55555555U, pick), time);
    } else {
        result = record(accessList_[pick % accessList_.size()].number(), time);
    }
    result.setIncoming(incoming);
    return result;
}

OnLine LiveFeed::record(const QString &number, const QDateTime &time)
{
    OnLine result;
    result.setType(1);
    result.setIncoming(true);
    result.setNumber(number);
    result.setDateTime(time);
    setPhotoName(&result);
    const auto entry =
        std::find_if(accessList_.begin(), accessList_.end(),
                     [&result](const Access &known) { return known.number() == result.number(); });
    if (entry != accessList_.end()) {
        result.setInAccessList(true);
        result.setAccessGranted(entry->dateTimeFrom() <= time && time <= entry->dateTimeTill());
        result.setComment(entry->comment());
        result.setAccessKey(entry->accessKey());
    }
    return result;
}

QString LiveFeed::unreadable(QString number, quint32 pick)
{
    for (quint32 mark = 0; mark < 1 + pick % 3; ++mark) {
        const int place =
            static_cast<int>((pick >> (8 * mark)) % static_cast<quint32>(number.size()));
        number[place] = QLatin1Char('?');
    }
    return number;
}

QByteArray LiveFeed::makeAccessList(int entries, quint32 seed)
{
    QByteArray result;
    result.reserve(entries * Access::size);
    for (int id = 0; id < entries; ++id) {
        result.append(resident(id, seed).data(), Access::size);
    }
    return result;
}

QString LiveFeed::makeNumber(quint32 seed, quint32 place)
{
    // Only letters that look the same in the Latin and the cyrillic alphabet are on plates.
    static const char letters[] = "ABEKMHOPCTYX";
    static const char *const regions[] = {"47", "77", "78", "98", "178", "199"};
    Mixer mixer(seed, place);
    const auto letter = [&mixer] { return QLatin1Char(letters[mixer.below(12)]); };
    QString result(letter());
    result += QStringLiteral("%1").arg(1 + mixer.below(999), 3, 10, QLatin1Char('0'));
    result += letter();
    result += letter();
    return result + QLatin1String(regions[mixer.below(std::size(regions))]);
}

OnLine SampleRecords::plain(const QString &number, const QDateTime &time)
{
    OnLine record;
    record.setType(1);
    record.setIncoming(true);
    record.setNumber(number);
    record.setDateTime(time);
    record.setInAccessList(true);
    record.setAccessGranted(true);
    record.setComment(QStringLiteral("Novak, flat 12"));
    record.setAccessKey(QStringLiteral("00012345"));
    setPhotoName(&record);
    return record;
}

OnLine SampleRecords::withNumberBytes(const QByteArray &number, const QDateTime &time)
{
    OnLine record = plain(QString(), time);
    putBytes(&record, OnLineLayout::number, number);
    setPhotoName(&record);
    return record;
}

OnLine SampleRecords::withCommentBytes(OnLine record, const QByteArray &comment)
{
    putBytes(&record, OnLineLayout::comment, comment);
    return record;
}

OnLine SampleRecords::withKeyBytes(OnLine record, const QByteArray &key)
{
    putBytes(&record, OnLineLayout::accessKey, key);
    return record;
}

OnLine SampleRecords::fullNumber(const QDateTime &time)
{
    return withNumberBytes("A123BC1789", time);
}

OnLine SampleRecords::fullTexts(const QString &number, const QDateTime &time)
{
    return withKeyBytes(withCommentBytes(plain(number, time), QByteArray(64, 'c')),
                        QByteArray(32, 'k'));
}

OnLine SampleRecords::withoutTime(const QString &number)
{
    return plain(number, QDateTime());
}

OnLine SampleRecords::localLetters(const QDateTime &time)
{
    return plain(QString::fromUtf8("\xd0\x90"
                                   "123"
                                   "\xd0\x92\xd0\xa1"
                                   "77"),
                 time);
}

QVector<OnLine> SampleRecords::all(const QDateTime &time)
{
    const OnLine records[] = {plain(QStringLiteral("A?23B?77"), time),
                              plain(QStringLiteral("A12*BC77"), time.addSecs(1)),
                              plain(QStringLiteral("A1/3BC77"), time.addSecs(2)),
                              withNumberBytes("  A12 BC ", time.addSecs(3)),
                              withNumberBytes("         ", time.addSecs(4)),
                              fullNumber(time.addSecs(5)),
                              fullTexts(QStringLiteral("B456CE78"), time.addSecs(6)),
                              localLetters(time.addSecs(7)),
                              withoutTime(QStringLiteral("C789EH98")),
                              plain(QStringLiteral("E001KX178"), time.addSecs(8)),
                              plain(QStringLiteral("H002MY199"), time.addSecs(8)),
                              plain(QStringLiteral("K003OT47"), time.addSecs(-3600))};
    QVector<OnLine> result;
    for (const OnLine &record : records) {
        result.append(record);
    }
    return result;
}

QByteArray SampleRecords::bytes(const OnLine &record)
{
    return QByteArray(record.data(), OnLine::size);
}
