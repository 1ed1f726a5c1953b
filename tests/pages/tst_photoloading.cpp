// SPDX-License-Identifier: MIT
#include "pages/proportionalsclalewidget.h"

#include "pages/jpegheader.h"
#include "tests/pages/photogate.h"
#include "tests/support/jpegbytes.h"
#include "tests/support/testmain.h"

#include <QImageReader>
#include <QTemporaryDir>
#include <QTimer>

#include <sys/stat.h>

namespace
{

// A JPEG with the note of a camera that was turned by a quarter.
QByteArray turnedJpeg(int width, int height)
{
    const QByteArray note("\xFF\xE1\x00\x22"
                          "Exif\0\0"
                          "MM\0\x2A\0\0\0\x08"
                          "\0\x01\x01\x12\0\x03\0\0\0\x01\0\x06\0\0"
                          "\0\0\0\0",
                          36);
    return JpegBytes::plain(width, height).insert(2, note);
}

bool shows(QWidget &widget, const QColor &colour)
{
    QImage image(widget.size(), QImage::Format_RGB32);
    image.fill(Qt::white);
    widget.render(&image, QPoint(), QRegion(), QWidget::RenderFlags());
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor pixel = image.pixelColor(x, y);
            if (qAbs(pixel.red() - colour.red()) < 8 && qAbs(pixel.green() - colour.green()) < 8 &&
                qAbs(pixel.blue() - colour.blue()) < 8) {
                return true;
            }
        }
    }
    return false;
}

} // namespace

// The photo view's way with files, good ones and those that are not what they should be.
class TestPhotoLoading : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void files_data();
    void files();
    void blockingFile();
    void cutPicture_data();
    void cutPicture();
    void turnedPictureStaysAsItIs();
    void nothingOfTheFormerPhoto();
    void sameFileStaysMeanwhile();
    void formerFrameStays();
    void fitsTheView();
    void windowGoesOn_data();
    void windowGoesOn();
    void endsWithAnOpenRequest();

private:
    QString write(const QByteArray &bytes, const char *name = "photo.jpeg")
    {
        QFile file(folder_.filePath(QString::fromLatin1(name)));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
            qFatal("cannot write the picture");
        }
        return file.fileName();
    }
    void showBlue()
    {
        view_->setLayers(write(JpegBytes::plain(40, 30, Qt::blue), "blue.jpeg"),
                         {QStringLiteral("HHH")});
        QTRY_VERIFY(!view_->isLoading());
        QVERIFY(shows(*view_, Qt::blue));
    }

    QTemporaryDir folder_;
    std::unique_ptr<ProportionalSclaleWidget> view_;
};

void TestPhotoLoading::init()
{
    view_ = std::make_unique<ProportionalSclaleWidget>(QStringLiteral("No Photo"));
    view_->resize(400, 300);
}

void TestPhotoLoading::files_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QSize>("size");

    const QByteArray plain = JpegBytes::plain(40, 30);
    const QByteArray rest(static_cast<int>(JpegHeader::mostBytes) - plain.size(), 'x');
    const QSize none(0, 0);
    QTest::newRow("photo") << plain << QSize(40, 30);
    QTest::newRow("empty") << QByteArray() << none;
    QTest::newRow("another kind of picture") << JpegBytes::plain(40, 30, Qt::blue, "PNG") << none;
    QTest::newRow("text") << QByteArray("Error=no such file\r\n") << none;
    QTest::newRow("noise") << QByteArray(5000, '\x5A') << none;
    QTest::newRow("only the beginning of a header") << plain.left(20) << none;
    QTest::newRow("no pixels") << JpegBytes::claiming(0, 30) << none;
    QTest::newRow("larger than it says") << JpegBytes::claiming(200, 100) << QSize(200, 100);
    QTest::newRow("60000 x 60000") << JpegBytes::claiming(60000, 60000) << none;
    QTest::newRow("just too large") << JpegBytes::claiming(8001, 8000) << none;
    QTest::newRow("just too many scans") << JpegBytes::progressive({1000, 1000}, 257) << none;
    QTest::newRow("many scans") << JpegBytes::progressive({40, 30}, 90) << QSize(40, 30);
    QTest::newRow("16 MiB") << plain + rest << QSize(40, 30);
    QTest::newRow("a byte more") << plain + rest + "x" << none;
}

void TestPhotoLoading::files()
{
    QFETCH(QByteArray, content);
    QFETCH(QSize, size);
    QPixmap anyPhoto(10, 10);
    anyPhoto.fill(Qt::blue);
    for (const QString &file :
         {write(content), folder_.filePath(QStringLiteral("missing.jpeg")), folder_.path()}) {
        const bool isFile = file.endsWith(QLatin1String("photo.jpeg"));
        view_->setPixmap(anyPhoto);
        QCOMPARE(view_->photoSize(), QSize(10, 10));
        view_->setPixmap(file);
        QTRY_VERIFY(!view_->isLoading());
        QCOMPARE(view_->pixmap().size(), isFile ? size : QSize(0, 0));
        QCOMPARE(view_->pixmap().isNull(), shows(*view_, Qt::red));
    }
}

void TestPhotoLoading::blockingFile()
{
    const QByteArray pipe = QFile::encodeName(folder_.filePath(QStringLiteral("pipe.jpeg")));
    QCOMPARE(::mkfifo(pipe.constData(), 0600), 0);
    view_->setPixmap(QFile::decodeName(pipe));
    QTRY_VERIFY(!view_->isLoading());
    QVERIFY(view_->pixmap().isNull());
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
    const QByteArray whole = JpegBytes::plain(400, 300);
    view_->setPixmap(write(whole.left(whole.size() * percent / 100)));
    QTRY_VERIFY(!view_->isLoading());
    QCOMPARE(!view_->pixmap().isNull(), shown);
}

