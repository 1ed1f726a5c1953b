// SPDX-License-Identifier: MIT
#include "pages/passagedetails.h"

#include "records/online.h"
#include "records/vasksettings.h"
#include "simulator/livefeed.h"
#include "tests/support/testmain.h"

Q_DECLARE_METATYPE(Scan)

namespace
{

Scan passage(const char *number, const char *key)
{
    Scan scan;
    scan.setDateTime(QDateTime(QDate(2026, 1, 2), QTime(3, 4, 5)));
    scan.setNumber(QString::fromUtf8(number));
    scan.setAccessKey(QString::fromLatin1(key));
    return scan;
}

} // namespace

class TestPassageDetails : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { VaskSettings::init(); }

    void ordersLines();
    void ordersArchiveLines();
    void keepsEachTextOnItsLine();
    void number_data();
    void number();
    void accessWay_data();
    void accessWay();
    void flags_data();
    void flags();
    void oddRecords();
};

void TestPassageDetails::ordersLines()
{
    Scan scan = passage("A001BC77", "123");
    scan.setComment(QStringLiteral("<b>Novak</b>"));
    QCOMPARE(PassageDetails::onLineLines(scan),
             (QStringList{
                 QStringLiteral("Number: A001BC77"), QStringLiteral("Date: 03:04:05 02.01.2026"),
                 QStringLiteral("Access: granted automatically"),
                 QStringLiteral("The number is not registered"),
                 QStringLiteral("The thoroughfare is not granted"),
                 QStringLiteral("Comment: <b>Novak</b>"), QStringLiteral("Access key: 123")}));
    QCOMPARE(PassageDetails::onLineLines(Scan()),
             (QStringList{QStringLiteral("Number: "), QStringLiteral("Date: "),
                          QStringLiteral("Access: granted automatically"),
                          QStringLiteral("The number is not registered"),
                          QStringLiteral("The thoroughfare is not granted"),
                          QStringLiteral("Comment: "), QStringLiteral("Access key: ")}));
}

void TestPassageDetails::ordersArchiveLines()
{
    Scan scan = passage("A?01B*77", "123");
    scan.setComment(QStringLiteral("<b>Novak</b>"));
    scan.setAccessGranted(true);
    QCOMPARE(PassageDetails::archiveLines(scan),
             (QStringList{
                 QStringLiteral("Number: A#01B#77"), QStringLiteral("Date: 03:04:05 02.01.2026"),
                 QStringLiteral("The thoroughfare is granted"),
                 QStringLiteral("The number is not registered"),
                 QStringLiteral("Access: granted automatically"), QStringLiteral("Access key: 123"),
                 QStringLiteral("Comment: <b>Novak</b>")}));
    Scan card = passage("O000OO00", "7");
    card.setInAccessList(true);
    QCOMPARE(PassageDetails::archiveLines(card),
             (QStringList{QStringLiteral("Number: O000OO00"),
                          QStringLiteral("Date: 03:04:05 02.01.2026"),
                          QStringLiteral("The thoroughfare is not granted"),
                          QStringLiteral("The number is registered"),
                          QStringLiteral("Access: granted by card"),
                          QStringLiteral("Access key: 7"), QStringLiteral("Comment: ")}));
    QCOMPARE(PassageDetails::archiveLines(Scan()),
             (QStringList{QStringLiteral("Number: "), QStringLiteral("Date: "),
                          QStringLiteral("The thoroughfare is not granted"),
                          QStringLiteral("The number is not registered"),
                          QStringLiteral("Access: granted automatically"),
                          QStringLiteral("Access key: "), QStringLiteral("Comment: ")}));
}

void TestPassageDetails::keepsEachTextOnItsLine()
{
    Scan scan = passage("A\n1", "1\r2");
    scan.setComment(QStringLiteral("one\r\ntwo\n"));
    QCOMPARE(PassageDetails::number(scan), QStringLiteral("Number: A 1"));
    QCOMPARE(PassageDetails::accessKey(scan), QStringLiteral("Access key: 1 2"));
    QCOMPARE(PassageDetails::comment(scan), QStringLiteral("Comment: one  two "));
}

