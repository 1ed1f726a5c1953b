// SPDX-License-Identifier: MIT
#include "records/localtime.h"

#include "tests/support/testmain.h"
#include "tests/support/zone.h"

class TestLocalTime : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { before_ = qgetenv("TZ"); }
    void cleanup() { Zone::set(before_); }

    void names_data();
    void names();
    void staysInItsHour_data();
    void staysInItsHour();
    void showsWhatItReads_data();
    void showsWhatItReads();
    void keepsPartsOfSeconds();
    void namesNothingWithoutDate();

private:
    QByteArray before_;
};

void TestLocalTime::names_data()
{
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("meant"); // in UTC
    const auto row = [](const char *zone, const char *typed, const char *meant) {
        QTest::addRow("%s, %s", zone, typed)
            << QByteArray(zone) << QString::fromLatin1(typed) << QString::fromLatin1(meant);
    };
    row("UTC", "2026-03-29 02:30:00", "2026-03-29 02:30:00");
    row("UTC", "1970-01-01 00:00:00", "1970-01-01 00:00:00");
    row("Asia/Kolkata", "2026-03-29 02:30:00", "2026-03-28 21:00:00");
    row("Asia/Kolkata", "2038-01-19 08:44:07", "2038-01-19 03:14:07");
    row("Europe/Berlin", "2026-01-15 12:00:00", "2026-01-15 11:00:00");
    row("Europe/Berlin", "2026-07-15 12:00:00", "2026-07-15 10:00:00");
    // Put forward at two.
    row("Europe/Berlin", "2026-03-29 01:59:59", "2026-03-29 00:59:59");
    row("Europe/Berlin", "2026-03-29 02:00:00", "2026-03-29 01:00:00");
    row("Europe/Berlin", "2026-03-29 02:30:00", "2026-03-29 01:00:00");
    row("Europe/Berlin", "2026-03-29 02:59:59", "2026-03-29 01:00:00");
    row("Europe/Berlin", "2026-03-29 03:00:00", "2026-03-29 01:00:00");
    row("Europe/Berlin", "2026-03-29 03:00:01", "2026-03-29 01:00:01");
    // Put back at three.
    row("Europe/Berlin", "2026-10-25 01:59:59", "2026-10-24 23:59:59");
    row("Europe/Berlin", "2026-10-25 02:00:00", "2026-10-25 00:00:00");
    row("Europe/Berlin", "2026-10-25 02:30:00", "2026-10-25 00:30:00");
    row("Europe/Berlin", "2026-10-25 02:59:59", "2026-10-25 00:59:59");
    row("Europe/Berlin", "2026-10-25 03:00:00", "2026-10-25 02:00:00");
    // Put forward at midnight, put back to the day before.
    row("Africa/Cairo", "2026-04-23 23:59:59", "2026-04-23 21:59:59");
    row("Africa/Cairo", "2026-04-24 00:00:00", "2026-04-23 22:00:00");
    row("Africa/Cairo", "2026-04-24 00:30:00", "2026-04-23 22:00:00");
    row("Africa/Cairo", "2026-04-24 01:00:00", "2026-04-23 22:00:00");
    row("Africa/Cairo", "2026-10-29 23:30:00", "2026-10-29 20:30:00");
    row("Africa/Cairo", "2026-10-30 00:00:00", "2026-10-29 22:00:00");
    // By half an hour; a whole day.
    row("Australia/Lord_Howe", "2026-10-04 02:15:00", "2026-10-03 15:30:00");
    row("Pacific/Apia", "2011-12-30 12:00:00", "2011-12-30 10:00:00");
}

void TestLocalTime::names()
{
    QFETCH(QByteArray, zone);
    QFETCH(QString, typed);
    QFETCH(QString, meant);
    Zone::set(zone);
    const QDateTime clock = Zone::utc(typed);
    const QDateTime moment = LocalTime::moment(clock.date(), clock.time());
    QCOMPARE(moment.toUTC(), Zone::utc(meant));
    QCOMPARE(moment.timeSpec(), Qt::LocalTime);
}

