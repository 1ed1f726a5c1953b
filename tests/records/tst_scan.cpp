// SPDX-License-Identifier: MIT
#include "records/scan.h"

#include "records/online.h"
#include "records/vasksettings.h"
#include "tests/records/recordbytes.h"
#include "tests/support/testmain.h"

Q_DECLARE_METATYPE(Change<Scan>)

class TestScan : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fresh();
    void written_data();
    void written();
    void read();
    void fullFields_data();
    void fullFields();
    void numberIsTrimmed();
    void shorterTextLeavesNothingBehind();
    void flags_data();
    void flags();
    void times_data();
    void times();
    void fromOnLine();
    void fromOnLineWithFullFields();
    void fromOnLineDirection_data();
    void fromOnLineDirection();
    void translateFromLocal();
};

void TestScan::fresh()
{
    const Scan scan;
    QCOMPARE(int(sizeof(Scan)), 116);
    QCOMPARE(bytesOf(scan), QByteArray(4, '\xFF') + QByteArray(112, '\0'));
    QVERIFY(!scan.isValid());
    QVERIFY(scan.dateTime().isNull());
    QCOMPARE(scan.number(), QString());
    QVERIFY(!scan.isIncoming());
    QVERIFY(!scan.isInAccessList());
    QVERIFY(!scan.isAccessGranted());
}

void TestScan::written_data()
{
    QTest::addColumn<Change<Scan>>("change");
    QTest::addColumn<int>("offset");
    QTest::addColumn<QByteArray>("bytes");
    const auto row = [](const char *name, const Change<Scan> &change, int offset,
                        const QByteArray &bytes) {
        QTest::newRow(name) << change << offset << bytes;
    };

    row(
        "time", [](Scan &s) { s.setDateTime(QDateTime::fromSecsSinceEpoch(0x4D72438D)); }, 0,
        QByteArray("\x8D\x43\x72\x4D"));
    row(
        "number", [](Scan &s) { s.setNumber(QStringLiteral("A123BC77")); }, 4,
        QByteArray("A123BC77\0\0", 10));
    row(
        "incoming", [](Scan &s) { s.setIncoming(true); }, 17, QByteArray("\x01"));
    row(
        "outgoing", [](Scan &s) { s.setIncoming(false); }, 17, QByteArray("\x02"));
    row(
        "in the access list", [](Scan &s) { s.setInAccessList(true); }, 18, QByteArray("\x01"));
    row(
        "access granted", [](Scan &s) { s.setAccessGranted(true); }, 19, QByteArray("\x01"));
    row(
        "comment", [](Scan &s) { s.setComment(QStringLiteral("Staff")); }, 20,
        QByteArray("Staff") + QByteArray(59, '\0'));
    row(
        "key", [](Scan &s) { s.setAccessKey(QStringLiteral("K-17")); }, 84,
        QByteArray("K-17") + QByteArray(28, '\0'));
    row(
        "number too long", [](Scan &s) { s.setNumber(QStringLiteral("A123BC7777")); }, 4,
        QByteArray("A123BC777\0", 10));
    row(
        "comment too long", [](Scan &s) { s.setComment(QString(64, QLatin1Char('c'))); }, 20,
        QByteArray(63, 'c') + '\0');
    row(
        "key too long", [](Scan &s) { s.setAccessKey(QString(32, QLatin1Char('k'))); }, 84,
        QByteArray(31, 'k') + '\0');
}

// A setter changes its own bytes and no others.
void TestScan::written()
{
    QFETCH(Change<Scan>, change);
    QFETCH(int, offset);
    QFETCH(QByteArray, bytes);
    Scan scan;
    const QByteArray before = bytesOf(scan);
    change(scan);
    QCOMPARE(bytesOf(scan), QByteArray(before).replace(offset, bytes.size(), bytes));
}

