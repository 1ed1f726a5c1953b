// SPDX-License-Identifier: MIT
#include "pages/sourceguard.h"

#include "pages/accessfiles.h"
#include "pages/photofiles.h"
#include "pages/tablesave.h"
#include "tests/pages/jobthread.h"
#include "tests/pages/tableloadcase.h"

#include <atomic>

namespace
{

constexpr int rows = 1000;
constexpr int record = 116;
const QString changed = QStringLiteral("The file changed while it was being read");

using Change = void (*)(QFile &);

void grow(QFile &file)
{
    file.seek(file.size());
    file.write("21.11.2026 12:00:00;Z999ZZ77;0;0;0;;\n");
    file.flush();
}

void shrink(QFile &file)
{
    file.resize(file.size() / 2 + 7);
}

void empty(QFile &file)
{
    file.resize(0);
}

void rewrite(QFile &file)
{
    const qint64 size = file.size();
    file.resize(0);
    file.write(QByteArray(static_cast<int>(size), 'x'));
    file.flush();
}

} // namespace

Q_DECLARE_METATYPE(Change)

// Files that another program changes while they are read.
class TestSourceGuard : public TableLoadCase
{
    Q_OBJECT

private Q_SLOTS:
    void noticesChange_data();
    void noticesChange();
    void endsLoad_data();
    void endsLoad();
    void endsSave_data();
    void endsSave();
    void endsCopy_data();
    void endsCopy();

private:
    static void changes()
    {
        QTest::addColumn<Change>("change");
        QTest::newRow("grows") << &grow;
        QTest::newRow("shrinks") << &shrink;
        QTest::newRow("is emptied") << &empty;
        QTest::newRow("is written anew") << &rewrite;
    }
    TableSnapshot table() const
    {
        return {below("table.tpp"), below("table.tpp.index"), rows, {QStringLiteral("One")}};
    }
};

void TestSourceGuard::noticesChange_data()
{
    changes();
}

void TestSourceGuard::noticesChange()
{
    QFETCH(Change, change);
    write("list.csv", QByteArray(500, 'a'));
    QFile file(below("list.csv"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const SourceGuard guard(file);
    QCOMPARE(file.readAll().size(), 500);
    QCOMPARE(guard.error(), QString());
    QFile other(below("list.csv"));
    QVERIFY(other.open(QIODevice::ReadWrite));
    change(other);
    QCOMPARE(guard.error(), changed);
}

void TestSourceGuard::endsLoad_data()
{
    changes();
}

void TestSourceGuard::endsLoad()
{
    QFETCH(Change, change);
    QByteArray lines = "One\n";
    for (int row = 0; row < 5 * rows; ++row) { // more than is read at once
        lines += line("A123BC77", "comment") + '\n';
    }
    write("list.csv", lines);
    QFile other(below("list.csv"));
    QVERIFY(other.open(QIODevice::ReadWrite));
    bool done = false;
    const QString error = TableLoad::csv(below("list.csv"), below("table.tpp"), [&](int) {
        if (!done) {
            change(other);
            done = true;
        }
    });
    QCOMPARE(error, changed);
    QCOMPARE(content("table.tpp"), QByteArray("the old table"));
    QCOMPARE(content("table.tpp.index"), QByteArray("the old index"));
}

void TestSourceGuard::endsSave_data()
{
    QTest::addColumn<QString>("kind");
    QTest::newRow("dump") << QStringLiteral("dump");
    QTest::newRow("csv") << QStringLiteral("csv");
}

// Fewer rows than the table on view had when the save began.
void TestSourceGuard::endsSave()
{
    QFETCH(QString, kind);
    write("table.tpp", QByteArray(rows * record - 1, 'a'));
    const QString name = below("copy");
    QCOMPARE(kind == QLatin1String("dump") ? TableSave::dump(table(), name)
                                           : TableSave::csv(table(), name, TableSave::Progress()),
             changed);
    QVERIFY(!QFile::exists(name));
}

void TestSourceGuard::endsCopy_data()
{
    QTest::addColumn<QString>("kind");
    QTest::newRow("list") << QStringLiteral("list");
    QTest::newRow("list as CSV") << QStringLiteral("list as CSV");
    QTest::newRow("photo") << QStringLiteral("photo");
}

// Another program goes on writing all the time; whether a copy falls between two of its writes is
// left to the system, and it need not happen to the first one.
void TestSourceGuard::endsCopy()
{
    QFETCH(QString, kind);
    const QString source = below("list");
    write("list", QByteArray(20 * rows * record, 'a'));
    std::atomic_bool end = false;
    JobThread writer([&] {
        QFile file(source);
        while (!end && file.open(QIODevice::Append)) {
            file.write(QByteArray(record, 'b'));
            file.close();
        }
    });
    writer.start();
    QString error;
    for (int tries = 0; tries < 50 && error.isEmpty(); ++tries) {
        const QString name = below("copy");
        QFile::remove(name);
        error = kind == QLatin1String("photo")  ? PhotoFiles::copy(source, name)
                : kind == QLatin1String("list") ? AccessFiles::copy(source, name)
                                                : AccessFiles::saveCsv(source, {}, name);
    }
    end = true;
    QVERIFY(writer.wait(10000));
    QCOMPARE(error, changed);
    QVERIFY(!QFile::exists(below("copy")));
}

STALLO_TEST_MAIN(TestSourceGuard)
#include "tst_sourceguard.moc"
