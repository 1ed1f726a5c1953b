// SPDX-License-Identifier: MIT
#include "pages/accessfiles.h"

#include "app/settings.h"
#include "records/csv.h"
#include "tests/support/bounded.h"
#include "tests/support/filelimit.h"
#include "tests/support/listpage.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QTemporaryDir>
#include <QThread>

#include <sys/stat.h>

namespace
{

using Page = ListPage;

const QString ownFile = QStringLiteral("Destination file exists");
const QString full = QStringLiteral("File too large");
const QString tooLong = QStringLiteral("The access list is longer than 100,000 entries");
const QString noRegularFile = QStringLiteral("This is not a regular file");
const QByteArray titleLine = "Id;Number;Date from;Date till;Key;Comment";
const QStringList titles = {QStringLiteral("Id"), QStringLiteral("Number; plate")};

QByteArray timeText(const QDateTime &time)
{
    return time.toString(CSV::dateFormat()).toLatin1();
}

// The line of a plain entry, with the line end before it.
QByteArray lineOf(int n)
{
    const Access access = Page::entry(n);
    const QByteArray number = QByteArray::number(n);
    return '\n' + QByteArray::number(n + 1) + ";A" + number.rightJustified(3, '0') + "BC77;" +
           timeText(access.dateTimeFrom()) + ';' + timeText(access.dateTimeTill()) + ";key " +
           number + ";flat " + number;
}

QByteArray swapped(QByteArray text, const QByteArray &before, const QByteArray &after)
{
    return text.replace(before, after);
}

// What becomes of an entry on its way through a file.
QByteArray loaded(int n)
{
    Access access = Page::entry(n);
    access.setId(static_cast<qint16>(n + 1));
    access.setDateTimeFrom(access.dateTimeTill());
    access.setDateTimeTill(Access().dateTimeTill());
    return Page::bytes(access);
}

QString interrupted(const std::function<QString()> &work)
{
    QString result;
    const std::unique_ptr<QThread> thread(QThread::create([&] {
        QThread::currentThread()->requestInterruption();
        result = work();
    }));
    thread->start();
    return thread->wait(10000) ? result : QStringLiteral("it goes on and on");
}

using Step = QString (*)(const QString &list, const QString &name);

QString saveCsv(const QString &list, const QString &name)
{
    return AccessFiles::saveCsv(list, titles, name);
}

} // namespace

Q_DECLARE_METATYPE(Step)

class TestAccessFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void namesOwnList();
    void copies_data();
    void copies();
    void writesLines_data();
    void writesLines();
    void writesLocalEncodingAndQuotes();
    void refusesOwnFile_data();
    void refusesOwnFile();
    void namesMissingList_data();
    void namesMissingList();
    void keepsOlderFileOnFullDisk_data();
    void keepsOlderFileOnFullDisk();
    void comesBack_data();
    void comesBack();
    void loadsForeignFiles_data();
    void loadsForeignFiles();
    void refusesWhatIsNoList_data();
    void refusesWhatIsNoList();
    void boundsLength_data();
    void boundsLength();
    void keepsListWhereItIsNotReleased();
    void opensRegularFilesOnly();
    void keepsListWithoutSource();
    void keepsListOnFullDisk();
    void endsWhenInterrupted();

private:
    QString below(const char *name) const { return folder_->filePath(QString::fromLatin1(name)); }
    QByteArray content(const char *name) const { return Page::content(below(name)); }
    void write(const char *name, const QByteArray &bytes) const { Page::write(below(name), bytes); }
    QStringList stick() const
    {
        return QDir(below("stick")).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }

    std::unique_ptr<QTemporaryDir> folder_;
};

void TestAccessFiles::init()
{
    TestSurroundings::freshSettings();
    folder_ = std::make_unique<QTemporaryDir>();
    QVERIFY(QDir(folder_->path()).mkdir(QStringLiteral("stick")));
    write("list.tpa", Page::list(10));
}

