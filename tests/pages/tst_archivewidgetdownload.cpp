// SPDX-License-Identifier: MIT
#include "app/errorbrowser.h"
#include "app/settings.h"
#include "records/deviceindex.h"
#include "records/scanmodel.h"
#include "records/vasksettings.h"
#include "simulator/filetree.h"
#include "tests/pages/archivecase.h"

#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QSemaphore>

namespace
{

using Page = ArchivePage;

const QDateTime base = QDateTime(QDate(2026, 11, 21), QTime(2, 0), Qt::UTC);

// Passages so many seconds behind the base.
QByteArray passagesAt(const QVector<int> &seconds)
{
    QByteArray result;
    for (const int each : seconds) {
        Scan scan;
        scan.setDateTime(base.addSecs(each));
        scan.setNumber(QStringLiteral("A%1BC77").arg(result.size() / static_cast<int>(Scan::size),
                                                     3, 10, QLatin1Char('0')));
        result.append(scan.data(), Scan::size);
    }
    return result;
}

void makeFile(const QString &name)
{
    Page::write(name, "x");
}

} // namespace

// Which passages a download puts into the temporary archive and on the table.
class TestArchiveWidgetDownload : public ArchiveCase
{
    Q_OBJECT

private Q_SLOTS:
    void storesWholeArchive_data();
    void storesWholeArchive();
    void storesInterval_data();
    void storesInterval();
    void storesUnorderedArchive();
    void showsPassages();
    void addsUp();
    void bringsFilesInStep_data();
    void bringsFilesInStep();
    void replacesTableFromFile();
    void runsOneAfterTheOther();
    void worksBeforeEvents();
    void namesUnknownDevice();
    void clearsTemporaryData();
    void removesPrefixOfErrors_data();
    void removesPrefixOfErrors();
};

void TestArchiveWidgetDownload::storesWholeArchive_data()
{
    QTest::addColumn<int>("rows");
    for (const int rows : {0, 1, 8, 9, 10, 1000, 100000}) {
        QTest::addRow("%d", rows) << rows;
    }
}

void TestArchiveWidgetDownload::storesWholeArchive()
{
    QFETCH(int, rows);
    const ArchiveDevice archive(device(), ArchiveDevice::passages(rows));
    page_->download(host(), Page::wholeArchive());
    QVERIFY(page_->isBusy());
    if (rows > 10) {
        // So many photos would take their time.
        QTRY_VERIFY_WITH_TIMEOUT(!archive.photoRequests().isEmpty(), patience);
        page_->press("cancelProgress");
    }
    QVERIFY(page_->becomesIdle());
    QCOMPARE(page_->rows(), rows);
    QCOMPARE(records(), archive.records(0, rows - 1));
    QCOMPARE(index(), archive.index(rows));
    for (int row = 0; row < rows && rows <= 10; ++row) {
        QCOMPARE(Page::content(Page::photoFolder() + QLatin1Char('/') + archive.photoName(row)),
                 device().files().get(archive.remotePhoto(row)));
    }
    QVERIFY(rows > 10 || Page::photoNames().size() == rows);
}

