// SPDX-License-Identifier: MIT
#include "simulator/journal.h"
#include "tests/support/testmain.h"

#include <QTemporaryDir>

class JournalTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keepsEntriesInOrder();
    void countsRequestsByPath();
    void forgetsTheOldestBeyondTheLimit();
    void writesEveryEntryToAFile();
    void tellsWhenTheFileCannotBeOpened();
};

void JournalTest::keepsEntriesInOrder()
{
    Journal journal;
    journal.add(JournalEntry::Kind::OnLineOpened, 7, QStringLiteral("127.0.0.1:9"), QString());
    journal.add(JournalEntry::Kind::Received, 7, QStringLiteral("127.0.0.1:9"), QString(), "\xFD");
    const QVector<JournalEntry> entries = journal.entries();
    QCOMPARE(entries.size(), 2);
    QCOMPARE(entries.first().kind, JournalEntry::Kind::OnLineOpened);
    QCOMPARE(entries.last().connection, 7);
    QCOMPARE(entries.last().data, QByteArray("\xFD"));
    QVERIFY(entries.first().msec <= entries.last().msec);
    QCOMPARE(journal.entries(JournalEntry::Kind::Received).size(), 1);
    journal.clear();
    QVERIFY(journal.entries().isEmpty());
}

void JournalTest::countsRequestsByPath()
{
    Journal journal;
    const auto request = [&journal](const QString &path) {
        journal.add(JournalEntry::Kind::Request, 1, QString(), path);
    };
    request(QStringLiteral("/a"));
    request(QStringLiteral("/b"));
    request(QStringLiteral("/a"));
    journal.add(JournalEntry::Kind::Answer, 1, QString(), QStringLiteral("/a"));
    QCOMPARE(journal.countRequests(QStringLiteral("/a")), 2);
    QCOMPARE(journal.countRequests(QStringLiteral("/c")), 0);
    QCOMPARE(journal.countRequests(), 3);
    QCOMPARE(journal.count(JournalEntry::Kind::Answer), 1);
}

void JournalTest::forgetsTheOldestBeyondTheLimit()
{
    Journal journal;
    journal.setLimit(3);
    for (int entry = 0; entry < 10; ++entry) {
        journal.add(JournalEntry::Kind::Control, entry, QString(), QString());
    }
    QCOMPARE(journal.entries().size(), 3);
    QCOMPARE(journal.entries().first().connection, 7);
}

void JournalTest::writesEveryEntryToAFile()
{
    const QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("journal"));
    Journal journal;
    journal.setLimit(1);
    QString error;
    QVERIFY2(journal.openFile(name, &error), qPrintable(error));
    journal.add(JournalEntry::Kind::Request, 3, QStringLiteral("127.0.0.1:9"), QStringLiteral("/a"),
                "GET_IMMEDIATE_FILE:/a");
    journal.add(JournalEntry::Kind::Received, 4, QString(), QStringLiteral("two\r\nlines"), "\xFD");
    QFile file(name);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QList<QByteArray> lines = file.readAll().split('\n');
    QCOMPARE(lines.size(), 3);
    QVERIFY(lines.at(0).endsWith(" request #3 127.0.0.1:9 /a \"GET_IMMEDIATE_FILE:/a\""));
    QVERIFY(lines.at(1).endsWith(" received #4 two  lines 0xfd"));
}

void JournalTest::tellsWhenTheFileCannotBeOpened()
{
    Journal journal;
    QString error;
    QVERIFY(!journal.openFile(QStringLiteral("/no/such/folder/journal"), &error));
    QVERIFY(error.contains(QLatin1String("/no/such/folder/journal")));
}

STALLO_TEST_MAIN(JournalTest)
#include "tst_journal.moc"
