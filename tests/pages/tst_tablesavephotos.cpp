// SPDX-License-Identifier: MIT
#include "pages/tablesave.h"

#include "records/vasksettings.h"
#include "tests/pages/jobthread.h"
#include "tests/support/filelimit.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace
{

constexpr int patience = 10000;
constexpr int rows = 5;

Scan passage(int n)
{
    Scan scan;
    scan.setDateTime(QDateTime(QDate(2026, 11, 21), QTime(12, 0), Qt::UTC).addSecs(n));
    scan.setNumber(QStringLiteral("A00%1BC77").arg(n));
    return scan;
}

QString photo(int n)
{
    return VaskSettings::picFileName(passage(n));
}

} // namespace

// The photos of a table, from its folder to that of a dump.
class TestTableSavePhotos : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        root_ = std::make_unique<QTemporaryDir>();
        QVERIFY(QDir(root_->path()).mkdir(QStringLiteral("from")));
        QVERIFY(QDir(root_->path()).mkdir(QStringLiteral("to")));
        QByteArray records;
        for (int n = 0; n < rows; ++n) {
            records.append(passage(n).data(), Scan::size);
            write(QStringLiteral("from/") + photo(n), bytesOf(n));
        }
        write(QStringLiteral("table.tpp"), records);
        progress_.clear();
    }

    void copiesAll();
    void copiesOnlyTheTables();
    void skipsMissing();
    void replacesOlder();
    void copiesSamePassageTwice();
    void leavesTheOwnFolderAlone_data();
    void leavesTheOwnFolderAlone();
    void oneFailureDoesNotStopTheRest();
    void reportsMissingFolder();
    void reportsFullDisk();
    void reportsMissingTable();
    void endsWhenInterrupted();
    void endsWhenInterruptedHalfWay();

private:
    QString below(const QString &path) const { return root_->filePath(path); }
    QString from() const { return below(QStringLiteral("from")); }
    QString to() const { return below(QStringLiteral("to")); }
    void write(const QString &path, const QByteArray &bytes) const
    {
        QFile file(below(path));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
            qFatal("cannot write %s", qPrintable(path));
        }
    }
    QByteArray content(const QString &path) const
    {
        QFile file(below(path));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no such file");
    }
    static QByteArray bytesOf(int n) { return QByteArray(70000 + n, static_cast<char>('a' + n)); }
    static QStringList filesIn(const QString &folder)
    {
        return QDir(folder).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }
    static QStringList photos(std::initializer_list<int> numbers)
    {
        QStringList names;
        for (const int n : numbers) {
            names << photo(n);
        }
        return names;
    }
    TableSnapshot table(int count = rows) const
    {
        return {below(QStringLiteral("table.tpp")), QString(), count, {}};
    }
    QString copy(const TableSnapshot &table)
    {
        return TableSave::photos(table, from(), to(),
                                 [this](int percent) { progress_ << percent; });
    }
    void compareCopies(std::initializer_list<int> numbers) const
    {
        QCOMPARE(filesIn(to()), photos(numbers));
        for (const int n : numbers) {
            QCOMPARE(content(QStringLiteral("to/") + photo(n)), bytesOf(n));
        }
        QCOMPARE(filesIn(from()).size(), rows); // they stay
    }

    std::unique_ptr<QTemporaryDir> root_;
    QVector<int> progress_;
};

void TestTableSavePhotos::copiesAll()
{
    QCOMPARE(copy(table()), QString());
    compareCopies({0, 1, 2, 3, 4});
    QCOMPARE(progress_, (QVector<int>{20, 40, 60, 80, 100}));
    // Nobody need listen.
    QCOMPARE(TableSave::photos(table(), from(), to()), QString());
    compareCopies({0, 1, 2, 3, 4});
}

void TestTableSavePhotos::copiesOnlyTheTables()
{
    // Rows that came after the save began, and files that are no photos of the table.
    write(QStringLiteral("from/other.jpeg"), "other");
    QCOMPARE(copy(table(3)), QString());
    QCOMPARE(filesIn(to()), photos({0, 1, 2}));
    QCOMPARE(progress_, (QVector<int>{33, 66, 100}));
    QCOMPARE(copy(table(0)), QString());
    QCOMPARE(progress_.size(), 3);
}

void TestTableSavePhotos::skipsMissing()
{
    QVERIFY(QFile::remove(from() + QLatin1Char('/') + photo(1)));
    QVERIFY(QFile::remove(from() + QLatin1Char('/') + photo(4)));
    write(QStringLiteral("to/") + photo(1), "an older dump's");
    QCOMPARE(copy(table()), QString());
    QCOMPARE(filesIn(to()), photos({0, 1, 2, 3}));
    QCOMPARE(content(QStringLiteral("to/") + photo(1)), QByteArray("an older dump's"));
    // The ring moves on over rows without a photo.
    QCOMPARE(progress_, (QVector<int>{20, 40, 60, 80, 100}));
}