void TestAccessFiles::namesOwnList()
{
    Settings *settings = Settings::instance();
    QCOMPARE(AccessFiles::ownList(), settings->sufferedTempFile());
    QVERIFY(QDir::isAbsolutePath(AccessFiles::ownList()));
    settings->setSufferedTempFile(QStringLiteral("lists/mine.tpa"));
    QCOMPARE(AccessFiles::ownList(),
             QDir(settings->absoluteWorkingDirectory()).filePath(QStringLiteral("lists/mine.tpa")));
}

void TestAccessFiles::copies_data()
{
    QTest::addColumn<QByteArray>("list");
    QTest::addColumn<QByteArray>("whole");
    for (const int entries : {0, 1, 999, 1000}) {
        QTest::addRow("%d entries", entries) << Page::list(entries) << Page::list(entries);
    }
    // What a cut write has left is no entry.
    QTest::newRow("half an entry more") << Page::list(3) + "half" << Page::list(3);
    QTest::newRow("a byte less") << Page::list(3).chopped(1) << Page::list(2);
    QTest::newRow("half an entry") << QByteArray("half") << QByteArray();
}

void TestAccessFiles::copies()
{
    QFETCH(QByteArray, list);
    QFETCH(QByteArray, whole);
    write("list.tpa", list);
    QCOMPARE(AccessFiles::copy(below("list.tpa"), below("stick/copy.tpa")), QString());
    QCOMPARE(content("stick/copy.tpa"), whole);
    write("stick/older.tpa", QByteArray(500000, 'o'));
    QCOMPARE(AccessFiles::copy(below("list.tpa"), below("stick/older.tpa")), QString());
    QCOMPARE(content("stick/older.tpa"), whole);
    QCOMPARE(stick().size(), 2);
    QCOMPARE(content("list.tpa"), list);
}

void TestAccessFiles::writesLines_data()
{
    QTest::addColumn<int>("entries");
    for (const int entries : {0, 1, 2, 1000}) {
        QTest::addRow("%d entries", entries) << entries;
    }
}

void TestAccessFiles::writesLines()
{
    QFETCH(int, entries);
    write("list.tpa", Page::list(entries) + "half an entry");
    QCOMPARE(saveCsv(below("list.tpa"), below("stick/list.csv")), QString());
    QByteArray expected = "Id;Number; plate";
    for (int n = 0; n < entries; ++n) {
        expected += lineOf(n);
    }
    QCOMPARE(content("stick/list.csv"), expected);
    QCOMPARE(stick(), QStringList(QStringLiteral("list.csv")));
}

void TestAccessFiles::writesLocalEncodingAndQuotes()
{
    Access access = Page::entry(0);
    access.setAccessKey(QStringLiteral("a;b"));
    access.setComment(QString::fromUtf8("\xd0\x96\xd1\x83\xd0\xba \"x\",\nflat 1"));
    write("list.tpa", Page::bytes(access));
    const QStringList local = {QString::fromUtf8("\xd0\x94\xd0\xb0\xd1\x82\xd0\xb0")};
    QCOMPARE(AccessFiles::saveCsv(below("list.tpa"), local, below("stick/list.csv")), QString());
    const QByteArray saved = content("stick/list.csv");
    QVERIFY(saved.startsWith(local.first().toLocal8Bit() + "\n-1;"));
    QVERIFY(saved.endsWith(";\"a;b\";\"" +
                           QString::fromUtf8("\xd0\x96\xd1\x83\xd0\xba").toLocal8Bit() +
                           " \"\"x\"\", flat 1\""));
    QCOMPARE(AccessFiles::loadCsv(below("stick/list.csv"), below("back.tpa")), QString());
    access.setDateTimeFrom(access.dateTimeTill());
    access.setDateTimeTill(Access().dateTimeTill());
    access.setComment(access.comment().replace(QLatin1Char('\n'), QLatin1Char(' ')));
    QCOMPARE(content("back.tpa"), Page::bytes(access));
}

void TestAccessFiles::refusesOwnFile_data()
{
    QTest::addColumn<Step>("step");
    QTest::addColumn<QByteArray>("name");
    const auto rows = [](const char *what, Step step) {
        for (const char *name : {"list.tpa", "stick/../list.tpa", "stick/link"}) {
            QTest::addRow("%s, %s", what, name) << step << QByteArray(name);
        }
    };
    rows("dump", &AccessFiles::copy);
    rows("csv", &saveCsv);
}