void TestArchiveWidgetDownload::storesInterval_data()
{
    QTest::addColumn<QVector<int>>("times"); // of the archive
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("last"); // before the first: none
    const QVector<int> many = {0, 600, 1200, 1200, 1200, 1800, 2400};
    const auto row = [](const char *name, const QVector<int> &times, int from, int to, int first,
                        int last) { QTest::newRow(name) << times << from << to << first << last; };
    row("before all", many, -6000, -3000, 0, -1);
    row("ends right before the first", many, -6000, -1, 0, -1);
    row("ends on the first", many, -6000, 0, 0, 0);
    row("around all", many, -6000, 6000, 0, 6);
    row("from the first to the last", many, 0, 2400, 0, 6);
    row("begins right behind the first", many, 1, 2400, 1, 6);
    row("ends right before the last", many, 0, 2399, 0, 5);
    row("on one", many, 600, 600, 1, 1);
    row("around one", many, 500, 700, 1, 1);
    row("between two", many, 700, 1100, 0, -1);
    row("on equal times", many, 1200, 1200, 2, 4);
    row("ends on equal times", many, 600, 1200, 1, 4);
    row("ends behind equal times", many, 600, 1201, 1, 4);
    row("ends before equal times", many, 600, 1199, 1, 1);
    row("begins on equal times", many, 1200, 1800, 2, 5);
    row("begins behind equal times", many, 1201, 1800, 5, 5);
    row("begins on the last", many, 2400, 6000, 6, 6);
    row("begins right behind the last", many, 2401, 6000, 0, -1);
    row("after all", many, 3000, 6000, 0, -1);
    row("turned round", many, 1800, 600, 0, -1);
    row("all at once, on them", {60, 60, 60}, 60, 60, 0, 2);
    row("all at once, beside them", {60, 60, 60}, 61, 90, 0, -1);
    row("the only one", {60}, 0, 120, 0, 0);
    row("before the only one", {60}, 0, 59, 0, -1);
    row("after the only one", {60}, 61, 120, 0, -1);
    row("empty archive", {}, 0, 120, 0, -1);
}

void TestArchiveWidgetDownload::storesInterval()
{
    QFETCH(QVector<int>, times);
    QFETCH(int, from);
    QFETCH(int, to);
    QFETCH(int, first);
    QFETCH(int, last);
    const ArchiveDevice archive(device(), passagesAt(times));
    download(Page::between(base.addSecs(from), base.addSecs(to)));
    QCOMPARE(page_->rows(), last - first + 1);
    QCOMPARE(records(), archive.records(first, last));
    QCOMPARE(index(), archive.index(last - first + 1));
    // Once for each, also where times are equal.
    QCOMPARE(archive.photoRequests().size(), last - first + 1);
}

void TestArchiveWidgetDownload::storesUnorderedArchive()
{
    const ArchiveDevice archive(device(), ArchiveDevice::passages(21, true));
    QVERIFY(archive.time(0) > archive.time(1));
    download(Page::wholeArchive());
    QCOMPARE(records(), archive.records(0, 20));
    page_->press("buttonNewTable");
    download(Page::between(archive.time(4), archive.time(11)));
    // Somewhat off, but rows of the archive.
    QVERIFY(page_->rows() <= 21);
    QVERIFY(archive.records(0, 20).contains(records()));
    QCOMPARE(index(), archive.index(page_->rows()));
}

void TestArchiveWidgetDownload::showsPassages()
{
    const ArchiveDevice archive(device(), ArchiveDevice::passages(10));
    download(Page::wholeArchive());
    for (const int row : {0, 5, 9}) {
        const Scan scan = archive.passage(row);
        QCOMPARE(page_->cell(row, ScanModel::DateColumn),
                 scan.dateTime().toString(scanModelDateTimeFormat));
        QCOMPARE(page_->cell(row, ScanModel::NumberColumn),
                 VaskSettings::readableNumber(scan.number()));
        QCOMPARE(page_->cell(row, ScanModel::DeviceColumn), device().deviceId());
        QCOMPARE(page_->cell(row, ScanModel::KeyColumn), scan.accessKey());
    }
    page_->clickRow(9);
    QVERIFY(page_->find<QPushButton>("buttonSavePhoto")->isEnabled());
}

void TestArchiveWidgetDownload::addsUp()
{
    const ArchiveDevice first(device(), ArchiveDevice::passages(9));
    const ArchiveDevice second(devices_->second(), ArchiveDevice::passages(4, true));
    download(Page::wholeArchive());
    page_->download(devices_->second().address(), Page::wholeArchive());
    QVERIFY(page_->becomesIdle());
    download(Page::wholeArchive());
    QCOMPARE(page_->rows(), 22);
    QCOMPARE(records(), first.records(0, 8) + second.records(0, 3) + first.records(0, 8));
    QCOMPARE(index(), first.index(9) + second.index(4) + first.index(9));
    QCOMPARE(page_->cell(8, ScanModel::DeviceColumn), device().deviceId());
    QCOMPARE(page_->cell(9, ScanModel::DeviceColumn), devices_->second().deviceId());
}

