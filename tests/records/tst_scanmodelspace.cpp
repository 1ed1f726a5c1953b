// SPDX-License-Identifier: MIT
#include "records/scanmodel.h"

#include "app/settings.h"
#include "records/deviceindex.h"
#include "records/photoname.h"
#include "records/vasksettings.h"
#include "tests/support/testmain.h"
#include "tests/support/unreadable.h"

#include <QDir>
#include <QTemporaryDir>

#include <vector>

namespace
{

const QDateTime start = QDateTime(QDate(2026, 11, 21), QTime(8, 0), Qt::UTC);

Scan passage(int n)
{
    Scan scan;
    scan.setDateTime(start.addSecs(60 * n));
    scan.setNumber(QStringLiteral("A%1BC77").arg(n, 3, 10, QLatin1Char('0')));
    return scan;
}

// A table whose disk has as much space as the test says, plus what deleted photos give back.
class SmallDiskModel : public ScanModel
{
public:
    using ScanModel::ScanModel;
    qint64 total = 0;
    qint64 free = 0;
    QString photos;
    qint64 bytesPerPhoto = 0;

protected:
    DiskSpace diskSpace() const override
    {
        const int left = QDir(photos).entryList(QDir::Files).size();
        const qint64 now = free + (initialPhotos_ - left) * bytesPerPhoto;
        return {total, now};
    }

public:
    void countPhotos() { initialPhotos_ = QDir(photos).entryList(QDir::Files).size(); }

private:
    int initialPhotos_ = 0;
};

} // namespace

