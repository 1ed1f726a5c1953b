// SPDX-License-Identifier: MIT
#include "pages/dumpneighbour.h"

#include "pages/tablesave.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace
{

QString refusal(const char *proposed)
{
    return QStringLiteral("Another dump in this folder has the same index and photos. Please save "
                          "as:\n") +
           QString::fromLatin1(proposed);
}

} // namespace

// Dumps that would share their index and photos.
class TestDumpNeighbour : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { folder_ = std::make_unique<QTemporaryDir>(); }
    void refusesName_data();
    void refusesName();
    void refusesDump();

private:
    void write(const QString &name, const QByteArray &bytes) const
    {
        QFile file(folder_->filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
            qFatal("cannot write %s", qPrintable(name));
        }
    }
    QByteArray content(const QString &name) const
    {
        QFile file(folder_->filePath(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no such file");
    }

    std::unique_ptr<QTemporaryDir> folder_;
};

void TestDumpNeighbour::refusesName_data()
{
    QTest::addColumn<QString>("there");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("told");
    const auto row = [](const char *title, const char *there, const char *name,
                        const QString &told) {
        QTest::newRow(title) << QString::fromLatin1(there) << QString::fromLatin1(name) << told;
    };
    const QString none;
    row("nothing there", "", "01.04.tpp", none);
    row("another date", "01.03.tpp", "01.04.tpp", refusal("01-04.tpp"));
    row("two dots", "a.b.tpp", "a.b.c.tpp", refusal("a-b-c.tpp"));
    row("without a dot", "01.03.tpp", "01.tpp", refusal("01-2.tpp"));
    row("without a dot, another way", "01.tpp", "01.03.tpp", refusal("01-03.tpp"));
    row("proposal taken", "01.03.tpp 01-04.tpp", "01.04.tpp", refusal("01-04-2.tpp"));
    row("proposal taken by index", "01.03.tpp 01-04.x.tpp", "01.04.tpp", refusal("01-04-2.tpp"));
    row("without ending", "01.03.tpp", "01.04", refusal("01-04.tpp"));
    row("other letters", "Gate.1.tpp", "gate.2.tpp", refusal("gate-2.tpp"));
    row("other letters, ending too", "GATE.1.TPP", "gate.2.tpp", refusal("gate-2.tpp"));
    row("itself in other letters", "Gate.1.tpp", "gate.1.tpp", none);
    row("itself", "01.03.tpp", "01.03.tpp", none);
    row("its own index and photos", "01.tpp.index 01.03.tpp", "01.03.tpp", none);
    row("a list in between", "01.03.csv 01.03.tpa", "01.04.tpp", none);
    row("another base name", "01-03.tpp 1.03.tpp 011.tpp", "01.04.tpp", none);
}

void TestDumpNeighbour::refusesName()
{
    QFETCH(QString, there);
    QFETCH(QString, name);
    const QStringList files = there.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (const QString &file : files) {
        write(file, "there");
    }
    QTEST(DumpNeighbour::refusal(folder_->filePath(name)), "told");
}

void TestDumpNeighbour::refusesDump()
{
    write(QStringLiteral("table"), QByteArray(116, 'n'));
    write(QStringLiteral("table.tpp.index"), QByteArray(32, 'n'));
    const TableSnapshot table{folder_->filePath(QStringLiteral("table")),
                              folder_->filePath(QStringLiteral("table.tpp.index")),
                              1,
                              {}};
    write(QStringLiteral("01.03.tpp"), QByteArray(116, 'o'));
    write(QStringLiteral("01.tpp.index"), QByteArray(32, 'o'));
    QCOMPARE(TableSave::dump(table, folder_->filePath(QStringLiteral("01.04.tpp"))),
             refusal("01-04.tpp"));
    QVERIFY(!QFile::exists(folder_->filePath(QStringLiteral("01.04.tpp"))));
    QCOMPARE(content(QStringLiteral("01.tpp.index")), QByteArray(32, 'o'));
    QCOMPARE(TableSave::dump(table, folder_->filePath(QStringLiteral("01-04.tpp"))), QString());
    QCOMPARE(content(QStringLiteral("01.tpp.index")), QByteArray(32, 'o'));
    QCOMPARE(content(QStringLiteral("01-04.tpp.index")), QByteArray(32, 'n'));
    // The older one itself may be replaced.
    QCOMPARE(TableSave::dump(table, folder_->filePath(QStringLiteral("01.03.tpp"))), QString());
    QCOMPARE(content(QStringLiteral("01.tpp.index")), QByteArray(32, 'n'));
}

STALLO_TEST_MAIN(TestDumpNeighbour)
#include "tst_dumpneighbour.moc"
