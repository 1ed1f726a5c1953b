// SPDX-License-Identifier: MIT
#include "records/deviceindex.h"
#include "records/scan.h"
#include "simulator/devicehost.h"
#include "tests/soak/devicejournal.h"
#include "tests/soak/tablecomparison.h"
#include "tests/support/testmain.h"

#include <QTcpSocket>
#include <QTemporaryDir>

namespace
{

constexpr qint64 end = 10000;
constexpr int grace = 1000;

// A passage for each letter, one sent every 100 ms, the last one right before the end. The same
// letter is the same bytes.
QVector<SentPassage> sentOf(const QString &letters)
{
    QVector<SentPassage> sent;
    for (int place = 0; place < letters.size(); ++place) {
        sent.append({end - 100 * (letters.size() - place),
                     QByteArray(Scan::size, letters.at(place).toLatin1())});
    }
    return sent;
}

QVector<QByteArray> rowsOf(const QString &letters)
{
    QVector<QByteArray> rows;
    for (const SentPassage &each : sentOf(letters)) {
        rows.append(each.passage);
    }
    return rows;
}

} // namespace

// What tells a soak run whether something was lost: it must itself be seen to notice.
class TestComparison : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void counts_data()
    {
        QTest::addColumn<QString>("sent");
        QTest::addColumn<QString>("rows");
        QTest::addColumn<QVector<int>>(
            "counts"); // lost, with the kill, doubled, foreign, misplaced
        const auto row = [](const char *name, const char *sent, const char *rows,
                            const QVector<int> &counts) {
            QTest::newRow(name) << QString::fromLatin1(sent) << QString::fromLatin1(rows) << counts;
        };
        row("nothing", "", "", {0, 0, 0, 0, 0});
        row("equal", "abcdef", "abcdef", {0, 0, 0, 0, 0});
        row("the same bytes twice", "abbc", "abbc", {0, 0, 0, 0, 0});
        row("the last ones are missing", "abcdef", "abcd", {0, 2, 0, 0, 0});
        row("all are missing, sent just before", "abc", "", {0, 3, 0, 0, 0});
        row("the last ones, some sent long before", "abcdefghijklmno", "ab", {4, 9, 0, 0, 0});
        row("one in the middle", "abcdef", "abdef", {1, 0, 0, 0, 0});
        row("one in the middle and the last", "abcdef", "abde", {1, 1, 0, 0, 0});
        row("one of two equal ones", "abbc", "abc", {1, 0, 0, 0, 0});
        row("the first", "abcdef", "bcdef", {1, 0, 0, 0, 0});
        row("doubled", "abc", "abbc", {0, 0, 1, 0, 0});
        row("doubled at the end", "abc", "abcc", {0, 0, 1, 0, 0});
        row("doubled and lost", "abcd", "abbd", {1, 0, 1, 0, 0});
        row("foreign", "abc", "abxc", {0, 0, 0, 1, 0});
        row("changed", "abc", "axc", {1, 0, 0, 1, 0});
        row("exchanged", "abcd", "acbd", {0, 0, 0, 0, 2});
        row("rows where nothing was sent", "", "ab", {0, 0, 0, 2, 0});
    }
    void counts()
    {
        QFETCH(QString, sent);
        QFETCH(QString, rows);
        QFETCH(QVector<int>, counts);
        const ComparisonCounts found =
            TableComparison(end, grace).compare(sentOf(sent), rowsOf(rows));
        QCOMPARE((QVector<int>{found.lost, found.lostWithKill, found.doubled, found.foreign,
                               found.misplaced}),
                 counts);
        QCOMPARE(found.sent, sent.size());
        QCOMPARE(found.stored, rows.size());
        const int bad = found.lost + found.doubled + found.foreign + found.misplaced;
        QCOMPARE(found.isGood(), bad == 0);
        QCOMPARE(found.examples.isEmpty(), bad == 0);
    }

    void everyByteCounts()
    {
        const QVector<SentPassage> sent = sentOf(QStringLiteral("abc"));
        for (int place = 0; place < static_cast<int>(Scan::size); ++place) {
            QVector<QByteArray> rows = rowsOf(QStringLiteral("abc"));
            rows[1][place] = '\x01';
            QVERIFY2(!TableComparison(end, grace).compare(sent, rows).isGood(),
                     qPrintable(QString::number(place)));
        }
    }

    void rowsByDevice()
    {
        const QByteArray a(Scan::size, 'a');
        const QByteArray b(Scan::size, 'b');
        const QByteArray one = DeviceIndex::entry(QStringLiteral("one"));
        const QByteArray two = DeviceIndex::entry(QStringLiteral("two"));
        const auto rows = TableComparison::byDevice(a + b + b + a.left(50), one + two + one);
        QCOMPARE(rows.value("one"), (QVector<QByteArray>{a, b}));
        QCOMPARE(rows.value("two"), QVector<QByteArray>{b});
        QCOMPARE(rows.value(""), QVector<QByteArray>{a.left(50)});
        QCOMPARE(rows.size(), 3);
    }

    // The rows that a journal asks for are those that the panel's own records make.
    void journalTellsWhatWasSent()
    {
        const QTemporaryDir folder;
        const QString file = folder.filePath(QStringLiteral("journal"));
        DeviceHost device;
        QString error;
        QVERIFY(device.journal().openFile(file, &error));
        QVERIFY(device.start(&error));
        QTcpSocket panel;
        panel.connectToHost(device.address(), device.onLinePort());
        QVERIFY(panel.waitForConnected());
        QTRY_COMPARE(device.onLineConnections(), 1);

        DeviceJournal journal(file);
        QVector<SentPassage> sent;
        QVERIFY2(journal.readOn(&sent, &error), qPrintable(error));
        QVERIFY(sent.isEmpty());
        QCOMPARE(device.burst(50), 50);
        device.pushAll(SampleRecords::all(QDateTime::currentDateTimeUtc()));
        QVERIFY2(journal.readOn(&sent, &error), qPrintable(error));
        const QVector<OnLine> records = device.sentRecords();
        QVERIFY(records.size() > 60);
        QCOMPARE(sent.size(), records.size());
        for (int place = 0; place < records.size(); ++place) {
            QVERIFY(sent.at(place).msec <= device.journal().elapsed());
            QCOMPARE(sent.at(place).passage,
                     QByteArray(Scan(records.at(place)).data(), Scan::size));
        }
        QCOMPARE(device.burst(3), 3);
        sent.clear();
        QVERIFY(journal.readOn(&sent, &error));
        QCOMPARE(sent.size(), 3);
    }

    void journalThatIsNone_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::newRow("short record") << QByteArray("12 record-sent #0 A 0x0102\n");
        QTest::newRow("no record") << QByteArray("12 record-sent #0 A\n");
        QTest::newRow("no time") << QByteArray("x record-sent #0 A 0x") +
                                        QByteArray(192, 'a').toHex() + '\n';
    }
    void journalThatIsNone()
    {
        QFETCH(QByteArray, line);
        const QTemporaryDir folder;
        QFile file(folder.filePath(QStringLiteral("journal")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(line);
        file.close();
        QVector<SentPassage> sent;
        QString error;
        QVERIFY(!DeviceJournal(file.fileName()).readOn(&sent, &error));
        QVERIFY(!error.isEmpty());
        QVERIFY(!DeviceJournal(folder.filePath(QStringLiteral("none"))).readOn(&sent, &error));
    }
};

STALLO_TEST_MAIN(TestComparison)
#include "tst_comparison.moc"
