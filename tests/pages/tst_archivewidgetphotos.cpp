// SPDX-License-Identifier: MIT
#include "app/settings.h"
#include "net/events.h"
#include "tests/pages/archivecase.h"
#include "tests/support/smalldisk.h"

#include <QDir>
#include <QSemaphore>

#include <numeric>

namespace
{

using Page = ArchivePage;

// Writes down how far the jobs of a page said they were.
class ProgressLog : public QObject
{
public:
    explicit ProgressLog(QObject *page) { page->installEventFilter(this); }
    QVector<int> values;

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (static_cast<int>(event->type()) == EventNumber::Progress) {
            values.append(static_cast<ProgressEvent *>(event)->value());
        }
        return false;
    }
};

} // namespace

// The second half of a download: the photos of the new passages, how far it is, and whose name
// stands in the title.
class TestArchiveWidgetPhotos : public ArchiveCase
{
    Q_OBJECT

private Q_SLOTS:
    void fetchesNewestFirst();
    void fetchesForNewRowsOnly();
    void replacesPhotoOfEarlierDownload();
    void tellsProgress_data();
    void tellsProgress();
    void showsProgressOnTheRing();
    void showsPhotoOfChosenPassage();
    void missesOnePhoto_data();
    void missesOnePhoto();
    void complainsAboutFolder_data();
    void complainsAboutFolder();
    void endsWhenSpaceIsLow_data();
    void endsWhenSpaceIsLow();
    void endsAtPhotoWithoutRoom_data();
    void endsAtPhotoWithoutRoom();
    void namesDeviceAtTheEnd();
    void namesDeviceAfterCancel();
    void namesDeviceWithoutPhotos();
    void leavesTitleToOtherPage();

private:
    static QString photoFile(const QString &name)
    {
        return Page::photoFolder() + QLatin1Char('/') + name;
    }
    // The photos of the rows lie in the folder as the device has them, and no other files do.
    static void comparePhotos(const ArchiveDevice &archive, const QVector<int> &rows)
    {
        QStringList names;
        for (const int row : rows) {
            names += archive.photoName(row);
            QCOMPARE(Page::content(photoFile(names.last())), archive.photo(row));
        }
        names.sort();
        QCOMPARE(Page::photoNames(), names);
    }
    static QVector<int> upTo(int rows)
    {
        QVector<int> result(rows);
        std::iota(result.begin(), result.end(), 0);
        return result;
    }
    // The device sends each further photo only when the gate lets it, but not later than a failing
    // test takes.
    std::shared_ptr<QSemaphore> closeGate()
    {
        const auto gate = std::make_shared<QSemaphore>();
        device().files().setMaker(DevicePaths::photoFolder(), [gate](const QString &) {
            gate->tryAcquire(1, patience);
            return FileTree::contentOf("photo");
        });
        return gate;
    }
    static QStringList newestFirst(const ArchiveDevice &archive, int first, int last)
    {
        QStringList result;
        for (int row = last; row >= first; --row) {
            result += archive.remotePhoto(row);
        }
        return result;
    }
};

void TestArchiveWidgetPhotos::fetchesNewestFirst()
{
    const ArchiveDevice archive(device(), ArchiveDevice::passages(30));
    download(Page::wholeArchive());
    QCOMPARE(archive.photoRequests(), newestFirst(archive, 0, 29));
    comparePhotos(archive, upTo(30));
}

void TestArchiveWidgetPhotos::fetchesForNewRowsOnly()
{
    const ArchiveDevice archive(device(), ArchiveDevice::passages(30));
    download(Page::between(archive.time(4), archive.time(9)));
    QCOMPARE(archive.photoRequests(), newestFirst(archive, 4, 9));
    comparePhotos(archive, {4, 5, 6, 7, 8, 9});
    // The second one adds rows of another device.
    const ArchiveDevice other(devices_->second(), ArchiveDevice::passages(5));
    device().journal().clear();
    page_->download(devices_->second().address(), Page::wholeArchive());
    QVERIFY(page_->becomesIdle());
    QCOMPARE(archive.photoRequests(), QStringList());
    QCOMPARE(other.photoRequests(), newestFirst(other, 0, 4));
    // And the third the same rows once more.
    download(Page::between(archive.time(4), archive.time(9)));
    QCOMPARE(archive.photoRequests(), newestFirst(archive, 4, 9));
}