void TestPassageDetails::number_data()
{
    QTest::addColumn<QString>("number");
    QTest::addColumn<QString>("line");

    const auto row = [](const char *number, const char *line) {
        QTest::newRow(number) << QString::fromLatin1(number) << QString::fromLatin1(line);
    };
    row("A?12*", "Number: A#12#");
    row("?????????", "Number: #########");
    row("A%1BC", "Number: A%1BC");
    row("", "Number: ");
}

void TestPassageDetails::number()
{
    QFETCH(QString, number);
    QFETCH(QString, line);
    Scan scan;
    scan.setNumber(number);
    QCOMPARE(PassageDetails::number(scan), line);
}

void TestPassageDetails::accessWay_data()
{
    QTest::addColumn<Scan>("scan");
    QTest::addColumn<QString>("line");

    const QString automatic = QStringLiteral("Access: granted automatically");
    const QString manual = QStringLiteral("Access: granted manually");
    const QString card = QStringLiteral("Access: granted by card");
    // Cyrillic O, which local plates are read with.
    constexpr char local[] = "\xd0\x9e"
                             "000OO00";
    QTest::newRow("plate") << passage("A001BC77", "") << automatic;
    QTest::newRow("plate with key") << passage("A001BC77", "1") << automatic;
    QTest::newRow("button") << passage("O000OO00", "") << manual;
    QTest::newRow("card") << passage("O000OO00", "1") << card;
    QTest::newRow("small letters, button") << passage("o000oo00", "") << manual;
    QTest::newRow("small letters, card") << passage("o000oo00", "1") << card;
    QTest::newRow("local letter, button") << passage(local, "") << manual;
    QTest::newRow("local letter, card") << passage(local, "1") << card;
    QTest::newRow("zeros for letters") << passage("00000000", "") << automatic;
    QTest::newRow("longer") << passage("O000OO000", "") << automatic;
    QTest::newRow("blanks around") << passage(" O000OO00", "") << manual;
}

void TestPassageDetails::accessWay()
{
    QFETCH(Scan, scan);
    QFETCH(QString, line);
    VaskSettings::localSymbols = QString::fromUtf8("\xd0\x9e");
    VaskSettings::latinSymbols = QStringLiteral("O");
    QCOMPARE(PassageDetails::accessWay(scan), line);
}

void TestPassageDetails::flags_data()
{
    QTest::addColumn<bool>("registered");
    QTest::addColumn<bool>("granted");
    QTest::newRow("neither") << false << false;
    QTest::newRow("registered") << true << false;
    QTest::newRow("granted") << false << true;
    QTest::newRow("both") << true << true;
}

void TestPassageDetails::flags()
{
    QFETCH(bool, registered);
    QFETCH(bool, granted);
    Scan scan;
    scan.setInAccessList(registered);
    scan.setAccessGranted(granted);
    QCOMPARE(PassageDetails::registration(scan),
             registered ? QStringLiteral("The number is registered")
                        : QStringLiteral("The number is not registered"));
    QCOMPARE(PassageDetails::verdict(scan),
             granted ? QStringLiteral("The thoroughfare is granted")
                     : QStringLiteral("The thoroughfare is not granted"));
}

void TestPassageDetails::oddRecords()
{
    const QDateTime time(QDate(2026, 11, 21), QTime(12, 0), Qt::UTC);
    const Scan full(SampleRecords::fullTexts(QStringLiteral("A001BC77"), time));
    QCOMPARE(PassageDetails::comment(full),
             QStringLiteral("Comment: ") + QString(63, QLatin1Char('c')));
    QCOMPARE(PassageDetails::accessKey(full),
             QStringLiteral("Access key: ") + QString(31, QLatin1Char('k')));
    QCOMPARE(PassageDetails::number(Scan(SampleRecords::fullNumber(time))),
             QStringLiteral("Number: A123BC178"));
    QCOMPARE(PassageDetails::date(Scan(SampleRecords::withoutTime(QStringLiteral("A001BC77")))),
             QStringLiteral("Date: "));
}

STALLO_TEST_MAIN(TestPassageDetails)
#include "tst_passagedetails.moc"