void TestAccessFiles::refusesOwnFile()
{
    QFETCH(Step, step);
    QFETCH(QByteArray, name);
    QVERIFY(QFile::link(below("list.tpa"), below("stick/link")));
    QCOMPARE(step(below("list.tpa"), below(name.constData())), ownFile);
    QCOMPARE(content("list.tpa"), Page::list(10));
    QVERIFY(QFileInfo(below("stick/link")).isSymLink());
}

void TestAccessFiles::namesMissingList_data()
{
    QTest::addColumn<Step>("step");
    QTest::newRow("dump") << Step(&AccessFiles::copy);
    QTest::newRow("csv") << Step(&saveCsv);
}

void TestAccessFiles::namesMissingList()
{
    QFETCH(Step, step);
    write("stick/copy", "older");
    for (const QString &list : {below("missing.tpa"), QString(), below("stick")}) {
        const QString error = step(list, below("stick/copy"));
        QVERIFY2(!error.isEmpty() && !error.contains(QLatin1String("Unknown error")),
                 qPrintable(error));
        QCOMPARE(content("stick/copy"), QByteArray("older"));
    }
    for (const char *nowhere : {"missing/copy", "stick"}) {
        const QString error = step(below("list.tpa"), below(nowhere));
        QVERIFY2(!error.isEmpty() && !error.contains(QLatin1String("Unknown error")),
                 qPrintable(error));
    }
    QCOMPARE(stick(), QStringList(QStringLiteral("copy")));
}

void TestAccessFiles::keepsOlderFileOnFullDisk_data()
{
    QTest::addColumn<Step>("step");
    QTest::addColumn<int>("entries");
    QTest::addColumn<int>("limit");
    const auto rows = [](const char *what, Step step) {
        const int tables[][2] = {{10, 0},      {10, 1},       {10, 300},
                                 {1000, 5000}, {1000, 65536}, {1000, 65537}};
        for (const auto &table : tables) {
            QTest::addRow("%s, %d entries, %d bytes", what, table[0], table[1])
                << step << table[0] << table[1];
        }
    };
    rows("dump", &AccessFiles::copy);
    rows("csv", &saveCsv);
}

void TestAccessFiles::keepsOlderFileOnFullDisk()
{
    QFETCH(Step, step);
    QFETCH(int, entries);
    QFETCH(int, limit);
    write("list.tpa", Page::list(entries));
    write("stick/copy", "older");
    {
        const FileLimit disk(static_cast<rlim_t>(limit));
        QCOMPARE(step(below("list.tpa"), below("stick/copy")), full);
    }
    QCOMPARE(content("stick/copy"), QByteArray("older"));
    QCOMPARE(stick(), QStringList(QStringLiteral("copy")));
    QCOMPARE(content("list.tpa"), Page::list(entries));
    QCOMPARE(step(below("list.tpa"), below("stick/copy")), QString());
    QVERIFY(content("stick/copy").size() > limit);
}

void TestAccessFiles::comesBack_data()
{
    writesLines_data();
}

void TestAccessFiles::comesBack()
{
    QFETCH(int, entries);
    write("list.tpa", Page::list(entries));
    const QStringList columns = QString::fromLatin1(titleLine).split(QLatin1Char(';'));
    QCOMPARE(AccessFiles::saveCsv(below("list.tpa"), columns, below("stick/list.csv")), QString());
    write("back.tpa", Page::list(3, 700));
    QCOMPARE(AccessFiles::loadCsv(below("stick/list.csv"), below("back.tpa")), QString());
    QByteArray expected;
    for (int n = 0; n < entries; ++n) {
        expected += loaded(n);
    }
    QCOMPARE(content("back.tpa"), expected);
}

