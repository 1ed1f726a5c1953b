// SPDX-License-Identifier: MIT
#include "simulator/archive.h"
#include "simulator/filetree.h"
#include "simulator/livefeed.h"
#include "simulator/samplefiles.h"
#include "tests/simulator/devicefixture.h"
#include "tests/support/testmain.h"

#include <QRegularExpression>

// What a device writes in a code page of its own, which need not be that of the locale.
class DeviceTextsTest : public QObject, private DeviceFixture
{
    Q_OBJECT

private Q_SLOTS:
    void knowsCodePages_data();
    void knowsCodePages();
    void cutsAtWholeCharacters_data();
    void cutsAtWholeCharacters();
    void writesPlates_data() { codePages(); }
    void writesPlates();
    void knowsItsResidents_data() { codePages(); }
    void knowsItsResidents();
    void storesPassages_data() { codePages(); }
    void storesPassages();
    void givesItsIdentifier();
    void findsPhotosByTheirBytes();
    void staysLatinByDefault();

private:
    static void codePages()
    {
        QTest::addColumn<QByteArray>("codePage");
        for (const char *name : {"CP1251", "KOI8-R", "UTF-8"}) {
            QTest::newRow(name) << QByteArray(name);
        }
    }
    static DeviceTexts cyrillic(const QByteArray &codePage) { return {codePage, true}; }
    static const QDateTime noon;
};

const QDateTime DeviceTextsTest::noon(QDate(2026, 11, 21), QTime(12, 0), Qt::UTC);

void DeviceTextsTest::knowsCodePages_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<bool>("known");
    QTest::newRow("CP1251") << QByteArray("CP1251") << true;
    QTest::newRow("windows-1251") << QByteArray("windows-1251") << true;
    QTest::newRow("KOI8-R") << QByteArray("KOI8-R") << true;
    QTest::newRow("UTF-8") << QByteArray("UTF-8") << true;
    QTest::newRow("none") << QByteArray() << false;
    QTest::newRow("unknown") << QByteArray("CP9999") << false;
    QTest::newRow("without lines") << QByteArray("UTF-16") << false;
}

void DeviceTextsTest::knowsCodePages()
{
    QFETCH(QByteArray, name);
    QTEST(DeviceTexts::isCodePage(name), "known");
}

void DeviceTextsTest::cutsAtWholeCharacters_data()
{
    QTest::addColumn<QByteArray>("codePage");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("bytes");
    const QString letters = QStringLiteral("АВС");
    QTest::newRow("one byte each") << QByteArray("CP1251") << letters << QByteArray("\xC0\xC2\xD1");
    QTest::newRow("another page") << QByteArray("KOI8-R") << letters << QByteArray("\xE1\xF7\xF3");
    QTest::newRow("two bytes each") << QByteArray("UTF-8") << letters << QByteArray("\xD0\x90");
    QTest::newRow("beyond the page")
        << QByteArray("CP1251") << QStringLiteral("\u4E2D1") << QByteArray("?1");
    QTest::newRow("a pair") << QByteArray("UTF-8") << QString::fromUtf8("\xF0\x9F\x9A\x97")
                            << QByteArray();
    QTest::newRow("behind a zero")
        << QByteArray("UTF-8") << QString(QStringLiteral("1") + QChar(0)) << QByteArray("1");
}

void DeviceTextsTest::cutsAtWholeCharacters()
{
    QFETCH(QByteArray, codePage);
    QFETCH(QString, text);
    QTEST(cyrillic(codePage).fitting(text, 3), "bytes");
}

void DeviceTextsTest::writesPlates()
{
    QFETCH(QByteArray, codePage);
    FeedConfig config;
    config.texts = cyrillic(codePage);
    LiveFeed feed(config);
    static const QRegularExpression plate(
        QStringLiteral("^[АВЕКМНОРСТУХ]\\d{3}[АВЕКМНОРСТУХ]{2}\\d*$"));
    for (int place = 0; place < 50; ++place) {
        const OnLine record = feed.next(noon);
        const QByteArray bytes = DeviceTexts::fieldBytes(record, OnLineLayout::number);
        const QString number = config.texts.decoded(bytes);
        QVERIFY2(plate.match(number).hasMatch(), qPrintable(number));
        QCOMPARE(config.texts.encoded(number), bytes);
        // The photo is named after it, in the same letters.
        QCOMPARE(config.texts.text(record, OnLineLayout::fileName),
                 DevicePaths::photoFolder() +
                     QStringLiteral("2026-11-21_12-00-00_%1.jpeg").arg(number));
    }
}