void TestArchiveWidgetPhotos::replacesPhotoOfEarlierDownload()
{
    const ArchiveDevice archive(device(), ArchiveDevice::passages(2));
    download(Page::wholeArchive());
    Page::write(photoFile(archive.photoName(1)), "old");
    download(Page::wholeArchive());
    comparePhotos(archive, upTo(2));
}

void TestArchiveWidgetPhotos::tellsProgress_data()
{
    QTest::addColumn<int>("rows");
    QTest::addColumn<QVector<int>>("values");
    QTest::newRow("none") << 0 << QVector<int>{0, 1};
    QTest::newRow("1") << 1 << QVector<int>{0, 1, 100};
    QTest::newRow("2") << 2 << QVector<int>{0, 1, 51, 100};
    QTest::newRow("9") << 9 << QVector<int>{0, 1, 12, 23, 34, 45, 56, 67, 78, 89, 100};
    // Whole steps: what does not change the number is not told.
    QVector<int> all(101);
    std::iota(all.begin(), all.end(), 0);
    QTest::newRow("99") << 99 << all;
    QTest::newRow("250") << 250 << all;
}

void TestArchiveWidgetPhotos::tellsProgress()
{
    QFETCH(int, rows);
    QFETCH(QVector<int>, values);
    const ArchiveDevice archive(device(), ArchiveDevice::passages(rows));
    const ProgressLog log(&page_->page());
    download(Page::wholeArchive());
    QCOMPARE(log.values, values);
}

void TestArchiveWidgetPhotos::showsProgressOnTheRing()
{
    const ArchiveDevice archive(device(), ArchiveDevice::passages(4));
    device().faults().add(Fault::silent().on(archive.remotePhoto(1)));
    page_->download(host(), Page::wholeArchive());
    QTRY_COMPARE_WITH_TIMEOUT(page_->progress(), 51, patience);
    page_->press("cancelProgress");
    QVERIFY(page_->becomesIdle());
    device().faults().clear();
    // The next one begins at its beginning.
    device().faults().add(Fault::silent().on(DevicePaths::archive()));
    page_->download(host(), Page::wholeArchive());
    QTRY_COMPARE_WITH_TIMEOUT(page_->progress(), 0, patience);
    page_->press("cancelProgress");
    QVERIFY(page_->becomesIdle());
}

void TestArchiveWidgetPhotos::showsPhotoOfChosenPassage()
{
    const ArchiveDevice archive(device(), ArchiveDevice::passages(4));
    device().files().remove(archive.remotePhoto(2));
    download(Page::wholeArchive());
    auto *save = page_->find<QPushButton>("buttonSavePhoto");
    QVERIFY(!save->isEnabled());
    page_->clickRow(3);
    QVERIFY(save->isEnabled());
    page_->clickRow(2);
    QVERIFY(!save->isEnabled());
}

void TestArchiveWidgetPhotos::missesOnePhoto_data()
{
    QTest::addColumn<QString>("fault");
    for (const char *fault : {"", "answer Error=No", "close-after 100", "reset-after 2000",
                              "close-after-request", "size-offset 4096"}) {
        QTest::newRow(*fault != '\0' ? fault : "no file") << QString::fromLatin1(fault);
    }
}

void TestArchiveWidgetPhotos::missesOnePhoto()
{
    QFETCH(QString, fault);
    const ArchiveDevice archive(device(), ArchiveDevice::passages(5));
    if (fault.isEmpty()) {
        device().files().remove(archive.remotePhoto(3));
    } else {
        Fault parsed;
        QString error;
        QVERIFY2(Faults::parse(fault, &parsed, &error), qPrintable(error));
        device().faults().add(parsed.on(archive.remotePhoto(3)));
    }
    const ProgressLog log(&page_->page());
    download(Page::wholeArchive());
    comparePhotos(archive, {0, 1, 2, 4});
    QCOMPARE(page_->rows(), 5);
    QCOMPARE(log.values.last(), 100);
    QCOMPARE(title(), named(host()));
}

