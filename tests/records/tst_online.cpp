// SPDX-License-Identifier: MIT
#include "records/online.h"

#include "records/vasksettings.h"
#include "tests/records/recordbytes.h"
#include "tests/support/testmain.h"

Q_DECLARE_METATYPE(Change<OnLine>)

class TestOnLine : public QObject
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
    void direction_data();
    void direction();
    void times_data();
    void times();
    void validity_data();
    void validity();
    void translateFromLocal();
};

void TestOnLine::fresh()
{
    const OnLine onLine;
    QCOMPARE(int(sizeof(OnLine)), 192);
    QCOMPARE(bytesOf(onLine), QByteArray(88, '\0') + QByteArray(4, '\xFF') + QByteArray(100, '\0'));
    QVERIFY(!onLine.isValid());
    QVERIFY(onLine.dateTime().isNull());
    QCOMPARE(onLine.type(), 0);
    QVERIFY(!onLine.isIncoming());
    QVERIFY(!onLine.isInAccessList());
    QVERIFY(!onLine.isAccessGranted());
}

void TestOnLine::written_data()
{
    QTest::addColumn<Change<OnLine>>("change");
    QTest::addColumn<int>("offset");
    QTest::addColumn<QByteArray>("bytes");
    const auto row = [](const char *name, const Change<OnLine> &change, int offset,
                        const QByteArray &bytes) {
        QTest::newRow(name) << change << offset << bytes;
    };

    row(
        "type", [](OnLine &o) { o.setType(0x01020304); }, 0, QByteArray("\x04\x03\x02\x01"));
    row(
        "negative type", [](OnLine &o) { o.setType(-2); }, 0, QByteArray("\xFE\xFF\xFF\xFF"));
    row(
        "incoming", [](OnLine &o) { o.setIncoming(true); }, 4, QByteArray("\x01\0\0\0", 4));
    row(
        "outgoing", [](OnLine &o) { o.setIncoming(false); }, 4, QByteArray("\x02\0\0\0", 4));
    row(
        "number", [](OnLine &o) { o.setNumber(QStringLiteral("A123BC77")); }, 8,
        QByteArray("A123BC77\0\0", 10));
    row(
        "file name", [](OnLine &o) { o.setFileName(QStringLiteral("a.jpeg")); }, 24,
        QByteArray("a.jpeg").leftJustified(64, '\0'));
    row(
        "time", [](OnLine &o) { o.setDateTime(QDateTime::fromSecsSinceEpoch(0x4D72438D)); }, 88,
        QByteArray("\x8D\x43\x72\x4D"));
    row(
        "in the access list", [](OnLine &o) { o.setInAccessList(true); }, 92, QByteArray("\x01"));
    row(
        "access granted", [](OnLine &o) { o.setAccessGranted(true); }, 93, QByteArray("\x01"));
    row(
        "comment", [](OnLine &o) { o.setComment(QStringLiteral("Staff")); }, 94,
        QByteArray("Staff").leftJustified(64, '\0'));
    row(
        "key", [](OnLine &o) { o.setAccessKey(QStringLiteral("K-17")); }, 158,
        QByteArray("K-17").leftJustified(32, '\0'));
    row(
        "number too long", [](OnLine &o) { o.setNumber(QStringLiteral("A123BC7777")); }, 8,
        QByteArray("A123BC777\0", 10));
    row(
        "file name too long", [](OnLine &o) { o.setFileName(QString(64, QLatin1Char('f'))); }, 24,
        QByteArray(63, 'f') + '\0');
    row(
        "comment too long", [](OnLine &o) { o.setComment(QString(64, QLatin1Char('c'))); }, 94,
        QByteArray(63, 'c') + '\0');
    row(
        "key too long", [](OnLine &o) { o.setAccessKey(QString(32, QLatin1Char('k'))); }, 158,
        QByteArray(31, 'k') + '\0');
}

// A setter changes its own bytes and no others.
void TestOnLine::written()
{
    QFETCH(Change<OnLine>, change);
    QFETCH(int, offset);
    QFETCH(QByteArray, bytes);
    OnLine onLine;
    const QByteArray before = bytesOf(onLine);
    change(onLine);
    QCOMPARE(bytesOf(onLine), QByteArray(before).replace(offset, bytes.size(), bytes));
}

void TestOnLine::read()
{
    const QByteArray bytes =
        QByteArray("\x05\0\0\0\x01\0\0\0", 8) + QByteArray("A123BC77").leftJustified(10, '\0') +
        QByteArray(6, '\x99') + QByteArray("a.jpeg").leftJustified(64, '\0') +
        QByteArray("\x8D\x43\x72\x4D\x02\0", 6) + QByteArray("Staff").leftJustified(64, '\0') +
        QByteArray("K-17").leftJustified(32, '\0') + QByteArray(2, '\x99');
    const OnLine onLine = recordWith<OnLine>(0, bytes);
    QCOMPARE(bytesOf(onLine), bytes);
    QCOMPARE(bytes.size(), 192);
    QCOMPARE(onLine.type(), 5);
    QVERIFY(onLine.isIncoming());
    QCOMPARE(onLine.number(), QStringLiteral("A123BC77"));
    QCOMPARE(onLine.fileName(), QStringLiteral("a.jpeg"));
    QCOMPARE(onLine.dateTime().toUTC(), QDateTime({2011, 3, 5}, {14, 7, 9}, Qt::UTC));
    QCOMPARE(onLine.dateTime().timeSpec(), Qt::LocalTime);
    QVERIFY(onLine.isInAccessList());
    QVERIFY(!onLine.isAccessGranted());
    QCOMPARE(onLine.comment(), QStringLiteral("Staff"));
    QCOMPARE(onLine.accessKey(), QStringLiteral("K-17"));
}