void TestScan::read()
{
    const QByteArray bytes = QByteArray("\x8D\x43\x72\x4D"
                                        "A123BC77\0\0"
                                        "\x99\x99\x99"
                                        "\x01\x02\x00",
                                        20) +
                             QByteArray("Staff").leftJustified(64, '\0') +
                             QByteArray("K-17").leftJustified(32, '\0');
    const Scan scan = recordWith<Scan>(0, bytes);
    QCOMPARE(bytesOf(scan), bytes);
    QVERIFY(scan.isValid());
    QCOMPARE(scan.dateTime().toUTC(), QDateTime({2011, 3, 5}, {14, 7, 9}, Qt::UTC));
    QCOMPARE(scan.dateTime().timeSpec(), Qt::LocalTime);
    QCOMPARE(scan.number(), QStringLiteral("A123BC77"));
    QVERIFY(scan.isIncoming());
    QVERIFY(scan.isInAccessList());
    QVERIFY(!scan.isAccessGranted());
    QCOMPARE(scan.comment(), QStringLiteral("Staff"));
    QCOMPARE(scan.accessKey(), QStringLiteral("K-17"));
}

void TestScan::fullFields_data()
{
    QTest::addColumn<int>("offset");
    QTest::addColumn<int>("size");
    QTest::addColumn<QByteArray>("getter");

    QTest::newRow("number") << 4 << 10 << QByteArray("number");
    QTest::newRow("comment") << 20 << 64 << QByteArray("comment");
    QTest::newRow("key") << 84 << 32 << QByteArray("key");
}

void TestScan::fullFields()
{
    QFETCH(int, offset);
    QFETCH(int, size);
    QFETCH(QByteArray, getter);
    const Scan scan = recordWith<Scan>(offset, QByteArray(size - 1, 'x') + 'Y');
    const QString text = getter == "number"    ? scan.number()
                         : getter == "comment" ? scan.comment()
                                               : scan.accessKey();
    QCOMPARE(text, QString(size - 1, QLatin1Char('x')));
}

void TestScan::numberIsTrimmed()
{
    Scan scan;
    scan.setNumber(QStringLiteral(" \t A1 2 \n"));
    QCOMPARE(bytesOf(scan).mid(4, 10), QByteArray("A1 2\0\0\0\0\0\0", 10));
    QCOMPARE(recordWith<Scan>(4, "  A1 2   ").number(), QStringLiteral("A1 2"));
    // Comment and key are not.
    scan.setComment(QStringLiteral(" c "));
    scan.setAccessKey(QStringLiteral(" k "));
    QCOMPARE(scan.comment(), QStringLiteral(" c "));
    QCOMPARE(scan.accessKey(), QStringLiteral(" k "));
}

void TestScan::shorterTextLeavesNothingBehind()
{
    Scan scan;
    scan.setComment(QString(63, QLatin1Char('x')));
    scan.setComment(QStringLiteral("y"));
    QCOMPARE(bytesOf(scan).mid(20, 64), QByteArray("y").leftJustified(64, '\0'));
}

void TestScan::flags_data()
{
    QTest::addColumn<int>("byte");
    QTest::addColumn<bool>("incoming");
    QTest::addColumn<bool>("flag");

    QTest::newRow("0") << 0 << false << false;
    QTest::newRow("1") << 1 << true << true;
    QTest::newRow("2") << 2 << false << true;
    QTest::newRow("255") << 255 << false << true;
}

void TestScan::flags()
{
    QFETCH(int, byte);
    QFETCH(bool, incoming);
    QFETCH(bool, flag);
    const QByteArray bytes(1, static_cast<char>(byte));
    QCOMPARE(recordWith<Scan>(17, bytes).isIncoming(), incoming);
    QCOMPARE(recordWith<Scan>(18, bytes).isInAccessList(), flag);
    QCOMPARE(recordWith<Scan>(19, bytes).isAccessGranted(), flag);
}

void TestScan::times_data()
{
    QTest::addColumn<QDateTime>("time");
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray none(4, '\xFF');

    QTest::newRow("null") << QDateTime() << none;
    QTest::newRow("epoch") << QDateTime({1970, 1, 1}, {0, 0}, Qt::UTC) << QByteArray(4, '\0');
    QTest::newRow("beyond 31 bits")
        << QDateTime({2038, 1, 19}, {3, 14, 8}, Qt::UTC) << QByteArray("\0\0\0\x80", 4);
    QTest::newRow("the last one") << QDateTime({2106, 2, 7}, {6, 28, 14}, Qt::UTC)
                                  << QByteArray("\xFE\xFF\xFF\xFF");
    QTest::newRow("one second too late") << QDateTime({2106, 2, 7}, {6, 28, 15}, Qt::UTC) << none;
    QTest::newRow("a century too late") << QDateTime({2206, 2, 7}, {6, 28, 15}, Qt::UTC) << none;
    QTest::newRow("too early") << QDateTime({1969, 12, 31}, {23, 59, 58}, Qt::UTC) << none;
}