void TestArchiveWidgetPhotos::complainsAboutFolder_data()
{
    QTest::addColumn<int>("earlier"); // downloads
    QTest::newRow("first download") << 0;
    QTest::newRow("second download") << 1;
}

void TestArchiveWidgetPhotos::complainsAboutFolder()
{
    QFETCH(int, earlier);
    const ArchiveDevice archive(device(), ArchiveDevice::passages(5));
    if (earlier > 0) {
        download(Page::wholeArchive());
        device().journal().clear();
    }
    // A file in the folder's place, made when the old ones have been cleared away.
    connect(
        &page_->page(), &ArchiveWidget::setTableThreaded, &page_->page(),
        [] {
            QDir(Page::photoFolder()).removeRecursively();
            Page::write(Page::photoFolder(), "x");
        },
        Qt::DirectConnection);
    QString heading;
    QString text;
    page_->download(host(), Page::wholeArchive());
    page_->answers().expect(ModalAnswers::reading(&heading, &text));
    QVERIFY(page_->becomesIdle());
    QCOMPARE(heading, QStringLiteral("Error"));
    QCOMPARE(text, QStringLiteral("Vask is busy now. Please try again later."));
    QCOMPARE(page_->rows(), 5 * (earlier + 1));
    QCOMPARE(records(), archive.records(0, 4).repeated(earlier + 1));
    QCOMPARE(archive.photoRequests(), QStringList());
    QFile::remove(Page::photoFolder());
}

void TestArchiveWidgetPhotos::endsWhenSpaceIsLow_data()
{
    QTest::addColumn<int>("spare"); // pages beyond the reserve after the table was written
    QTest::addColumn<int>("photos");
    QTest::newRow("below the reserve") << -1 << 0;
    QTest::newRow("exactly the reserve") << 0 << 0;
    QTest::newRow("one photo") << 1 << 1;
    QTest::newRow("three photos") << 3 << 3;
    QTest::newRow("the last one") << 9 << 9;
    QTest::newRow("enough") << 10 << 10;
}

void TestArchiveWidgetPhotos::endsWhenSpaceIsLow()
{
    QFETCH(int, spare);
    QFETCH(int, photos);
    if (!SmallDisk::isAllowed()) {
        QSKIP("this process may not mount a disk");
    }
    constexpr int pages = 64;
    constexpr int tablePages = 2; // record file and index
    const SmallDisk disk(Page::folder(), pages);
    QCOMPARE(disk.available(), qint64(pages) * SmallDisk::pageSize);
    const ArchiveDevice nothing(devices_->second(), QByteArray());
    page_->download(devices_->second().address(), Page::wholeArchive());
    QVERIFY(page_->becomesIdle());
    QCOMPARE(title(), named(devices_->second().address()));

    const ArchiveDevice archive(device(), ArchiveDevice::passages(10));
    Settings::instance()->SetMinReservedFreeSpace((pages - tablePages - spare) *
                                                  SmallDisk::pageSize);
    const ProgressLog log(&page_->page());
    download(Page::wholeArchive());
    QCOMPARE(records(), archive.records(0, 9));
    QCOMPARE(page_->rows(), 10);
    // The newest ones, each of a page.
    QCOMPARE(archive.photoRequests(), newestFirst(archive, 10 - photos, 9));
    comparePhotos(archive, upTo(10).mid(10 - photos));
    QCOMPARE(log.values.last(), qRound(99.0 * photos / 10) + 1);
    // Who did not finish does not change the name.
    QCOMPARE(title(), named(photos == 10 ? host() : devices_->second().address()));
}

void TestArchiveWidgetPhotos::endsAtPhotoWithoutRoom_data()
{
    QTest::addColumn<int>("spare"); // pages beyond the reserve after the table was written
    QTest::addColumn<int>("photos");
    QTest::newRow("none") << 2 << 0;
    QTest::newRow("one exactly") << 3 << 1;
    QTest::newRow("one and a part") << 5 << 1;
    QTest::newRow("three and a part") << 11 << 3;
    QTest::newRow("all but the last page") << 29 << 9;
    QTest::newRow("all exactly") << 30 << 10;
}

