// SPDX-License-Identifier: MIT
#include "pages/tableload.h"
#include "pages/tablesave.h"
#include "records/vasksettings.h"
#include "tests/support/killedrun.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QTemporaryDir>

namespace
{

constexpr int rows = 3;

Scan passage(int n)
{
    Scan scan;
    scan.setDateTime(QDateTime(QDate(2026, 11, 21), QTime(12, 0), Qt::UTC).addSecs(n));
    scan.setNumber(QStringLiteral("A00%1BC77").arg(n));
    return scan;
}

QByteArray newRows()
{
    QByteArray all;
    for (int n = 0; n < rows; ++n) {
        all.append(passage(n).data(), Scan::size);
    }
    return all;
}

const QByteArray oldRows(5 * int(Scan::size), 'o');
const QByteArray oldIndex(5 * 32, 'o');
const QByteArray newIndex(rows * 32, 'n');
const QByteArray oldPhoto(70000, 'o');
const QByteArray newPhoto(80000, 'n');
const QByteArray none("no such file");

} // namespace

// Saves and loads that are cut off at any moment, over an older table of the same name.
class TestTableSaveKilled : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pairsNoRowsWithAnotherIndex_data();
    void pairsNoRowsWithAnotherIndex();
    void keepsEachPhoto();

private:
    QString below(const QString &path) const { return root_->filePath(path); }
    QString stick(const QString &name) const { return below(QStringLiteral("stick/") + name); }
    static QByteArray content(const QString &name)
    {
        QFile file(name);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : none;
    }
    static void write(const QString &name, const QByteArray &bytes)
    {
        QFile file(name);
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
            qFatal("cannot write %s", qPrintable(name));
        }
    }
    TableSnapshot table() const
    {
        return {below(QStringLiteral("table.tpp")),
                below(QStringLiteral("table.tpp.index")),
                rows,
                {QStringLiteral("One")}};
    }
    // A table with photos, and a stick with an older one.
    void make()
    {
        root_ = std::make_unique<QTemporaryDir>();
        for (const char *folder : {"from", "stick", "stick/to"}) {
            QVERIFY(QDir(root_->path()).mkdir(QString::fromLatin1(folder)));
        }
        write(below(QStringLiteral("table.tpp")), newRows());
        write(below(QStringLiteral("table.tpp.index")), newIndex);
        write(below(QStringLiteral("list.csv")), "One\n21.11.2026 12:00:00;A000BC77;0;0;0;;");
        write(stick(QStringLiteral("dump.tpp")), oldRows);
        write(stick(QStringLiteral("dump.tpp.index")), oldIndex);
        for (int n = 0; n < rows; ++n) {
            const QString name = QLatin1Char('/') + VaskSettings::picFileName(passage(n));
            write(below(QStringLiteral("from")) + name, newPhoto);
            write(stick(QStringLiteral("to")) + name, oldPhoto);
        }
    }
    // Has it killed at every moment, and looks behind each; how often it was.
    int killEverywhere(const std::function<void()> &operation, const std::function<void()> &look)
    {
        int call = 0;
        for (auto end = KilledRun::End::Killed; end == KilledRun::End::Killed; ++call) {
            make();
            end = KilledRun::before(call, operation);
            if (end == KilledRun::End::NotAllowed) {
                return 0;
            }
            look();
            if (QTest::currentTestFailed()) {
                qWarning("killed before call %d", call);
                return call;
            }
        }
        return call;
    }

    std::unique_ptr<QTemporaryDir> root_;
};

void TestTableSaveKilled::pairsNoRowsWithAnotherIndex_data()
{
    QTest::addColumn<bool>("loads");
    QTest::newRow("dump") << false;
    QTest::newRow("load of a CSV file") << true;
}

void TestTableSaveKilled::pairsNoRowsWithAnotherIndex()
{
    QFETCH(bool, loads);
    bool wasWhole = false;
    const auto operation = [this, loads] {
        const QString name = stick(QStringLiteral("dump.tpp"));
        const QString error =
            loads ? TableLoad::csv(below(QStringLiteral("list.csv")), name, TableLoad::Progress())
                  : TableSave::dump(table(), name);
        if (!error.isEmpty()) {
            qFatal("%s", qPrintable(error));
        }
    };
    const auto look = [&] {
        const QByteArray found = content(stick(QStringLiteral("dump.tpp")));
        const QByteArray index = content(stick(QStringLiteral("dump.tpp.index")));
        const bool isOld = found == oldRows;
        QVERIFY(isOld || (loads ? found.size() == int(Scan::size) : found == newRows()));
        const QByteArray &own = isOld ? oldIndex : loads ? none : newIndex;
        QVERIFY2(index == own || index == none, isOld ? "old rows" : "new rows");
        wasWhole = !isOld && index == own;
    };
    if (killEverywhere(operation, look) == 0) {
        QSKIP("a process may not be followed here");
    }
    QVERIFY(wasWhole); // at its end
}

void TestTableSaveKilled::keepsEachPhoto()
{
    const auto operation = [this] {
        const QString error =
            TableSave::photos(table(), below(QStringLiteral("from")), stick(QStringLiteral("to")));
        if (!error.isEmpty()) {
            qFatal("%s", qPrintable(error));
        }
    };
    int copied = 0;
    const auto look = [&] {
        copied = 0;
        for (int n = 0; n < rows; ++n) {
            const QByteArray found =
                content(stick(QStringLiteral("to/") + VaskSettings::picFileName(passage(n))));
            QVERIFY2(found == oldPhoto || found == newPhoto, qPrintable(QString::number(n)));
            copied += found == newPhoto ? 1 : 0;
        }
    };
    if (killEverywhere(operation, look) == 0) {
        QSKIP("a process may not be followed here");
    }
    QCOMPARE(copied, rows);
}

STALLO_TEST_MAIN(TestTableSaveKilled)
#include "tst_tablesavekilled.moc"