void TestOnLine::fullFields_data()
{
    QTest::addColumn<int>("offset");
    QTest::addColumn<int>("size");
    QTest::addColumn<QByteArray>("getter");

    QTest::newRow("number") << 8 << 10 << QByteArray("number");
    QTest::newRow("file name") << 24 << 64 << QByteArray("fileName");
    QTest::newRow("comment") << 94 << 64 << QByteArray("comment");
    QTest::newRow("key") << 158 << 32 << QByteArray("key");
}

void TestOnLine::fullFields()
{
    QFETCH(int, offset);
    QFETCH(int, size);
    QFETCH(QByteArray, getter);
    const OnLine onLine = recordWith<OnLine>(offset, QByteArray(size - 1, 'x') + 'Y');
    const QString text = getter == "number"     ? onLine.number()
                         : getter == "fileName" ? onLine.fileName()
                         : getter == "comment"  ? onLine.comment()
                                                : onLine.accessKey();
    QCOMPARE(text, QString(size - 1, QLatin1Char('x')));
}

void TestOnLine::numberIsTrimmed()
{
    OnLine onLine;
    onLine.setNumber(QStringLiteral("  A12  "));
    QCOMPARE(bytesOf(onLine).mid(8, 10), QByteArray("A12").leftJustified(10, '\0'));
    QCOMPARE(recordWith<OnLine>(8, "  A12 ").number(), QStringLiteral("A12"));
    onLine.setFileName(QStringLiteral(" f "));
    QCOMPARE(onLine.fileName(), QStringLiteral(" f "));
}

void TestOnLine::direction_data()
{
    QTest::addColumn<QByteArray>("word");
    QTest::addColumn<bool>("incoming");

    QTest::newRow("unknown") << QByteArray(4, '\0') << false;
    QTest::newRow("in") << QByteArray("\x01\0\0\0", 4) << true;
    QTest::newRow("out") << QByteArray("\x02\0\0\0", 4) << false;
    QTest::newRow("all four bytes count") << QByteArray("\x01\x01\0\0", 4) << false;
}

void TestOnLine::direction()
{
    QFETCH(QByteArray, word);
    QFETCH(bool, incoming);
    QCOMPARE(recordWith<OnLine>(4, word).isIncoming(), incoming);
}

void TestOnLine::times_data()
{
    QTest::addColumn<QDateTime>("time");
    QTest::addColumn<QByteArray>("bytes");

    QTest::newRow("null") << QDateTime() << QByteArray(4, '\xFF');
    QTest::newRow("epoch") << QDateTime({1970, 1, 1}, {0, 0}, Qt::UTC) << QByteArray(4, '\0');
    QTest::newRow("beyond 31 bits")
        << QDateTime({2038, 1, 19}, {3, 14, 8}, Qt::UTC) << QByteArray("\0\0\0\x80", 4);
    QTest::newRow("too early") << QDateTime({1960, 1, 1}, {0, 0}, Qt::UTC) << QByteArray(4, '\xFF');
}

void TestOnLine::times()
{
    QFETCH(QDateTime, time);
    QFETCH(QByteArray, bytes);
    OnLine onLine;
    onLine.setDateTime(QDateTime::fromSecsSinceEpoch(1));
    onLine.setDateTime(time);
    QCOMPARE(bytesOf(onLine).mid(88, 4), bytes);
    QCOMPARE(onLine.dateTime(), bytes == QByteArray(4, '\xFF') ? QDateTime() : time);
}

void TestOnLine::validity_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<quint32>("seconds");
    QTest::addColumn<bool>("valid");

    QTest::newRow("name and time") << QStringLiteral("a.jpeg") << 1U << true;
    QTest::newRow("no name") << QString() << 1U << true;
    QTest::newRow("a name of any form") << QStringLiteral("../\n*?") << 0U << true;
    QTest::newRow("no time") << QStringLiteral("a.jpeg") << 0xFFFFFFFFU << false;
}

void TestOnLine::validity()
{
    QFETCH(QString, fileName);
    QFETCH(quint32, seconds);
    QFETCH(bool, valid);
    OnLine onLine = recordWith<OnLine>(
        88, QByteArray(reinterpret_cast<const char *>(&seconds), sizeof(seconds)));
    onLine.setFileName(fileName);
    QCOMPARE(onLine.isValid(), valid);
}

void TestOnLine::translateFromLocal()
{
    VaskSettings::localSymbols = QStringLiteral("АВС");
    VaskSettings::latinSymbols = QStringLiteral("ABC");
    OnLine onLine;
    onLine.setNumber(QStringLiteral("а123в7"));
    onLine.translateFromLocal();
    VaskSettings::init();
    QCOMPARE(onLine.number(), QStringLiteral("A123B7"));
}

STALLO_TEST_MAIN(TestOnLine)
#include "tst_online.moc"