// The photos take three pages each. The one that does not fit is asked for, since only the device
// knows its size; after it none is.
void TestArchiveWidgetPhotos::endsAtPhotoWithoutRoom()
{
    QFETCH(int, spare);
    QFETCH(int, photos);
    if (!SmallDisk::isAllowed()) {
        QSKIP("this process may not mount a disk");
    }
    constexpr int pages = 64;
    constexpr int tablePages = 2;
    const SmallDisk disk(Page::folder(), pages);
    const ArchiveDevice archive(device(), ArchiveDevice::passages(10));
    const QByteArray photo(3 * SmallDisk::pageSize, 'p');
    device().files().setMaker(DevicePaths::photoFolder(),
                              [photo](const QString &) { return FileTree::contentOf(photo); });
    const qint64 reserve = (pages - tablePages - spare) * SmallDisk::pageSize;
    Settings::instance()->SetMinReservedFreeSpace(reserve);
    download(Page::wholeArchive());
    QCOMPARE(page_->rows(), 10);
    const int asked = qMin(photos + (spare % 3 > 0 ? 1 : 0), 10);
    QCOMPARE(archive.photoRequests(), newestFirst(archive, 10 - asked, 9));
    QStringList names;
    for (int row = 10 - photos; row < 10; ++row) {
        names += archive.photoName(row);
        QCOMPARE(Page::content(photoFile(names.last())), photo);
    }
    QCOMPARE(Page::photoNames(), names);
    QVERIFY(disk.available() >= reserve);
    QCOMPARE(title(), named(photos == 10 ? host() : QString()));
}

void TestArchiveWidgetPhotos::namesDeviceAtTheEnd()
{
    const ArchiveDevice archive(device(), ArchiveDevice::passages(3));
    const auto gate = closeGate();
    QCOMPARE(title(), named(QString()));
    page_->download(host(), Page::wholeArchive());
    for (int photo = 1; photo <= 3; ++photo) {
        QTRY_COMPARE_WITH_TIMEOUT(archive.photoRequests().size(), photo, patience);
        QCOMPARE(page_->rows(), 3);
        QCOMPARE(title(), named(QString()));
        gate->release();
    }
    QVERIFY(page_->becomesIdle());
    QCOMPARE(title(), named(host()));
    page_->press("buttonNewTable");
    QCOMPARE(title(), named(QString()));
}

void TestArchiveWidgetPhotos::namesDeviceAfterCancel()
{
    const ArchiveDevice archive(device(), ArchiveDevice::passages(3));
    device().faults().add(Fault::silent().on(archive.remotePhoto(1)));
    page_->download(host(), Page::wholeArchive());
    QTRY_COMPARE_WITH_TIMEOUT(archive.photoRequests().size(), 2, patience);
    page_->press("cancelProgress");
    QVERIFY(page_->becomesIdle());
    QCOMPARE(title(), named(host()));
    comparePhotos(archive, {2});
}

void TestArchiveWidgetPhotos::namesDeviceWithoutPhotos()
{
    const ArchiveDevice archive(device(), QByteArray());
    download(Page::wholeArchive());
    QCOMPARE(title(), named(host()));
}

void TestArchiveWidgetPhotos::leavesTitleToOtherPage()
{
    const ArchiveDevice archive(device(), ArchiveDevice::passages(3));
    const auto gate = closeGate();
    page_->download(host(), Page::wholeArchive());
    QTRY_COMPARE_WITH_TIMEOUT(archive.photoRequests().size(), 1, patience);
    page_->page().hide();
    frame_->brelWindowTitle()->setDeviceName(QStringLiteral("another page"));
    gate->release(3);
    QVERIFY(page_->becomesIdle());
    QCOMPARE(title(), QStringLiteral("another page"));
    page_->page().show();
    QCOMPARE(title(), named(host()));
}

int main(int argc, char *argv[])
{
    SmallDisk::prepare();
    TestSurroundings surroundings(argc, argv);
    TestArchiveWidgetPhotos test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_archivewidgetphotos.moc"
