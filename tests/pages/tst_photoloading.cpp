// SPDX-License-Identifier: MIT
#include "pages/proportionalsclalewidget.h"

#include "tests/support/testmain.h"

#include <QBuffer>
#include <QElapsedTimer>
#include <QImageReader>
#include <QTemporaryDir>

namespace
{

QByteArray jpeg(int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::blue);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "JPEG");
    return bytes;
}

// A JPEG whose header claims another size than its data have.
QByteArray jpegClaiming(int width, int height)
{
    QByteArray bytes = jpeg(16, 16);
    // The start of frame: marker, length of two bytes, precision, height, width.
    const int frame = bytes.indexOf("\xFF\xC0");
    const auto put = [&bytes](int offset, int value) {
        bytes[offset] = static_cast<char>(value >> 8);
        bytes[offset + 1] = static_cast<char>(value & 0xFF);
    };
    put(frame + 5, height);
    put(frame + 7, width);
    return bytes;
}

// A JPEG with the note of a camera that was turned by a quarter.
QByteArray turnedJpeg(int width, int height)
{
    const QByteArray note("\xFF\xE1\x00\x22"
                          "Exif\0\0"
                          "MM\0\x2A\0\0\0\x08"
                          "\0\x01\x01\x12\0\x03\0\0\0\x01\0\x06\0\0"
                          "\0\0\0\0",
                          36);
    return jpeg(width, height).insert(2, note);
}

} // namespace

// The photo view's way with files that are not what they should be.
class TestPhotoLoading : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void files_data();
    void files();
    void hugePictureIsRefusedAtOnce_data();
    void hugePictureIsRefusedAtOnce();
    void cutPicture_data();
    void cutPicture();
    void turnedPictureStaysAsItIs();

private:
    QString write(const QByteArray &bytes)
    {
        QFile file(folder_.filePath(QStringLiteral("photo.jpeg")));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
            qFatal("cannot write the picture");
        }
        return file.fileName();
    }

    QTemporaryDir folder_;
};

void TestPhotoLoading::files_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QSize>("size");

    QTest::newRow("photo") << jpeg(40, 30) << QSize(40, 30);
    QTest::newRow("empty") << QByteArray() << QSize(0, 0);
    QTest::newRow("text") << QByteArray("Error=no such file\r\n") << QSize(0, 0);
    QTest::newRow("noise") << QByteArray(5000, '\x5A') << QSize(0, 0);
    QTest::newRow("only the beginning of a header") << jpeg(40, 30).left(20) << QSize(0, 0);
    QTest::newRow("no pixels") << jpegClaiming(0, 30) << QSize(0, 0);
}

void TestPhotoLoading::files()
{
    QFETCH(QByteArray, content);
    QFETCH(QSize, size);
    QPixmap anyPhoto(10, 10);
    anyPhoto.fill(Qt::blue);
    ProportionalSclaleWidget widget;
    widget.setPixmap(anyPhoto);
    widget.setPixmap(write(content));
    QCOMPARE(widget.pixmap().size(), size);
    widget.setPixmap(anyPhoto);
    widget.setPixmap(folder_.filePath(QStringLiteral("missing.jpeg")));
    QVERIFY(widget.pixmap().isNull());
    widget.setPixmap(anyPhoto);
    widget.setPixmap(folder_.path());
    QVERIFY(widget.pixmap().isNull());
}

void TestPhotoLoading::hugePictureIsRefusedAtOnce_data()
{
    QTest::addColumn<QSize>("claimed");
    QTest::addColumn<bool>("refused");

    QTest::newRow("60000 x 60000") << QSize(60000, 60000) << true;
    QTest::newRow("just too large") << QSize(8001, 8000) << true;
    QTest::newRow("small, and wrong as well") << QSize(200, 100) << false;
}

void TestPhotoLoading::hugePictureIsRefusedAtOnce()
{
    QFETCH(QSize, claimed);
    QFETCH(bool, refused);
    const QString file = write(jpegClaiming(claimed.width(), claimed.height()));
    QCOMPARE(QImageReader(file).size(), claimed);
    QElapsedTimer timer;
    timer.start();
    const QPixmap pixmap = ProportionalSclaleWidget::loadPhoto(file);
    QVERIFY(timer.elapsed() < 1000);
    QCOMPARE(pixmap.isNull(), refused);
}

void TestPhotoLoading::cutPicture_data()
{
    QTest::addColumn<int>("percent");
    QTest::addColumn<bool>("shown");

    QTest::newRow("1 %") << 1 << false;
    QTest::newRow("99 %") << 99 << true;
    QTest::newRow("whole") << 100 << true;
}

void TestPhotoLoading::cutPicture()
{
    QFETCH(int, percent);
    QFETCH(bool, shown);
    const QByteArray whole = jpeg(400, 300);
    const QString file = write(whole.left(whole.size() * percent / 100));
    QCOMPARE(ProportionalSclaleWidget::loadPhoto(file).isNull(), !shown);
}

void TestPhotoLoading::turnedPictureStaysAsItIs()
{
    const QString file = write(turnedJpeg(40, 30));
    QImageReader turning(file);
    turning.setAutoTransform(true);
    QCOMPARE(turning.read().size(), QSize(30, 40));
    QCOMPARE(ProportionalSclaleWidget::loadPhoto(file).size(), QSize(40, 30));
}

STALLO_TEST_MAIN(TestPhotoLoading)
#include "tst_photoloading.moc"
