// SPDX-License-Identifier: MIT
#include "tests/pages/tableloadcase.h"

#include "tests/pages/jobthread.h"
#include "tests/support/bounded.h"
#include "tests/support/filelimit.h"

#include <sys/stat.h>
#include <unistd.h>

namespace
{

constexpr int patience = 10000;
constexpr int plainUser = 65534;

// Gives up the rights of root, to which nothing is read-only, for as long as it lives.
class PlainUser
{
public:
    PlainUser()
        : changed_(geteuid() == 0 && seteuid(plainUser) == 0)
    {
    }
    ~PlainUser()
    {
        if (changed_ && seteuid(0) != 0) {
            qFatal("cannot take the rights back");
        }
    }
    PlainUser(const PlainUser &) = delete;
    PlainUser &operator=(const PlainUser &) = delete;

    static bool isOne() { return geteuid() != 0; }

private:
    bool changed_;
};

} // namespace

// What happens to the table when its CSV file cannot be read or the record file not be written.
class TestTableLoadFailures : public TableLoadCase
{
    Q_OBJECT

private Q_SLOTS:
    void endsWithAShortSource();
    void missingSourceLeavesAllAlone_data();
    void missingSourceLeavesAllAlone();
    void reportsARecordFileThatCannotBeMade();
    void fullDiskKeepsTheTable_data();
    void fullDiskKeepsTheTable();
    void interruptionKeepsTheTable();
    void interruptionHalfWayKeepsTheTable();
    void refuses_data();
    void refuses();
    void refusesWhatCannotBeWritten();
    void acceptsWithoutATrace();

private:
    // The table and its index are what they were, and nothing else is left.
    void compareKept() const
    {
        QCOMPARE(content("table.tpp"), QByteArray("the old table"));
        QCOMPARE(content("table.tpp.index"), QByteArray("the old index"));
        QStringList files = QDir(root_->path()).entryList(QDir::Files | QDir::Hidden, QDir::Name);
        files.removeOne(QStringLiteral("list.csv"));
        files.removeOne(QStringLiteral("secret.csv"));
        QCOMPARE(files,
                 (QStringList{QStringLiteral("table.tpp"), QStringLiteral("table.tpp.index")}));
    }
    void makePipe() const
    {
        QCOMPARE(mkfifo(QFile::encodeName(below("pipe")).constData(), 0666), 0);
        QVERIFY(QFile::link(below("pipe"), below("pipe link")));
    }
    // Rows of a file that is longer than any buffer on the way.
    void writeLongList() const
    {
        QByteArray text = "Titles\n";
        for (int n = 0; n < 5000; ++n) {
            text += line("A001BC77", "comment") + '\n';
        }
        write("list.csv", text);
    }
};

void TestTableLoadFailures::endsWithAShortSource()
{
    // A file that gives fewer bytes than its length promises, as one on a stick that was pulled
    // out does.
    const QString source = QStringLiteral("/sys/devices/system/cpu/online");
    QFile file(source);
    if (!file.open(QIODevice::ReadOnly) || file.readAll().size() >= file.size()) {
        QSKIP("this system has no such file");
    }
    JobThread reader([this, source] { load(source); });
    reader.start();
    const bool ended = reader.wait(2000);
    reader.requestInterruption();
    QVERIFY(reader.wait(patience));
    QVERIFY(ended);
}

void TestTableLoadFailures::missingSourceLeavesAllAlone_data()
{
    QTest::addColumn<QByteArray>("source");
    QTest::newRow("missing") << QByteArray("missing.csv");
    QTest::newRow("in a missing folder") << QByteArray("missing/list.csv");
    QTest::newRow("a folder") << QByteArray(".");
    QTest::newRow("not to be read") << QByteArray("secret.csv");
    QTest::newRow("a pipe") << QByteArray("pipe");
    QTest::newRow("a link to a pipe") << QByteArray("pipe link");
}

void TestTableLoadFailures::missingSourceLeavesAllAlone()
{
    QFETCH(QByteArray, source);
    makePipe();
    write("secret.csv", "Titles\n" + line("A001BC77"));
    QVERIFY(QFile::setPermissions(below("secret.csv"), QFile::Permissions()));
    QString error;
    {
        const PlainUser user;
        if (!PlainUser::isOne() && source.startsWith("secret")) {
            QSKIP("root reads every file");
        }
        error = Bounded::text([&] { return load(below(source.constData())); });
    }
    QVERIFY(!error.isEmpty());
    QVERIFY2(!error.contains(QLatin1String("Unknown error")), qPrintable(error));
    QVERIFY(QFile::remove(below("pipe link")));
    compareKept();
    QVERIFY(progress_.isEmpty());
}

