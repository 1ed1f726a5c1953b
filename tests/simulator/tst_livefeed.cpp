// SPDX-License-Identifier: MIT
#include "records/scan.h"
#include "records/vasksettings.h"
#include "simulator/filetree.h"
#include "simulator/livefeed.h"
#include "tests/support/testmain.h"

#include <QSet>

#include <algorithm>
#include <cmath>

class LiveFeedTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void repeatsItselfForTheSameSeed();
    void keepsItsShares_data();
    void keepsItsShares();
    void judgesByTheAccessList();
    void namesPhotosAsTheArchiveDoes();
    void makesLatePhotos();
    void makesAccessLists_data();
    void makesAccessLists();
    void makesPlatesByTheRules();
    void hasRecordsThatAreHardToBear();
};

namespace
{

const QDateTime now(QDate(2024, 3, 5), QTime(12, 0), Qt::UTC);
constexpr int many = 2000;

bool isOpening(const OnLine &record)
{
    return record.number() == QLatin1String("O000OO00");
}
bool isCard(const OnLine &record)
{
    return isOpening(record) && !record.accessKey().isEmpty();
}
bool isManual(const OnLine &record)
{
    return isOpening(record) && record.accessKey().isEmpty();
}
bool isUnreadable(const OnLine &record)
{
    return record.number().contains(QLatin1Char('?'));
}
bool isUnknown(const OnLine &record)
{
    return !isOpening(record) && !isUnreadable(record) && !record.isInAccessList();
}

QVector<OnLine> recordsOf(LiveFeed *feed, int count)
{
    QVector<OnLine> records;
    for (int place = 0; place < count; ++place) {
        records.append(feed->next(now.addSecs(place)));
    }
    return records;
}

} // namespace

void LiveFeedTest::repeatsItselfForTheSameSeed()
{
    FeedConfig config;
    config.unreadable = 0.2;
    config.card = 0.1;
    LiveFeed one(config);
    LiveFeed same(config);
    config.seed = 2;
    LiveFeed other(config);
    bool differs = false;
    for (int place = 0; place < 200; ++place) {
        const OnLine record = one.next(now);
        QCOMPARE(SampleRecords::bytes(same.next(now)), SampleRecords::bytes(record));
        differs = differs || other.next(now).number() != record.number();
    }
    QVERIFY(differs);
}

void LiveFeedTest::keepsItsShares_data()
{
    QTest::addColumn<double>("unreadable");
    QTest::addColumn<double>("unknown");
    QTest::addColumn<double>("manual");
    QTest::addColumn<double>("card");
    QTest::newRow("none") << 0.0 << 0.0 << 0.0 << 0.0;
    QTest::newRow("all unreadable") << 1.0 << 0.0 << 0.0 << 0.0;
    QTest::newRow("all unknown") << 0.0 << 1.0 << 0.0 << 0.0;
    QTest::newRow("all manual") << 0.0 << 0.25 << 1.0 << 0.0;
    QTest::newRow("all card") << 0.0 << 0.25 << 0.0 << 1.0;
    QTest::newRow("some of each") << 0.2 << 0.3 << 0.1 << 0.2;
}

void LiveFeedTest::keepsItsShares()
{
    QFETCH(double, unreadable);
    QFETCH(double, unknown);
    QFETCH(double, manual);
    QFETCH(double, card);
    FeedConfig config;
    config.unreadable = unreadable;
    config.unknown = unknown;
    config.manual = manual;
    config.card = card;
    LiveFeed feed(config);
    feed.setAccessList(LiveFeed::makeAccessList(40, 1));
    const QVector<OnLine> records = recordsOf(&feed, many);
    const double rest = 1 - manual - card;
    const auto compare = [&records](bool (*is)(const OnLine &), double share) {
        const auto found = std::count_if(records.begin(), records.end(), is);
        // Three times the spread of a count; none and all are exact.
        const double spread = 3 * std::sqrt(many * share * (1 - share));
        return std::abs(static_cast<double>(found) - many * share) <= spread + 1e-6;
    };
    QVERIFY(compare(isManual, manual));
    QVERIFY(compare(isCard, card));
    QVERIFY(compare(isUnreadable, rest * unreadable));
    QVERIFY(compare(isUnknown, rest * unknown));
}

