// SPDX-License-Identifier: MIT
#include "records/vasksettings.h"
#include "tests/pages/listcase.h"
#include "tests/support/zone.h"

#include <QDateEdit>
#include <QPlainTextEdit>
#include <QTimeEdit>
#include <QtEndian>

namespace
{

using Page = ListPage;

constexpr int fromPlace = 12;
constexpr int tillPlace = 16;
constexpr int keyPlace = 20;
constexpr int commentPlace = 52;

quint32 seconds(const QString &utc)
{
    return static_cast<quint32>(Zone::utc(utc).toSecsSinceEpoch());
}

QByteArray entryOf(quint32 from, quint32 till)
{
    Access access = Page::entry(5);
    access.setId(6);
    QByteArray bytes = Page::bytes(access);
    qToLittleEndian(from, bytes.data() + fromPlace);
    qToLittleEndian(till, bytes.data() + tillPlace);
    return bytes;
}

quint32 word(const QByteArray &entry, int place)
{
    return qFromLittleEndian<quint32>(entry.constData() + place);
}

} // namespace

// What is changed in an entry, and what is not, where clocks are put forward and back and where the
// fields cannot show what is stored.
class TestSufferedNumbersClocks : public ListCase
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        before_ = qgetenv("TZ");
        ListCase::init();
    }
    void cleanup()
    {
        ListCase::cleanup();
        VaskSettings::init();
        Zone::set(before_);
    }

    void keepsUntouchedTimes_data();
    void keepsUntouchedTimes();
    void keepsUntouchedTexts_data();
    void keepsUntouchedTexts();
    void movesToTheEndOfTheMissingHour_data();
    void movesToTheEndOfTheMissingHour();
    void showsMovedTimeBeforeItIsApplied();
    void staysInTheRepeatedHour_data();
    void staysInTheRepeatedHour();

private:
    QTimeEdit *timeFrom() const { return page_->find<QTimeEdit>("timeEditFrom"); }
    QDateEdit *dateFrom() const { return page_->find<QDateEdit>("dateEditFrom"); }
    void applyTo(const QByteArray &entry, const std::function<void()> &change)
    {
        open(Page::list(1) + entry + Page::list(1));
        page_->clickRow(1);
        change();
        page_->press("buttonApply");
        QCOMPARE(ownList().left(Access::size), Page::list(1));
        QCOMPARE(ownList().mid(2 * Access::size), Page::list(1));
    }
    QByteArray stored() const { return ownList().mid(Access::size, Access::size); }

    QByteArray before_;
};

void TestSufferedNumbersClocks::keepsUntouchedTimes_data()
{
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<quint32>("time");
    for (const char *zone : {"Europe/Berlin", "Africa/Cairo", "Asia/Kolkata", "UTC"}) {
        const auto row = [zone](const char *name, quint32 time) {
            QTest::addRow("%s, %s", zone, name) << QByteArray(zone) << time;
        };
        row("the first second", 0);
        row("the default end", 0x7FFFFFFF);
        row("the second after it", 0x80000000);
        row("the last but one", 0xFFFFFFFE);
        row("no time", 0xFFFFFFFF);
        for (const char *night :
             {"2026-03-29 00:59:59", "2026-03-29 01:00:00", "2026-10-25 00:00:00",
              "2026-10-25 00:30:00", "2026-10-25 01:00:00", "2026-10-25 01:30:00",
              "2026-10-25 01:59:59", "2026-10-25 02:00:00", "2026-04-23 22:00:00",
              "2026-10-29 20:30:00", "2026-10-29 21:30:00", "2044-10-30 01:30:00"}) {
            row(night, seconds(QString::fromLatin1(night)));
        }
    }
}

// Neither by another field, nor by nothing, nor by the other time.
void TestSufferedNumbersClocks::keepsUntouchedTimes()
{
    QFETCH(QByteArray, zone);
    QFETCH(quint32, time);
    Zone::set(zone);
    const QByteArray entry = entryOf(time, time);
    applyTo(entry, [] {});
    QCOMPARE(stored(), entry);
    type("lineEditKey", QStringLiteral("other"));
    page_->press("buttonApply");
    QByteArray expected = entry;
    expected.replace(keyPlace, 5, "other");
    QCOMPARE(stored(), expected);
    timeFrom()->setTime(timeFrom()->time().addSecs(time == 0xFFFFFFFE ? -1 : 1));
    page_->press("buttonApply");
    QVERIFY(word(stored(), fromPlace) != time);
    QCOMPARE(word(stored(), tillPlace), time);
    // What is changed and changed back is not changed.
    page_->press("buttonApply");
    QCOMPARE(word(stored(), tillPlace), time);
}

