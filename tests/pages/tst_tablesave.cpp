// SPDX-License-Identifier: MIT
#include "pages/tablesave.h"

#include "records/csv.h"
#include "tests/pages/jobthread.h"
#include "tests/support/filelimit.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>

namespace
{

Scan passage(int n)
{
    Scan scan;
    scan.setDateTime(QDateTime(QDate(2026, 11, 21), QTime(12, 0), Qt::UTC).addSecs(n));
    scan.setNumber(QStringLiteral("A%1BC77").arg(n % 1000, 3, 10, QLatin1Char('0')));
    scan.setComment(QStringLiteral("comment %1").arg(n));
    return scan;
}

QByteArray recordsOf(int rows)
{
    QByteArray bytes;
    for (int n = 0; n < rows; ++n) {
        bytes.append(passage(n).data(), Scan::size);
    }
    return bytes;
}

QByteArray lineOf(int n)
{
    return '\n' + passage(n).dateTime().toString(CSV::dateFormat()).toLatin1() + ";A" +
           QByteArray::number(n % 1000).rightJustified(3, '0') + "BC77;0;0;0;comment " +
           QByteArray::number(n) + ';';
}

using Save = QString (*)(const TableSnapshot &, const QString &);

QString quotedCsv(const TableSnapshot &table, const QString &name)
{
    return TableSave::csv(table, name, TableSave::Progress());
}

} // namespace

Q_DECLARE_METATYPE(Save)

class TestTableSave : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        root_ = std::make_unique<QTemporaryDir>();
        QVERIFY(QDir(root_->path()).mkdir(QStringLiteral("stick")));
        make(10);
    }

    void dumpsExactlyTheRows_data();
    void dumpsExactlyTheRows();
    void dumpsShortIndex();
    void dumpsNothingOfAMissingTable_data();
    void dumpsNothingOfAMissingTable();
    void showsDumpWholeOrNotAtAll();
    void writesCsvOfExactlyTheRows_data();
    void writesCsvOfExactlyTheRows();
    void writesCsvInTheLocalEncoding();
    void quotesFields();
    void quotesNothingElse();
    void tellsProgress_data();
    void tellsProgress();
    void refusesOwnFiles_data();
    void refusesOwnFiles();
    void reportsFullDisk_data();
    void reportsFullDisk();
    void endsWhenInterrupted_data();
    void endsWhenInterrupted();
    void visitsPassages();

private:
    QString below(const char *path) const { return root_->filePath(QString::fromLatin1(path)); }
    QByteArray content(const char *path) const
    {
        QFile from(below(path));
        return from.open(QIODevice::ReadOnly) ? from.readAll() : QByteArray("no such file");
    }
    void write(const char *path, const QByteArray &bytes) const
    {
        QFile to(below(path));
        if (!to.open(QIODevice::WriteOnly) || to.write(bytes) != bytes.size()) {
            qFatal("cannot write %s", path);
        }
    }
    QStringList stick() const
    {
        return QDir(below("stick")).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }
    void make(int rows) const
    {
        write("table.tpp", recordsOf(rows));
        write("table.tpp.index", QByteArray(rows * 32, 'i'));
    }
    TableSnapshot table(int rows) const
    {
        return {below("table.tpp"),
                below("table.tpp.index"),
                rows,
                {QStringLiteral("One"), QStringLiteral("Two;2")}};
    }

    std::unique_ptr<QTemporaryDir> root_;
};

void TestTableSave::dumpsExactlyTheRows_data()
{
    QTest::addColumn<int>("there");
    QTest::addColumn<int>("rows");
    QTest::newRow("none") << 10 << 0;
    QTest::newRow("some") << 10 << 4;
    QTest::newRow("all") << 10 << 10;
    QTest::newRow("more than one piece") << 3000 << 2999;
}

void TestTableSave::dumpsExactlyTheRows()
{
    QFETCH(int, there);
    QFETCH(int, rows);
    make(there);
    QCOMPARE(TableSave::dump(table(rows), below("stick/copy.tpp")), QString());
    QCOMPARE(content("stick/copy.tpp"), recordsOf(rows));
    QCOMPARE(content("stick/copy.tpp.index"), QByteArray(rows * 32, 'i'));
    QCOMPARE(stick().size(), 2);
    QCOMPARE(content("table.tpp"), recordsOf(there));
}

void TestTableSave::dumpsShortIndex()
{
    write("table.tpp.index", QByteArray(40, 'i'));
    QCOMPARE(TableSave::dump(table(10), below("stick/copy.tpp")), QString());
    QCOMPARE(content("stick/copy.tpp"), recordsOf(10));
    QCOMPARE(content("stick/copy.tpp.index"), QByteArray(40, 'i'));
}

void TestTableSave::dumpsNothingOfAMissingTable_data()
{
    QTest::addColumn<QByteArray>("missing");
    QTest::newRow("table") << QByteArray("table.tpp");
    QTest::newRow("index") << QByteArray("table.tpp.index");
}

