// SPDX-License-Identifier: MIT
#include "tests/pages/tableloadcase.h"

#include "pages/tablesave.h"
#include "records/scanmodel.h"

#include <vector>

namespace
{

Scan passage(int n)
{
    Scan scan;
    scan.setDateTime(QDateTime(QDate(2026, 11, 21), QTime(12, 0)).addSecs(n));
    scan.setNumber(QStringLiteral("A%1BC77").arg(n % 1000, 3, 10, QLatin1Char('0')));
    scan.setIncoming(n % 2 == 0);
    scan.setInAccessList(n % 3 == 0);
    scan.setAccessGranted(n % 5 == 0);
    scan.setComment(QStringLiteral("comment %1").arg(n));
    scan.setAccessKey(QString::number(n));
    return scan;
}

QByteArray bytesOf(const std::vector<Scan> &scans)
{
    QByteArray bytes;
    for (const Scan &scan : scans) {
        bytes.append(scan.data(), Scan::size);
    }
    return bytes;
}

std::vector<Scan> passages(int rows)
{
    std::vector<Scan> scans;
    for (int n = 0; n < rows; ++n) {
        scans.push_back(passage(n));
    }
    return scans;
}

} // namespace

// What is read from a CSV file.
class TestTableLoad : public TableLoadCase
{
    Q_OBJECT

private Q_SLOTS:
    void readsWhatWasSaved();
    void textsComeBack_data();
    void textsComeBack();
    void readsTheLocalEncoding();
    void readsLines_data();
    void readsLines();
    void readsFields();
    void readsHugeLines_data();
    void readsHugeLines();
    void readsAnything();
    void tellsProgress_data();
    void tellsProgress();
    void removesTheIndex();

private:
    // Saves them as a table of passages and reads them again.
    void saveAndLoad(const std::vector<Scan> &scans)
    {
        write("saved.tpp", bytesOf(scans));
        const TableSnapshot table{below("saved.tpp"), below("saved.tpp.index"), int(scans.size()),
                                  QStringList(QStringLiteral("Titles"))};
        QCOMPARE(TableSave::csv(table, below("list.csv"), TableSave::Progress()), QString());
        QCOMPARE(load(), QString());
        QCOMPARE(content("table.tpp"), bytesOf(scans));
    }
};

void TestTableLoad::readsWhatWasSaved()
{
    for (const int rows : {0, 1, 2, 1000, 0}) {
        saveAndLoad(passages(rows));
    }
    Scan withoutTime;
    withoutTime.setNumber(QStringLiteral("A001BC77"));
    withoutTime.setIncoming(false);
    saveAndLoad({passage(1), withoutTime, passage(2)});
}

void TestTableLoad::textsComeBack_data()
{
    QTest::addColumn<QString>("text");
    for (const char *text : {"",
                             "plain",
                             "semi;colon",
                             ";",
                             "com,ma",
                             "\"",
                             "\"\"",
                             "\"quoted\"",
                             "half \" quoted",
                             "\";\"",
                             ";\";\";",
                             "a;\"b\",c",
                             " blanks ",
                             "'",
                             "\\",
                             "0",
                             "tab\tbed",
                             "\"\"\"",
                             "ends with \"",
                             "1234567890123456789012345678901"}) {
        QTest::newRow(text) << QString::fromLatin1(text);
    }
}

void TestTableLoad::textsComeBack()
{
    QFETCH(QString, text);
    Scan scan = passage(0);
    scan.setComment(text);
    scan.setAccessKey(text);
    saveAndLoad({scan, passage(1), scan});
    Scan swapped = passage(2);
    swapped.setNumber(text.left(9));
    swapped.setComment(QString(63, QLatin1Char('c')));
    swapped.setAccessKey(QString());
    saveAndLoad({swapped, swapped});
}

void TestTableLoad::readsTheLocalEncoding()
{
    Scan scan = passage(0);
    scan.setComment(QString::fromUtf8("\xd0\x96\xd1\x83\xd0\xba; \xd0\xba\xd1\x80."));
    saveAndLoad({scan});
    write("list.csv", "Titles\n" + line("A001BC77", scan.comment().left(3).toLocal8Bit()));
    QCOMPARE(load(), QString());
    Scan read;
    std::copy_n(content("table.tpp").constData(), Scan::size, read.data());
    QCOMPARE(read.comment(), scan.comment().left(3));
}

void TestTableLoad::readsLines_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("numbers");
    const QByteArray one = line("A001BC77");
    const QByteArray two = line("A002BC77");
    const auto row = [](const char *name, const QByteArray &text, const char *numbers) {
        QTest::newRow(name) << text << QString::fromLatin1(numbers);
    };
    row("nothing", "", "");
    row("titles", "Date;Number", "");
    row("titles and line end", "Date;Number\n", "");
    row("titles like a passage", two + '\n' + one, "A001BC77");
    row("empty titles", '\n' + one + '\n' + two, "A001BC77 A002BC77");
    row("line end at the end", "Titles\n" + one + '\n' + two + '\n', "A001BC77 A002BC77");
    row("no line end at the end", "Titles\n" + one + '\n' + two, "A001BC77 A002BC77");
    row("blank lines", "Titles\n\n" + one + "\n\n\n" + two + "\n\n", "A001BC77 A002BC77");
    row("CR LF", "Titles\r\n" + one + "\r\n" + two + "\r\n", "A001BC77 A002BC77");
    row("blank lines with CR LF", "Titles\r\n\r\n" + one + "\r\n\r\n" + two + "\r\n\r\n",
        "A001BC77 A002BC77");
    row("half a line", "Titles\n21.11.2026 12:00:00;A001BC77\n" + two, "A001BC77 A002BC77");
    row("half a line at the end", "Titles\n" + one + "\n21.11.2026 12:00:00;A00", "A001BC77 A00");
    row("more fields", "Titles\n" + one + ";more;and;more\n" + two, "A001BC77 A002BC77");
    row("fields without text", "Titles\n;\n" + two, " A002BC77");
    row("quoted number", "Titles\n\"21.11.2026 12:00:00\";\"A001BC77\";0\n", "A001BC77");
    row("quote never closed", "Titles\n21.11.2026 12:00:00;A001BC77;0;0;0;\"c;c\n" + two,
        "A001BC77 A002BC77");
    row("number too long", "Titles\n" + line("A001BC777777"), "A001BC777");
}