void TestArchiveWidgetDownload::bringsFilesInStep_data()
{
    QTest::addColumn<bool>("ofIndex");
    QTest::addColumn<int>("bytes"); // of the file after the first download
    QTest::newRow("half an entry less") << true << 5 * 32 - 16;
    QTest::newRow("two entries less") << true << 3 * 32;
    QTest::newRow("no index") << true << 0;
    QTest::newRow("half an entry more") << true << 5 * 32 + 16;
    QTest::newRow("three entries more") << true << 8 * 32;
    QTest::newRow("half a record more") << false << 5 * static_cast<int>(Scan::size) + 60;
}

void TestArchiveWidgetDownload::bringsFilesInStep()
{
    QFETCH(bool, ofIndex);
    QFETCH(int, bytes);
    const ArchiveDevice archive(device(), ArchiveDevice::passages(5));
    download(Page::wholeArchive());
    const QString file = ofIndex ? Page::indexFile() : Page::recordFile();
    const QByteArray changed = Page::content(file).leftJustified(bytes, '?', true);
    Page::write(file, changed);
    download(Page::wholeArchive());
    QCOMPARE(page_->rows(), 10);
    QCOMPARE(records(), archive.records(0, 4) + archive.records(0, 4));
    // What was lost is not known any more.
    const QByteArray before =
        ofIndex ? changed.leftJustified(5 * 32, '\0', true) : archive.index(5);
    QCOMPARE(index(), before + archive.index(5));
}

void TestArchiveWidgetDownload::replacesTableFromFile()
{
    const ArchiveDevice archive(device(), ArchiveDevice::passages(20));
    download(Page::between(archive.time(3), archive.time(7)));
    const QString dump = TestSurroundings::home() + QStringLiteral("/dump.tpp");
    Page::write(dump, archive.records(0, 1));
    QCOMPARE(page_->page().loadTableFromDatFile(dump), QString());
    QCOMPARE(page_->rows(), 2);
    makeFile(Page::photoFolder() + QStringLiteral("/old"));
    download(Page::between(archive.time(10), archive.time(12)));
    QCOMPARE(records(), archive.records(10, 12));
    QCOMPARE(index(), archive.index(3));
    QCOMPARE(Page::photoNames().size(), 3);
    QCOMPARE(Page::content(dump), archive.records(0, 1));
}

void TestArchiveWidgetDownload::runsOneAfterTheOther()
{
    const ArchiveDevice first(device(), ArchiveDevice::passages(5));
    const ArchiveDevice second(devices_->second(), ArchiveDevice::passages(3));
    page_->page().loadTableFromNet(host());
    page_->page().loadTableFromNet(devices_->second().address());
    QTRY_COMPARE_WITH_TIMEOUT(page_->rows(), 8, patience);
    QVERIFY(page_->becomesIdle());
    QCOMPARE(records(), first.records(0, 4) + second.records(0, 2));
    QCOMPARE(index(), first.index(5) + second.index(3));
    QCOMPARE(Page::photoNames().size(), 8);
}

// As the command line does it: nothing has been shown yet, and the page asks for the table before
// anybody listens.
void TestArchiveWidgetDownload::worksBeforeEvents()
{
    page_.reset();
    const ArchiveDevice archive(device(), ArchiveDevice::passages(5));
    ArchiveWidget early;
    QSemaphore asked;
    connect(
        &early, &ArchiveWidget::setTableThreaded, &early, [&asked] { asked.release(); },
        Qt::DirectConnection);
    early.loadTableFromNet(host());
    QVERIFY(asked.tryAcquire(1, patience));
    early.show();
    QTRY_COMPARE_WITH_TIMEOUT(archive.photoRequests().size(), 5, patience);
    QTRY_VERIFY_WITH_TIMEOUT(early.findChild<QTableView *>()->isVisible(), patience);
    QCOMPARE(early.findChild<QTableView *>()->model()->rowCount(), 5);
    QCOMPARE(records(), archive.records(0, 4));
}

