// SPDX-License-Identifier: MIT
#include "simulator/photopainter.h"
#include "tests/support/testmain.h"

#include <QBuffer>
#include <QImage>
#include <QImageReader>

class PhotoPainterTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void makesPhotosOfACamerasSize_data();
    void makesPhotosOfACamerasSize();
    void makesTheSamePhotoAgain();
    void makesDifferentPhotosOfDifferentPassages();
    void knowsTheFormOfItsNames_data();
    void knowsTheFormOfItsNames();
    void showsAWhitePlate();
    void movesInTheVideo();
    void spoilsPictures();
    void claimsToBeGiant();
    void takesMilliseconds();
};

namespace
{

QString nameAt(int hour, const QString &number)
{
    return QStringLiteral("/mnt/usb/jpegdata/2024-03-05_%1-07-09_%2.jpeg")
        .arg(hour, 2, 10, QLatin1Char('0'))
        .arg(number);
}

} // namespace

void PhotoPainterTest::makesPhotosOfACamerasSize_data()
{
    QTest::addColumn<int>("hour");
    QTest::addColumn<QString>("number");
    QTest::addColumn<quint32>("seed");
    for (const quint32 seed : {1U, 2U}) {
        for (const int hour : {1, 7, 12, 19}) {
            for (const char *number : {"A123BC77", "M-8-HK199", "O000OO00", ""}) {
                QTest::addRow("%u, %d h, %s", seed, hour, number)
                    << hour << QString::fromLatin1(number) << seed;
            }
        }
    }
}

void PhotoPainterTest::makesPhotosOfACamerasSize()
{
    QFETCH(int, hour);
    QFETCH(QString, number);
    QFETCH(quint32, seed);
    const QByteArray photo =
        PhotoPainter(QStringLiteral("VASK-0001"), seed).photo(nameAt(hour, number));
    QVERIFY2(photo.size() >= 40 * 1024, qPrintable(QString::number(photo.size())));
    QVERIFY2(photo.size() <= 120 * 1024, qPrintable(QString::number(photo.size())));
    QImage image;
    QVERIFY(image.loadFromData(photo, "JPEG"));
    QCOMPARE(image.size(), QSize(1280, 720));
}

void PhotoPainterTest::makesTheSamePhotoAgain()
{
    const QString name = nameAt(12, QStringLiteral("A123BC77"));
    const PhotoPainter painter(QStringLiteral("VASK-0001"), 1);
    const QByteArray photo = painter.photo(name);
    QCOMPARE(painter.photo(name), photo);
    QCOMPARE(PhotoPainter(QStringLiteral("VASK-0001"), 1).photo(name), photo);
}

void PhotoPainterTest::makesDifferentPhotosOfDifferentPassages()
{
    const PhotoPainter painter(QStringLiteral("VASK-0001"), 1);
    const QByteArray photo = painter.photo(nameAt(12, QStringLiteral("A123BC77")));
    QVERIFY(painter.photo(nameAt(12, QStringLiteral("A123BC78"))) != photo);
    QVERIFY(painter.photo(nameAt(13, QStringLiteral("A123BC77"))) != photo);
    const PhotoPainter other(QStringLiteral("VASK-0002"), 1);
    QVERIFY(other.photo(nameAt(12, QStringLiteral("A123BC77"))) != photo);
}

void PhotoPainterTest::knowsTheFormOfItsNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("known");
    const auto row = [](const char *name, bool known) {
        QTest::newRow(name) << QString::fromLatin1(name) << known;
    };
    row("2024-03-05_14-07-09_A123BC77.jpeg", true);
    row("/mnt/usb/jpegdata/2024-03-05_14-07-09_A123BC77.jpeg", true);
    row("/mnt/usb/jpegdata/2024-03-05_14-07-09_A1/3BC77.jpeg", true);
    row("/mnt/usb/jpegdata/_A123BC77.jpeg", true); // a passage without a time
    row("/mnt/usb/jpegdata/2024-03-05_14-07-09_.jpeg", true);
    row("/mnt/usb/jpegdata/2024-03-05_14-07-09_A123BC77.png", false);
    row("/mnt/usb/jpegdata/photo.jpeg", false);
    row("", false);
}

void PhotoPainterTest::knowsTheFormOfItsNames()
{
    QFETCH(QString, name);
    QFETCH(bool, known);
    QCOMPARE(!PhotoPainter(QStringLiteral("VASK-0001"), 1).photo(name).isNull(), known);
}

void PhotoPainterTest::showsAWhitePlate()
{
    const QImage image = QImage::fromData(
        PhotoPainter(QStringLiteral("VASK-0001"), 1).photo(nameAt(12, QStringLiteral("A123BC77"))));
    int white = 0;
    int black = 0;
    for (int x = 480; x < 790; ++x) {
        for (int y = 480; y < 600; ++y) {
            const int grey = qGray(image.pixel(x, y));
            white += grey > 225 ? 1 : 0;
            black += grey < 50 ? 1 : 0;
        }
    }
    QVERIFY2(white > 6000, qPrintable(QString::number(white)));
    QVERIFY2(black > 2000, qPrintable(QString::number(black)));
}

void PhotoPainterTest::movesInTheVideo()
{
    const PhotoPainter painter(QStringLiteral("VASK-0001"), 1);
    const QDateTime now(QDate(2024, 3, 5), QTime(12, 0), Qt::UTC);
    const QByteArray frame = painter.videoFrame(now);
    QImage image;
    QVERIFY(image.loadFromData(frame, "JPEG"));
    QCOMPARE(image.size(), QSize(640, 360));
    QVERIFY(painter.videoFrame(now.addMSecs(40)) != frame);
    QCOMPARE(painter.videoFrame(now), frame);
}

void PhotoPainterTest::spoilsPictures()
{
    const QByteArray photo =
        PhotoPainter(QStringLiteral("VASK-0001"), 1).photo(nameAt(12, QStringLiteral("A123BC77")));
    QCOMPARE(PhotoPainter::cut(photo, 30).size(), photo.size() * 30 / 100);
    QVERIFY(photo.startsWith(PhotoPainter::cut(photo, 99)));
    QVERIFY(PhotoPainter::cut(photo, 0).isEmpty());
    QVERIFY(QImage::fromData(PhotoPainter::notAPicture()).isNull());
}

void PhotoPainterTest::claimsToBeGiant()
{
    QByteArray giant = PhotoPainter::giant();
    QVERIFY(giant.size() < 10000);
    QBuffer buffer(&giant);
    QImageReader reader(&buffer, "jpeg");
    QCOMPARE(reader.size(), QSize(60000, 60000));
}

void PhotoPainterTest::takesMilliseconds()
{
    const PhotoPainter painter(QStringLiteral("VASK-0001"), 1);
    const QString name = nameAt(12, QStringLiteral("A123BC77"));
    QVERIFY(!painter.photo(name).isNull());
    QBENCHMARK
    {
        painter.photo(name);
    }
}

STALLO_TEST_MAIN(PhotoPainterTest)
#include "tst_photopainter.moc"
