// SPDX-License-Identifier: MIT
#include "records/photolisting.h"

#include "records/scan.h"
#include "records/vasksettings.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QTemporaryDir>

class TestPhotoListing : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { folder_ = std::make_unique<QTemporaryDir>(); }

    // The name that the panel gives to a photo is understood.
    void readsPictureNames_data()
    {
        QTest::addColumn<quint32>("second");
        for (const quint32 second : {0U, 1U, 951782400U, 1330473599U, 1795262400U, 4102444799U,
                                     0x7FFFFFFFU, 0x80000000U, noTime - 1, noTime}) {
            QTest::addRow("%u", second) << second;
        }
    }
    void readsPictureNames()
    {
        QFETCH(quint32, second);
        Scan scan;
        scan.setNumber(QStringLiteral("A?23BC*77"));
        scan.setDateTime(second == noTime ? QDateTime() : QDateTime::fromSecsSinceEpoch(second));
        const QByteArray name = QFile::encodeName(VaskSettings::picFileName(scan));
        quint32 read = 1234;
        QVERIFY2(PhotoListing::secondOf(name.constData(), &read), name.constData());
        QCOMPARE(read, second);
    }

    void passesByOtherNames_data()
    {
        QTest::addColumn<QByteArray>("name");
        for (const char *name :
             {"", ".", "..", ".jpeg", "x.jpeg", "2026-11-21_08-00-00.jpeg",
              "2026-11-21_08-00-00_A123BC77.jpeg.part3", "2026-11-21_08-00-00_A123BC77.jpg",
              "2026-11-21 08-00-00_A123BC77.jpeg", "2026-13-21_08-00-00_A123BC77.jpeg",
              "2026-02-30_08-00-00_A123BC77.jpeg", "20a6-11-21_08-00-00_A123BC77.jpeg",
              "1969-12-31_23-59-59_A123BC77.jpeg", "2106-02-07_06-28-15_A123BC77.jpeg",
              "9999-12-31_23-59-59_A123BC77.jpeg", "2026-11-21_08-00"}) {
            QTest::newRow(*name != '\0' ? name : "nothing") << QByteArray(name);
        }
    }
    void passesByOtherNames()
    {
        QFETCH(QByteArray, name);
        quint32 read = 0;
        QVERIFY(!PhotoListing::secondOf(name.constData(), &read));
    }

    void knowsTwoFolders()
    {
        const QString one = photosOf(QStringLiteral("one"),
                                     {"2026-11-21_08-00-00_A.jpeg", "2026-11-21_08-00-09_A.jpeg"});
        const QString other = photosOf(QStringLiteral("other"),
                                       {"2026-11-21_08-00-09_B.jpeg", "_B.jpeg", "notes.txt"});
        const auto second =
            static_cast<quint32>(QDateTime({2026, 11, 21}, {8, 0}, Qt::UTC).toSecsSinceEpoch());
        PhotoListing listing;
        QVERIFY(!listing.readMore());
        QVERIFY(listing.isEmpty());
        listing.begin({one, folder_->filePath(QStringLiteral("missing")), other});
        while (listing.readMore()) {
        }
        QVERIFY(listing.has(second));
        QVERIFY(!listing.has(second + 1));
        QVERIFY(listing.has(noTime));
        QVERIFY(!listing.hasBetween(0, second - 1));
        QVERIFY(listing.hasBetween(0, second));
        QVERIFY(!listing.hasBetween(second + 1, second + 8));
        QVERIFY(listing.hasBetween(second + 9, second + 9));
        QVERIFY(!listing.hasBetween(second + 10, noTime - 1));
        QVERIFY(listing.hasBetween(second + 10, noTime));
        // Two photos of that second: one is left.
        listing.remove(second + 9);
        QVERIFY(listing.has(second + 9));
        listing.remove(second + 9);
        listing.remove(second + 9);
        QVERIFY(!listing.has(second + 9));
        listing.remove(second);
        QVERIFY(!listing.isEmpty());
        listing.remove(noTime);
        QVERIFY(listing.isEmpty());
        listing.begin({one});
        while (listing.readMore()) {
        }
        QVERIFY(listing.has(second + 9));
        QVERIFY(!listing.has(noTime));
    }

    // In pieces, so that a folder of many does not hold up the window.
    void readsInPieces()
    {
        std::vector<QByteArray> names;
        for (int n = 0; n < 2000; ++n) {
            names.push_back("2026-11-21_08-" + QByteArray::number(10 + n / 50) + '-' +
                            QByteArray::number(10 + n % 50) + "_A.jpeg");
        }
        PhotoListing listing;
        listing.begin({photosOf(QStringLiteral("many"), names)});
        int pieces = 0;
        while (listing.readMore()) {
            ++pieces;
        }
        QVERIFY(pieces > 4);
        for (const QByteArray &name : names) {
            quint32 second = 0;
            QVERIFY(PhotoListing::secondOf(name.constData(), &second));
            QVERIFY(listing.has(second));
        }
    }

private:
    QString photosOf(const QString &folder, const std::vector<QByteArray> &names)
    {
        const QString path = folder_->filePath(folder);
        if (!QDir().mkpath(path)) {
            qFatal("cannot make a folder");
        }
        for (const QByteArray &name : names) {
            QFile file(path + QLatin1Char('/') + QString::fromLatin1(name));
            if (!file.open(QIODevice::WriteOnly)) {
                qFatal("cannot make a file");
            }
        }
        return path;
    }

    std::unique_ptr<QTemporaryDir> folder_;
};

STALLO_TEST_MAIN(TestPhotoListing)
#include "tst_photolisting.moc"
