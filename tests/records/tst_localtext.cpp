// SPDX-License-Identifier: MIT
#include "records/localtext.h"

#include "tests/support/testmain.h"

#include <QTextCodec>

class TestLocalText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanupTestCase();

    void wholeCharacters_data();
    void wholeCharacters();
    void encoded_data();
    void encoded();
    void fieldBytes_data();
    void fieldBytes();
    void lastByteOfAFieldIsNeverRead();
    void oneByteCodePage_data();
    void oneByteCodePage();

private:
    QTextCodec *before_ = QTextCodec::codecForLocale();
};

void TestLocalText::init()
{
    // Whatever the locale of the run is.
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
}

void TestLocalText::cleanupTestCase()
{
    QTextCodec::setCodecForLocale(before_);
}

void TestLocalText::wholeCharacters_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("limit");
    QTest::addColumn<int>("whole");

    QTest::newRow("nothing") << QByteArray() << 9 << 0;
    QTest::newRow("no room") << QByteArray("abc") << 0 << 0;
    QTest::newRow("shorter") << QByteArray("abc") << 9 << 3;
    QTest::newRow("as long") << QByteArray("abcdefghi") << 9 << 9;
    QTest::newRow("longer") << QByteArray("abcdefghij") << 9 << 9;
    QTest::newRow("two bytes, cut") << QByteArray("ab\xD0\x90\xD0\x91") << 3 << 2;
    QTest::newRow("two bytes, whole") << QByteArray("ab\xD0\x90\xD0\x91") << 4 << 4;
    QTest::newRow("two bytes, the first one cut") << QByteArray("\xD0\x90") << 1 << 0;
    QTest::newRow("three bytes, cut after one") << QByteArray("a\xE2\x82\xAC") << 2 << 1;
    QTest::newRow("three bytes, cut after two") << QByteArray("a\xE2\x82\xAC") << 3 << 1;
    QTest::newRow("three bytes, whole") << QByteArray("a\xE2\x82\xAC!") << 4 << 4;
    QTest::newRow("four bytes, cut after one") << QByteArray("a\xF0\x9F\x9A\x97") << 2 << 1;
    QTest::newRow("four bytes, cut after three") << QByteArray("a\xF0\x9F\x9A\x97") << 4 << 1;
    QTest::newRow("four bytes, whole") << QByteArray("a\xF0\x9F\x9A\x97!") << 5 << 5;
    QTest::newRow("as long, though unfinished") << QByteArray("ab\xD0") << 3 << 3;
    QTest::newRow("no UTF-8 at all") << QByteArray(12, '\x90') << 9 << 9;
    QTest::newRow("no UTF-8 behind a letter") << "A" + QByteArray(11, '\x90') << 9 << 9;
}

void TestLocalText::wholeCharacters()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, limit);
    QFETCH(int, whole);
    QCOMPARE(LocalText::wholeCharacters(bytes.constData(), bytes.size(), limit), whole);
}

void TestLocalText::encoded_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("limit");
    QTest::addColumn<QByteArray>("bytes");

    QTest::newRow("null") << QString() << 9 << QByteArray();
    QTest::newRow("plain") << QStringLiteral("A123BC77") << 9 << QByteArray("A123BC77");
    QTest::newRow("fits exactly") << QStringLiteral("A123BC777") << 9 << QByteArray("A123BC777");
    QTest::newRow("too long") << QStringLiteral("A123BC7777") << 9 << QByteArray("A123BC777");
    QTest::newRow("very long") << QString(100000, QLatin1Char('x')) << 63 << QByteArray(63, 'x');
    QTest::newRow("cut between letters")
        << QStringLiteral("АБВГД") << 9 << QByteArray("\xD0\x90\xD0\x91\xD0\x92\xD0\x93");
    QTest::newRow("four bytes that do not fit")
        << QStringLiteral("1234567\U0001F697") << 9 << QByteArray("1234567");
    QTest::newRow("four bytes at the very end")
        << QStringLiteral("12345\U0001F697xyz") << 9 << QByteArray("12345\xF0\x9F\x9A\x97");
    QTest::newRow("a zero character ends it")
        << QStringLiteral("A1") + QChar(0) + QStringLiteral("23") << 9 << QByteArray("A1");
}