// What the table does when its disk runs short.
class TestScanModelSpace : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        folder_ = std::make_unique<QTemporaryDir>();
        name_ = folder_->filePath(QStringLiteral("table.week.tpp"));
        photos_ = folder_->filePath(QStringLiteral("jpegdata"));
        QVERIFY(QDir().mkpath(photos_));
    }
    void cleanup() { TestSurroundings::freshSettings(); }

    void freesSpace_data()
    {
        QTest::addColumn<qint64>("total");
        QTest::addColumn<qint64>("free");
        QTest::addColumn<int>("left");
        const qint64 reserve = 1000000;
        QTest::newRow("enough") << qint64(10) * reserve << reserve << 4;
        QTest::newRow("a little short") << qint64(10) * reserve << reserve - 1 << 3;
        QTest::newRow("short by two") << qint64(10) * reserve << reserve - 150000 << 2;
        QTest::newRow("nothing left") << qint64(10) * reserve << qint64(0) << 0;
        QTest::newRow("disk as small as the reserve") << reserve << qint64(0) << 4;
        QTest::newRow("beyond 4 GiB") << (qint64(1) << 40) << (qint64(1) << 33) << 4;
    }
    void freesSpace()
    {
        QFETCH(qint64, total);
        QFETCH(qint64, free);
        QFETCH(int, left);
        Settings::instance()->SetMinReservedFreeSpace(1000000);
        write({passage(0), passage(1), passage(2), passage(3)});
        const QString photos = folder_->filePath(QStringLiteral("jpegdata"));
        QVERIFY(QDir().mkpath(photos));
        for (int n = 0; n < 4; ++n) {
            writeFile(photos + QLatin1Char('/') + VaskSettings::picFileName(passage(n)), "photo");
        }
        SmallDiskModel model(name_, nullptr);
        model.total = total;
        model.free = free;
        model.photos = photos;
        model.bytesPerPhoto = 100000;
        model.countPhotos();
        model.freeSpace();
        const QStringList files = QDir(photos).entryList(QDir::Files, QDir::Name);
        QCOMPARE(files.size(), left);
        for (int n = 0; n < left; ++n) {
            QCOMPARE(files.at(n), VaskSettings::picFileName(passage(4 - left + n)));
        }
        QCOMPARE(model.rowCount(), 4);
    }

    void freesTablesOwnFolderFirst()
    {
        Settings::instance()->SetMinReservedFreeSpace(1000000);
        write({passage(0)});
        const QString own = folder_->filePath(QStringLiteral("table.jpegdata"));
        const QString common = folder_->filePath(QStringLiteral("jpegdata"));
        for (const QString &photos : {own, common}) {
            QVERIFY(QDir().mkpath(photos));
            writeFile(photos + QLatin1Char('/') + VaskSettings::picFileName(passage(0)), "photo");
        }
        SmallDiskModel model(name_, nullptr);
        model.total = 10000000;
        model.free = 0;
        model.freeSpace();
        QVERIFY(QDir(own).isEmpty());
        QVERIFY(!QDir(common).isEmpty());
    }

    // Two devices reported one number in one second. What the second's gave back is not taken from
    // the first's, and its row does not fall back to that.
    void freesPhotosOfTwoDevicesApart()
    {
        Settings::instance()->SetMinReservedFreeSpace(1000000);
        write({passage(0), passage(0), passage(1)});
        const QString picture = VaskSettings::picFileName(passage(0));
        const QString own = PhotoName::ofDevice(picture, QStringLiteral("gate 2"));
        writeFile(folder_->filePath(QStringLiteral("table.tpp.index")),
                  DeviceIndex::entry(QStringLiteral("gate 1")) +
                      DeviceIndex::entry(QStringLiteral("gate 2")).repeated(2));
        writePhoto(passage(1));
        writeFile(photos_ + QLatin1Char('/') + own, "photo");
        SmallDiskModel model(name_, nullptr);
        QCOMPARE(PhotoName::path(photos_, picture, model.deviceOf(0)),
                 photos_ + QLatin1Char('/') + picture);
        model.total = 10000000;
        model.photos = photos_;
        model.bytesPerPhoto = 600000;
        model.countPhotos();
        model.free = 400000;
        model.freeSpace(); // the first's is not there
        QCOMPARE(QFileInfo(photos_ + QLatin1Char('/') + own).size(), 0);
        QCOMPARE(PhotoName::path(photos_, picture, model.deviceOf(1)),
                 photos_ + QLatin1Char('/') + own);
        QVERIFY(!hasPhoto(passage(1)));
        // A round that finds nothing but the empty file ends.
        model.free = -2000000;
        model.freeSpace();
        QCOMPARE(QDir(photos_).entryList(QDir::Files), QStringList(own));
    }

    void freesNothingOnThisDisk()
    {
        write({passage(0)});
        const QString photo =
            folder_->filePath(QStringLiteral("jpegdata/")) + VaskSettings::picFileName(passage(0));
        QVERIFY(QDir().mkpath(QFileInfo(photo).path()));
        writeFile(photo, "photo");
        ScanModel model(name_, nullptr);
        Settings::instance()->SetMinReservedFreeSpace(1);
        model.freeSpace();
        QVERIFY(QFile::exists(photo));
    }

    // However many rows without a photo stand before the one with the oldest photo: each call makes
    // the room that is missing, and goes on from there.
    void goesOnWhereItStopped_data()
    {
        QTest::addColumn<int>("before");
        for (const int rows : {0, 1, 511, 512, 513, 5000, 36000, 100000, 200000}) {
            QTest::addRow("%d rows", rows) << rows;
        }
    }
    void goesOnWhereItStopped()
    {
        QFETCH(int, before);
        constexpr int photos = 40;
        Settings::instance()->SetMinReservedFreeSpace(1000000);
        std::vector<Scan> scans(static_cast<std::size_t>(before), passage(-1));
        for (int n = 0; n < photos; ++n) {
            scans.push_back(passage(n));
            writePhoto(passage(n));
        }
        write(scans);
        SmallDiskModel model(name_, nullptr);
        model.total = 10000000;
        model.photos = photos_;
        model.bytesPerPhoto = 600000;
        model.countPhotos();
        for (int n = 0; n < photos; ++n) {
            model.free = 400000 - n * 600000; // another passage came
            model.freeSpace();
            QVERIFY(!hasPhoto(passage(n)));
            QCOMPARE(QDir(photos_).entryList(QDir::Files).size(), photos - n - 1);
        }
        model.freeSpace();
        QCOMPARE(model.rowCount(), before + photos);
    }

    // Photos that came late, of rows that had been passed by, have their turn after the newest.
    void comesRoundToLatePhotos()
    {
        constexpr int rows = 3000;
        Settings::instance()->SetMinReservedFreeSpace(1000000);
        std::vector<Scan> scans;
        for (int n = 0; n < rows; ++n) {
            scans.push_back(passage(n));
        }
        write(scans);
        for (const int n : {1000, 2000, 2999}) {
            writePhoto(passage(n));
        }
        SmallDiskModel model(name_, nullptr);
        model.total = 10000000;
        model.photos = photos_;
        model.bytesPerPhoto = 600000;
        model.countPhotos();
        model.free = 400000;
        model.freeSpace();
        QVERIFY(!hasPhoto(passage(1000)));
        for (const int late : {0, 1000, 1500}) {
            writePhoto(passage(late));
        }
        for (const int next : {2000, 2999, 0, 1000, 1500}) {
            QVERIFY2(hasPhoto(passage(next)), qPrintable(QString::number(next)));
            model.countPhotos();
            model.freeSpace();
            QVERIFY2(!hasPhoto(passage(next)), qPrintable(QString::number(next)));
        }
        QVERIFY(QDir(photos_).isEmpty());
        model.freeSpace();
    }

    // What lies in the folder without being a photo of the table stays, and does not stop the
    // others from being found.
    void leavesWhatIsOfNoRow()
    {
        Settings::instance()->SetMinReservedFreeSpace(1000000);
        write({passage(0), passage(1)});
        Scan other = passage(1);
        other.setNumber(QStringLiteral("X999XX99"));
        for (const Scan &scan : {passage(1), other, passage(7)}) {
            writePhoto(scan);
        }
        writeFile(photos_ + QStringLiteral("/notes.txt"), "x");
        SmallDiskModel model(name_, nullptr);
        model.total = 10000000;
        model.freeSpace();
        model.freeSpace();
        QVERIFY(!hasPhoto(passage(1)));
        QVERIFY(hasPhoto(other));
        QVERIFY(hasPhoto(passage(7)));
        QVERIFY(QFile::exists(photos_ + QStringLiteral("/notes.txt")));
        // A row more, which makes one of them a photo of the table.
        QVERIFY(model.append(passage(7)));
        model.freeSpace();
        QVERIFY(!hasPhoto(passage(7)));
        QVERIFY(hasPhoto(other));
    }

    // Rows that were removed, and another table, do not leave it at a place of old.
    void beginsAnewWithOtherRows()
    {
        Settings::instance()->SetMinReservedFreeSpace(1000000);
        write({passage(0), passage(1), passage(2)});
        writePhoto(passage(2));
        SmallDiskModel model(name_, nullptr);
        model.total = 10000000;
        model.freeSpace();
        QVERIFY(!hasPhoto(passage(2)));
        QVERIFY(model.removeRows(0, 2));
        QVERIFY(model.append(passage(3)));
        writePhoto(passage(3));
        model.freeSpace();
        QVERIFY(!hasPhoto(passage(3)));
        name_ = folder_->filePath(QStringLiteral("other.tpp"));
        write({passage(4)});
        writePhoto(passage(4));
        model.setFileName(name_);
        model.freeSpace();
        QVERIFY(!hasPhoto(passage(4)));
    }

    // A row that cannot be read names no photo, not even that of an empty record.
    void deletesNothingUnread()
    {
        Settings::instance()->SetMinReservedFreeSpace(1000000);
        write({passage(0), Scan(), passage(1)});
        SmallDiskModel model(name_, nullptr);
        model.total = 10000000;
        model.freeSpace();
        for (const Scan &scan : {passage(0), passage(1), Scan()}) {
            writePhoto(scan);
        }
        QVERIFY(Unreadable::make(name_) > 0);
        QCOMPARE(model.rowCount(), 3);
        model.freeSpace();
        for (const Scan &scan : {passage(0), passage(1), Scan()}) {
            QVERIFY(hasPhoto(scan));
        }
        model.setFileName(name_);
        model.freeSpace();
        QVERIFY(QDir(photos_).isEmpty());
    }

    void honoursReserveOfAnySize()
    {
        const qint64 reserve = Q_INT64_C(5) << 30;
        Settings::instance()->SetMinReservedFreeSpace(reserve);
        write({passage(0), passage(1)});
        writePhoto(passage(0));
        writePhoto(passage(1));
        SmallDiskModel model(name_, nullptr);
        model.photos = photos_;
        model.bytesPerPhoto = 100000;
        model.countPhotos();
        model.total = reserve; // cannot hold it
        model.freeSpace();
        QVERIFY(hasPhoto(passage(0)));
        model.total = 2 * reserve;
        model.free = reserve - 1;
        model.freeSpace();
        QVERIFY(!hasPhoto(passage(0)));
        QVERIFY(hasPhoto(passage(1)));
    }

private:
    void writeFile(const QString &name, const QByteArray &bytes)
    {
        QFile file(name);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(bytes), qint64(bytes.size()));
    }
    void write(const std::vector<Scan> &scans)
    {
        QByteArray bytes;
        for (const Scan &scan : scans) {
            bytes.append(scan.data(), Scan::size);
        }
        writeFile(name_, bytes);
    }
    QString photoOf(const Scan &scan) const
    {
        return photos_ + QLatin1Char('/') + VaskSettings::picFileName(scan);
    }
    void writePhoto(const Scan &scan) { writeFile(photoOf(scan), "photo"); }
    bool hasPhoto(const Scan &scan) const { return QFile::exists(photoOf(scan)); }

    std::unique_ptr<QTemporaryDir> folder_;
    QString name_;
    QString photos_; // the common folder
};

STALLO_TEST_MAIN(TestScanModelSpace)
#include "tst_scanmodelspace.moc"