void DeviceTextsTest::knowsItsResidents()
{
    QFETCH(QByteArray, codePage);
    FeedConfig config;
    config.texts = cyrillic(codePage);
    config.unknown = 0;
    LiveFeed feed(config);
    const QByteArray list = LiveFeed::makeAccessList(40, 1, config.texts);
    feed.setAccessList(list);
    const OnLine record = feed.next(noon);
    QVERIFY(record.isInAccessList());
    const QString comment = config.texts.text(record, OnLineLayout::comment);
    QVERIFY2(comment.contains(QStringLiteral(", кв. ")), qPrintable(comment));
    const QString key = config.texts.text(record, OnLineLayout::accessKey);
    QVERIFY2(key.startsWith(QStringLiteral("Ключ ")), qPrintable(key));
    // As they stand in the list.
    QVERIFY(list.contains(DeviceTexts::fieldBytes(record, OnLineLayout::comment)));
    QVERIFY(list.contains(DeviceTexts::fieldBytes(record, OnLineLayout::accessKey)));
    // Opened by hand: a number that the panel knows.
    config.manual = 1;
    LiveFeed opened(config);
    QVERIFY(config.texts.text(opened.next(noon), OnLineLayout::number)
                .startsWith(QStringLiteral("О000ОО")));
}

void DeviceTextsTest::storesPassages()
{
    QFETCH(QByteArray, codePage);
    const DeviceTexts texts = cyrillic(codePage);
    const Archive archive(50, noon.toSecsSinceEpoch(), 60, 1, 40, false, texts);
    const Archive latin(50, noon.toSecsSinceEpoch(), 60, 1, 40, false);
    for (int row = 0; row < archive.rows(); ++row) {
        const Scan scan = archive.scan(row);
        QCOMPARE(DeviceTexts::fieldBytes(scan, ScanLayout::number),
                 texts.fitting(texts.plate(latin.scan(row).number()), 9));
        QCOMPARE(scan.dateTime(), latin.scan(row).dateTime());
        const QString comment = texts.text(scan, ScanLayout::comment);
        QCOMPARE(comment, scan.isInAccessList() ? QStringLiteral("Проезд %1").arg(row) : QString());
    }
}

void DeviceTextsTest::givesItsIdentifier()
{
    DeviceConfig config;
    config.deviceId = QStringLiteral("Въезд-7");
    config.feed.texts = cyrillic("CP1251");
    startHost(config);
    QVERIFY(host_->isRunning());
    QCOMPARE(fetch(DevicePaths::streams()), SampleFiles::streamsInCp1251());
}

void DeviceTextsTest::findsPhotosByTheirBytes()
{
    DeviceConfig config;
    config.feed.texts = cyrillic("KOI8-R");
    startHost(config);
    QVERIFY(host_->isRunning());
    const QString name = DevicePaths::photoFolder() + QStringLiteral("А.jpeg");
    host_->files().set(name, "a picture");
    QTcpSocket socket;
    socket.connectToHost(host_->address(), host_->filePort());
    QVERIFY(socket.waitForConnected(patience));
    socket.write("GET_IMMEDIATE_FILE:/mnt/usb/jpegdata/\xE1.jpeg\r\n");
    QCOMPARE(read(&socket, 22), QByteArray("File size=9\r\na picture"));
    QCOMPARE(host_->journal().countRequests(name), 1);
}

void DeviceTextsTest::staysLatinByDefault()
{
    const DeviceTexts texts;
    QCOMPARE(texts.plate(QStringLiteral("A123BC77")), QStringLiteral("A123BC77"));
    QCOMPARE(texts.encoded(QStringLiteral("Ж")), QStringLiteral("Ж").toLocal8Bit());
    QCOMPARE(texts.decoded(QStringLiteral("Ж").toLocal8Bit()), QStringLiteral("Ж"));
    QCOMPARE(LiveFeed::makeAccessList(5, 1, texts), LiveFeed::makeAccessList(5, 1));
    QVERIFY(LiveFeed::makeAccessList(5, 1).contains(", flat "));
}

STALLO_TEST_MAIN(DeviceTextsTest)
#include "tst_devicetexts.moc"
