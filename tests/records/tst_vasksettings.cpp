// SPDX-License-Identifier: MIT
#include "records/vasksettings.h"

#include "records/online.h"
#include "records/scan.h"
#include "tests/support/testmain.h"

#include <QTranslator>

#include <ctime>

namespace
{

// A catalogue that knows the two letter sets and one pattern.
class Catalogue : public QTranslator
{
public:
    bool isEmpty() const override { return false; }

    QString translate(const char *context, const char *source, const char *disambiguation,
                      int) const override
    {
        if (qstrcmp(context, "QObject") != 0 || qstrcmp(disambiguation, "VaskSettings") != 0) {
            return QString();
        }
        if (qstrcmp(source, "__") == 0) {
            return QStringLiteral("АВС");
        }
        if (qstrcmp(source, "_") == 0) {
            return QStringLiteral("ABC");
        }
        if (qstrcmp(source, R"([a-z]\d{3,3}[a-z]{2,2}\d{2,3})") == 0) {
            return QStringLiteral("[абв]\\d");
        }
        return QString();
    }
};

// The process's time zone for one test, by a rule that needs no zone data base.
class TimeZone
{
public:
    explicit TimeZone(const char *rule)
        : before_(qgetenv("TZ"))
        , wasSet_(qEnvironmentVariableIsSet("TZ"))
    {
        qputenv("TZ", rule);
        tzset();
    }
    ~TimeZone()
    {
        if (wasSet_) {
            qputenv("TZ", before_);
        } else {
            qunsetenv("TZ");
        }
        tzset();
    }
    Q_DISABLE_COPY_MOVE(TimeZone)

private:
    QByteArray before_;
    bool wasSet_;
};

QRegExp pattern(const QByteArray &name)
{
    if (name == "num") {
        return VaskSettings::numPattern;
    }
    if (name == "q") {
        return VaskSettings::numPatternQ;
    }
    return name == "symbols" ? VaskSettings::numPatternSymbols : VaskSettings::numPatternNumbers;
}

} // namespace

class TestVaskSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();

    void sourceTexts();
    void patterns_data();
    void patterns();
    void catalogueReplacesTexts();
    void filterTexts_data();
    void filterTexts();
    void filterMatches_data();
    void filterMatches();
    void translateFromLocal_data();
    void translateFromLocal();
    void pictureNames_data();
    void pictureNames();
    void pictureNamesAreInUtc();
    void pictureFolders();
    void fixedNames();
};

void TestVaskSettings::cleanup()
{
    VaskSettings::init();
}

void TestVaskSettings::sourceTexts()
{
    QCOMPARE(VaskSettings::localSymbols, QStringLiteral("__"));
    QCOMPARE(VaskSettings::latinSymbols, QStringLiteral("_"));
    QCOMPARE(VaskSettings::numPattern.pattern(),
             QStringLiteral(R"([a-z]\d{3,3}[a-z]{2,2}\d{2,3})"));
    QCOMPARE(VaskSettings::numPatternQ.pattern(),
             QStringLiteral(R"([a-z?][\d?]{3,3}[a-z?]{2,2}[\d?]{2,3})"));
    QCOMPARE(VaskSettings::numPatternSymbols.pattern(),
             QStringLiteral(R"([a-z,*]\d{3,3}[a-z,*]{2,2}\d{2,3}|[a-z,*]{3,3})"));
    QCOMPARE(VaskSettings::numPatternNumbers.pattern(),
             QStringLiteral(R"([a-z]\d{3,3}[a-z]{2,2}\d{2,3}|\d{3,3})"));
    for (const char *name : {"num", "q", "symbols", "numbers"}) {
        QCOMPARE(pattern(name).caseSensitivity(), Qt::CaseInsensitive);
        QCOMPARE(pattern(name).patternSyntax(), QRegExp::RegExp);
        QVERIFY(pattern(name).isValid());
    }
}

