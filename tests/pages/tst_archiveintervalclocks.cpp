// SPDX-License-Identifier: MIT
#include "pages/archiveintervaldialog.h"

#include "tests/support/testmain.h"
#include "tests/support/zone.h"

#include <QDateEdit>
#include <QDialogButtonBox>
#include <QPushButton>
#include <QRadioButton>
#include <QTimeEdit>

// The interval where clocks are put forward and back.
class TestArchiveIntervalClocks : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { before_ = qgetenv("TZ"); }
    void cleanup()
    {
        dialog_.reset();
        Zone::set(before_);
    }

    void keepsWhatIsSet_data();
    void keepsWhatIsSet();
    void movesToTheEndOfTheMissingHour_data();
    void movesToTheEndOfTheMissingHour();
    void stepsThroughTheMissingHour();
    void keepsAnHourOfTimeBetween_data();
    void keepsAnHourOfTimeBetween();
    void showsWhatOkTakes();

private:
    template <typename T>
    T *part(const char *name) const
    {
        return dialog_->findChild<T *>(QLatin1String(name));
    }
    void open(const QByteArray &zone)
    {
        Zone::set(zone);
        dialog_ = std::make_unique<ArchiveIntervalDialog>(nullptr);
        dialog_->show();
        QVERIFY(QTest::qWaitForWindowActive(dialog_.get()));
        part<QRadioButton>("rbBySelection")->click();
    }
    void preset(const QString &from, const QString &to) const
    {
        dialog_->setFromTime(Zone::utc(from).toLocalTime());
        dialog_->setToTime(Zone::utc(to).toLocalTime());
    }
    void typeTime(const char *name, const QString &digits) const
    {
        auto *edit = part<QTimeEdit>(name);
        edit->setFocus();
        edit->setSelectedSection(QDateTimeEdit::HourSection);
        QTest::keyClicks(edit, digits);
        part<QRadioButton>("rbBySelection")->setFocus();
    }
    QString shown(const char *date, const char *time) const
    {
        return part<QDateEdit>(date)->date().toString(Qt::ISODate) + QLatin1Char(' ') +
               part<QTimeEdit>(time)->text();
    }

    QByteArray before_;
    std::unique_ptr<ArchiveIntervalDialog> dialog_;
};

void TestArchiveIntervalClocks::keepsWhatIsSet_data()
{
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<QString>("from"); // in UTC
    QTest::addColumn<QString>("to");
    const auto row = [](const char *zone, const char *from, const char *to) {
        QTest::addRow("%s, %s", zone, from)
            << QByteArray(zone) << QString::fromLatin1(from) << QString::fromLatin1(to);
    };
    row("UTC", "2026-10-25 00:30:00", "2026-10-25 01:30:00");
    row("Asia/Kolkata", "2026-10-25 00:30:00", "2026-10-25 01:30:00");
    row("Europe/Berlin", "2026-10-25 00:30:00", "2026-10-25 01:30:00"); // twice 2:30
    row("Europe/Berlin", "2026-10-25 01:30:00", "2026-10-25 02:30:00");
    row("Europe/Berlin", "2026-03-29 00:30:00", "2026-03-29 01:00:00");
    row("Africa/Cairo", "2026-10-29 20:30:00", "2026-10-29 21:30:00"); // twice 23:30
    row("Africa/Cairo", "2026-04-23 21:30:00", "2026-04-23 22:00:00");
}

void TestArchiveIntervalClocks::keepsWhatIsSet()
{
    QFETCH(QByteArray, zone);
    QFETCH(QString, from);
    QFETCH(QString, to);
    open(zone);
    preset(from, to);
    QCOMPARE(dialog_->fromTime().toUTC(), Zone::utc(from));
    QCOMPARE(dialog_->toTime().toUTC(), Zone::utc(to));
    // The other way round, so that each is set while the edits show the same for the other.
    preset(to, to);
    preset(from, to);
    QCOMPARE(dialog_->fromTime().toUTC(), Zone::utc(from));
    QCOMPARE(dialog_->toTime().toUTC(), Zone::utc(to));
    QTest::keyClick(dialog_.get(), Qt::Key_Return);
    QCOMPARE(dialog_->fromTime().toUTC(), Zone::utc(from));
    QCOMPARE(dialog_->toTime().toUTC(), Zone::utc(to));
}