void TestTableSave::dumpsNothingOfAMissingTable()
{
    QFETCH(QByteArray, missing);
    QVERIFY(QFile::remove(below(missing.constData())));
    QVERIFY(!TableSave::dump(table(10), below("stick/copy.tpp")).isEmpty());
    QCOMPARE(stick(), QStringList());
}

void TestTableSave::showsDumpWholeOrNotAtAll()
{
    // The index cannot be written; the older table keeps its place.
    write("stick/copy.tpp", "older");
    QVERIFY(QDir(below("stick")).mkdir(QStringLiteral("copy.tpp.index")));
    QVERIFY(!TableSave::dump(table(10), below("stick/copy.tpp")).isEmpty());
    QCOMPARE(content("stick/copy.tpp"), QByteArray("older"));
    QCOMPARE(stick(), QStringList(QStringLiteral("copy.tpp")));
}

void TestTableSave::writesCsvOfExactlyTheRows_data()
{
    dumpsExactlyTheRows_data();
}

void TestTableSave::writesCsvOfExactlyTheRows()
{
    QFETCH(int, there);
    QFETCH(int, rows);
    make(there);
    QCOMPARE(TableSave::plainCsv(table(rows), below("stick/list.csv")), QString());
    QByteArray expected = "One;Two;2";
    for (int n = 0; n < rows; ++n) {
        expected += lineOf(n);
    }
    QCOMPARE(content("stick/list.csv"), expected);
    QCOMPARE(stick(), QStringList(QStringLiteral("list.csv")));
}

void TestTableSave::writesCsvInTheLocalEncoding()
{
    Scan scan = passage(0);
    scan.setComment(QString::fromUtf8("\xd0\x96\xd1\x83\xd0\xba"));
    write("table.tpp", QByteArray(scan.data(), Scan::size));
    TableSnapshot one = table(1);
    one.titles = QStringList(QString::fromUtf8("\xd0\x94\xd0\xb0\xd1\x82\xd0\xb0"));
    QCOMPARE(TableSave::plainCsv(one, below("stick/list.csv")), QString());
    QVERIFY(content("stick/list.csv").startsWith(one.titles.first().toLocal8Bit() + '\n'));
    QVERIFY(content("stick/list.csv").endsWith(';' + scan.comment().toLocal8Bit() + ';'));
}

void TestTableSave::quotesFields()
{
    Scan first = passage(0);
    first.setIncoming(true);
    first.setInAccessList(true);
    first.setAccessGranted(true);
    first.setComment(QStringLiteral("semi;colon"));
    first.setAccessKey(QStringLiteral("com,ma"));
    Scan second = passage(1);
    second.setComment(QStringLiteral("say \"A\"\nor\r\nnot"));
    second.setAccessKey(QStringLiteral("plain"));
    Scan third = passage(2);
    third.setNumber(QStringLiteral(";\","));
    third.setComment(QString());
    QByteArray records;
    QStringList times;
    for (const Scan &scan : {first, second, third}) {
        records.append(scan.data(), Scan::size);
        times << scan.dateTime().toString(CSV::dateFormat());
    }
    write("table.tpp", records);
    QCOMPARE(quotedCsv(table(3), below("stick/list.csv")), QString());
    QCOMPARE(content("stick/list.csv"), "One;Two;2\n" + times.at(0).toLatin1() +
                                            ";A000BC77;1;1;1;\"semi;colon\";\"com,ma\"\n" +
                                            times.at(1).toLatin1() +
                                            ";A001BC77;0;0;0;\"say \"\"A\"\" or not\";plain\n" +
                                            times.at(2).toLatin1() + ";\";\"\",\";0;0;0;;");
}

void TestTableSave::quotesNothingElse()
{
    make(3000);
    QCOMPARE(TableSave::plainCsv(table(2999), below("stick/plain.csv")), QString());
    QCOMPARE(quotedCsv(table(2999), below("stick/list.csv")), QString());
    QCOMPARE(content("stick/list.csv"), content("stick/plain.csv"));
    QCOMPARE(quotedCsv(table(0), below("stick/list.csv")), QString());
    QCOMPARE(content("stick/list.csv"), QByteArray("One;Two;2"));
}

void TestTableSave::tellsProgress_data()
{
    QTest::addColumn<int>("rows");
    for (const int rows : {0, 1, 3, 10, 100, 101, 2999}) {
        QTest::addRow("%d rows", rows) << rows;
    }
}

void TestTableSave::tellsProgress()
{
    QFETCH(int, rows);
    make(rows);
    QVector<int> expected;
    for (int row = 1; row <= rows; ++row) {
        expected << row * 100 / rows;
    }
    expected.erase(std::unique(expected.begin(), expected.end()), expected.end());
    QVector<int> told;
    const auto tell = [&told](int percent) { told << percent; };
    QCOMPARE(TableSave::csv(table(rows), below("stick/list.csv"), tell), QString());
    QCOMPARE(told, expected);
    told.clear();
    QCOMPARE(TableSave::photos(table(rows), below("stick"), root_->path(), tell), QString());
    QCOMPARE(told, expected);
    QVERIFY(rows == 0 || told.last() == 100);
}