void TestVaskSettings::patterns_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("accepted");
    const auto row = [](const char *name, const char *text, bool accepted) {
        QTest::addRow("%s %s", name, text)
            << QByteArray(name) << QString::fromUtf8(text) << accepted;
    };

    row("num", "A123BC77", true);
    row("num", "a123bc777", true);
    row("num", "A123BC7", false);
    row("num", "A123BC7777", false);
    row("num", "A?23BC77", false);
    row("num", "А123ВС77", false);
    row("num", "", false);
    row("q", "A123BC77", true);
    row("q", "????????", true);
    row("q", "?????????", true);
    row("q", "??????????", false);
    row("q", "A?23BC7?", true);
    row("q", "A*23BC77", false);
    row("symbols", "A123BC77", true);
    row("symbols", "*123,*77", true);
    row("symbols", "abc", true);
    row("symbols", "a*,", true);
    row("symbols", "ab", false);
    row("symbols", "123", false);
    row("numbers", "A123BC77", true);
    row("numbers", "123", true);
    row("numbers", "12", false);
    row("numbers", "abc", false);
    row("numbers", "*123BC77", false);
}

void TestVaskSettings::patterns()
{
    QFETCH(QByteArray, name);
    QFETCH(QString, text);
    QFETCH(bool, accepted);
    QCOMPARE(pattern(name).exactMatch(text), accepted);
}

void TestVaskSettings::catalogueReplacesTexts()
{
    Catalogue catalogue;
    QVERIFY(QCoreApplication::installTranslator(&catalogue));
    VaskSettings::init();
    QVERIFY(QCoreApplication::removeTranslator(&catalogue));
    QCOMPARE(VaskSettings::localSymbols, QStringLiteral("АВС"));
    QCOMPARE(VaskSettings::latinSymbols, QStringLiteral("ABC"));
    QVERIFY(VaskSettings::numPattern.exactMatch(QStringLiteral("Б7")));
    QVERIFY(VaskSettings::numPatternNumbers.exactMatch(QStringLiteral("123")));
}

void TestVaskSettings::filterTexts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("filter");
    const auto row = [](const char *name, const char *text, int mode, const char *filter) {
        QTest::newRow(name) << QString::fromUtf8(text) << mode << QString::fromUtf8(filter);
    };

    row("whole", "A123BC77", 0, "A123BC77");
    row("whole, empty", "", 0, "");
    row("whole, as it is", "A*2", 0, "A*2");
    row("letters", "abc", 1, R"(a[#\d]{3}bc)");
    row("letters of a number", "A123BC77", 1, R"(A[#\d]{3}BC)");
    row("one letter", "A12", 1, "A");
    row("two letters", "AB", 1, R"(A[#\d]{3}B)");
    row("letters, empty", "", 1, "");
    row("only digits", "123", 1, "");
    row("any letter", "a*c", 1, R"(a[#\d]{3}\Dc)");
    row("any first letter", "*", 1, R"(\D)");
    row("all letters any", "***", 1, R"(\D[#\d]{3}\D\D)");
    row("the comma stays", "a,c", 1, R"(a[#\d]{3},c)");
    row("digits", "12", 2, R"(\D[#\d]{,2}12[#\d]{,2}\D{2,2}[#\d]{2,3})");
    row("four digits", "1234", 2, R"(\D[#\d]{,2}123[#\d]{,2}\D{2,2}[#\d]{2,3})");
    row("digits of a number", "A123BC77", 2, R"(\D[#\d]{,2}123[#\d]{,2}\D{2,2}[#\d]{2,3})");
    row("digits, empty", "", 2, R"(\D[#\d]{,2}[#\d]{,2}\D{2,2}[#\d]{2,3})");
    row("no such mode", "A123BC77", 3, "");
    row("no such mode either", "A123BC77", -1, "");
}