void TestSufferedNumbersClocks::keepsUntouchedTexts_data()
{
    QTest::addColumn<int>("place");
    QTest::addColumn<QByteArray>("bytes");
    const auto row = [](const char *name, int place, const QByteArray &bytes) {
        QTest::newRow(name) << place << bytes;
    };
    row("small letters", 2, QByteArray("a005bc77\0\0", 10));
    row("local letters", 2, "\xD0\x90\x31\x32\x33\xD0\x92\xD0\xA1\x37");
    row("full number", 2, "A005BC1777");
    row("blanks around the number", 2, QByteArray(" A005BC77\0", 10));
    row("behind the number", 2, QByteArray("A0\0rubbish", 10));
    row("behind the key", keyPlace, QByteArray("k\0rest", 6));
    row("full key", keyPlace, QByteArray(32, 'k'));
    row("behind the comment", commentPlace, QByteArray("c\0rest", 6));
    row("full comment", commentPlace, QByteArray(64, 'c'));
    row("line ends", commentPlace, QByteArray("one\r\ntwo\rthree\nfour\0", 20));
    row("hard blank", commentPlace, "one\xC2\xA0two");
    row("no text of this encoding", commentPlace, "one\xFFtwo");
}

void TestSufferedNumbersClocks::keepsUntouchedTexts()
{
    QFETCH(int, place);
    QFETCH(QByteArray, bytes);
    VaskSettings::localSymbols = QString::fromUtf8("\xD0\x90\xD0\x92\xD0\xA1"); // A, V and S
    VaskSettings::latinSymbols = QStringLiteral("ABC");
    QByteArray entry = entryOf(seconds(QStringLiteral("2026-11-21 08:00:00")), 0x7FFFFFFF);
    entry.replace(place, bytes.size(), bytes);
    applyTo(entry, [this] { page_->find<QTimeEdit>("timeEditTill")->setTime(QTime(5, 6, 7)); });
    QByteArray expected = entry;
    expected.replace(tillPlace, 4, stored().mid(tillPlace, 4));
    QVERIFY(word(stored(), tillPlace) != 0x7FFFFFFF);
    QCOMPARE(stored(), expected);
    // A text that is changed takes its whole field, and no other.
    const bool isKey = place == keyPlace;
    if (isKey) {
        page_->find<QPlainTextEdit>("textEditComment")->setPlainText(QStringLiteral("new"));
    } else {
        type("lineEditKey", QStringLiteral("new"));
    }
    page_->press("buttonApply");
    const int size = isKey ? 64 : 32;
    expected.replace(isKey ? commentPlace : keyPlace, size,
                     QByteArray("new").leftJustified(size, '\0'));
    QCOMPARE(stored(), expected);
}

void TestSufferedNumbersClocks::movesToTheEndOfTheMissingHour_data()
{
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("meant"); // in UTC
    QTest::addColumn<QString>("shown");
    const auto row = [](const char *zone, const char *typed, const char *meant, const char *shown) {
        QTest::addRow("%s, %s", zone, typed)
            << QByteArray(zone) << QString::fromLatin1(typed) << QString::fromLatin1(meant)
            << QString::fromLatin1(shown);
    };
    row("Europe/Berlin", "2026-03-29 01:59:59", "2026-03-29 00:59:59", "2026-03-29 1:59:59");
    row("Europe/Berlin", "2026-03-29 02:00:00", "2026-03-29 01:00:00", "2026-03-29 3:00:00");
    row("Europe/Berlin", "2026-03-29 02:30:00", "2026-03-29 01:00:00", "2026-03-29 3:00:00");
    row("Europe/Berlin", "2026-03-29 03:00:01", "2026-03-29 01:00:01", "2026-03-29 3:00:01");
    row("Africa/Cairo", "2026-04-23 23:59:59", "2026-04-23 21:59:59", "2026-04-23 23:59:59");
    row("Africa/Cairo", "2026-04-24 00:00:00", "2026-04-23 22:00:00", "2026-04-24 1:00:00");
    row("Africa/Cairo", "2026-04-24 00:30:00", "2026-04-23 22:00:00", "2026-04-24 1:00:00");
    row("Africa/Cairo", "2026-04-24 12:00:00", "2026-04-24 09:00:00", "2026-04-24 12:00:00");
    row("Asia/Kolkata", "2026-03-29 02:30:00", "2026-03-28 21:00:00", "2026-03-29 2:30:00");
    row("UTC", "2026-03-29 02:30:00", "2026-03-29 02:30:00", "2026-03-29 2:30:00");
}

