// SPDX-License-Identifier: MIT
#include "records/csv.h"

#include "tests/support/testmain.h"

class TestCsv : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void encodeField_data();
    void encodeField();
    void encodeRecord_data();
    void encodeRecord();
    void decodeRecord_data();
    void decodeRecord();
    void roundTrip_data();
    void roundTrip();
    void otherCharacters();
    void dateFormat();
};

void TestCsv::encodeField_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("field");

    QTest::newRow("empty") << QString() << QString();
    QTest::newRow("plain") << QStringLiteral("A123BC77") << QStringLiteral("A123BC77");
    QTest::newRow("blanks stay") << QStringLiteral("  a b ") << QStringLiteral("  a b ");
    QTest::newRow("semicolon") << QStringLiteral("a;b") << QStringLiteral("\"a;b\"");
    QTest::newRow("comma") << QStringLiteral("a,b") << QStringLiteral("\"a,b\"");
    QTest::newRow("quote") << QStringLiteral("a\"b") << QStringLiteral("\"a\"\"b\"");
    QTest::newRow("only a quote") << QStringLiteral("\"") << QStringLiteral("\"\"\"\"");
    QTest::newRow("apostrophe") << QStringLiteral("a'b") << QStringLiteral("a'b");
    QTest::newRow("tab") << QStringLiteral("a\tb") << QStringLiteral("a\tb");
    QTest::newRow("CR LF") << QStringLiteral("a\r\nb") << QStringLiteral("a b");
    QTest::newRow("LF") << QStringLiteral("a\nb") << QStringLiteral("a b");
    QTest::newRow("LF CR") << QStringLiteral("a\n\rb") << QStringLiteral("a \rb");
    QTest::newRow("lone CR") << QStringLiteral("a\rb") << QStringLiteral("a\rb");
    QTest::newRow("CR CR LF") << QStringLiteral("a\r\r\nb") << QStringLiteral("a\r b");
    QTest::newRow("two line ends") << QStringLiteral("a\r\n\nb") << QStringLiteral("a  b");
    QTest::newRow("line end and comma") << QStringLiteral("a,\r\n") << QStringLiteral("\"a, \"");
    QTest::newRow("cyrillic") << QStringLiteral("А123ВС77") << QStringLiteral("А123ВС77");
}

void TestCsv::encodeField()
{
    QFETCH(QString, text);
    QFETCH(QString, field);
    QCOMPARE(CSV().encodeField(text), field);
    // Neither the separator nor the quote of the value has a say.
    QCOMPARE(CSV(QLatin1Char('\t'), QLatin1Char('\'')).encodeField(text), field);
}

void TestCsv::encodeRecord_data()
{
    QTest::addColumn<QStringList>("fields");
    QTest::addColumn<QString>("line");

    QTest::newRow("no field") << QStringList() << QString();
    QTest::newRow("one empty field") << QStringList{QString()} << QString();
    QTest::newRow("one") << QStringList{QStringLiteral("a")} << QStringLiteral("a");
    QTest::newRow("three") << QStringList{QStringLiteral("a"), QString(), QStringLiteral("c")}
                           << QStringLiteral("a;;c");
    QTest::newRow("empty at the end")
        << QStringList{QStringLiteral("a"), QString()} << QStringLiteral("a;");
    QTest::newRow("quoted") << QStringList{QStringLiteral("a;b"), QStringLiteral("c\"d")}
                            << QStringLiteral("\"a;b\";\"c\"\"d\"");
}

void TestCsv::encodeRecord()
{
    QFETCH(QStringList, fields);
    QFETCH(QString, line);
    QCOMPARE(CSV().encodeRecord(fields), line);
}

void TestCsv::decodeRecord_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QStringList>("fields");
    const auto row = [](const char *name, const char *line, const QStringList &fields) {
        QTest::newRow(name) << QString::fromUtf8(line) << fields;
    };
    const auto text = [](const char *field) { return QString::fromUtf8(field); };
    const QString none = QStringLiteral("");

    row("empty line", "", {none});
    row("one", "a", {text("a")});
    row("two separators", ";;", {none, none, none});
    row("separator at the end", "a;", {text("a"), none});
    row("separator in quotes", "\"a;b\";c", {text("a;b"), text("c")});
    row("comma does not separate", "a,b;c", {text("a,b"), text("c")});
    row("doubled quote", "\"a\"\"b\"", {text("a\"b")});
    row("doubled quote first", "\"\"\"a\"", {text("\"a")});
    row("doubled quote last", "\"a\"\"\"", {text("a\"")});
    row("four quotes are one", "\"\"\"\"", {text("\"")});
    row("two quotes are none", "\"\"", {none});
    row("two quotes in a later field", "a;\"\";b", {text("a"), none, text("b")});
    row("three quotes in a later field", "a;\"\"\"b\"", {text("a"), text("\"b")});
    row("quotes inside a field", "a\"b;c\"d;e", {text("ab;cd"), text("e")});
    row("doubled quotes outside quotes", "a\"\"b", {text("ab")});
    row("quote never closed", "\"a;b", {text("a;b")});
    row("line feed ends it", "a;b\nc;d", {text("a"), text("b")});
    row("carriage return ends it", "a;b\rc;d", {text("a"), text("b")});
    row("a line end in quotes ends it, too", "\"a;b\r\nc\";d", {text("a;b")});
    row("only a line end", "\r\n", {none});
    row("blanks stay", " a ; b ", {text(" a "), text(" b ")});
}

void TestCsv::decodeRecord()
{
    QFETCH(QString, line);
    QFETCH(QStringList, fields);
    QCOMPARE(CSV().decodeRecord(line), fields);
}

void TestCsv::roundTrip_data()
{
    QTest::addColumn<QStringList>("fields");

    QTest::newRow("plain") << QStringList{QStringLiteral("05.03.2011 14:07:09"),
                                          QStringLiteral("A123BC77"), QStringLiteral("Staff")};
    QTest::newRow("every special character") << QStringList{QStringLiteral(";"),
                                                            QStringLiteral("\""),
                                                            QStringLiteral(","),
                                                            QStringLiteral("\"\""),
                                                            QStringLiteral(";\"\";"),
                                                            QStringLiteral("\"a\";\""),
                                                            QString()};
    QTest::newRow("nothing but empty fields") << QStringList{QString(), QString(), QString()};
}

void TestCsv::roundTrip()
{
    QFETCH(QStringList, fields);
    const CSV csv;
    QCOMPARE(csv.decodeRecord(csv.encodeRecord(fields)), fields);
}

void TestCsv::otherCharacters()
{
    const CSV csv(QLatin1Char('\t'), QLatin1Char('\''));
    const QStringList fields{QStringLiteral("a;b"), QStringLiteral("c")};
    QCOMPARE(csv.encodeRecord(fields), QStringLiteral("\"a;b\"\tc"));
    QCOMPARE(csv.decodeRecord(QStringLiteral("'a\tb'\tc;\"d")),
             (QStringList{QStringLiteral("a\tb"), QStringLiteral("c;\"d")}));
}

void TestCsv::dateFormat()
{
    QCOMPARE(CSV::dateFormat(), QStringLiteral("dd.MM.yyyy hh:mm:ss"));
}

STALLO_TEST_MAIN(TestCsv)
#include "tst_csv.moc"