void TestArchiveIntervalClocks::movesToTheEndOfTheMissingHour_data()
{
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<QString>("from"); // in UTC
    QTest::addColumn<QString>("to");
    QTest::addColumn<QString>("typed"); // as begin
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QString>("meant"); // in UTC
    const auto row = [](const char *zone, const char *from, const char *to, const char *typed,
                        const char *shown, const char *meant) {
        QTest::addRow("%s, %s", zone, typed)
            << QByteArray(zone) << QString::fromLatin1(from) << QString::fromLatin1(to)
            << QString::fromLatin1(typed) << QString::fromLatin1(shown)
            << QString::fromLatin1(meant);
    };
    const char *berlinFrom = "2026-03-28 23:00:00"; // midnight
    const char *berlinTo = "2026-03-29 20:00:00";
    row("Europe/Berlin", berlinFrom, berlinTo, "0230", "2026-03-29 3:00", "2026-03-29 01:00:00");
    row("Europe/Berlin", berlinFrom, berlinTo, "0200", "2026-03-29 3:00", "2026-03-29 01:00:00");
    row("Europe/Berlin", berlinFrom, berlinTo, "0159", "2026-03-29 1:59", "2026-03-29 00:59:00");
    row("Europe/Berlin", berlinFrom, berlinTo, "0330", "2026-03-29 3:30", "2026-03-29 01:30:00");
    row("Europe/Berlin", berlinFrom, berlinTo, "2330", "2026-03-29 23:30", "2026-03-29 21:30:00");
    const char *cairoFrom = "2026-04-24 09:00:00"; // noon
    const char *cairoTo = "2026-04-24 20:00:00";
    row("Africa/Cairo", cairoFrom, cairoTo, "0030", "2026-04-24 1:00", "2026-04-23 22:00:00");
    row("Africa/Cairo", cairoFrom, cairoTo, "0000", "2026-04-24 1:00", "2026-04-23 22:00:00");
    row("Africa/Cairo", cairoFrom, cairoTo, "0130", "2026-04-24 1:30", "2026-04-23 22:30:00");
    row("Asia/Kolkata", berlinFrom, berlinTo, "0230", "2026-03-29 2:30", "2026-03-28 21:00:00");
    row("UTC", "2026-03-29 01:00:00", berlinTo, "0230", "2026-03-29 2:30", "2026-03-29 02:30:00");
}

void TestArchiveIntervalClocks::movesToTheEndOfTheMissingHour()
{
    QFETCH(QByteArray, zone);
    QFETCH(QString, from);
    QFETCH(QString, to);
    QFETCH(QString, typed);
    open(zone);
    preset(from, to);
    typeTime("teFrom", typed);
    QTEST(shown("deFrom", "teFrom"), "shown");
    QFETCH(QString, meant);
    QCOMPARE(dialog_->fromTime().toUTC(), Zone::utc(meant));
    // By the date: what is a time on one day is none on another.
    const QDate day = part<QDateEdit>("deFrom")->date();
    preset(QStringLiteral("2026-03-20 02:30:00"), to);
    part<QDateEdit>("deFrom")->setDate(day);
    QCOMPARE(part<QDateEdit>("deFrom")->date(), day);
    QVERIFY(dialog_->fromTime().isValid());
}

// Where a step leads into the missing hour, the next one leads out of it again, both ways.
void TestArchiveIntervalClocks::stepsThroughTheMissingHour()
{
    open("Europe/Berlin");
    preset(QStringLiteral("2026-03-29 00:30:00"), QStringLiteral("2026-03-29 20:00:00"));
    auto *edit = part<QTimeEdit>("teFrom");
    edit->setFocus();
    edit->setSelectedSection(QDateTimeEdit::HourSection);
    QTest::keyClick(edit, Qt::Key_Up);
    QCOMPARE(dialog_->fromTime().toUTC(), Zone::utc(QStringLiteral("2026-03-29 01:00:00")));
    QTest::keyClick(edit, Qt::Key_Up);
    QCOMPARE(dialog_->fromTime().toUTC(), Zone::utc(QStringLiteral("2026-03-29 01:30:00")));
    QTest::keyClick(edit, Qt::Key_Down);
    QTest::keyClick(edit, Qt::Key_Down);
    QCOMPARE(dialog_->fromTime().toUTC(), Zone::utc(QStringLiteral("2026-03-29 00:30:00")));
}