void TestTableSavePhotos::replacesOlder()
{
    write(QStringLiteral("to/") + photo(0), QByteArray(200000, 'o'));
    write(QStringLiteral("to/") + photo(2), QByteArray());
    write(QStringLiteral("to/other.jpeg"), "other");
    QCOMPARE(copy(table()), QString());
    QVERIFY(QFile::remove(to() + QStringLiteral("/other.jpeg"))); // it stayed
    compareCopies({0, 1, 2, 3, 4});
}

void TestTableSavePhotos::copiesSamePassageTwice()
{
    // A second download of the same interval.
    const QByteArray records = content(QStringLiteral("table.tpp"));
    write(QStringLiteral("table.tpp"), records + records);
    QCOMPARE(copy(table(2 * rows)), QString());
    compareCopies({0, 1, 2, 3, 4});
}

void TestTableSavePhotos::leavesTheOwnFolderAlone_data()
{
    QTest::addColumn<QString>("to");
    QTest::newRow("by its name") << QStringLiteral("from");
    QTest::newRow("by another spelling") << QStringLiteral("to/../from/.");
    QTest::newRow("by a link") << QStringLiteral("link");
}

void TestTableSavePhotos::leavesTheOwnFolderAlone()
{
    QFETCH(QString, to);
    QVERIFY(QFile::link(from(), below(QStringLiteral("link"))));
    QCOMPARE(TableSave::photos(table(), from(), below(to)), QString());
    QCOMPARE(filesIn(from()), photos({0, 1, 2, 3, 4}));
    for (int n = 0; n < rows; ++n) {
        QCOMPARE(content(QStringLiteral("from/") + photo(n)), bytesOf(n));
    }
}

void TestTableSavePhotos::oneFailureDoesNotStopTheRest()
{
    // Folders where photos are to go, and one where a photo should be.
    for (const int n : {1, 3}) {
        QVERIFY(QDir(to()).mkdir(photo(n)));
    }
    QVERIFY(QFile::remove(from() + QLatin1Char('/') + photo(2)));
    QVERIFY(QDir(from()).mkdir(photo(2)));
    const QStringList errors = copy(table()).split(QLatin1Char('\n'));
    QCOMPARE(errors.size(), 3);
    QVERIFY(!errors.contains(QString()));
    QCOMPARE(filesIn(to()), photos({0, 4}));
    QCOMPARE(progress_.last(), 100);
}

void TestTableSavePhotos::reportsMissingFolder()
{
    const QString missing = below(QStringLiteral("missing"));
    const QStringList errors = TableSave::photos(table(), from(), missing).split(QLatin1Char('\n'));
    QCOMPARE(QStringList(errors).removeDuplicates(), 0);
    QVERIFY(!errors.contains(QString()));
    QVERIFY(!QFile::exists(missing));
    // No photos at all is no error.
    QCOMPARE(TableSave::photos(table(), missing, to()), QString());
    QCOMPARE(filesIn(to()), QStringList());
}

void TestTableSavePhotos::reportsFullDisk()
{
    QString error;
    {
        const FileLimit full(70002); // the first three have room
        error = copy(table());
    }
    QVERIFY2(!error.isEmpty() && !error.contains(QLatin1String("Unknown error")),
             qPrintable(error));
    QCOMPARE(error.count(QLatin1Char('\n')), rows - 3 - 1); // a line for each of the others
    compareCopies({0, 1, 2});
}

void TestTableSavePhotos::reportsMissingTable()
{
    QVERIFY(QFile::remove(below(QStringLiteral("table.tpp"))));
    QVERIFY(!copy(table()).isEmpty());
    QCOMPARE(filesIn(to()), QStringList());
    QVERIFY(progress_.isEmpty());
}

void TestTableSavePhotos::endsWhenInterrupted()
{
    QString result;
    InterruptedThread thread([&] { result = copy(table()); });
    thread.start();
    QVERIFY(thread.wait(patience));
    QCOMPARE(result, QStringLiteral("Interrupted"));
    QCOMPARE(filesIn(to()), QStringList());
}

void TestTableSavePhotos::endsWhenInterruptedHalfWay()
{
    QString result;
    JobThread thread([&] {
        result = TableSave::photos(table(), from(), to(), [](int percent) {
            if (percent == 40) {
                QThread::currentThread()->requestInterruption();
            }
        });
    });
    thread.start();
    QVERIFY(thread.wait(patience));
    QCOMPARE(result, QStringLiteral("Interrupted"));
    compareCopies({0, 1});
}

STALLO_TEST_MAIN(TestTableSavePhotos)
#include "tst_tablesavephotos.moc"