void TestTableSave::refusesOwnFiles_data()
{
    QTest::addColumn<Save>("save");
    QTest::addColumn<QByteArray>("name");
    QTest::newRow("dump, table") << &TableSave::dump << QByteArray("table.tpp");
    QTest::newRow("dump, other spelling") << &TableSave::dump << QByteArray("stick/../table.tpp");
    QTest::newRow("dump, link") << &TableSave::dump << QByteArray("stick/link");
    QTest::newRow("dump, same index") << &TableSave::dump << QByteArray("table.may.tpp");
    QTest::newRow("dump onto index") << &TableSave::dump << QByteArray("table.tpp.index");
    QTest::newRow("csv onto table") << &TableSave::plainCsv << QByteArray("table.tpp");
    QTest::newRow("csv onto index") << &TableSave::plainCsv << QByteArray("table.tpp.index");
    QTest::newRow("csv, link") << &TableSave::plainCsv << QByteArray("stick/link");
    QTest::newRow("quoted csv onto table") << &quotedCsv << QByteArray("table.tpp");
    QTest::newRow("quoted csv onto index") << &quotedCsv << QByteArray("table.tpp.index");
}

void TestTableSave::refusesOwnFiles()
{
    QFETCH(Save, save);
    QFETCH(QByteArray, name);
    QVERIFY(QFile::link(below("table.tpp"), below("stick/link")));
    QCOMPARE(save(table(5), below(name.constData())), QStringLiteral("Destination file exists"));
    QCOMPARE(content("table.tpp"), recordsOf(10));
    QCOMPARE(content("table.tpp.index"), QByteArray(320, 'i'));
}

void TestTableSave::reportsFullDisk_data()
{
    QTest::addColumn<Save>("save");
    QTest::addColumn<int>("rows");
    QTest::addColumn<int>("limit");
    const auto rows = [](const char *name, Save save) {
        const int table[][2] = {{10, 0},           {10, 1},       {10, 300},
                                {2000, 5000},      {2000, 16384}, {2000, 20000},
                                {2000, 64 * 1024}, {2000, 65537}, {2000, 80000}};
        for (const auto &row : table) {
            QTest::addRow("%s, %d rows, %d bytes", name, row[0], row[1])
                << save << row[0] << row[1];
        }
    };
    rows("dump", &TableSave::dump);
    rows("csv", &TableSave::plainCsv);
    rows("quoted csv", &quotedCsv);
}

void TestTableSave::reportsFullDisk()
{
    QFETCH(Save, save);
    QFETCH(int, rows);
    QFETCH(int, limit);
    make(rows);
    write("stick/copy", "older");
    write("stick/copy.tpp.index", "older");
    {
        const FileLimit full(static_cast<rlim_t>(limit));
        QCOMPARE(save(table(rows), below("stick/copy")), QStringLiteral("File too large"));
    }
    QCOMPARE(stick().size(), 2);
    QCOMPARE(content("stick/copy"), QByteArray("older"));
    QCOMPARE(content("stick/copy.tpp.index"), QByteArray("older"));
    QCOMPARE(save(table(rows), below("stick/copy")), QString());
    QVERIFY(content("stick/copy").size() > limit);
}

void TestTableSave::endsWhenInterrupted_data()
{
    QTest::addColumn<Save>("save");
    QTest::newRow("dump") << &TableSave::dump;
    QTest::newRow("csv") << &TableSave::plainCsv;
    QTest::newRow("quoted csv") << &quotedCsv;
}

void TestTableSave::endsWhenInterrupted()
{
    QFETCH(Save, save);
    QString result;
    InterruptedThread thread([&] { result = save(table(10), below("stick/copy")); });
    thread.start();
    QVERIFY(thread.wait(10000));
    QCOMPARE(result, QStringLiteral("Interrupted"));
    QCOMPARE(stick(), QStringList());
}

void TestTableSave::visitsPassages()
{
    int seen = 0;
    const auto count = [&seen](const Scan &scan) {
        [&] { QCOMPARE(scan.number(), passage(seen).number()); }();
        return ++seen < 7;
    };
    QCOMPARE(TableSave::forEachPassage(table(5), count), QString());
    QCOMPARE(seen, 5);
    seen = 0;
    QCOMPARE(TableSave::forEachPassage(table(10), count), QString());
    QCOMPARE(seen, 7);
    // Fewer rows than promised is an error, not a shorter table.
    seen = -100;
    const auto all = [&seen](const Scan &) { return ++seen < 0; };
    QVERIFY(!TableSave::forEachPassage(table(11), all).isEmpty());
    QCOMPARE(seen, -90);
    QVERIFY(!TableSave::forEachPassage({below("missing"), {}, 1, {}}, all).isEmpty());
    QCOMPARE(seen, -90);
}

STALLO_TEST_MAIN(TestTableSave)
#include "tst_tablesave.moc"
