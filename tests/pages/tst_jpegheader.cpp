// SPDX-License-Identifier: MIT
#include "pages/jpegheader.h"

#include "tests/support/jpegbytes.h"
#include "tests/support/testmain.h"

// What is decoded and what is not, decided by bytes alone.
class TestJpegHeader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void reads_data();
    void reads();
    void decides_data();
    void decides();
    void anyCutIsSurvived();
};

void TestJpegHeader::reads_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("scans");

    const QByteArray plain = JpegBytes::plain(40, 30);
    const QByteArray scan = plain.mid(plain.indexOf("\xFF\xDA"));
    const QByteArray three = JpegBytes::progressive({40, 30}, 3);
    const int frame = three.indexOf("\xFF\xC2");
    // A note with a whole picture in it, as cameras put them in front.
    const QByteArray note = JpegBytes::segment('\xE1', JpegBytes::progressive({8, 8}, 9));
    const QByteArray emptyNote("\xFF\xE1\x00\x00", 4);

    QTest::newRow("one scan") << plain << QSize(40, 30) << 1;
    QTest::newRow("three scans") << three << QSize(40, 30) << 3;
    QTest::newRow("a thousand scans")
        << JpegBytes::progressive({40, 30}, 1000) << QSize(40, 30) << 1000;
    QTest::newRow("a picture in a note") << QByteArray(three).insert(2, note) << QSize(40, 30) << 3;
    QTest::newRow("behind the end") << three + scan << QSize(40, 30) << 3;
    QTest::newRow("without an end") << three.chopped(2) + scan << QSize(40, 30) << 4;
    QTest::newRow("rubbish between segments")
        << QByteArray(three).insert(frame, "rubbish") << QSize(40, 30) << 3;
    QTest::newRow("filled up markers")
        << QByteArray(three).insert(frame, QByteArray(5, '\xFF')) << QSize(40, 30) << 3;
    QTest::newRow("restarts and stuffed bytes")
        << QByteArray(three).insert(three.lastIndexOf("\xFF\xDA"),
                                    QByteArray("\xFF\xD0z\xFF\x00z\xFF\x01z\xFF\xD7", 11))
        << QSize(40, 30) << 3;
    // Decoders go on right behind a length that is too short for itself.
    QTest::newRow("length of nothing")
        << QByteArray(three).insert(2, emptyNote) << QSize(40, 30) << 3;
    QTest::newRow("length beyond the end")
        << QByteArray(three).insert(2, "\xFF\xE1\xFF\xFF") << QSize() << 0;
    QTest::newRow("frame cut off") << three.left(frame + 6) << QSize() << 0;
    QTest::newRow("frame too short")
        << QByteArray("\xFF\xD8\xFF\xC0\x00\x05\x08\x01\x01", 9) + scan << QSize() << 1;
    QTest::newRow("nothing") << QByteArray() << QSize() << 0;
    QTest::newRow("only the first marker") << QByteArray("\xFF\xD8") << QSize() << 0;
    QTest::newRow("only markers") << "\xFF\xD8" + QByteArray(1000, '\xFF') << QSize() << 0;
    QTest::newRow("no JPEG") << "x" + plain << QSize() << 0;
}

void TestJpegHeader::reads()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QSize, size);
    QFETCH(int, scans);
    const JpegHeader header(bytes);
    QCOMPARE(header.size().isEmpty(), size.isEmpty());
    QVERIFY(size.isEmpty() || header.size() == size);
    QCOMPARE(header.scans(), scans);
}

void TestJpegHeader::decides_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("decodable");

    const QByteArray plain = JpegBytes::plain(40, 30);
    const auto padded = [&](qint64 length) {
        return plain + QByteArray(static_cast<int>(length) - plain.size(), 'x');
    };
    QByteArray strange = JpegBytes::progressive({65500, 1}, 500);
    strange[strange.indexOf("\xFF\xC2") + 11] = '\x44'; // in blocks of 32 x 32

    QTest::newRow("plain") << plain << true;
    QTest::newRow("16 MiB") << padded(JpegHeader::mostBytes) << true;
    QTest::newRow("a byte more") << padded(JpegHeader::mostBytes + 1) << false;
    QTest::newRow("64 million pixels") << JpegBytes::claiming(8000, 8000) << true;
    QTest::newRow("a column more") << JpegBytes::claiming(8001, 8000) << false;
    QTest::newRow("60000 x 60000") << JpegBytes::claiming(60000, 60000) << false;
    QTest::newRow("no width") << JpegBytes::claiming(0, 30) << false;
    QTest::newRow("no height") << JpegBytes::claiming(30, 0) << false;
    QTest::newRow("4 scans of 64 million") << JpegBytes::progressive({8000, 8000}, 4) << true;
    QTest::newRow("5 scans of 64 million") << JpegBytes::progressive({8000, 8000}, 5) << false;
    QTest::newRow("256 scans of a million") << JpegBytes::progressive({1000, 1000}, 256) << true;
    QTest::newRow("257 scans of a million") << JpegBytes::progressive({1000, 1000}, 257) << false;
    QTest::newRow("a few scans of a small one") << JpegBytes::progressive({8, 8}, 100) << true;
    QTest::newRow("scans without end of a small one")
        << JpegBytes::progressive({8, 8}, 200'000) << false;
    QTest::newRow("one line of large blocks") << strange << false;
    QTest::newRow("no scan") << plain.left(plain.indexOf("\xFF\xDA")) << false;
}

void TestJpegHeader::decides()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, decodable);
    QCOMPARE(JpegHeader(bytes).isDecodable(), decodable);
}

void TestJpegHeader::anyCutIsSurvived()
{
    const QByteArray whole = JpegBytes::progressive({40, 30}, 3);
    int scans = 0;
    for (int length = 0; length <= whole.size(); ++length) {
        const JpegHeader header(whole.left(length));
        QVERIFY(header.scans() >= scans);
        scans = header.scans();
    }
    QCOMPARE(scans, 3);
}

STALLO_TEST_MAIN(TestJpegHeader)
#include "tst_jpegheader.moc"
