// SPDX-License-Identifier: MIT
#include "records/passagecsv.h"

#include "tests/support/localletters.h"
#include "tests/support/testmain.h"

class TestPassageCsv : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ordersFields()
    {
        Scan scan;
        scan.setDateTime(QDateTime(QDate(2026, 3, 5), QTime(14, 7, 9)));
        scan.setNumber(QStringLiteral("A123BC77"));
        scan.setIncoming(true);
        scan.setInAccessList(true);
        scan.setComment(QStringLiteral("van; red"));
        scan.setAccessKey(QStringLiteral("42"));
        QCOMPARE(PassageCsv::fields(scan),
                 (QStringList{QStringLiteral("05.03.2026 14:07:09"), QStringLiteral("A123BC77"),
                              QStringLiteral("1"), QStringLiteral("1"), QStringLiteral("0"),
                              QStringLiteral("van; red"), QStringLiteral("42")}));
    }

    void comesBack_data()
    {
        QTest::addColumn<bool>("incoming");
        QTest::addColumn<bool>("listed");
        QTest::addColumn<bool>("granted");
        for (int bits = 0; bits < 8; ++bits) {
            QTest::addRow("flags %d", bits) << bool(bits & 1) << bool(bits & 2) << bool(bits & 4);
        }
    }
    void comesBack()
    {
        QFETCH(bool, incoming);
        QFETCH(bool, listed);
        QFETCH(bool, granted);
        Scan scan;
        scan.setDateTime(QDateTime(QDate(2026, 11, 21), QTime(23, 59, 59)));
        scan.setNumber(QStringLiteral("X?23YZ197"));
        scan.setIncoming(incoming);
        scan.setInAccessList(listed);
        scan.setAccessGranted(granted);
        const Scan read = PassageCsv::scan(PassageCsv::fields(scan));
        QCOMPARE(QByteArray(read.data(), Scan::size), QByteArray(scan.data(), Scan::size));
    }

    void writesAndReadsLatinLetters()
    {
        const LocalLetters letters;
        Scan scan;
        scan.setNumber(QStringLiteral("К?23У*"));
        QCOMPARE(PassageCsv::fields(scan).at(1), QStringLiteral("K?23Y*"));
        // Whole, though its local letters would not all fit in the field.
        const Scan read = PassageCsv::scan({QString(), QStringLiteral("а123вс777")});
        QCOMPARE(read.number(), QStringLiteral("A123BC777"));
        QCOMPARE(PassageCsv::scan({QString(), QStringLiteral("a1")}).number(),
                 QStringLiteral("a1"));
    }

    void takesWhatThereIs()
    {
        const Scan scan = PassageCsv::scan({QStringLiteral("yesterday"), QStringLiteral("A1")});
        QVERIFY(!scan.isValid());
        QCOMPARE(scan.number(), QStringLiteral("A1"));
        QVERIFY(!scan.isIncoming());
        QVERIFY(!PassageCsv::scan({}).isValid());
    }
};

STALLO_TEST_MAIN(TestPassageCsv)
#include "tst_passagecsv.moc"