void TestPhotoLoading::turnedPictureStaysAsItIs()
{
    const QString file = write(turnedJpeg(40, 30));
    QImageReader turning(file);
    turning.setAutoTransform(true);
    QCOMPARE(turning.read().size(), QSize(30, 40));
    view_->setPixmap(file);
    QTRY_COMPARE(view_->pixmap().size(), QSize(40, 30));
}

void TestPhotoLoading::nothingOfTheFormerPhoto()
{
    showBlue();
    const QString next = write(JpegBytes::plain(40, 30, Qt::cyan));
    for (const QString &file : {next, folder_.filePath(QStringLiteral("missing.jpeg"))}) {
        PhotoGate gate;
        view_->setLayers(file, {QStringLiteral("HHHH")});
        QVERIFY(view_->isLoading());
        // The next passage's text over nothing: no other passage's photo, nor the word for none.
        QVERIFY(!shows(*view_, Qt::blue));
        QVERIFY(!shows(*view_, Qt::cyan));
        QVERIFY(!shows(*view_, Qt::red));
        QVERIFY(shows(*view_, Qt::green));
        QVERIFY(view_->pixmap().isNull());
        QCOMPARE(view_->photoSize(), QSize(0, 0));
        QCOMPARE(view_->lines(), QStringList{QStringLiteral("HHHH")});
        gate.open();
        QTRY_VERIFY(!view_->isLoading());
        QCOMPARE(shows(*view_, Qt::cyan), file == next);
        QCOMPARE(shows(*view_, Qt::red), file != next);
        QCOMPARE(view_->accessibleName(),
                 file == next ? QStringLiteral("Photo") : QStringLiteral("No Photo"));
    }
}

void TestPhotoLoading::sameFileStaysMeanwhile()
{
    showBlue();
    PhotoGate gate;
    view_->setLayers(write(JpegBytes::plain(80, 60, Qt::cyan), "blue.jpeg"), {});
    QVERIFY(view_->isLoading());
    QVERIFY(shows(*view_, Qt::blue));
    gate.open();
    QTRY_COMPARE(view_->photoSize(), QSize(80, 60));
    QVERIFY(shows(*view_, Qt::cyan));
    view_->clear();
    QVERIFY(shows(*view_, Qt::red));
}

void TestPhotoLoading::formerFrameStays()
{
    const QString file = write(JpegBytes::plain(40, 30, Qt::blue));
    view_->replacePhoto(file, {});
    QVERIFY(shows(*view_, Qt::red));
    QTRY_VERIFY(shows(*view_, Qt::blue));
    write(JpegBytes::plain(40, 30, Qt::cyan));
    PhotoGate gate;
    view_->replacePhoto(file, {});
    QVERIFY(shows(*view_, Qt::blue));
    gate.open();
    QTRY_VERIFY(shows(*view_, Qt::cyan));
    write("no picture");
    view_->replacePhoto(file, {});
    QTRY_VERIFY(!view_->isLoading());
    QVERIFY(shows(*view_, Qt::cyan));
}

void TestPhotoLoading::fitsTheView()
{
    const QString file = write(JpegBytes::plain(4000, 3000));
    view_->resize(800, 600);
    view_->setPixmap(file);
    QTRY_COMPARE(view_->pixmap().size(), QSize(800, 600));
    QCOMPARE(view_->photoSize(), QSize(4000, 3000));
    QVERIFY(shows(*view_, Qt::blue));
    QVERIFY(!view_->isLoading());
    // The file may be another's by now.
    QVERIFY(QFile::remove(file));
    view_->resize(1600, 1000);
    QVERIFY(shows(*view_, Qt::blue)); // roughly
    QVERIFY(view_->isLoading());
    QTRY_COMPARE(view_->pixmap().size(), QSize(1333, 1000));
    QVERIFY(shows(*view_, Qt::blue));
    QVERIFY(!view_->isLoading());
}

void TestPhotoLoading::windowGoesOn_data()
{
    QTest::addColumn<QByteArray>("content");

    QTest::newRow("64 million pixels") << JpegBytes::claiming(8000, 8000);
    QTest::newRow("4 scans of 64 million") << JpegBytes::progressive({8000, 8000}, 4);
    QTest::newRow("256 scans of a million") << JpegBytes::progressive({1000, 1000}, 256);
}

// However long it takes, the window answers all the while.
void TestPhotoLoading::windowGoesOn()
{
    QFETCH(QByteArray, content);
    const QString file = write(content);
    view_->show();
    QVERIFY(QTest::qWaitForWindowExposed(view_.get()));
    QTimer heart;
    int beats = 0;
    connect(&heart, &QTimer::timeout, this, [&] { beats += view_->isLoading() ? 1 : 0; });
    heart.start(0);
    view_->setPixmap(file);
    QVERIFY(view_->isLoading());
    QTRY_VERIFY_WITH_TIMEOUT(!view_->isLoading(), 60000);
    QVERIFY(!view_->pixmap().isNull());
    QVERIFY2(beats > 10, qPrintable(QString::number(beats)));
    // It was made ready for the view: the window has nothing large to paint.
    QVERIFY(view_->pixmap().width() <= 640);
}

void TestPhotoLoading::endsWithAnOpenRequest()
{
    PhotoGate gate;
    view_->setPixmap(write(JpegBytes::plain(40, 30)));
    view_.reset();
    gate.open();
    init();
    showBlue();
}

STALLO_TEST_MAIN(TestPhotoLoading)
#include "tst_photoloading.moc"
