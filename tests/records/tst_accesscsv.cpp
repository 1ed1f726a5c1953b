// SPDX-License-Identifier: MIT
#include "records/accesscsv.h"

#include "records/csv.h"
#include "records/vasksettings.h"
#include "tests/records/recordbytes.h"
#include "tests/support/testmain.h"

namespace
{

const QDateTime from = QDateTime(QDate(2026, 3, 5), QTime(14, 7, 9));
const QDateTime till = QDateTime(QDate(2027, 11, 21), QTime(23, 59, 58));

// The fields of a line with these times.
QStringList withTimes(const QString &first, const QString &second)
{
    return {QStringLiteral("17"),   QStringLiteral("A123BC77"), first, second,
            QStringLiteral("0042"), QStringLiteral("flat 12")};
}

Access entry()
{
    Access access;
    access.setId(17);
    access.setNumber(QStringLiteral("A123BC77"));
    access.setDateTimeFrom(from);
    access.setDateTimeTill(till);
    access.setAccessKey(QStringLiteral("0042"));
    access.setComment(QStringLiteral("flat 12"));
    return access;
}

constexpr quint32 none = 0xFFFFFFFFU;

quint32 word(const Access &access, int offset)
{
    return qFromLittleEndian<quint32>(access.data() + offset);
}

} // namespace

class TestAccessCsv : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { VaskSettings::init(); }

    void ordersFields()
    {
        QCOMPARE(AccessCsv::fields(entry()), withTimes(QStringLiteral("05.03.2026 14:07:09"),
                                                       QStringLiteral("21.11.2027 23:59:58")));
        Access plain;
        plain.setComment(QStringLiteral(" van; red "));
        const QStringList fields = AccessCsv::fields(plain);
        QCOMPARE(fields.first(), QStringLiteral("-1"));
        QCOMPARE(fields.at(2), QDateTime::fromSecsSinceEpoch(0).toString(CSV::dateFormat()));
        QCOMPARE(fields.at(3),
                 QDateTime::fromSecsSinceEpoch(0x7FFFFFFF).toString(CSV::dateFormat()));
        QCOMPARE(fields.last(), QStringLiteral(" van; red "));
    }

    // Everything but the times, of which the end becomes the begin.
    void comesBackWithItsEndForABegin()
    {
        Access expected = entry();
        expected.setDateTimeFrom(till);
        expected.setDateTimeTill(Access().dateTimeTill());
        QCOMPARE(bytesOf(AccessCsv::access(AccessCsv::fields(entry()))), bytesOf(expected));
        // Over a line of a file, with all that needs quotes.
        Access odd = entry();
        odd.setAccessKey(QStringLiteral("a;b,c"));
        odd.setComment(QStringLiteral("\"x\"; y, z"));
        expected.setAccessKey(odd.accessKey());
        expected.setComment(odd.comment());
        const CSV codec;
        const QString line = codec.encodeRecord(AccessCsv::fields(odd));
        QCOMPARE(bytesOf(AccessCsv::access(codec.decodeRecord(line))), bytesOf(expected));
    }

    void readsTimes_data()
    {
        QTest::addColumn<QString>("first");
        QTest::addColumn<QString>("second");
        QTest::addColumn<QDateTime>("begin"); // invalid: none
        const QString text = till.toString(Qt::TextDate);
        const QString own = till.toString(CSV::dateFormat());
        const QString earlier = from.toString(CSV::dateFormat());
        const QDateTime never;
        QTest::newRow("text") << from.toString(Qt::TextDate) << text << till;
        QTest::newRow("own form") << earlier << own << till;
        QTest::newRow("text and own form") << from.toString(Qt::TextDate) << own << till;
        QTest::newRow("own form and text") << earlier << text << till;
        QTest::newRow("no first") << QString() << own << till;
        QTest::newRow("rubbish first") << QStringLiteral("yesterday") << own << till;
        QTest::newRow("no second") << own << QString() << never;
        QTest::newRow("rubbish second") << own << QStringLiteral("tomorrow") << never;
        QTest::newRow("other form") << own << till.toString(Qt::ISODate) << never;
        QTest::newRow("no such day") << own << QStringLiteral("31.02.2026 10:00:00") << never;
        QTest::newRow("without seconds") << own << QStringLiteral("21.11.2027 23:59") << never;
        QTest::newRow("before all time") << own << QStringLiteral("31.12.1968 10:00:00") << never;
    }
    void readsTimes()
    {
        QFETCH(QString, first);
        QFETCH(QString, second);
        QFETCH(QDateTime, begin);
        const Access read = AccessCsv::access(withTimes(first, second));
        QCOMPARE(word(read, 12),
                 begin.isValid() ? static_cast<quint32>(begin.toSecsSinceEpoch()) : none);
        QCOMPARE(word(read, 16), 0x7FFFFFFFU);
        QCOMPARE(read.accessKey(), QStringLiteral("0042"));
        QCOMPARE(read.comment(), QStringLiteral("flat 12"));
    }

    void readsIds_data()
    {
        QTest::addColumn<QString>("field");
        QTest::addColumn<int>("id");
        const auto row = [](const char *field, int id) {
            QTest::newRow(field) << QString::fromLatin1(field) << id;
        };
        row("12", 12);
        row("-1", -1);
        row(" 7 ", 7);
        row("010", 10); // not eight
        row("32767", 32767);
        row("32768", 0);
        row("0x10", 0);
        row("twelve", 0);
        row("", 0);
    }
    void readsIds()
    {
        QFETCH(QString, field);
        QStringList fields = AccessCsv::fields(entry());
        fields[0] = field;
        QTEST(int(AccessCsv::access(fields).id()), "id");
    }

    // A number of local letters is longer than its field before it is translated.
    void translatesWholeNumbers()
    {
        VaskSettings::localSymbols = QString::fromUtf8("\xD0\x90\xD0\x92\xD0\xA1"); // А, В and С
        VaskSettings::latinSymbols = QStringLiteral("ABC");
        QStringList fields = AccessCsv::fields(entry());
        fields[1] = QString::fromUtf8("\xD0\x90\x31\x32\x33\xD0\x92\xD0\xA1\x31\x39\x37");
        QVERIFY(fields.at(1).toUtf8().size() > 9);
        QCOMPARE(AccessCsv::access(fields).number(), QStringLiteral("A123BC197"));
        fields[1] = QStringLiteral(" a12 ");
        QCOMPARE(AccessCsv::access(fields).number(), QStringLiteral("A12"));
    }

    void takesWhatThereIs()
    {
        const Access empty = AccessCsv::access({});
        QCOMPARE(int(empty.id()), 0);
        QCOMPARE(empty.number(), QString());
        QCOMPARE(word(empty, 12), none);
        QCOMPARE(word(empty, 16), 0x7FFFFFFFU);
        QCOMPARE(empty.accessKey() + empty.comment(), QString());
        const Access two = AccessCsv::access({QStringLiteral("3"), QStringLiteral("A1")});
        QCOMPARE(int(two.id()), 3);
        QCOMPARE(two.number(), QStringLiteral("A1"));
        QStringList more = AccessCsv::fields(entry());
        more << QStringLiteral("one too many");
        QCOMPARE(bytesOf(AccessCsv::access(more)),
                 bytesOf(AccessCsv::access(AccessCsv::fields(entry()))));
    }
};

STALLO_TEST_MAIN(TestAccessCsv)
#include "tst_accesscsv.moc"