void TestScan::times()
{
    QFETCH(QDateTime, time);
    QFETCH(QByteArray, bytes);
    Scan scan;
    scan.setDateTime(QDateTime::fromSecsSinceEpoch(1));
    scan.setDateTime(time);
    QCOMPARE(bytesOf(scan).left(4), bytes);
    const bool isNone = bytes == QByteArray(4, '\xFF');
    QCOMPARE(scan.isValid(), !isNone);
    QCOMPARE(scan.dateTime(), isNone ? QDateTime() : time);
}

void TestScan::fromOnLine()
{
    OnLine onLine;
    onLine.setType(77);
    onLine.setIncoming(true);
    onLine.setNumber(QStringLiteral("A123BC77"));
    onLine.setFileName(QStringLiteral("picture.jpeg"));
    onLine.setDateTime(QDateTime::fromSecsSinceEpoch(0x4D72438D));
    onLine.setInAccessList(true);
    onLine.setAccessGranted(true);
    onLine.setComment(QStringLiteral("Staff"));
    onLine.setAccessKey(QStringLiteral("K-17"));
    // Reserved bytes of a device must not travel on.
    std::fill_n(onLine.data() + 18, 6, '\x99');
    std::fill_n(onLine.data() + 190, 2, '\x99');

    const QByteArray expected = QByteArray("\x8D\x43\x72\x4D"
                                           "A123BC77\0\0"
                                           "\0\0\0"
                                           "\x01\x01\x01",
                                           20) +
                                QByteArray("Staff").leftJustified(64, '\0') +
                                QByteArray("K-17").leftJustified(32, '\0');
    QCOMPARE(bytesOf(Scan(onLine)), expected);
    QCOMPARE(Scan(OnLine()).isValid(), false);
}

void TestScan::fromOnLineWithFullFields()
{
    OnLine onLine;
    std::fill_n(onLine.data() + 8, 10, 'n');
    std::fill_n(onLine.data() + 94, 64, 'c');
    std::fill_n(onLine.data() + 158, 32, 'k');
    const QByteArray bytes = bytesOf(Scan(onLine));
    QCOMPARE(bytes.mid(4, 10), QByteArray(9, 'n') + '\0');
    QCOMPARE(bytes.mid(20, 64), QByteArray(63, 'c') + '\0');
    QCOMPARE(bytes.mid(84, 32), QByteArray(31, 'k') + '\0');
}

void TestScan::fromOnLineDirection_data()
{
    QTest::addColumn<QByteArray>("word");
    QTest::addColumn<int>("byte");

    QTest::newRow("unknown") << QByteArray(4, '\0') << 0;
    QTest::newRow("in") << QByteArray("\x01\0\0\0", 4) << 1;
    QTest::newRow("out") << QByteArray("\x02\0\0\0", 4) << 2;
    QTest::newRow("the low byte only") << QByteArray("\x01\x02\x03\x04") << 1;
    QTest::newRow("negative") << QByteArray(4, '\xFF') << 255;
}

void TestScan::fromOnLineDirection()
{
    QFETCH(QByteArray, word);
    QFETCH(int, byte);
    const Scan scan(recordWith<OnLine>(4, word));
    QCOMPARE(int(static_cast<unsigned char>(scan.data()[17])), byte);
    QCOMPARE(scan.isIncoming(), byte == 1);
}

void TestScan::translateFromLocal()
{
    VaskSettings::localSymbols = QStringLiteral("АВС");
    VaskSettings::latinSymbols = QStringLiteral("ABC");
    Scan scan;
    scan.setNumber(QStringLiteral("а123в7"));
    scan.setComment(QStringLiteral("а"));
    scan.translateFromLocal();
    VaskSettings::init();
    QCOMPARE(scan.number(), QStringLiteral("A123B7"));
    QCOMPARE(scan.comment(), QStringLiteral("а"));
}

STALLO_TEST_MAIN(TestScan)
#include "tst_scan.moc"
