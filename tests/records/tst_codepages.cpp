// SPDX-License-Identifier: MIT
#include "records/access.h"
#include "records/localtext.h"
#include "records/online.h"
#include "records/scan.h"
#include "tests/records/recordbytes.h"
#include "tests/support/testmain.h"

#include <QTextCodec>

#include <langinfo.h>

namespace
{

// The character set that the run is meant to have, and the bytes of the letters А, В and С in it.
struct CodePage {
    const char *charset;
    const char *codec;
    const char *bytes;
};

constexpr CodePage codePages[] = {
    {"CP1251", "windows-1251", "\xC0\xC2\xD1"},
    {"KOI8-R", "KOI8-R", "\xE1\xF7\xF3"},
    {"ANSI_X3.4-1968", "UTF-8", "\xD0\x90\xD0\x92\xD0\xA1"},
};

} // namespace

// Runs once under each locale, which it is told by STALLO_CHARSET: a locale that is missing must
// fail the test and not pass it under another one.
class TestCodePages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void codec();
    void letters();
    void numberRoundTrip();
    void textRoundTrip();
    void cutting();
    void fullFields();
    void fileNames();

private:
    bool isUtf8() const { return qstrcmp(page_->codec, "UTF-8") == 0; }

    const CodePage *page_ = nullptr;
};

void TestCodePages::initTestCase()
{
    const QByteArray wanted = qgetenv("STALLO_CHARSET");
    QCOMPARE(QByteArray(nl_langinfo(CODESET)), wanted);
    for (const CodePage &page : codePages) {
        if (wanted == page.charset) {
            page_ = &page;
        }
    }
    QVERIFY(page_ != nullptr);
}

void TestCodePages::codec()
{
    QCOMPARE(QTextCodec::codecForLocale()->mibEnum(),
             QTextCodec::codecForName(page_->codec)->mibEnum());
}

void TestCodePages::letters()
{
    QCOMPARE(QStringLiteral("АВС").toLocal8Bit(), QByteArray(page_->bytes));
    QCOMPARE(QString::fromLocal8Bit(page_->bytes), QStringLiteral("АВС"));
    const QString alphabet = QStringLiteral("АБВГДЕЖЗИЙКЛМНОПРСТУФХЦЧШЩЪЫЬЭЮЯабвгдежзийклмнопрс"
                                            "туфхцчшщъыьэюяЁё");
    const QByteArray bytes = alphabet.toLocal8Bit();
    QCOMPARE(bytes.size(), alphabet.size() * (isUtf8() ? 2 : 1));
    QCOMPARE(QString::fromLocal8Bit(bytes), alphabet);
}

void TestCodePages::numberRoundTrip()
{
    // Nine characters, all of which a one-byte code page holds.
    const QString number = QStringLiteral("А123ВС777");
    const QString kept = isUtf8() ? QStringLiteral("А123ВС") : number;
    Scan scan;
    scan.setNumber(number);
    QCOMPARE(scan.number(), kept);
    OnLine onLine;
    onLine.setNumber(number);
    QCOMPARE(onLine.number(), kept);
    QCOMPARE(Scan(onLine).number(), kept);
    QCOMPARE(bytesOf(Scan(onLine)).mid(4, 10), bytesOf(onLine).mid(8, 10));
    Access access;
    access.setNumber(number);
    QCOMPARE(access.number(), kept);
}

void TestCodePages::textRoundTrip()
{
    const QString comment = QStringLiteral("Иванов, отдел 7");
    const QString key = QStringLiteral("Ключ 1");
    OnLine onLine;
    onLine.setComment(comment);
    onLine.setAccessKey(key);
    const Scan scan(onLine);
    QCOMPARE(scan.comment(), comment);
    QCOMPARE(scan.accessKey(), key);
    Access access;
    access.setComment(comment);
    access.setAccessKey(key);
    QCOMPARE(access.comment(), comment);
    QCOMPARE(access.accessKey(), key);
}

void TestCodePages::cutting()
{
    const QString text(100, QChar(0x0416));
    Scan scan;
    scan.setNumber(text);
    scan.setComment(text);
    scan.setAccessKey(text);
    // Half of an odd limit, rounded down, where a letter takes two bytes.
    QCOMPARE(scan.number(), text.left(isUtf8() ? 4 : 9));
    QCOMPARE(scan.comment(), text.left(isUtf8() ? 31 : 63));
    QCOMPARE(scan.accessKey(), text.left(isUtf8() ? 15 : 31));
}

void TestCodePages::fullFields()
{
    // As a device fills them, without a zero byte.
    const QByteArray letter = QStringLiteral("Ж").toLocal8Bit();
    OnLine onLine;
    std::copy_n(letter.repeated(10).cbegin(), 10, onLine.data() + 8);
    std::copy_n(letter.repeated(64).cbegin(), 64, onLine.data() + 94);
    const int number = isUtf8() ? 4 : 9;
    const int comment = isUtf8() ? 31 : 63;
    QCOMPARE(onLine.number(), QString(number, QChar(0x0416)));
    QCOMPARE(onLine.comment(), QString(comment, QChar(0x0416)));
    const QByteArray bytes = bytesOf(Scan(onLine));
    QCOMPARE(bytes.mid(4, 10), letter.repeated(number).leftJustified(10, '\0'));
    QCOMPARE(bytes.mid(20, 64), letter.repeated(comment).leftJustified(64, '\0'));
}

void TestCodePages::fileNames()
{
    const QString name = QStringLiteral("2011-03-05_14-07-09_А123ВС77.jpeg");
    OnLine onLine;
    onLine.setFileName(name);
    QCOMPARE(onLine.fileName(), name);
}

STALLO_TEST_MAIN(TestCodePages)
#include "tst_codepages.moc"