void TestVaskSettings::filterTexts()
{
    QFETCH(QString, text);
    QFETCH(int, mode);
    QFETCH(QString, filter);
    const QRegExp expression =
        VaskSettings::numFilter(text, static_cast<VaskSettings::NumFilterMode>(mode));
    QCOMPARE(expression.pattern(), filter);
    QCOMPARE(expression.caseSensitivity(), Qt::CaseInsensitive);
    QCOMPARE(expression.patternSyntax(), QRegExp::RegExp);
}

void TestVaskSettings::filterMatches_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("number");
    QTest::addColumn<bool>("found");
    const auto row = [](const char *name, const char *text, int mode, const char *number,
                        bool found) {
        QTest::newRow(name) << QString::fromUtf8(text) << mode << QString::fromUtf8(number)
                            << found;
    };

    row("part of a number", "3bc", 0, "A123BC77", true);
    row("another number", "3bd", 0, "A123BC77", false);
    row("letters", "abc", 1, "A123BC77", true);
    row("letters, digit unreadable", "abc", 1, "A1#3BC77", true);
    row("other letters", "abd", 1, "A123BC77", false);
    row("any letter", "a*c", 1, "A123XC77", true);
    row("any letter, last one another", "a*c", 1, "A123XD77", false);
    row("digits at the end of the block", "23", 2, "A123BC77", true);
    row("digits in the region only", "77", 2, "A123BC77", false);
    row("digits beside an unreadable one", "12", 2, "A12#BC77", true);
    row("other digits", "13", 2, "A123BC77", false);
    row("no such mode", "xyz", 3, "A123BC77", true);
}

void TestVaskSettings::filterMatches()
{
    QFETCH(QString, text);
    QFETCH(int, mode);
    QFETCH(QString, number);
    QFETCH(bool, found);
    const QRegExp expression =
        VaskSettings::numFilter(text, static_cast<VaskSettings::NumFilterMode>(mode));
    QCOMPARE(expression.indexIn(number) >= 0, found);
}

void TestVaskSettings::translateFromLocal_data()
{
    QTest::addColumn<QString>("local");
    QTest::addColumn<QString>("latin");
    QTest::addColumn<QString>("number");
    QTest::addColumn<QString>("translated");
    const QString mixed = QStringLiteral("а123Вс77");

    QTest::newRow("no catalogue") << QStringLiteral("__") << QStringLiteral("_")
                                  << QStringLiteral("a123bc77") << QStringLiteral("A123BC77");
    QTest::newRow("no catalogue, underscore") << QStringLiteral("__") << QStringLiteral("_")
                                              << QStringLiteral("a_") << QStringLiteral("A_");
    QTest::newRow("letters") << QStringLiteral("АВС") << QStringLiteral("ABC") << mixed
                             << QStringLiteral("A123BC77");
    QTest::newRow("no local letters") << QString() << QStringLiteral("ABC") << mixed << mixed;
    QTest::newRow("no Latin letters") << QStringLiteral("АВС") << QString() << mixed << mixed;
    QTest::newRow("fewer Latin letters")
        << QStringLiteral("АВС") << QStringLiteral("AB") << mixed << QStringLiteral("A123BС77");
    QTest::newRow("more Latin letters")
        << QStringLiteral("А") << QStringLiteral("ABC") << mixed << QStringLiteral("A123ВС77");
    QTest::newRow("the first of two counts") << QStringLiteral("АА") << QStringLiteral("XY")
                                             << QStringLiteral("А") << QStringLiteral("X");
    QTest::newRow("the set in small letters is not found")
        << QStringLiteral("а") << QStringLiteral("A") << QStringLiteral("а") << QStringLiteral("А");
    QTest::newRow("a result is not translated again")
        << QStringLiteral("АA") << QStringLiteral("AX") << QStringLiteral("А")
        << QStringLiteral("A");
    QTest::newRow("empty") << QStringLiteral("АВС") << QStringLiteral("ABC") << QString()
                           << QString();
}