void TestSufferedNumbersClocks::movesToTheEndOfTheMissingHour()
{
    QFETCH(QByteArray, zone);
    QFETCH(QString, typed);
    QFETCH(QString, meant);
    Zone::set(zone);
    const QDateTime clock = Zone::utc(typed);
    applyTo(entryOf(86400 * 365, 0xFFFFFFFF), [&] {
        dateFrom()->setDate(clock.date());
        timeFrom()->setTime(clock.time());
    });
    QCOMPARE(word(stored(), fromPlace), seconds(meant));
    QCOMPARE(word(stored(), tillPlace), 0xFFFFFFFFU);
    QTEST(dateFrom()->date().toString(Qt::ISODate) + QLatin1Char(' ') + timeFrom()->text(),
          "shown");
    // The time before the date.
    applyTo(entryOf(86400 * 365, 0xFFFFFFFF), [&] {
        timeFrom()->setTime(clock.time());
        dateFrom()->setDate(clock.date());
    });
    QCOMPARE(word(stored(), fromPlace), seconds(meant));
}

void TestSufferedNumbersClocks::showsMovedTimeBeforeItIsApplied()
{
    Zone::set("Europe/Berlin");
    open(entryOf(seconds(QStringLiteral("2026-03-29 05:00:00")), 0x7FFFFFFF));
    page_->clickRow(0);
    timeFrom()->setFocus();
    timeFrom()->setSelectedSection(QDateTimeEdit::HourSection);
    QTest::keyClicks(timeFrom(), QStringLiteral("0230"));
    QCOMPARE(timeFrom()->time(), QTime(2, 30)); // not while it is typed
    page_->find<QLineEdit>("lineEditKey")->setFocus();
    QCOMPARE(timeFrom()->time(), QTime(3, 0));
    QCOMPARE(dateFrom()->date(), QDate(2026, 3, 29));
}

void TestSufferedNumbersClocks::staysInTheRepeatedHour_data()
{
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<QString>("time"); // stored, in UTC
    QTest::addColumn<QTime>("typed");
    QTest::addColumn<QString>("meant"); // in UTC
    const auto row = [](const char *zone, const char *time, const QTime &typed, const char *meant) {
        QTest::addRow("%s, %s, %s", zone, time, qPrintable(typed.toString()))
            << QByteArray(zone) << QString::fromLatin1(time) << typed << QString::fromLatin1(meant);
    };
    row("Europe/Berlin", "2026-10-25 00:30:00", QTime(2, 45), "2026-10-25 00:45:00");
    row("Europe/Berlin", "2026-10-25 01:30:00", QTime(2, 45), "2026-10-25 01:45:00");
    row("Europe/Berlin", "2026-10-25 01:30:00", QTime(2, 30), "2026-10-25 01:30:00");
    row("Europe/Berlin", "2026-10-25 02:30:00", QTime(2, 30), "2026-10-25 00:30:00");
    row("Africa/Cairo", "2026-10-29 21:30:00", QTime(23, 45), "2026-10-29 21:45:00");
    row("Asia/Kolkata", "2026-10-25 00:30:00", QTime(2, 45), "2026-10-24 21:15:00");
    row("UTC", "2026-10-25 01:30:00", QTime(2, 45), "2026-10-25 02:45:00");
}

void TestSufferedNumbersClocks::staysInTheRepeatedHour()
{
    QFETCH(QByteArray, zone);
    QFETCH(QString, time);
    QFETCH(QTime, typed);
    QFETCH(QString, meant);
    Zone::set(zone);
    applyTo(entryOf(seconds(time), 0x7FFFFFFF), [&] {
        // By way of another time.
        timeFrom()->setTime(QTime(12, 0));
        timeFrom()->setTime(typed);
    });
    QCOMPARE(word(stored(), fromPlace), seconds(meant));
}

STALLO_TEST_MAIN(TestSufferedNumbersClocks)
#include "tst_sufferednumbersclocks.moc"