void TestTableLoadFailures::reportsARecordFileThatCannotBeMade()
{
    write("list.csv", "Titles\n" + line("A001BC77"));
    const auto ignore = [](int) {};
    for (const char *name : {"missing/table.tpp", "."}) {
        const QString error = TableLoad::csv(below("list.csv"), below(name), ignore);
        QVERIFY2(!error.isEmpty() && !error.contains(QLatin1String("Unknown error")),
                 qPrintable(error));
    }
    QCOMPARE(content("list.csv"), "Titles\n" + line("A001BC77"));
}

void TestTableLoadFailures::fullDiskKeepsTheTable_data()
{
    QTest::addColumn<int>("limit");
    for (const int limit : {0, 1, 115, 116, 117, 232, 5000, 100000, 579999}) {
        QTest::addRow("%d bytes", limit) << limit;
    }
}

void TestTableLoadFailures::fullDiskKeepsTheTable()
{
    QFETCH(int, limit);
    writeLongList();
    {
        const FileLimit full(static_cast<rlim_t>(limit));
        QCOMPARE(load(), QStringLiteral("File too large"));
    }
    compareKept();
    // With space again it is loaded.
    QCOMPARE(load(), QString());
    QCOMPARE(content("table.tpp").size(), 5000 * int(Scan::size));
}

void TestTableLoadFailures::interruptionKeepsTheTable()
{
    writeLongList();
    QString result;
    InterruptedThread thread([&] { result = load(); });
    thread.start();
    QVERIFY(thread.wait(patience));
    QCOMPARE(result, QStringLiteral("Interrupted"));
    compareKept();
}

void TestTableLoadFailures::interruptionHalfWayKeepsTheTable()
{
    writeLongList();
    QString result;
    JobThread thread([&] {
        result = TableLoad::csv(below("list.csv"), below("table.tpp"), [this](int percent) {
            progress_ << percent;
            if (percent == 50) {
                QThread::currentThread()->requestInterruption();
            }
        });
    });
    thread.start();
    QVERIFY(thread.wait(patience));
    QCOMPARE(result, QStringLiteral("Interrupted"));
    QCOMPARE(progress_.last(), 50);
    compareKept();
}

void TestTableLoadFailures::refuses_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::newRow("missing") << QByteArray("missing.tpp");
    QTest::newRow("in a missing folder") << QByteArray("missing/table.tpp");
    QTest::newRow("below a file") << QByteArray("table.tpp/table.tpp");
    QTest::newRow("a folder") << QByteArray(".");
    QTest::newRow("a link to nothing") << QByteArray("dangling");
    QTest::newRow("a pipe") << QByteArray("pipe");
    QTest::newRow("a link to a pipe") << QByteArray("pipe link");
}

void TestTableLoadFailures::refuses()
{
    QFETCH(QByteArray, name);
    QVERIFY(QFile::link(below("gone.tpp"), below("dangling")));
    makePipe();
    const QStringList before = QDir(root_->path()).entryList(QDir::AllEntries | QDir::System);
    const QString reason =
        Bounded::text([&] { return TableLoad::refusal(below(name.constData())); });
    QVERIFY(!reason.isEmpty());
    QVERIFY2(!reason.contains(QLatin1String("Unknown error")), qPrintable(reason));
    QCOMPARE(QDir(root_->path()).entryList(QDir::AllEntries | QDir::System), before);
}

void TestTableLoadFailures::refusesWhatCannotBeWritten()
{
    QVERIFY(QFile::setPermissions(below("table.tpp"), QFile::Permissions(0x4444)));
    {
        const PlainUser user;
        if (!PlainUser::isOne()) {
            QSKIP("root writes every file");
        }
        QCOMPARE(TableLoad::refusal(below("table.tpp")), QStringLiteral("Permission denied"));
    }
    QCOMPARE(content("table.tpp"), QByteArray("the old table"));
    // Nobody else's rights matter.
    QVERIFY(QFile::setPermissions(below("table.tpp"), QFile::Permissions(0x6666)));
    const PlainUser user;
    QCOMPARE(TableLoad::refusal(below("table.tpp")), QString());
}

void TestTableLoadFailures::acceptsWithoutATrace()
{
    QVERIFY(QFile::link(below("table.tpp"), below("link")));
    write("empty.tpp", "");
    for (const char *name : {"table.tpp", "link", "empty.tpp"}) {
        QCOMPARE(TableLoad::refusal(below(name)), QString());
    }
    QCOMPARE(content("table.tpp"), QByteArray("the old table"));
    QCOMPARE(content("empty.tpp"), QByteArray());
}

STALLO_TEST_MAIN(TestTableLoadFailures)
#include "tst_tableloadfailures.moc"