void LiveFeedTest::judgesByTheAccessList()
{
    Access good;
    good.setId(0);
    good.setNumber(QStringLiteral("A123BC77"));
    good.setComment(QStringLiteral("comment"));
    good.setAccessKey(QStringLiteral("key"));
    Access expired = good;
    expired.setId(1);
    expired.setNumber(QStringLiteral("B123BC77"));
    expired.setDateTimeTill(now.addDays(-1));
    LiveFeed feed((FeedConfig()));
    feed.setAccessList(QByteArray(good.data(), 116) + QByteArray(expired.data(), 116) + "rest");

    const OnLine known = feed.record(QStringLiteral("A123BC77"), now);
    QVERIFY(known.isInAccessList());
    QVERIFY(known.isAccessGranted());
    QCOMPARE(known.comment(), QStringLiteral("comment"));
    QCOMPARE(known.accessKey(), QStringLiteral("key"));
    const OnLine late = feed.record(QStringLiteral("B123BC77"), now);
    QVERIFY(late.isInAccessList());
    QVERIFY(!late.isAccessGranted());
    const OnLine unknown = feed.record(QStringLiteral("C123BC77"), now);
    QVERIFY(!unknown.isInAccessList());
    QVERIFY(!unknown.isAccessGranted());
    QVERIFY(unknown.comment().isEmpty());
}

void LiveFeedTest::namesPhotosAsTheArchiveDoes()
{
    LiveFeed feed((FeedConfig()));
    const OnLine record = feed.record(QStringLiteral("A?23BC177"), now);
    QCOMPARE(record.fileName(),
             QStringLiteral("/mnt/usb/jpegdata/2024-03-05_12-00-00_A-23BC177.jpeg"));
    QCOMPARE(record.fileName(),
             DevicePaths::photoFolder() + VaskSettings::picFileName(Scan(record)));
}

void LiveFeedTest::makesLatePhotos()
{
    FeedConfig config;
    LiveFeed prompt(config);
    config.latePhotos = 1;
    LiveFeed late(config);
    for (int place = 0; place < 50; ++place) {
        prompt.next(now);
        late.next(now);
        QVERIFY(!prompt.isPhotoLate());
        QVERIFY(late.isPhotoLate());
    }
}

void LiveFeedTest::makesAccessLists_data()
{
    QTest::addColumn<int>("entries");
    for (const int entries : {0, 1, 999, 1000}) {
        QTest::addRow("%d", entries) << entries;
    }
}

void LiveFeedTest::makesAccessLists()
{
    QFETCH(int, entries);
    const QByteArray list = LiveFeed::makeAccessList(entries, 1);
    QCOMPARE(list.size(), entries * 116);
    for (int id = 0; id < entries; ++id) {
        Access entry;
        std::memcpy(entry.data(), list.constData() + id * 116, 116);
        QCOMPARE(int(entry.id()), id);
        QVERIFY(VaskSettings::numPattern.exactMatch(entry.number()));
        QVERIFY(!entry.accessKey().isEmpty());
        QVERIFY(!entry.comment().isEmpty());
    }
}

void LiveFeedTest::makesPlatesByTheRules()
{
    QSet<QString> seen;
    for (quint32 place = 0; place < 500; ++place) {
        const QString number = LiveFeed::makeNumber(1, place);
        QVERIFY2(VaskSettings::numPattern.exactMatch(number), qPrintable(number));
        seen.insert(number);
    }
    QVERIFY(seen.size() > 490);
}

void LiveFeedTest::hasRecordsThatAreHardToBear()
{
    QCOMPARE(SampleRecords::fullNumber(now).number(), QStringLiteral("A123BC178"));
    const OnLine full = SampleRecords::fullTexts(QStringLiteral("A123BC77"), now);
    QCOMPARE(full.comment(), QString(63, QLatin1Char('c')));
    QCOMPARE(full.accessKey(), QString(31, QLatin1Char('k')));
    QCOMPARE(SampleRecords::bytes(full).mid(94, 96), QByteArray(64, 'c') + QByteArray(32, 'k'));
    QVERIFY(!SampleRecords::withoutTime(QStringLiteral("A123BC77")).isValid());
    const QVector<OnLine> all = SampleRecords::all(now);
    bool backwards = false;
    bool twice = false;
    for (int place = 1; place < all.size(); ++place) {
        const QDateTime before = all.at(place - 1).dateTime();
        if (!before.isValid() || !all.at(place).isValid()) {
            continue;
        }
        backwards = backwards || all.at(place).dateTime() < before.addSecs(-60);
        twice = twice || all.at(place).dateTime() == before;
    }
    QVERIFY(backwards);
    QVERIFY(twice);
}

STALLO_TEST_MAIN(LiveFeedTest)
#include "tst_livefeed.moc"
