// SPDX-License-Identifier: MIT
#include "simulator/livefeed.h"

#include "records/vasksettings.h"
#include "simulator/filetree.h"
#include "simulator/mixer.h"

#include <algorithm>

namespace
{

constexpr char openedByHand[] = "O000OO00";

QDateTime startOfYear(int year)
{
    return QDateTime(QDate(year, 1, 1), QTime(0, 0), Qt::UTC);
}

Access resident(int id, quint32 seed, const DeviceTexts &texts)
{
    Mixer mixer(seed, 0x52455349U + static_cast<quint32>(id));
    Access entry;
    entry.setId(static_cast<qint16>(id));
    texts.put(&entry, AccessLayout::number,
              texts.plate(LiveFeed::makeNumber(seed, static_cast<quint32>(id))));
    entry.setDateTimeFrom(startOfYear(2020));
    // One in ten has moved out.
    entry.setDateTimeTill(startOfYear(mixer.below(10) == 0 ? 2021 : 2037));
    texts.put(&entry, AccessLayout::accessKey, texts.key(mixer.below(100000000)));
    const quint32 family = mixer.below(DeviceTexts::families);
    texts.put(&entry, AccessLayout::comment, texts.resident(family, 1 + mixer.below(180)));
    return entry;
}

// A device names a photo by the number that it has read itself, in its own letters.
struct PhotoSubject {
    QString plate;
    QDateTime time;

    const QString &number() const { return plate; }
    const QDateTime &dateTime() const { return time; }
};

void setPhotoName(OnLine *record, const DeviceTexts &texts = DeviceTexts())
{
    const PhotoSubject subject{texts.text(*record, OnLineLayout::number).trimmed(),
                               record->dateTime()};
    texts.put(record, OnLineLayout::fileName,
              DevicePaths::photoFolder() + VaskSettings::picFileName(subject));
}

// As they stand in the access list.
void takeTexts(OnLine *record, const Access &entry)
{
    DeviceTexts::putBytes(record, OnLineLayout::comment,
                          DeviceTexts::fieldBytes(entry, AccessLayout::comment));
    DeviceTexts::putBytes(record, OnLineLayout::accessKey,
                          DeviceTexts::fieldBytes(entry, AccessLayout::accessKey));
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
        if (entry.isValid() && !numberOf(entry).isEmpty()) {
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

    const DeviceTexts &texts = config_.texts;
    const auto plate = [&](quint32 seed) { return texts.plate(makeNumber(seed, pick)); };
    OnLine result;
    if (opening < config_.manual + config_.card) {
        result = record(texts.plate(QLatin1String(openedByHand)), time);
        result.setAccessGranted(true);
        if (opening >= config_.manual && !accessList_.empty()) {
            const Access &entry = accessList_[pick % accessList_.size()];
            takeTexts(&result, entry);
        } else if (opening >= config_.manual) {
            texts.put(&result, OnLineLayout::accessKey, texts.key(0));
        }
    } else if (kind < config_.unreadable) {
        result = record(unreadable(plate(config_.seed), pick), time);
    } else if (kind < config_.unreadable + config_.unknown || accessList_.empty()) {
        result = record(plate(config_.seed ^ 0x55555555U), time);
    } else {
        result = record(numberOf(accessList_[pick % accessList_.size()]), time);
    }
    result.setIncoming(incoming);
    return result;
}

OnLine LiveFeed::record(const QString &number, const QDateTime &time)
{
    OnLine result;
    result.setType(1);
    result.setIncoming(true);
    config_.texts.put(&result, OnLineLayout::number, number.trimmed());
    result.setDateTime(time);
    setPhotoName(&result, config_.texts);
    const QByteArray bytes = DeviceTexts::fieldBytes(result, OnLineLayout::number);
    const auto entry =
        std::find_if(accessList_.begin(), accessList_.end(), [&](const Access &known) {
            return config_.texts.encoded(numberOf(known)) == bytes;
        });
    if (entry != accessList_.end()) {
        result.setInAccessList(true);
        result.setAccessGranted(entry->dateTimeFrom() <= time && time <= entry->dateTimeTill());
        takeTexts(&result, *entry);
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

QString LiveFeed::numberOf(const Access &entry) const
{
    return config_.texts.text(entry, AccessLayout::number).trimmed();
}

QByteArray LiveFeed::makeAccessList(int entries, quint32 seed, const DeviceTexts &texts)
{
    QByteArray result;
    result.reserve(entries * Access::size);
    for (int id = 0; id < entries; ++id) {
        result.append(resident(id, seed, texts).data(), Access::size);
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
    DeviceTexts::putBytes(&record, OnLineLayout::number, number);
    setPhotoName(&record);
    return record;
}

OnLine SampleRecords::withCommentBytes(OnLine record, const QByteArray &comment)
{
    DeviceTexts::putBytes(&record, OnLineLayout::comment, comment);
    return record;
}

OnLine SampleRecords::withKeyBytes(OnLine record, const QByteArray &key)
{
    DeviceTexts::putBytes(&record, OnLineLayout::accessKey, key);
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
