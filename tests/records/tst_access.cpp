// SPDX-License-Identifier: MIT
#include "records/access.h"

#include "records/vasksettings.h"
#include "tests/records/recordbytes.h"
#include "tests/support/testmain.h"

Q_DECLARE_METATYPE(Change<Access>)

class TestAccess : public QObject
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
    void everyTimeWordIsAMoment();
    void times_data();
    void times();
    void validity_data();
    void validity();
    void translateFromLocal();
};

void TestAccess::fresh()
{
    const Access access;
    QCOMPARE(int(sizeof(Access)), 116);
    QCOMPARE(bytesOf(access), QByteArray("\xFF\xFF") + QByteArray(10, '\0') +
                                  QByteArray("\0\0\0\0\xFF\xFF\xFF\x7F", 8) + QByteArray(96, '\0'));
    QCOMPARE(int(access.id()), -1);
    QVERIFY(!access.isValid());
    QCOMPARE(access.dateTimeFrom().toUTC(), QDateTime({1970, 1, 1}, {0, 0}, Qt::UTC));
    QCOMPARE(access.dateTimeTill().toUTC(), QDateTime({2038, 1, 19}, {3, 14, 7}, Qt::UTC));
}

void TestAccess::written_data()
{
    QTest::addColumn<Change<Access>>("change");
    QTest::addColumn<int>("offset");
    QTest::addColumn<QByteArray>("bytes");
    const auto row = [](const char *name, const Change<Access> &change, int offset,
                        const QByteArray &bytes) {
        QTest::newRow(name) << change << offset << bytes;
    };
    const QDateTime time = QDateTime::fromSecsSinceEpoch(0x4D72438D);

    row(
        "id", [](Access &a) { a.setId(0x0102); }, 0, QByteArray("\x02\x01"));
    row(
        "negative id", [](Access &a) { a.setId(-2); }, 0, QByteArray("\xFE\xFF"));
    row(
        "number", [](Access &a) { a.setNumber(QStringLiteral("A123BC77")); }, 2,
        QByteArray("A123BC77\0\0", 10));
    row(
        "from", [time](Access &a) { a.setDateTimeFrom(time); }, 12, QByteArray("\x8D\x43\x72\x4D"));
    row(
        "till", [time](Access &a) { a.setDateTimeTill(time); }, 16, QByteArray("\x8D\x43\x72\x4D"));
    row(
        "key", [](Access &a) { a.setAccessKey(QStringLiteral("K-17")); }, 20,
        QByteArray("K-17").leftJustified(32, '\0'));
    row(
        "comment", [](Access &a) { a.setComment(QStringLiteral("Staff")); }, 52,
        QByteArray("Staff").leftJustified(64, '\0'));
    row(
        "number too long", [](Access &a) { a.setNumber(QStringLiteral("A123BC7777")); }, 2,
        QByteArray("A123BC777\0", 10));
    row(
        "key too long", [](Access &a) { a.setAccessKey(QString(32, QLatin1Char('k'))); }, 20,
        QByteArray(31, 'k') + '\0');
    row(
        "comment too long", [](Access &a) { a.setComment(QString(64, QLatin1Char('c'))); }, 52,
        QByteArray(63, 'c') + '\0');
}

// A setter changes its own bytes and no others.
void TestAccess::written()
{
    QFETCH(Change<Access>, change);
    QFETCH(int, offset);
    QFETCH(QByteArray, bytes);
    Access access;
    const QByteArray before = bytesOf(access);
    change(access);
    QCOMPARE(bytesOf(access), QByteArray(before).replace(offset, bytes.size(), bytes));
}

void TestAccess::read()
{
    const QByteArray bytes =
        QByteArray("\x02\x01", 2) + QByteArray("A123BC77").leftJustified(10, '\0') +
        QByteArray("\x01\0\0\0\x8D\x43\x72\x4D", 8) + QByteArray("K-17").leftJustified(32, '\0') +
        QByteArray("Staff").leftJustified(64, '\0');
    const Access access = recordWith<Access>(0, bytes);
    QCOMPARE(bytesOf(access), bytes);
    QCOMPARE(bytes.size(), 116);
    QCOMPARE(int(access.id()), 0x0102);
    QVERIFY(access.isValid());
    QCOMPARE(access.number(), QStringLiteral("A123BC77"));
    QCOMPARE(access.dateTimeFrom().toUTC(), QDateTime({1970, 1, 1}, {0, 0, 1}, Qt::UTC));
    QCOMPARE(access.dateTimeTill().toUTC(), QDateTime({2011, 3, 5}, {14, 7, 9}, Qt::UTC));
    QCOMPARE(access.dateTimeTill().timeSpec(), Qt::LocalTime);
    QCOMPARE(access.accessKey(), QStringLiteral("K-17"));
    QCOMPARE(access.comment(), QStringLiteral("Staff"));
}

