// SPDX-License-Identifier: MIT
#include "pages/accessfiles.h"
#include "pages/photofiles.h"
#include "pages/tablesave.h"
#include "records/vasksettings.h"
#include "tests/pages/jobthread.h"
#include "tests/support/flushcalls.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QTemporaryDir>

#include <atomic>
#include <cstring>

namespace
{

using Fail = FlushCalls::Fail;

Scan passage(int n)
{
    Scan scan;
    scan.setDateTime(QDateTime(QDate(2026, 11, 21), QTime(12, 0), Qt::UTC).addSecs(n));
    scan.setNumber(QStringLiteral("A00%1BC77").arg(n));
    return scan;
}

namespace SlowDisk
{

std::atomic_int waiting = 0;
std::atomic_bool ended = false;

int wait(int)
{
    ++waiting;
    while (!ended) {
        QThread::msleep(1);
    }
    --waiting;
    return 0;
}

} // namespace SlowDisk

} // namespace

// What was saved is on the disk: a stick may be pulled out, the power may go.
class TestTableSaveFlush : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void flushesAllThatWasSaved_data();
    void flushesAllThatWasSaved();
    void tellsFailure_data();
    void tellsFailure();
    void doesNotHoldWhoIsCalledOff_data();
    void doesNotHoldWhoIsCalledOff();

private:
    QString save(const QString &kind) const;
    QString below(const char *path) const { return root_->filePath(QString::fromLatin1(path)); }
    static void write(const QString &name, const QByteArray &bytes)
    {
        QFile file(name);
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
            qFatal("cannot write %s", qPrintable(name));
        }
    }

    std::unique_ptr<QTemporaryDir> root_;
};

void TestTableSaveFlush::init()
{
    root_ = std::make_unique<QTemporaryDir>();
    for (const char *folder : {"from", "stick", "stick/to"}) {
        QVERIFY(QDir(root_->path()).mkdir(QString::fromLatin1(folder)));
    }
    QByteArray records;
    for (int n = 0; n < 3; ++n) {
        records.append(passage(n).data(), Scan::size);
        write(below("from/") + VaskSettings::picFileName(passage(n)), "a photo");
    }
    write(below("table.tpp"), records);
    write(below("table.tpp.index"), QByteArray(3 * 32, 'i'));
}

QString TestTableSaveFlush::save(const QString &kind) const
{
    const TableSnapshot table{below("table.tpp"), below("table.tpp.index"), 3, {}};
    const QString name = below("stick/copy");
    if (kind == QLatin1String("dump")) {
        return TableSave::dump(table, name);
    }
    if (kind == QLatin1String("photos")) {
        return TableSave::photos(table, below("from"), below("stick/to"));
    }
    if (kind == QLatin1String("photo")) {
        return PhotoFiles::copyFlushed(below("from/") + VaskSettings::picFileName(passage(0)),
                                       name);
    }
    if (kind == QLatin1String("list")) {
        return AccessFiles::copy(below("table.tpp"), name);
    }
    if (kind == QLatin1String("list as CSV")) {
        return AccessFiles::saveCsv(below("table.tpp"), {}, name);
    }
    return kind == QLatin1String("CSV") ? TableSave::csv(table, name, TableSave::Progress())
                                        : TableSave::plainCsv(table, name);
}

void TestTableSaveFlush::flushesAllThatWasSaved_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("flushed");
    const auto row = [](const char *kind, const char *flushed) {
        QTest::newRow(kind) << QString::fromLatin1(kind) << QString::fromLatin1(flushed);
    };
    row("dump", "new new stick/"); // the record file, the index
    row("photos", "[to]");
    row("photo", "new stick/");
    row("CSV", "new stick/");
    row("plain CSV", "new stick/");
    row("list", "new stick/");
    row("list as CSV", "new stick/");
}

void TestTableSaveFlush::flushesAllThatWasSaved()
{
    QFETCH(QString, kind);
    const FlushCalls disk;
    QCOMPARE(save(kind), QString());
    QTEST(FlushCalls::names().join(QLatin1Char(' ')), "flushed");
}

void TestTableSaveFlush::tellsFailure_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<int>("failing");
    for (const char *kind : {"dump", "photo", "CSV", "plain CSV", "list", "list as CSV"}) {
        QTest::addRow("%s, file", kind) << QString::fromLatin1(kind) << int(Fail::Files);
        QTest::addRow("%s, folder", kind) << QString::fromLatin1(kind) << int(Fail::Folders);
    }
    QTest::newRow("photos") << QStringLiteral("photos") << int(Fail::FileSystems);
}

void TestTableSaveFlush::tellsFailure()
{
    QFETCH(QString, kind);
    QFETCH(int, failing);
    write(below("stick/copy"), "older");
    const FlushCalls disk{static_cast<Fail>(failing)};
    QCOMPARE(save(kind), QString::fromLocal8Bit(std::strerror(EIO)));
    if (failing == int(Fail::Files)) {
        QFile former(below("stick/copy"));
        QVERIFY(former.open(QIODevice::ReadOnly));
        QCOMPARE(former.readAll(), QByteArray("older"));
        QCOMPARE(QDir(below("stick")).entryList(QDir::Files | QDir::Hidden),
                 QStringList(QStringLiteral("copy")));
    }
}

void TestTableSaveFlush::doesNotHoldWhoIsCalledOff_data()
{
    QTest::addColumn<QString>("kind");
    for (const char *kind : {"dump", "photos", "photo", "CSV", "list"}) {
        QTest::newRow(kind) << QString::fromLatin1(kind);
    }
}

// A stick that takes for ever.
void TestTableSaveFlush::doesNotHoldWhoIsCalledOff()
{
    QFETCH(QString, kind);
    const Flush::Calls before = Flush::calls;
    Flush::calls = {&SlowDisk::wait, &SlowDisk::wait};
    QString result;
    JobThread job([&] { result = save(kind); });
    job.start();
    QTRY_COMPARE(SlowDisk::waiting.load(), 1);
    job.requestInterruption();
    const bool ended = job.wait(10000);
    SlowDisk::ended = true;
    QTRY_COMPARE(SlowDisk::waiting.load(), 0);
    SlowDisk::ended = false;
    Flush::calls = before;
    QVERIFY(ended);
    QCOMPARE(result, QStringLiteral("Interrupted"));
}

STALLO_TEST_MAIN(TestTableSaveFlush)
#include "tst_tablesaveflush.moc"