void TestArchiveIntervalClocks::keepsAnHourOfTimeBetween_data()
{
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<QString>("from"); // in UTC
    QTest::addColumn<QString>("to");
    QTest::addColumn<QByteArray>("edit");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("fromAfter"); // in UTC
    QTest::addColumn<QString>("toAfter");
    const auto row = [](const char *zone, const char *from, const char *to, const char *edit,
                        const char *typed, const char *fromAfter, const char *toAfter) {
        QTest::addRow("%s, %s %s", zone, edit, typed)
            << QByteArray(zone) << QString::fromLatin1(from) << QString::fromLatin1(to)
            << QByteArray(edit) << QString::fromLatin1(typed) << QString::fromLatin1(fromAfter)
            << QString::fromLatin1(toAfter);
    };
    const char *berlin = "Europe/Berlin";
    // The end is the second of its two.
    row(berlin, "2026-10-24 22:30:00", "2026-10-24 23:45:00", "teFrom", "0230",
        "2026-10-25 00:30:00", "2026-10-25 01:30:00");
    // So is the begin, where the end comes an hour later.
    row(berlin, "2026-10-24 22:30:00", "2026-10-25 03:00:00", "teTo", "0315", "2026-10-24 22:30:00",
        "2026-10-25 02:15:00");
    row(berlin, "2026-10-25 02:00:00", "2026-10-25 04:00:00", "teTo", "0330", "2026-10-25 01:30:00",
        "2026-10-25 02:30:00");
    // Over the missing hour.
    row(berlin, "2026-03-28 23:30:00", "2026-03-29 01:10:00", "teFrom", "0145",
        "2026-03-29 00:45:00", "2026-03-29 01:45:00");
    row(berlin, "2026-03-29 00:45:00", "2026-03-29 04:00:00", "teTo", "0230", "2026-03-29 00:00:00",
        "2026-03-29 01:00:00");
    row("Africa/Cairo", "2026-04-23 20:30:00", "2026-04-23 21:45:00", "teFrom", "2345",
        "2026-04-23 21:45:00", "2026-04-23 22:45:00");
    row("Africa/Cairo", "2026-10-29 19:30:00", "2026-10-29 20:40:00", "teFrom", "2330",
        "2026-10-29 20:30:00", "2026-10-29 21:30:00");
}

void TestArchiveIntervalClocks::keepsAnHourOfTimeBetween()
{
    QFETCH(QByteArray, zone);
    QFETCH(QString, from);
    QFETCH(QString, to);
    QFETCH(QByteArray, edit);
    QFETCH(QString, typed);
    QFETCH(QString, fromAfter);
    QFETCH(QString, toAfter);
    open(zone);
    preset(from, to);
    typeTime(edit.constData(), typed);
    QCOMPARE(dialog_->fromTime().toUTC(), Zone::utc(fromAfter));
    QCOMPARE(dialog_->toTime().toUTC(), Zone::utc(toAfter));
}

void TestArchiveIntervalClocks::showsWhatOkTakes()
{
    open("Europe/Berlin");
    preset(QStringLiteral("2026-03-29 00:30:00"), QStringLiteral("2026-03-29 20:00:00"));
    auto *edit = part<QTimeEdit>("teFrom");
    edit->setFocus();
    edit->setSelectedSection(QDateTimeEdit::HourSection);
    QTest::keyClick(edit, Qt::Key_Up);
    QTest::mouseClick(part<QDialogButtonBox>("buttonBox")->button(QDialogButtonBox::Ok),
                      Qt::LeftButton);
    QVERIFY(!dialog_->isVisible());
    QCOMPARE(shown("deFrom", "teFrom"), QStringLiteral("2026-03-29 3:00"));
}

STALLO_TEST_MAIN(TestArchiveIntervalClocks)
#include "tst_archiveintervalclocks.moc"
