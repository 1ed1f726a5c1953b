// SPDX-License-Identifier: MIT
#include "app/settings.h"
#include "records/deviceindex.h"
#include "records/scanmodel.h"
#include "records/vasksettings.h"
#include "simulator/archive.h"
#include "tests/pages/archivecase.h"
#include "tests/support/smalldisk.h"

#include <QElapsedTimer>

#include <cerrno>
#include <malloc.h>

namespace
{

using Page = ArchivePage;

constexpr int million = 1000000;
// For what does not grow with the rows.
constexpr qint64 allowance = 4 * 1024 * 1024;
constexpr int longPatience = 120000;

// What the program has asked the system for and uses.
qint64 usedMemory()
{
    const struct mallinfo2 all = mallinfo2();
    return static_cast<qint64>(all.uordblks + all.hblkhd);
}

} // namespace

// The Archive page at its limits: a million passages, a disk that is too small, and a call-off in
// the midst of a long step.
class TestArchiveWidgetLimits : public ArchiveCase
{
    Q_OBJECT

private Q_SLOTS:
    void holdsAMillionPassages();
    void survivesFullDiskOfIndex();
    void cancelsLongAppending();

private:
    // Measures and tells; speed is not tested here.
    static void tell(const char *what, const QElapsedTimer &clock)
    {
        qInfo("%s: %lld ms", what, static_cast<long long>(clock.elapsed()));
    }
    void compareFiles(const Archive &archive);
    void compareCells(const Archive &archive);
};

void TestArchiveWidgetLimits::compareFiles(const Archive &archive)
{
    QFile file(Page::recordFile());
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.size(), archive.size());
    constexpr qint64 piece = qint64(10000) * Scan::size;
    for (qint64 place = 0; place < archive.size(); place += piece) {
        QVERIFY(file.read(piece) == archive.read(place, piece));
    }
    QVERIFY(index() == DeviceIndex::entry(device().deviceId()).repeated(archive.rows()));
}

void TestArchiveWidgetLimits::compareCells(const Archive &archive)
{
    QTableView *table = page_->table();
    for (const int row : {million - 1, 0, 12345, 500000, 999000, 1}) {
        table->scrollTo(table->model()->index(row, ScanModel::NumberColumn));
        page_->clickRow(row);
        QCOMPARE(page_->currentRow(), row);
        QCOMPARE(page_->cell(row, ScanModel::NumberColumn),
                 VaskSettings::readableNumber(archive.scan(row).number()));
        QCOMPARE(page_->cell(row, ScanModel::DeviceColumn), device().deviceId());
    }
}

void TestArchiveWidgetLimits::holdsAMillionPassages()
{
    {
        // What the first download takes once and for all.
        const ArchiveDevice few(device(), ArchiveDevice::passages(10));
        download(Page::wholeArchive());
        page_->clickRow(9);
        page_->press("buttonNewTable");
    }
    const auto archive = std::make_shared<const Archive>(million, 1763726400, 30, 7, 40, false);
    device().files().setMaker(DevicePaths::archive(),
                              [archive](const QString &) { return archive; });
    QElapsedTimer clock;
    const qint64 before = usedMemory();
    clock.start();
    page_->download(host(), Page::wholeArchive());
    const QString newest = Settings::instance()->vaskArchivePhotoPath(archive->scan(million - 1));
    QTRY_VERIFY_WITH_TIMEOUT(device().journal().countRequests(newest) > 0, longPatience);
    tell("downloading a million passages", clock);
    clock.start();
    page_->press("cancelProgress");
    QVERIFY(page_->becomesIdle());
    const qint64 cancelled = clock.elapsed();
    QVERIFY2(cancelled <= 200, qPrintable(QString::number(cancelled)));
    QCOMPARE(page_->rows(), million);

    clock.start();
    page_->page().setTable(Page::recordFile());
    tell("binding", clock);
    clock.start();
    page_->table()->scrollToBottom();
    page_->table()->repaint();
    tell("scrolling to the end", clock);
    QVERIFY(page_->table()->visualRect(page_->table()->model()->index(million - 1, 0)).isValid());
    compareCells(*archive);
    const qint64 used = usedMemory() - before;
    qInfo("%.2f bytes a row", static_cast<double>(used) / million);
    QVERIFY2(used <= qint64(16) * million + allowance, qPrintable(QString::number(used)));

    compareFiles(*archive);
    const qint64 ended = page_->end();
    QVERIFY2(ended < 2000, qPrintable(QString::number(ended)));
}

// The records fit, the index does not.
void TestArchiveWidgetLimits::survivesFullDiskOfIndex()
{
    if (!SmallDisk::isAllowed()) {
        QSKIP("this process may not mount a disk");
    }
    constexpr int oldRows = 3;
    constexpr int recordPages = 29; // 1000 records; the index takes 8 more
    const SmallDisk disk(Page::folder(), recordPages + 1 + 5);
    const ArchiveDevice old(device(), ArchiveDevice::passages(oldRows));
    download(Page::wholeArchive());
    const ArchiveDevice archive(device(), ArchiveDevice::passages(1000));
    QString heading;
    QString text;
    page_->download(host(), Page::wholeArchive());
    page_->answers().expect(ModalAnswers::reading(&heading, &text));
    QVERIFY(page_->becomesIdle());
    QCOMPARE(heading, QStringLiteral("Error"));
    QCOMPARE(text, qt_error_string(ENOSPC));
    QCOMPARE(page_->rows(), oldRows);
    QCOMPARE(records(), old.records(0, oldRows - 1));
    QCOMPARE(index(), old.index(oldRows));
    Settings::instance()->SetMinReservedFreeSpace(0);
    const ArchiveDevice few(device(), ArchiveDevice::passages(5));
    download(Page::wholeArchive());
    QCOMPARE(records(), old.records(0, oldRows - 1) + few.records(0, 4));
    QCOMPARE(index(), old.index(oldRows + 5));
}

// In the midst of it, as often as the machine allows: then nothing is added; too late: all is.
void TestArchiveWidgetLimits::cancelsLongAppending()
{
    constexpr int rows = 100000;
    const ArchiveDevice archive(device(), ArchiveDevice::passages(rows));
    QElapsedTimer sinceCancel;
    // Right after the table was taken off.
    connect(&page_->page(), &ArchiveWidget::setTableThreaded, this, [&](const QString &name) {
        if (name.isEmpty()) {
            sinceCancel.start();
            page_->press("cancelProgress");
        }
    });
    page_->download(host(), Page::wholeArchive());
    QVERIFY(page_->becomesIdle());
    QVERIFY(sinceCancel.isValid());
    const qint64 taken = sinceCancel.elapsed();
    QVERIFY2(taken <= 200, qPrintable(QString::number(taken)));
    QVERIFY2(page_->rows() == 0 || page_->rows() == rows,
             qPrintable(QString::number(page_->rows())));
    QCOMPARE(records(), archive.records(0, page_->rows() - 1));
    QCOMPARE(index(), archive.index(page_->rows()));
}

int main(int argc, char *argv[])
{
    SmallDisk::prepare();
    TestSurroundings surroundings(argc, argv);
    TestArchiveWidgetLimits test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_archivewidgetlimits.moc"
