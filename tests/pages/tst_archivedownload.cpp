// SPDX-License-Identifier: MIT
#include "pages/archivedownload.h"

#include "app/settings.h"
#include "records/scanmodel.h"
#include "simulator/mixer.h"
#include "tests/support/archivedevice.h"
#include "tests/support/archivepage.h"
#include "tests/support/devices.h"
#include "tests/support/filelimit.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QThread>

#include <cerrno>

namespace
{

using Page = ArchivePage;

} // namespace

// The steps of a download without a page, in a worker's thread: what can be tried often, or reached
// only from inside.
class TestArchiveDownload : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void choosesRowsOfLargeArchive();
    void choosesRowsOfUnorderedArchive();
    void leavesHalfRecordOut();
    void takesEmptyAnswerForEmptyArchive();
    void putsFilesBack_data();
    void putsFilesBack();
    void addsNothingOnceInterrupted();
    void fetchesNothingOnceInterrupted();
    void needsPlaceForItsFiles();

private:
    DeviceHost &device() { return devices_->first(); }
    ArchiveRequest request() const
    {
        ArchiveRequest request;
        request.host = devices_->first().address();
        request.recordFile = Page::recordFile();
        return request;
    }
    ArchiveRequest request(const QDateTime &from, const QDateTime &to) const
    {
        ArchiveRequest between = request();
        between.wholeArchive = false;
        between.from = from;
        between.to = to;
        return between;
    }
    static void inWorker(const std::function<void()> &work)
    {
        const std::unique_ptr<QThread> thread(QThread::create(work));
        thread->start();
        QVERIFY(thread->wait(60000));
    }
    // Both steps, into empty files; the records that came.
    static QByteArray stored(const ArchiveRequest &request)
    {
        QFile::remove(Page::recordFile());
        QFile::remove(Page::indexFile());
        QString error;
        inWorker([&] {
            ArchiveDownload download(request);
            error = download.fetch();
            if (error.isEmpty()) {
                error = download.append();
            }
        });
        return error.isEmpty() ? Page::content(Page::recordFile()) : error.toLocal8Bit();
    }

    std::unique_ptr<Devices> devices_;
};

void TestArchiveDownload::init()
{
    Page::prepare();
    devices_ = std::make_unique<Devices>();
}

void TestArchiveDownload::cleanup()
{
    devices_.reset();
}

// Against rows that were looked at one by one.
void TestArchiveDownload::choosesRowsOfLargeArchive()
{
    constexpr int rows = 100000;
    const ArchiveDevice archive(device(), ArchiveDevice::passages(rows));
    const QDateTime first = archive.time(0);
    const QDateTime last = archive.time(rows - 1);
    QVector<QPair<QDateTime, QDateTime>> intervals = {{first.addDays(-2), first.addSecs(-1)},
                                                      {first.addDays(-2), first},
                                                      {first, last},
                                                      {first.addSecs(1), last.addSecs(-1)},
                                                      {last, last.addDays(1)},
                                                      {last.addSecs(1), last.addDays(1)},
                                                      {archive.time(777), archive.time(777)},
                                                      {archive.time(99), archive.time(500)}};
    Mixer mixer(11, 1);
    const auto someTime = [&] { return first.addSecs(mixer.below(rows * 60)); };
    for (int tries = 0; tries < 10; ++tries) {
        const QDateTime from = someTime();
        intervals.append({from, from.addSecs(mixer.below(20000))});
    }
    QVector<QDateTime> times;
    for (int row = 0; row < rows; ++row) {
        times.append(archive.time(row));
    }
    for (const auto &[from, to] : qAsConst(intervals)) {
        int begin = 0;
        while (begin < rows && times.at(begin) < from) {
            ++begin;
        }
        int end = begin;
        while (end < rows && times.at(end) <= to) {
            ++end;
        }
        QVERIFY2(
            stored(request(from, to)) == archive.records(begin, end - 1),
            qPrintable(from.toString(Qt::ISODate) + QLatin1Char(' ') + to.toString(Qt::ISODate)));
        QCOMPARE(Page::content(Page::indexFile()), archive.index(end - begin));
    }
}