void TestAccessFiles::loadsForeignFiles_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("list");
    const QByteArray both = loaded(0) + loaded(1);
    const QByteArray lines = lineOf(0) + lineOf(1);
    QTest::newRow("as saved") << "titles" + lines << both;
    QTest::newRow("no titles") << lines << both; // the first line is skipped whatever it is
    QTest::newRow("line end at the end") << "titles" + lines + '\n' << both;
    QTest::newRow("blank lines") << "titles\n" + lines + "\n\n\n" << both;
    QTest::newRow("line ends of other systems")
        << swapped("titles" + lines + '\n', "\n", "\r\n") << both;
    QTest::newRow("quotes") << swapped("titles" + lines, ";key 1;", ";\"key 1\";") << both;
    // As an empty list is saved.
    QTest::newRow("titles only") << titleLine << QByteArray();
    QTest::newRow("titles and a line end") << titleLine + "\r\n\n" << QByteArray();
    Access rubbish;
    rubbish.setId(0);
    rubbish.setDateTimeFrom(QDateTime());
    QTest::newRow("rubbish between") << "titles" + lineOf(0) + "\nwhat is this" + lineOf(1)
                                     << loaded(0) + Page::bytes(rubbish) + loaded(1);
    QTest::newRow("separators behind") << "titles" + lineOf(0) + "\n;;;;;\n;;;;;;;;;"
                                       << loaded(0) + Page::bytes(rubbish).repeated(2);
    const QDateTime from = Page::entry(0).dateTimeFrom();
    const QDateTime till = Page::entry(0).dateTimeTill();
    QByteArray text =
        swapped("titles" + lines, timeText(from), from.toString(Qt::TextDate).toLatin1());
    text = swapped(text, timeText(till), till.toString(Qt::TextDate).toLatin1());
    QTest::newRow("times as text") << text << both;
}

void TestAccessFiles::loadsForeignFiles()
{
    QFETCH(QByteArray, text);
    write("stick/list.csv", text);
    QCOMPARE(AccessFiles::loadCsv(below("stick/list.csv"), below("list.tpa")), QString());
    QTEST(content("list.tpa"), "list");
    QCOMPARE(content("stick/list.csv"), text);
}

void TestAccessFiles::refusesWhatIsNoList_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("a line") << QByteArray("titles");
    QTest::newRow("rubbish") << QByteArray("titles\nwhat is this");
    QTest::newRow("rubbish under titles") << titleLine + "\nwhat is this";
    QTest::newRow("separators") << QByteArray("titles\n;;;;;\n;;;;;;;;;");
    QTest::newRow("fewer titles") << QByteArray("Id;Number;Date from;Date till;Key");
    QTest::newRow("more titles") << titleLine + ";Colour";
    QTest::newRow("lines that end with CR alone")
        << QByteArray(titleLine + lineOf(0) + lineOf(1)).replace('\n', '\r');
    QTest::newRow("an entry without titles") << lineOf(0).mid(1);
    QTest::newRow("ids beyond 16 bits") << titleLine + "\n70000;A001BC77;;;;\n-40000;;;;;";
    QTest::newRow("passages") << QByteArray("Time;Number\n21.11.2026 12:00:00;A001BC77;0;0;0;;");
    QTest::newRow("a picture") << QByteArray("\xFF\xD8\xFF\xE0\0\x10JFIF\n\0;\n;", 15);
    QTest::newRow("wide characters")
        << QByteArray("\xFF\xFEI\0d\0;\0N\0\n\0" "1\0;\0A\0\n\0", 20);
}

void TestAccessFiles::refusesWhatIsNoList()
{
    QFETCH(QByteArray, text);
    write("stick/list.csv", text);
    bool released = false;
    const auto release = [&released] { return released = true; };
    QCOMPARE(AccessFiles::loadCsv(below("stick/list.csv"), below("list.tpa"), release),
             QStringLiteral("The file is not an access list"));
    QVERIFY(!released);
    QCOMPARE(content("list.tpa"), Page::list(10));
}

void TestAccessFiles::boundsLength_data()
{
    QTest::addColumn<int>("entries");
    QTest::addColumn<QString>("error");
    QTest::newRow("the longest") << 100000 << QString();
    QTest::newRow("one more") << 100001 << tooLong;
    QTest::newRow("many more") << 250000 << tooLong;
}

