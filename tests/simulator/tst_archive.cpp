// SPDX-License-Identifier: MIT
#include "simulator/archive.h"
#include "tests/support/testmain.h"

class ArchiveTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void holdsWholeRecords_data();
    void holdsWholeRecords();
    void risesStrictlyUpToTheEnd();
    void isTheSameForTheSameSeed();
    void swapsNeighboursWhenUnordered();
    void readsTheSameInPieces();
    void readsTheEndOfAMillionAtOnce();
};

namespace
{

constexpr qint64 end = 1700000000;

qint64 secondsOf(const Archive &archive, int row)
{
    return archive.scan(row).dateTime().toSecsSinceEpoch();
}

} // namespace

void ArchiveTest::holdsWholeRecords_data()
{
    QTest::addColumn<int>("rows");
    for (const int rows : {0, 1, 8, 9, 10, 1000}) {
        QTest::addRow("%d", rows) << rows;
    }
}

void ArchiveTest::holdsWholeRecords()
{
    QFETCH(int, rows);
    const Archive archive(rows, end, 60, 1, 40, false);
    QCOMPARE(archive.size(), qint64(rows) * 116);
    const QByteArray bytes = archive.read(0, archive.size());
    QCOMPARE(bytes.size(), rows * 116);
    for (int row = 0; row < rows; ++row) {
        const Scan scan = archive.scan(row);
        QVERIFY(scan.isValid());
        QVERIFY(!scan.number().isEmpty());
        QCOMPARE(bytes.mid(row * 116, 116), QByteArray(scan.data(), 116));
    }
}

void ArchiveTest::risesStrictlyUpToTheEnd()
{
    const Archive archive(2000, end, 60, 1, 40, false);
    for (int row = 1; row < archive.rows(); ++row) {
        QVERIFY2(secondsOf(archive, row - 1) < secondsOf(archive, row),
                 qPrintable(QString::number(row)));
    }
    QVERIFY(secondsOf(archive, 1999) <= end);
    QVERIFY(secondsOf(archive, 1999) > end - 60);
    QVERIFY(secondsOf(archive, 0) > end - 2000 * 60);
}

void ArchiveTest::isTheSameForTheSameSeed()
{
    const Archive one(100, end, 60, 1, 40, false);
    const Archive same(100, end, 60, 1, 40, false);
    const Archive other(100, end, 60, 2, 40, false);
    QCOMPARE(one.read(0, one.size()), same.read(0, same.size()));
    QVERIFY(one.read(0, one.size()) != other.read(0, other.size()));
}

void ArchiveTest::swapsNeighboursWhenUnordered()
{
    const Archive archive(101, end, 60, 1, 40, true);
    for (int row = 0; row + 1 < 100; row += 2) {
        QVERIFY(secondsOf(archive, row) > secondsOf(archive, row + 1));
    }
    QVERIFY(secondsOf(archive, 100) > secondsOf(archive, 99));
}

void ArchiveTest::readsTheSameInPieces()
{
    const Archive archive(50, end, 60, 1, 40, false);
    const QByteArray whole = archive.read(0, archive.size());
    QByteArray pieces;
    while (pieces.size() < whole.size()) {
        const QByteArray piece = archive.read(pieces.size(), 77);
        QVERIFY(!piece.isEmpty());
        pieces += piece;
    }
    QCOMPARE(pieces, whole);
    QVERIFY(archive.read(archive.size(), 10).isEmpty());
    QCOMPARE(archive.read(archive.size() - 3, 10), whole.right(3));
}

void ArchiveTest::readsTheEndOfAMillionAtOnce()
{
    const Archive archive(1000000, end, 60, 1, 40, false);
    QCOMPARE(archive.size(), qint64(116000000));
    QCOMPARE(archive.read(archive.size() - 116, 116), QByteArray(archive.scan(999999).data(), 116));
}

STALLO_TEST_MAIN(ArchiveTest)
#include "tst_archive.moc"