void TestTableLoad::readsLines()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, numbers);
    write("list.csv", text);
    QCOMPARE(load(), QString());
    QCOMPARE(this->numbers(), numbers);
    QCOMPARE(content("table.tpp").size() % int(Scan::size), 0);
    QCOMPARE(content("list.csv"), text);
}

void TestTableLoad::readsFields()
{
    write("list.csv", "Titles\n01.02.2026 03:04:05;A001BC77;1;0;7;the comment;the key\n"
                      "1.2.2026 3:04;A002BC77;0;-1;x");
    QCOMPARE(load(), QString());
    Scan full;
    full.setDateTime(QDateTime(QDate(2026, 2, 1), QTime(3, 4, 5)));
    full.setNumber(QStringLiteral("A001BC77"));
    full.setIncoming(true);
    full.setInAccessList(false);
    full.setAccessGranted(true);
    full.setComment(QStringLiteral("the comment"));
    full.setAccessKey(QStringLiteral("the key"));
    Scan odd; // its time has another form
    odd.setNumber(QStringLiteral("A002BC77"));
    odd.setIncoming(false);
    odd.setInAccessList(true);
    odd.setAccessGranted(false);
    QCOMPARE(content("table.tpp"), bytesOf({full, odd}));
}

void TestTableLoad::readsHugeLines_data()
{
    QTest::addColumn<int>("bytes");
    QTest::addColumn<bool>("titles");
    for (const int bytes : {1000, 60000, 65536, 70000, 1000000}) {
        QTest::addRow("%d bytes", bytes) << bytes << false;
        QTest::addRow("titles of %d bytes", bytes) << bytes << true;
    }
}

void TestTableLoad::readsHugeLines()
{
    QFETCH(int, bytes);
    QFETCH(bool, titles);
    const QByteArray huge(bytes, 'x');
    write("list.csv", titles ? huge + '\n' + line("A001BC77") + '\n' + line("A002BC77")
                             : "Titles\n" + line("A001BC77", huge) + '\n' + line("A002BC77"));
    QCOMPARE(load(), QString());
    QCOMPARE(numbers(), QStringLiteral("A001BC77 A002BC77"));
}

void TestTableLoad::readsAnything()
{
    QByteArray bytes(300000, '\0');
    for (int at = 0; at < bytes.size(); ++at) {
        bytes[at] = static_cast<char>((at * 2654435761U) >> 13);
    }
    write("list.csv", bytes);
    QCOMPARE(load(), QString());
    QCOMPARE(content("table.tpp").size() % int(Scan::size), 0);
    QCOMPARE(progress_.last(), 100);
}

void TestTableLoad::tellsProgress_data()
{
    QTest::addColumn<int>("rows");
    QTest::newRow("one line") << 1;
    QTest::newRow("some") << 7;
    QTest::newRow("a hundred") << 100;
    QTest::newRow("many") << 5000;
}

void TestTableLoad::tellsProgress()
{
    QFETCH(int, rows);
    QByteArray text = "12345\n"; // lines of one length
    for (int n = 0; n < rows; ++n) {
        text += "A;BCD\n";
    }
    write("list.csv", text);
    QCOMPARE(load(), QString());
    QVector<int> expected;
    for (int n = 2; n <= rows + 1; ++n) {
        expected << n * 100 / (rows + 1);
    }
    expected.erase(std::unique(expected.begin(), expected.end()), expected.end());
    QCOMPARE(progress_, expected);
    QCOMPARE(progress_.last(), 100);
}

void TestTableLoad::removesTheIndex()
{
    write("list.csv", "Titles\n" + line("A001BC77"));
    QCOMPARE(load(), QString());
    QCOMPARE(ScanModel::indexFileOf(below("table.tpp")), below("table.tpp.index"));
    QVERIFY(!QFile::exists(below("table.tpp.index")));
    // The older table was shorter or longer.
    QCOMPARE(content("table.tpp").size(), int(Scan::size));
    write("table.tpp", QByteArray(10 * int(Scan::size), 't'));
    QCOMPARE(load(), QString());
    QCOMPARE(numbers(), QStringLiteral("A001BC77"));
    // A record file that was not there yet.
    QVERIFY(QFile::remove(below("table.tpp")));
    QCOMPARE(load(), QString());
    QCOMPARE(numbers(), QStringLiteral("A001BC77"));
}

STALLO_TEST_MAIN(TestTableLoad)
#include "tst_tableload.moc"