void TestLocalText::encoded()
{
    QFETCH(QString, text);
    QFETCH(int, limit);
    QFETCH(QByteArray, bytes);
    QCOMPARE(LocalText::encoded(text, limit), bytes);
}

void TestLocalText::fieldBytes_data()
{
    QTest::addColumn<QByteArray>("field");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("text");

    QTest::newRow("empty") << QByteArray(10, '\0') << QByteArray() << QString();
    QTest::newRow("up to the first zero")
        << QByteArray("AB\0CDEFGHI", 10) << QByteArray("AB") << QStringLiteral("AB");
    QTest::newRow("nine bytes and a zero")
        << QByteArray("ABCDEFGHI\0", 10) << QByteArray("ABCDEFGHI") << QStringLiteral("ABCDEFGHI");
    QTest::newRow("full") << QByteArray("ABCDEFGHIJ") << QByteArray("ABCDEFGHI")
                          << QStringLiteral("ABCDEFGHI");
    QTest::newRow("full, the last letter in two bytes")
        << QByteArray("ABCDEFGH\xD0\x90") << QByteArray("ABCDEFGH") << QStringLiteral("ABCDEFGH");
    QTest::newRow("letters of two bytes") << QByteArray("\xD0\x90\x31\0\0\0\0\0\0\0", 10)
                                          << QByteArray("\xD0\x90\x31") << QStringLiteral("А1");
}

void TestLocalText::fieldBytes()
{
    QFETCH(QByteArray, field);
    QFETCH(QByteArray, bytes);
    QFETCH(QString, text);
    QCOMPARE(LocalText::fieldBytes(field.constData(), field.size()), bytes);
    QCOMPARE(LocalText::decoded(field.constData(), field.size()), text);
}

void TestLocalText::lastByteOfAFieldIsNeverRead()
{
    const QByteArray texts[] = {"ABCDEFGHI", "ABCDEF\xE2\x82\xAC", "ABCDEFG\xD0\x90",
                                QByteArray(9, '\x90'), QByteArray(9, '\xD0') + "\x90"};
    for (const QByteArray &text : texts) {
        const QByteArray expected =
            LocalText::fieldBytes(QByteArray(text.left(9) + 'X').constData(), 10);
        for (int last = 1; last < 256; ++last) {
            const QByteArray field = text.left(9) + static_cast<char>(last);
            QCOMPARE(LocalText::fieldBytes(field.constData(), field.size()), expected);
        }
    }
}

void TestLocalText::oneByteCodePage_data()
{
    QTest::addColumn<QByteArray>("codec");
    QTest::addColumn<QByteArray>("bytes");

    QTest::newRow("KOI8-R") << QByteArray("KOI8-R") << QByteArray("\xE1\x31\xF7\xF3");
    QTest::newRow("windows-1251") << QByteArray("windows-1251") << QByteArray("\xC0\x31\xC2\xD1");
}

void TestLocalText::oneByteCodePage()
{
    QFETCH(QByteArray, codec);
    QFETCH(QByteArray, bytes);
    QTextCodec::setCodecForLocale(QTextCodec::codecForName(codec));
    const QString text = QStringLiteral("А1ВС");
    QCOMPARE(LocalText::encoded(text, 9), bytes);
    // A cut is at any byte, for every byte is a character.
    QCOMPARE(LocalText::encoded(text, 3), bytes.left(3));
    QCOMPARE(LocalText::decoded(bytes.constData(), bytes.size()), text.left(3));
    QCOMPARE(LocalText::decoded(QByteArray(bytes + '\0').constData(), 5), text);
}

STALLO_TEST_MAIN(TestLocalText)
#include "tst_localtext.moc"
