// SPDX-License-Identifier: MIT
#include "records/scanmodel.h"

#include "app/settings.h"
#include "records/vasksettings.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QElapsedTimer>
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
        return {total, now, now};
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
    }

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
        TestSurroundings::freshSettings();
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
        TestSurroundings::freshSettings();
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
        TestSurroundings::freshSettings();
    }

    // Whole days of passages without photos must not hold up the operator.
    void keepsTheOperatorWaitingForMomentsOnly()
    {
        Settings::instance()->SetMinReservedFreeSpace(1000000);
        write(std::vector<Scan>(200000, passage(0)));
        SmallDiskModel model(name_, nullptr);
        model.total = 10000000;
        QElapsedTimer clock;
        clock.start();
        model.freeSpace();
        QVERIFY(clock.elapsed() < 500);
        TestSurroundings::freshSettings();
    }

    // Each call goes on where the last one had to stop, so the newest photo is reached in the end.
    void goesOnWhereItStopped()
    {
        Settings::instance()->SetMinReservedFreeSpace(1000000);
        std::vector<Scan> scans(100000, passage(0));
        scans.back() = passage(1);
        write(scans);
        const QString photos = folder_->filePath(QStringLiteral("jpegdata"));
        QVERIFY(QDir().mkpath(photos));
        const QString photo = photos + QLatin1Char('/') + VaskSettings::picFileName(passage(1));
        writeFile(photo, "photo");
        SmallDiskModel model(name_, nullptr);
        model.total = 10000000;
        int calls = 0;
        while (QFile::exists(photo) && calls < 1000) {
            model.freeSpace();
            ++calls;
        }
        QVERIFY(!QFile::exists(photo));
        QVERIFY(calls > 1);
        TestSurroundings::freshSettings();
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
    std::unique_ptr<QTemporaryDir> folder_;
    QString name_;
};

STALLO_TEST_MAIN(TestScanModelSpace)
#include "tst_scanmodelspace.moc"