// Ten seconds, for as long is a device asked for its identifier.
void TestArchiveWidgetDownload::namesUnknownDevice()
{
    const ArchiveDevice archive(device(), ArchiveDevice::passages(3));
    device().files().remove(DevicePaths::streams());
    QElapsedTimer clock;
    clock.start();
    download(Page::wholeArchive());
    QVERIFY(clock.elapsed() > 9900);
    QVERIFY(device().journal().countRequests(DevicePaths::streams()) > 100);
    QCOMPARE(records(), archive.records(0, 2));
    QCOMPARE(index(), DeviceIndex::entry(QStringLiteral("Not defined")).repeated(3));
    QCOMPARE(page_->cell(0, ScanModel::DeviceColumn), QStringLiteral("Not defined"));
    QCOMPARE(Page::photoNames().size(), 3);
}

void TestArchiveWidgetDownload::clearsTemporaryData()
{
    page_.reset();
    const QString folder = Page::folder();
    const auto fill = [&folder] {
        QVERIFY(QDir(folder).mkpath(QStringLiteral("any.jpegdata/deep")));
        for (const QString &file :
             {Page::recordFile(), Page::indexFile(), folder + QStringLiteral("/.hidden"),
              folder + QStringLiteral("/any.jpegdata/photo.jpeg"),
              folder + QStringLiteral("/any.jpegdata/deep/kept")}) {
            makeFile(file);
        }
    };
    const auto left = [&folder] {
        QStringList names;
        QDirIterator each(folder, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                          QDirIterator::Subdirectories);
        while (each.hasNext()) {
            names += QDir(folder).relativeFilePath(each.next());
        }
        names.sort();
        return names;
    };
    const QStringList kept = {QStringLiteral("any.jpegdata"), QStringLiteral("any.jpegdata/deep"),
                              QStringLiteral("any.jpegdata/deep/kept")};
    // The index also where the temporary archive lies elsewhere.
    const QString elsewhere = TestSurroundings::home() + QStringLiteral("/elsewhere.tpp");
    Settings::instance()->setArchiveTempFile(elsewhere);
    fill();
    page_ = std::make_unique<Page>();
    QCOMPARE(left(), kept);
    QVERIFY(!QFile::exists(Page::indexFile()));
    fill();
    page_->end();
    QCOMPARE(left(), kept);
    QVERIFY(!QFile::exists(Page::indexFile()));
}

void TestArchiveWidgetDownload::removesPrefixOfErrors_data()
{
    QTest::addColumn<QString>("result");
    QTest::addColumn<QString>("shown");
    const auto row = [](const char *result, const char *shown) {
        QTest::newRow(result) << QString::fromLatin1(result) << QString::fromLatin1(shown);
    };
    row("Error=Can't open file", "Can't open file");
    row("Can't open file", "Can't open file");
    row("An Error=1", "An Error=1");
}

void TestArchiveWidgetDownload::removesPrefixOfErrors()
{
    QFETCH(QString, result);
    QFETCH(QString, shown);
    QString heading;
    QString text;
    page_->answers().expect(ModalAnswers::reading(&heading, &text));
    ErrorBrowser::jobError(result, &page_->page());
    QCOMPARE(heading, QStringLiteral("Error"));
    QCOMPARE(text, shown);
    // Nothing to say.
    ErrorBrowser::jobError(QString(), &page_->page());
}

STALLO_TEST_MAIN(TestArchiveWidgetDownload)
#include "tst_archivewidgetdownload.moc"
