// SPDX-License-Identifier: MIT
#include "records/recordfile.h"

#include "records/scan.h"
#include "tests/support/filelimit.h"
#include "tests/support/testmain.h"

#include <QTemporaryDir>

namespace
{

constexpr int size = Scan::size;

QByteArray record(char fill)
{
    return QByteArray(size, fill);
}

} // namespace

class TestRecordFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        folder_ = std::make_unique<QTemporaryDir>();
        name_ = folder_->filePath(QStringLiteral("table.tpp"));
    }

    void countsWholeRecords_data()
    {
        QTest::addColumn<int>("bytes");
        QTest::addColumn<int>("records");
        QTest::newRow("empty") << 0 << 0;
        QTest::newRow("one byte") << 1 << 0;
        QTest::newRow("one record less a byte") << 115 << 0;
        QTest::newRow("one record") << 116 << 1;
        QTest::newRow("two records and a byte") << 233 << 2;
    }
    void countsWholeRecords()
    {
        QFETCH(int, bytes);
        fill(QByteArray(bytes, 'x'));
        RecordFile file(name_, size);
        QVERIFY(file.open());
        QTEST(file.count(), "records");
        QCOMPARE(content().size(), bytes);
    }

    void createsMissingFile()
    {
        RecordFile file(name_, size);
        QVERIFY(file.open());
        QVERIFY(QFile::exists(name_));
        QCOMPARE(file.count(), 0);
    }

    void cannotOpenFolder()
    {
        RecordFile file(folder_->path(), size);
        QVERIFY(!file.open());
        QVERIFY(!file.errorString().isEmpty());
    }

    void writesThroughAtOnce()
    {
        RecordFile file(name_, size);
        QVERIFY(file.open());
        QVERIFY(file.append(record('a').constData()));
        QVERIFY(file.append(record('b').constData()));
        QCOMPARE(content(), record('a') + record('b'));
        QVERIFY(file.write(0, record('c').constData()));
        QCOMPARE(content(), record('c') + record('b'));
        QByteArray read(size, '\0');
        QVERIFY(file.read(1, read.data()));
        QCOMPARE(read, record('b'));
        QVERIFY(!file.read(2, read.data()));
    }

    void readsPartOfRecord_data()
    {
        QTest::addColumn<int>("record");
        QTest::addColumn<int>("offset");
        QTest::addColumn<int>("size");
        QTest::addColumn<QByteArray>("part"); // empty: there is no such part
        QTest::newRow("first byte") << 0 << 0 << 1 << QByteArray("a");
        QTest::newRow("in the midst") << 1 << 12 << 4 << QByteArray("MNOP");
        QTest::newRow("last bytes") << 1 << size - 2 << 2 << QByteArray("yz");
        QTest::newRow("whole") << 0 << 0 << size << record('a');
        QTest::newRow("behind the end") << 2 << 0 << 1 << QByteArray();
        QTest::newRow("over the end") << 1 << size - 2 << 3 << QByteArray();
    }
    void readsPartOfRecord()
    {
        QFETCH(int, record);
        QFETCH(int, offset);
        QFETCH(int, size);
        QFETCH(QByteArray, part);
        QByteArray second = ::record('b');
        second.replace(10, 10, "KLMNOPQRST");
        second.replace(second.size() - 2, 2, "yz");
        fill(::record('a') + second);
        RecordFile file(name_, ::size);
        QVERIFY(file.open());
        QByteArray read(size + 2, '.');
        QCOMPARE(file.readPart(record, offset, size, read.data() + 1), !part.isEmpty());
        if (!part.isEmpty()) {
            QCOMPARE(read, '.' + part + '.');
        }
    }

    void appendsBehindLastWholeRecord()
    {
        fill(record('a') + 'x');
        RecordFile file(name_, size);
        QVERIFY(file.open());
        QVERIFY(file.append(record('b').constData()));
        QCOMPARE(content().size(), 2 * size + 1);
        QCOMPARE(content().left(2 * size), record('a') + record('b'));
    }

    void growsAndShrinksByOne()
    {
        fill(record('a'));
        RecordFile file(name_, size);
        QVERIFY(file.open());
        QVERIFY(file.grow());
        QCOMPARE(content(), record('a') + record('\0'));
        QVERIFY(file.shrink());
        QCOMPARE(content(), record('a'));
    }

    void removesRange_data()
    {
        QTest::addColumn<int>("first");
        QTest::addColumn<int>("last");
        QTest::addColumn<QByteArray>("left");
        QTest::newRow("first") << 0 << 0 << QByteArray("bcde");
        QTest::newRow("third") << 2 << 2 << QByteArray("abde");
        QTest::newRow("last") << 4 << 4 << QByteArray("abcd");
        QTest::newRow("middle") << 1 << 3 << QByteArray("ae");
        QTest::newRow("all") << 0 << 4 << QByteArray();
    }
    void removesRange()
    {
        QFETCH(int, first);
        QFETCH(int, last);
        QFETCH(QByteArray, left);
        QByteArray all;
        for (const char each : {'a', 'b', 'c', 'd', 'e'}) {
            all += record(each);
        }
        fill(all);
        RecordFile file(name_, size);
        QVERIFY(file.open());
        QVERIFY(file.removeRange(first, last));
        QByteArray expected;
        for (const char each : left) {
            expected += record(each);
        }
        QCOMPARE(content(), expected);
    }

    void appendsAllOrNothingOnFullDisk()
    {
        fill(record('a'));
        RecordFile file(name_, size);
        QVERIFY(file.open());
        {
            const FileLimit fullDisk(size + 40);
            QVERIFY(!file.append(record('b').constData()));
        }
        QCOMPARE(content(), record('a'));
        QVERIFY(file.append(record('c').constData()));
        QCOMPARE(content(), record('a') + record('c'));
    }

    void keepsPartialRecordOnFullDisk()
    {
        fill(record('a') + "part");
        RecordFile file(name_, size);
        QVERIFY(file.open());
        {
            const FileLimit fullDisk(size + 40);
            QVERIFY(!file.append(record('b').constData()));
        }
        QCOMPARE(content(), record('a') + "part");
    }

    void cannotGrowOnFullDisk()
    {
        fill(record('a'));
        RecordFile file(name_, size);
        QVERIFY(file.open());
        const FileLimit fullDisk(size + 40);
        QVERIFY(!file.grow());
        QCOMPARE(content(), record('a'));
    }

private:
    void fill(const QByteArray &bytes)
    {
        QFile file(name_);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(bytes), qint64(bytes.size()));
    }
    QByteArray content() const
    {
        QFile file(name_);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    std::unique_ptr<QTemporaryDir> folder_;
    QString name_;
};

STALLO_TEST_MAIN(TestRecordFile)
#include "tst_recordfile.moc"