void TestLocalTime::staysInItsHour_data()
{
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<QString>("before"); // in UTC
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("meant"); // in UTC
    const auto row = [](const char *zone, const char *before, const char *typed,
                        const char *meant) {
        QTest::addRow("%s, %s, %s", zone, before, typed)
            << QByteArray(zone) << QString::fromLatin1(before) << QString::fromLatin1(typed)
            << QString::fromLatin1(meant);
    };
    const char *berlin = "Europe/Berlin";
    row(berlin, "2026-10-25 00:30:00", "2026-10-25 02:30:00", "2026-10-25 00:30:00");
    row(berlin, "2026-10-25 01:30:00", "2026-10-25 02:30:00", "2026-10-25 01:30:00");
    row(berlin, "2026-10-25 00:30:00", "2026-10-25 02:45:00", "2026-10-25 00:45:00");
    row(berlin, "2026-10-25 01:30:00", "2026-10-25 02:45:00", "2026-10-25 01:45:00");
    row(berlin, "2026-10-25 01:30:00", "2026-10-25 03:30:00", "2026-10-25 02:30:00");
    row(berlin, "2026-10-25 01:30:00", "2026-10-25 01:30:00", "2026-10-24 23:30:00");
    row(berlin, "2026-10-25 02:10:00", "2026-10-25 02:30:00", "2026-10-25 00:30:00");
    row(berlin, "2026-01-15 11:00:00", "2026-10-25 02:30:00", "2026-10-25 00:30:00");
    row(berlin, "2026-10-25 01:30:00", "2026-03-29 02:30:00", "2026-03-29 01:00:00");
    row("Africa/Cairo", "2026-10-29 21:30:00", "2026-10-29 23:30:00", "2026-10-29 21:30:00");
    row("Africa/Cairo", "2026-10-29 21:30:00", "2026-10-29 23:45:00", "2026-10-29 21:45:00");
    row("Africa/Cairo", "2026-10-29 21:30:00", "2026-10-28 23:30:00", "2026-10-28 20:30:00");
    row("UTC", "2026-10-25 00:30:00", "2026-10-25 02:45:00", "2026-10-25 02:45:00");
}

void TestLocalTime::staysInItsHour()
{
    QFETCH(QByteArray, zone);
    QFETCH(QString, before);
    QFETCH(QString, typed);
    QFETCH(QString, meant);
    Zone::set(zone);
    const QDateTime clock = Zone::utc(typed);
    const QDateTime moment =
        LocalTime::moment(clock.date(), clock.time(), Zone::utc(before).toLocalTime());
    QCOMPARE(moment.toUTC(), Zone::utc(meant));
}

void TestLocalTime::showsWhatItReads_data()
{
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<int>("year");
    for (const char *zone : {"UTC", "Asia/Kolkata", "Europe/Berlin", "Africa/Cairo"}) {
        for (const int year : {1970, 2026, 2037, 2038, 2044, 2106}) {
            QTest::addRow("%s, %d", zone, year) << QByteArray(zone) << year;
        }
    }
}

// Every half hour of the year, and of the days on which it meets the others.
void TestLocalTime::showsWhatItReads()
{
    QFETCH(QByteArray, zone);
    QFETCH(int, year);
    Zone::set(zone);
    const qint64 first = QDateTime(QDate(year, 1, 1), QTime(), Qt::UTC).toSecsSinceEpoch();
    const qint64 last = qMin(first + qint64{366} * 86400, qint64{0xFFFFFFFF});
    for (qint64 second = first; second <= last; second += 1800) {
        const QDateTime shown = QDateTime::fromSecsSinceEpoch(second);
        const QDateTime read = LocalTime::moment(shown.date(), shown.time());
        QCOMPARE(read.date(), shown.date());
        QCOMPARE(read.time(), shown.time());
        QVERIFY(read <= shown); // the first of two
        QCOMPARE(LocalTime::moment(shown.date(), shown.time(), shown).toSecsSinceEpoch(), second);
    }
}

void TestLocalTime::keepsPartsOfSeconds()
{
    Zone::set("Europe/Berlin");
    const QDate day(2026, 3, 29);
    QCOMPARE(LocalTime::moment(day, QTime(12, 0, 0, 250)).time(), QTime(12, 0, 0, 250));
    QCOMPARE(LocalTime::moment(day, QTime(2, 0, 0, 250)).time(), QTime(3, 0));
}

void TestLocalTime::namesNothingWithoutDate()
{
    QVERIFY(!LocalTime::moment(QDate(), QTime(12, 0)).isValid());
}

STALLO_TEST_MAIN(TestLocalTime)
#include "tst_localtime.moc"