// Which ones is not said, but they follow one another in the archive.
void TestArchiveDownload::choosesRowsOfUnorderedArchive()
{
    constexpr int rows = 201;
    QByteArray shuffled = ArchiveDevice::passages(rows);
    Mixer mixer(5, 3);
    for (int row = 0; row < rows; ++row) {
        const int other = static_cast<int>(mixer.below(rows)) * static_cast<int>(Scan::size);
        const int place = row * static_cast<int>(Scan::size);
        const QByteArray one = shuffled.mid(place, Scan::size);
        shuffled.replace(place, Scan::size, shuffled.mid(other, Scan::size));
        shuffled.replace(other, Scan::size, one);
    }
    const ArchiveDevice archive(device(), shuffled);
    for (int tries = 0; tries < 60; ++tries) {
        const QDateTime from = archive.time(static_cast<int>(mixer.below(rows)));
        const QDateTime to = archive.time(static_cast<int>(mixer.below(rows)));
        const QByteArray records = stored(request(from, to));
        QCOMPARE(records.size() % static_cast<int>(Scan::size), 0);
        QVERIFY(shuffled.contains(records));
        QCOMPARE(Page::content(Page::indexFile()),
                 archive.index(records.size() / static_cast<int>(Scan::size)));
    }
    QCOMPARE(stored(request()), shuffled);
}

void TestArchiveDownload::leavesHalfRecordOut()
{
    const ArchiveDevice archive(device(), ArchiveDevice::passages(3) + QByteArray(70, 'x'));
    QCOMPARE(stored(request()), archive.records(0, 2));
    QCOMPARE(Page::content(Page::indexFile()), archive.index(3));
    QCOMPARE(stored(request(archive.time(1), archive.time(2).addDays(1))), archive.records(1, 2));
}

void TestArchiveDownload::takesEmptyAnswerForEmptyArchive()
{
    const ArchiveDevice archive(device(), ArchiveDevice::passages(3));
    device().faults().add(Fault::answer("").on(DevicePaths::archive()));
    QCOMPARE(stored(request()), QByteArray());
    QCOMPARE(stored(request(archive.time(0), archive.time(2))), QByteArray());
}

void TestArchiveDownload::putsFilesBack_data()
{
    QTest::addColumn<int>("limit"); // what the disk takes of the record file
    // The download has 3000 records and the table 10; they are written some hundred at a time.
    QTest::newRow("within the first record") << 10 * static_cast<int>(Scan::size) + 50;
    QTest::newRow("in the midst") << 1500 * static_cast<int>(Scan::size);
    QTest::newRow("within the last record") << 3010 * static_cast<int>(Scan::size) - 50;
}

void TestArchiveDownload::putsFilesBack()
{
    QFETCH(int, limit);
    const ArchiveDevice archive(device(), ArchiveDevice::passages(3000));
    const QByteArray old = archive.records(0, 9);
    Page::write(Page::recordFile(), old);
    Page::write(Page::indexFile(), archive.index(10));
    ArchiveRequest adding = request();
    adding.rows = 10;
    QString error;
    inWorker([&] {
        ArchiveDownload download(adding);
        error = download.fetch();
        const FileLimit fullDisk(static_cast<rlim_t>(limit));
        error += download.append();
        QVector<int> told;
        download.photos(Page::folder(), [&told](int done) { told += done; });
        QCOMPARE(told, QVector<int>{1}); // nothing was added
    });
    QCOMPARE(error, qt_error_string(EFBIG));
    QCOMPARE(Page::content(Page::recordFile()), old);
    QCOMPARE(Page::content(Page::indexFile()), archive.index(10));
    QCOMPARE(archive.photoRequests(), QStringList());
}

void TestArchiveDownload::addsNothingOnceInterrupted()
{
    const ArchiveDevice archive(device(), ArchiveDevice::passages(100));
    QString error;
    inWorker([&] {
        ArchiveDownload download(request());
        error = download.fetch();
        QThread::currentThread()->requestInterruption();
        error += download.append();
    });
    QCOMPARE(error, QString());
    QCOMPARE(Page::content(Page::recordFile()), QByteArray());
    QCOMPARE(Page::content(Page::indexFile()), QByteArray());
}

void TestArchiveDownload::fetchesNothingOnceInterrupted()
{
    const ArchiveDevice archive(device(), ArchiveDevice::passages(100));
    QString error;
    inWorker([&] {
        QThread::currentThread()->requestInterruption();
        error = ArchiveDownload(request()).fetch();
    });
    QCOMPARE(error, QString());
    QCOMPARE(device().journal().countRequests(), 0);
}

void TestArchiveDownload::needsPlaceForItsFiles()
{
    const ArchiveDevice archive(device(), ArchiveDevice::passages(3));
    const QString folder = Page::folder();
    const ArchiveRequest elsewhere = request();
    Settings::instance()->setArchiveTempDirectory(QStringLiteral("/proc")); // makes no folders
    QVERIFY(!stored(elsewhere).isEmpty());                                  // the reason
    QVERIFY(!QFile::exists(elsewhere.recordFile));
    Settings::instance()->setArchiveTempDirectory(folder);
    QDir(folder).removeRecursively();
    QCOMPARE(QString::fromLocal8Bit(stored(elsewhere)), qt_error_string(ENOENT));
}

STALLO_TEST_MAIN(TestArchiveDownload)
#include "tst_archivedownload.moc"