void TestVaskSettings::translateFromLocal()
{
    QFETCH(QString, local);
    QFETCH(QString, latin);
    QFETCH(QString, number);
    QFETCH(QString, translated);
    VaskSettings::localSymbols = local;
    VaskSettings::latinSymbols = latin;
    QCOMPARE(VaskSettings::translateFromLocal(number), translated);
    // Only a text that has local letters.
    const bool hasThem = translated != number.toUpper();
    QCOMPARE(VaskSettings::inLatinLetters(number), hasThem ? translated : number);
}

void TestVaskSettings::pictureNames_data()
{
    QTest::addColumn<QString>("number");
    QTest::addColumn<QDateTime>("time");
    QTest::addColumn<QString>("name");
    const QDateTime time({2011, 3, 5}, {14, 7, 9}, Qt::UTC);

    QTest::newRow("plain") << QStringLiteral("A123BC77") << time
                           << QStringLiteral("2011-03-05_14-07-09_A123BC77.jpeg");
    QTest::newRow("question marks") << QStringLiteral("A?23BC??") << time
                                    << QStringLiteral("2011-03-05_14-07-09_A-23BC--.jpeg");
    QTest::newRow("asterisks") << QStringLiteral("*123*?77") << time
                               << QStringLiteral("2011-03-05_14-07-09_-123--77.jpeg");
    QTest::newRow("no number") << QString() << time << QStringLiteral("2011-03-05_14-07-09_.jpeg");
    QTest::newRow("no time") << QStringLiteral("A123BC77") << QDateTime()
                             << QStringLiteral("_A123BC77.jpeg");
}

void TestVaskSettings::pictureNames()
{
    QFETCH(QString, number);
    QFETCH(QDateTime, time);
    QFETCH(QString, name);
    Scan scan;
    scan.setNumber(number);
    scan.setDateTime(time);
    QCOMPARE(VaskSettings::picFileName(scan), name);
    OnLine onLine;
    onLine.setNumber(number);
    onLine.setDateTime(time);
    QCOMPARE(VaskSettings::picFileName(onLine), name);
}

void TestVaskSettings::pictureNamesAreInUtc()
{
    const TimeZone far("VLAT-10");
    Scan scan;
    scan.setNumber(QStringLiteral("A123BC77"));
    scan.setDateTime(QDateTime({2011, 3, 6}, {0, 7, 9}, Qt::LocalTime));
    QCOMPARE(scan.dateTime().offsetFromUtc(), 10 * 60 * 60);
    QCOMPARE(VaskSettings::picFileName(scan), QStringLiteral("2011-03-05_14-07-09_A123BC77.jpeg"));
}

void TestVaskSettings::pictureFolders()
{
    QCOMPARE(VaskSettings::picFileDir(QStringLiteral("10.0.0.5")),
             QStringLiteral("10.0.0.5.jpegdata"));
    QCOMPARE(VaskSettings::picFileDir(QString()), QStringLiteral("jpegdata"));
    QCOMPARE(VaskSettings::picFileDir(QStringLiteral("%1")), QStringLiteral("%1.jpegdata"));
}

void TestVaskSettings::fixedNames()
{
    QCOMPARE(VaskSettings::accessbaseSuffix(), QStringLiteral(".tpa"));
    QCOMPARE(VaskSettings::passbaseSuffix(), QStringLiteral(".tpp"));
    QCOMPARE(VaskSettings::passbaseIndexSuffix(), QStringLiteral(".tpp.index"));
    QCOMPARE(VaskSettings::picFileDirFormat(), QStringLiteral("jpegdata"));
    QCOMPARE(VaskSettings::dateFormat(), QStringLiteral("yyyy-MM-dd_hh-mm-ss"));
}

STALLO_TEST_MAIN(TestVaskSettings)
#include "tst_vasksettings.moc"
