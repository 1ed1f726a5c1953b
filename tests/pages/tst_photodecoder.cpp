// SPDX-License-Identifier: MIT
#include "pages/photodecoder.h"

#include "tests/pages/photogate.h"
#include "tests/support/jpegbytes.h"
#include "tests/support/testmain.h"

#include <QTemporaryDir>

#include <ctime>

// Whose photo is decoded when, what is dropped, and that the end waits for nothing.
class TestPhotoDecoder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void newestOfEachView();
    void viewsInTurns();
    void droppedRequestLetsGo();
    void fileIsReadBeforeItIsLetGo();
    void runningOneIsCalledOff_data();
    void runningOneIsCalledOff();
    void endsWhileDecoding_data();
    void endsWhileDecoding();
    void endsBeforeItHasBegun();

private:
    static PhotoDecoder::Request photo(int width)
    {
        PhotoDecoder::Request request;
        request.bytes = JpegBytes::plain(width, 10);
        request.place.size = QSize(100, 100);
        return request;
    }
    // What arrives is noted with the width of the picture.
    void ask(PhotoDecoder::View view, PhotoDecoder::Request request)
    {
        decoder_->request(view, std::move(request), [this](const DecodedPhoto &photo) {
            arrived_.append(photo.size.width());
        });
    }

    std::shared_ptr<PhotoDecoder> decoder_;
    QVector<int> arrived_;
    const int first_ = 0, second_ = 0, third_ = 0;
};

void TestPhotoDecoder::init()
{
    decoder_ = std::make_shared<PhotoDecoder>();
    arrived_.clear();
}

void TestPhotoDecoder::newestOfEachView()
{
    PhotoGate gate(decoder_);
    for (int width = 10; width < 30; ++width) {
        ask(&first_, photo(width));
    }
    ask(&second_, photo(40));
    ask(&third_, photo(50));
    gate.open();
    QTRY_COMPARE(arrived_.size(), 3);
    QCOMPARE(arrived_, QVector<int>({50, 40, 29}));
}

void TestPhotoDecoder::viewsInTurns()
{
    ask(&first_, photo(10));
    QTRY_COMPARE(arrived_.size(), 1);
    ask(&second_, photo(20));
    QTRY_COMPARE(arrived_.size(), 2);
    PhotoGate gate(decoder_);
    ask(&first_, photo(40));
    ask(&second_, photo(30));
    ask(&third_, photo(50));
    gate.open();
    QTRY_COMPARE(arrived_.size(), 5);
    // The one that was never served, then the one that waits for longer.
    QCOMPARE(arrived_, QVector<int>({10, 20, 50, 40, 30}));
}

void TestPhotoDecoder::droppedRequestLetsGo()
{
    PhotoGate gate(decoder_);
    auto kept = std::make_shared<int>(0);
    const std::weak_ptr<int> watched = kept;
    PhotoDecoder::Request request = photo(10);
    request.untilRead = std::move(kept);
    ask(&first_, std::move(request));
    QVERIFY(!watched.expired());
    ask(&first_, photo(20));
    QVERIFY(watched.expired());
    gate.open();
    QTRY_COMPARE(arrived_, QVector<int>{20});
}

void TestPhotoDecoder::fileIsReadBeforeItIsLetGo()
{
    const QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("frame.jpeg"));
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(JpegBytes::plain(60, 10));
    file.close();
    PhotoDecoder::Request request;
    request.fileName = name;
    request.place.size = QSize(100, 100);
    request.untilRead = std::shared_ptr<const void>(this, [&](const void *) {
        QFile::remove(name); // who writes the next one
    });
    ask(&first_, std::move(request));
    QTRY_COMPARE(arrived_, QVector<int>{60});
    QVERIFY(!QFile::exists(name));
}

void TestPhotoDecoder::runningOneIsCalledOff_data()
{
    QTest::addColumn<bool>("newer");
    QTest::addColumn<bool>("follows");
    QTest::addColumn<QVector<int>>("arrived");

    QTest::newRow("dropped") << false << false << QVector<int>();
    QTest::newRow("another photo") << true << false << QVector<int>({20});
    QTest::newRow("the next frame") << true << true << QVector<int>({10, 20});
}

void TestPhotoDecoder::runningOneIsCalledOff()
{
    QFETCH(bool, newer);
    QFETCH(bool, follows);
    QFETCH(QVector<int>, arrived);
    QSemaphore entered;
    QSemaphore leave;
    PhotoDecoder::Request request = photo(10);
    request.untilRead = std::shared_ptr<const void>(this, [&](const void *) {
        entered.release();
        leave.acquire();
    });
    ask(&first_, std::move(request));
    entered.acquire();
    if (newer) {
        PhotoDecoder::Request next = photo(20);
        next.followsOlder = follows;
        ask(&first_, next);
    } else {
        decoder_->drop(&first_);
    }
    leave.release();
    // Another view's comes behind all of them.
    const int last = 0;
    bool ended = false;
    QTRY_COMPARE(arrived_.size(), arrived.size());
    decoder_->request(&last, photo(90), [&](const DecodedPhoto &) { ended = true; });
    QTRY_VERIFY(ended);
    QCOMPARE(arrived_, arrived);
}

void TestPhotoDecoder::endsWhileDecoding_data()
{
    QTest::addColumn<QByteArray>("bytes");

    QTest::newRow("as many scans as may be") << JpegBytes::progressive({8000, 8000}, 4);
    QTest::newRow("as many pixels as may be") << JpegBytes::claiming(8000, 8000);
    QTest::newRow("many scans of a small one") << JpegBytes::progressive({1000, 1000}, 256);
}

void TestPhotoDecoder::endsWhileDecoding()
{
    QFETCH(QByteArray, bytes);
    QSemaphore entered;
    PhotoDecoder::Request request;
    request.bytes = bytes;
    request.place.size = QSize(400, 300);
    request.untilRead = std::shared_ptr<const void>(this, [&](const void *) { entered.release(); });
    ask(&first_, std::move(request));
    entered.acquire();
    // In time of the processor: how long that is on a busy machine says nothing.
    const std::clock_t before = std::clock();
    decoder_.reset();
    const auto msec = (std::clock() - before) * 1000 / CLOCKS_PER_SEC;
    QVERIFY2(msec < 2000, qPrintable(QString::number(msec)));
    QCOMPARE(arrived_, QVector<int>());
}

void TestPhotoDecoder::endsBeforeItHasBegun()
{
    decoder_.reset();
    init();
    auto kept = std::make_shared<int>(0);
    const std::weak_ptr<int> watched = kept;
    PhotoDecoder::Request request = photo(10);
    request.untilRead = std::move(kept);
    ask(&first_, std::move(request));
    decoder_.reset();
    QVERIFY(watched.expired());
}

STALLO_TEST_MAIN(TestPhotoDecoder)
#include "tst_photodecoder.moc"
