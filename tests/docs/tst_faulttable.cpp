// SPDX-License-Identifier: MIT
#include "simulator/console.h"
#include "simulator/faults.h"
#include "tests/docs/document.h"
#include "tests/support/testmain.h"

#include <QRegularExpression>
#include <QSet>

namespace
{

const QString faultTable = QStringLiteral("Faults of the file service");
const QString troubleTable = QStringLiteral("Troubles of the on-line port");

// The commands of the simulated device that make no trouble.
const QStringList harmless = {
    QStringLiteral("push"),    QStringLiteral("burst"),  QStringLiteral("rate"),
    QStringLiteral("count"),   QStringLiteral("fault"),  QStringLiteral("faults"),
    QStringLiteral("clear"),   QStringLiteral("stored"), QStringLiteral("active"),
    QStringLiteral("put"),     QStringLiteral("remove"), QStringLiteral("restore"),
    QStringLiteral("late"),    QStringLiteral("help"),   QStringLiteral("quit"),
    QStringLiteral("requests")};

Document faults()
{
    return Document(QStringLiteral(STALLO_SOURCE_DIR "/docs/faults.md"));
}

QStringList cellsOf(const QString &line)
{
    QStringList cells;
    for (const QString &cell : line.split(QLatin1Char('|')).mid(1)) {
        cells.append(cell.trimmed());
    }
    cells.removeLast();
    return cells;
}

// The first table below a heading of any level: its titles first, without the line below them.
QVector<QStringList> tableBelow(const QString &heading)
{
    QVector<QStringList> table;
    bool below = false;
    const QStringList lines = faults().text().split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        if (line.startsWith(QLatin1Char('#'))) {
            below = line.section(QLatin1Char(' '), 1) == heading;
        } else if (below && line.startsWith(QLatin1Char('|'))) {
            if (!line.startsWith(QLatin1String("|---"))) {
                table.append(cellsOf(line));
            }
        } else if (!table.isEmpty()) {
            break;
        }
    }
    return table;
}

// What stands in the first backquotes of a row's first cell; empty where there are none.
QString wordOf(const QStringList &row)
{
    static const QRegularExpression quoted(QStringLiteral("^`([a-z-]+)`"));
    return quoted.match(row.first()).captured(1);
}

QStringList wordsOf(const QString &heading)
{
    QStringList words;
    for (const QStringList &row : tableBelow(heading).mid(1)) {
        if (!wordOf(row).isEmpty()) {
            words.append(wordOf(row));
        }
    }
    words.removeDuplicates();
    return words;
}

QStringList firstWords(const QStringList &lines)
{
    QStringList words;
    for (const QString &line : lines) {
        words.append(line.trimmed().section(QLatin1Char(' '), 0, 0));
    }
    return words;
}

} // namespace

// The table of faults against the simulated device.
class TestFaultTable : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyFaultHasItsRow() { QCOMPARE(wordsOf(faultTable), firstWords(Faults::help())); }

    void everyTroubleHasItsRow()
    {
        QStringList commands = firstWords(Console::help().split(QLatin1Char('|')));
        // "online|file on|off" are values.
        commands.removeAll(QStringLiteral("file"));
        commands.removeAll(QStringLiteral("off"));
        for (const QString &command : harmless) {
            QVERIFY2(commands.removeAll(command) > 0, qPrintable(command));
        }
        QStringList words = wordsOf(troubleTable);
        words.sort();
        commands.sort();
        QCOMPARE(words, commands);
    }

    // Every operation is a column, and has a section that tells what its words mean.
    void everyOperationIsThere_data()
    {
        QTest::addColumn<QString>("heading");
        QTest::addColumn<QStringList>("operations");
        QTest::newRow("file service")
            << faultTable
            << QStringList{QStringLiteral("Identifier"), QStringLiteral("Live photo"),
                           QStringLiteral("Late photo"), QStringLiteral("Camera frame"),
                           QStringLiteral("Archive"),    QStringLiteral("Archive photo"),
                           QStringLiteral("List fetch"), QStringLiteral("List send"),
                           QStringLiteral("List append")};
        QTest::newRow("on-line port")
            << troubleTable
            << QStringList{QStringLiteral("Live line"), QStringLiteral("Barrier"),
                           QStringLiteral("List reload")};
    }
    void everyOperationIsThere()
    {
        QFETCH(QString, heading);
        QFETCH(QStringList, operations);
        const QVector<QStringList> table = tableBelow(heading);
        QVERIFY(table.size() > 5);
        QCOMPARE(table.first().mid(1), operations);
        for (const QStringList &row : table) {
            QCOMPARE(row.size(), operations.size() + 1);
        }
        for (int column = 1; column <= operations.size(); ++column) {
            QSet<QString> used;
            for (const QStringList &row : table.mid(1)) {
                used.insert(row.at(column));
            }
            QSet<QString> told;
            const QVector<QStringList> words = tableBelow(operations.at(column - 1));
            QVERIFY2(words.size() > 1, qPrintable(operations.at(column - 1)));
            for (const QStringList &word : words.mid(1)) {
                QCOMPARE(word.size(), 4);
                QVERIFY2(!word.at(1).isEmpty(), qPrintable(word.first()));
                told.insert(word.first());
            }
            QVERIFY2(used == told,
                     qPrintable(operations.at(column - 1) + QStringLiteral(": ") +
                                QStringList((used - told).values()).join(QLatin1Char(' ')) +
                                QStringLiteral(" not told, not used: ") +
                                QStringList((told - used).values()).join(QLatin1Char(' '))));
        }
    }
};

STALLO_TEST_MAIN(TestFaultTable)
#include "tst_faulttable.moc"