void TestAccess::fullFields_data()
{
    QTest::addColumn<int>("offset");
    QTest::addColumn<int>("size");
    QTest::addColumn<QByteArray>("getter");

    QTest::newRow("number") << 2 << 10 << QByteArray("number");
    QTest::newRow("key") << 20 << 32 << QByteArray("key");
    QTest::newRow("comment") << 52 << 64 << QByteArray("comment");
}

void TestAccess::fullFields()
{
    QFETCH(int, offset);
    QFETCH(int, size);
    QFETCH(QByteArray, getter);
    const Access access = recordWith<Access>(offset, QByteArray(size - 1, 'x') + 'Y');
    const QString text = getter == "number" ? access.number()
                         : getter == "key"  ? access.accessKey()
                                            : access.comment();
    QCOMPARE(text, QString(size - 1, QLatin1Char('x')));
}

void TestAccess::numberIsTrimmed()
{
    Access access;
    access.setNumber(QStringLiteral("  A12  "));
    QCOMPARE(bytesOf(access).mid(2, 10), QByteArray("A12").leftJustified(10, '\0'));
    QCOMPARE(recordWith<Access>(2, "  A12 ").number(), QStringLiteral("A12"));
}

void TestAccess::everyTimeWordIsAMoment()
{
    const Access access = recordWith<Access>(12, QByteArray(8, '\xFF'));
    const QDateTime last({2106, 2, 7}, {6, 28, 15}, Qt::UTC);
    QCOMPARE(access.dateTimeFrom(), last);
    QCOMPARE(access.dateTimeTill(), last);
}

void TestAccess::times_data()
{
    QTest::addColumn<QDateTime>("time");
    QTest::addColumn<QByteArray>("bytes");

    QTest::newRow("null") << QDateTime() << QByteArray(4, '\xFF');
    QTest::newRow("epoch") << QDateTime({1970, 1, 1}, {0, 0}, Qt::UTC) << QByteArray(4, '\0');
    QTest::newRow("beyond 31 bits")
        << QDateTime({2038, 1, 19}, {3, 14, 8}, Qt::UTC) << QByteArray("\0\0\0\x80", 4);
    QTest::newRow("too late") << QDateTime({2200, 1, 1}, {0, 0}, Qt::UTC) << QByteArray(4, '\xFF');
}

void TestAccess::times()
{
    QFETCH(QDateTime, time);
    QFETCH(QByteArray, bytes);
    Access access;
    access.setDateTimeFrom(time);
    QCOMPARE(bytesOf(access).mid(12, 8), bytes + QByteArray("\xFF\xFF\xFF\x7F"));
    access.setDateTimeTill(time);
    QCOMPARE(bytesOf(access).mid(12, 8), bytes + bytes);
}

void TestAccess::validity_data()
{
    QTest::addColumn<qint16>("id");
    QTest::addColumn<bool>("valid");

    QTest::newRow("-1") << qint16(-1) << false;
    QTest::newRow("0") << qint16(0) << true;
    QTest::newRow("-2") << qint16(-2) << true;
    QTest::newRow("32767") << qint16(32767) << true;
}

void TestAccess::validity()
{
    QFETCH(qint16, id);
    QFETCH(bool, valid);
    Access access;
    access.setId(id);
    QCOMPARE(access.id(), id);
    QCOMPARE(access.isValid(), valid);
}

void TestAccess::translateFromLocal()
{
    VaskSettings::localSymbols = QStringLiteral("АВС");
    VaskSettings::latinSymbols = QStringLiteral("ABC");
    Access access;
    access.setNumber(QStringLiteral("а123в7"));
    access.translateFromLocal();
    VaskSettings::init();
    QCOMPARE(access.number(), QStringLiteral("A123B7"));
}

STALLO_TEST_MAIN(TestAccess)
#include "tst_access.moc"