void TestAccessFiles::boundsLength()
{
    QFETCH(int, entries);
    QFETCH(QString, error);
    QByteArray text = titleLine;
    for (int n = 0; n < entries; ++n) {
        text += "\n1;A001BC77;;;;";
    }
    write("stick/list.csv", text);
    bool released = false;
    const auto release = [&released] { return released = true; };
    QCOMPARE(AccessFiles::loadCsv(below("stick/list.csv"), below("list.tpa"), release), error);
    QCOMPARE(released, error.isEmpty());
    QCOMPARE(content("list.tpa").size(), int(Access::size) * (error.isEmpty() ? entries : 10));
    // As a dump; half an entry does not count.
    QFile dump(below("stick/list.tpa"));
    QVERIFY(dump.open(QIODevice::WriteOnly));
    QVERIFY(dump.resize(qint64(entries) * Access::size + 115));
    QCOMPARE(AccessFiles::refusal(dump.fileName()), error);
}

void TestAccessFiles::keepsListWhereItIsNotReleased()
{
    write("stick/list.csv", titleLine + lineOf(0));
    QVERIFY(!AccessFiles::loadCsv(below("stick/list.csv"), below("list.tpa"), [] {
                 return false;
             }).isEmpty());
    QCOMPARE(content("list.tpa"), Page::list(10));
}

void TestAccessFiles::opensRegularFilesOnly()
{
    QCOMPARE(mkfifo(QFile::encodeName(below("stick/pipe.csv")).constData(), 0600), 0);
    for (const QString &name : {below("stick/pipe.csv"), below("stick"), QStringLiteral("/dev/zero")}) {
        const auto load = [&] { return AccessFiles::loadCsv(name, below("list.tpa")); };
        QCOMPARE(Bounded::text(load), noRegularFile);
        QCOMPARE(Bounded::text([&] { return AccessFiles::refusal(name); }), noRegularFile);
        const auto copy = [&] { return AccessFiles::copy(name, below("stick/copy")); };
        QCOMPARE(Bounded::text(copy), noRegularFile);
    }
    QCOMPARE(content("list.tpa"), Page::list(10));
}

void TestAccessFiles::keepsListWithoutSource()
{
    for (const char *source : {"stick/missing.csv", "missing/list.csv", "stick"}) {
        const QString error = AccessFiles::loadCsv(below(source), below("list.tpa"));
        QVERIFY2(!error.isEmpty() && !error.contains(QLatin1String("Unknown error")),
                 qPrintable(error));
        QCOMPARE(content("list.tpa"), Page::list(10));
    }
    write("stick/list.csv", "titles" + lineOf(0));
    QVERIFY(!AccessFiles::loadCsv(below("stick/list.csv"), below("missing/list.tpa")).isEmpty());
}

void TestAccessFiles::keepsListOnFullDisk()
{
    QByteArray text = "titles";
    for (int n = 0; n < 1000; ++n) {
        text += lineOf(n);
    }
    write("stick/list.csv", text);
    for (const rlim_t limit : {0, 1, 116, 5000, 115999}) {
        const FileLimit disk(limit);
        QCOMPARE(AccessFiles::loadCsv(below("stick/list.csv"), below("list.tpa")), full);
        QCOMPARE(content("list.tpa"), Page::list(10));
    }
    QCOMPARE(AccessFiles::loadCsv(below("stick/list.csv"), below("list.tpa")), QString());
    QCOMPARE(content("list.tpa").size(), int(1000 * Access::size));
}

void TestAccessFiles::endsWhenInterrupted()
{
    write("stick/list.csv", "titles" + lineOf(0));
    write("stick/copy.tpa", "older");
    const QString text = QStringLiteral("Interrupted");
    QCOMPARE(interrupted(
                 [this] { return AccessFiles::copy(below("list.tpa"), below("stick/copy.tpa")); }),
             text);
    QCOMPARE(interrupted([this] {
                 return AccessFiles::loadCsv(below("stick/list.csv"), below("list.tpa"));
             }),
             text);
    QCOMPARE(content("stick/copy.tpa"), QByteArray("older"));
    QCOMPARE(content("list.tpa"), Page::list(10));
    QCOMPARE(stick().size(), 2);
}

STALLO_TEST_MAIN(TestAccessFiles)
#include "tst_accessfiles.moc"
