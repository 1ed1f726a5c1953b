// SPDX-License-Identifier: MIT
#include "netsetup/configparser.h"

#include "tests/netsetup/textfile.h"
#include "tests/support/testmain.h"

#include <QTemporaryDir>

#include <memory>

class TestConfigParser : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void filesBeforeAndAfter_data();
    void filesBeforeAndAfter();
    void values_data();
    void values();
    void changesOneSetting();
    void readingAddsAnEntry();
    void missingFile();
    void nothingIsWrittenBeforeSync();

private:
    std::unique_ptr<QTemporaryDir> folder_;
    const QString name_ = QStringLiteral("settings.cfg");
};

void TestConfigParser::init()
{
    QDir::setCurrent(QDir::tempPath());
    folder_ = std::make_unique<QTemporaryDir>();
    QVERIFY(QDir::setCurrent(folder_->path()));
}

void TestConfigParser::filesBeforeAndAfter_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    const auto row = [](const char *name, const char *before, const char *after) {
        QTest::newRow(name) << QByteArray(before) << QByteArray(after);
    };

    row("empty", "", "");
    row("one setting", "IPADDR=10.0.0.1\n", "IPADDR=10.0.0.1\n");
    row("no final line end", "IPADDR=10.0.0.1", "IPADDR=10.0.0.1\n");
    row("CR LF", "# a\r\nB=1\r\n\r\n", "B=1\n# a\n\n");
    row("blanks around the sign", "A  =   1\n", "A=1\n");
    row("tabs around the sign", "A\t=\t1\n", "A\t=\t1\n");
    row("a blank and a tab", "A \t = \t1\n", "A \t=\t1\n");
    row("blanks before the name", "  A=1\n", "  A=1\n");
    row("blanks behind the value", "A=1  \n", "A=1  \n");
    row("blanks inside", "A b = 1 2\n", "A b=1 2\n");
    row("two signs", "A=b=c\n", "A=b=c\n");
    row("two signs with blanks", "A = b = c\n", "A=b = c\n");
    row("two signs side by side", "A==\n", "A==\n");
    row("two signs with a blank between", "A = = b\n", "A== b\n");
    row("no value", "A=\n", "A=\n");
    row("no name", "=1\n", "=1\n");
    row("a sign alone among blanks", "   =   \n", "=\n");
    row("quotes", "A=\"b c\"\n", "A=\"b c\"\n");
    row("a comment behind a setting", "A=1 # one\n", "A=1 # one\n");

    row("comment", "# text\n", "# text\n");
    row("comment with a sign", "# A = 1\n", "# A = 1\n");
    row("setting in a comment", "#A=1\nA=2\n", "A=2\n#A=1\n");
    row("indented comment", " \t #A = 1\n", " \t #A = 1\n");
    row("no sign", "export A\n", "export A\n");
    row("blank lines", "\n\nA=1\n\n  \n", "A=1\n\n\n\n  \n");
    row("one blank line", "\n", "\n");
    row("a name with a number sign", "A#=1\n", "A#=1\n");

    row("duplicates", "A=1\nB=2\nA=3\n", "A=3\nB=2\n");
    row("duplicates with other blanks", "A=1\nA = 3\n", "A=3\n");
    row("duplicate without a value", "A=1\nA=\n", "A=\n");
    row("not the same name", "A=1\n A=2\na=3\n", " A=2\nA=1\na=3\n");

    row("capitals, comments, lower case", "b=1\n# x\nB=2\n_=3\na=4\nZ=5\n",
        "B=2\nZ=5\n_=3\n# x\na=4\nb=1\n");
    row("settings do not count as comments", "# 0\nA=1\n# 1\nB=2\n# 2\n",
        "A=1\nB=2\n# 0\n# 1\n# 2\n");
    row("comment 10 before comment 2", "#0\n#1\n#2\n#3\n#4\n#5\n#6\n#7\n#8\n#9\n#10\n#11\n",
        "#0\n#1\n#10\n#11\n#2\n#3\n#4\n#5\n#6\n#7\n#8\n#9\n");
    row("a name like a comment's", "MY__comment__=5\n", "5\n");
    row("the name of a comment", "# text\n__comment__0=5\n", "5\n");
    row("not ASCII", "# \xd1\x82\xd0\xb5\xd1\x81\xd1\x82\nA=\xc3\xa9\n",
        "A=\xc3\xa9\n# \xd1\x82\xd0\xb5\xd1\x81\xd1\x82\n");
}

void TestConfigParser::filesBeforeAndAfter()
{
    QFETCH(const QByteArray, before);
    QFETCH(const QByteArray, after);
    TextFile::write(name_, before);
    ConfigParser(name_).sync();
    QCOMPARE(TextFile::content(name_), after);
    QCOMPARE(TextFile::names(), QStringList{name_});
}

void TestConfigParser::values_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("value");
    const auto row = [](const char *name, const char *file, const char *key, const char *value) {
        QTest::newRow(name) << QByteArray(file) << QString::fromLatin1(key)
                            << QString::fromLatin1(value);
    };

    row("plain", "A=1\n", "A", "1");
    row("blanks", "A   =  1\n", "A", "1");
    row("two signs", "A = b = c\n", "A", "b = c");
    row("later duplicate", "A=1\nA=2\n", "A", "2");
    row("leading blanks", "  A=1\n", "  A", "1");
    row("tabs", "A\t=\t1\n", "A\t", "\t1");
    row("first comment", "A=1\n\n# text\n", "__comment__0", "");
    row("second comment", "A=1\n\n# text\n", "__comment__1", "# text");
    row("a comment's setting", "#A=1\n", "A", "");
    row("no final line end", "A=1\nB=2", "B", "2");
    row("CR LF", "A=1\r\nB=2\r\n", "A", "1");
}

void TestConfigParser::values()
{
    QFETCH(const QByteArray, file);
    QFETCH(const QString, key);
    QFETCH(const QString, value);
    TextFile::write(name_, file);
    ConfigParser parser(name_);
    QCOMPARE(parser[key], value);
}

void TestConfigParser::changesOneSetting()
{
    TextFile::write(name_, "# eth0\nONBOOT = yes\nIPADDR=10.0.0.1\n");
    ConfigParser parser(name_);
    parser[QStringLiteral("IPADDR")] = QStringLiteral("10.0.0.2");
    parser.sync();
    QCOMPARE(TextFile::content(name_), QByteArray("IPADDR=10.0.0.2\nONBOOT=yes\n# eth0\n"));
    // The parser goes on with what it has.
    parser[QStringLiteral("GATEWAY")] = QStringLiteral("10.0.0.9");
    parser.sync();
    QCOMPARE(TextFile::content(name_),
             QByteArray("GATEWAY=10.0.0.9\nIPADDR=10.0.0.2\nONBOOT=yes\n# eth0\n"));
}

void TestConfigParser::readingAddsAnEntry()
{
    TextFile::write(name_, "B=1\n");
    ConfigParser parser(name_);
    QVERIFY(parser[QStringLiteral("A")].isEmpty());
    parser.sync();
    QCOMPARE(TextFile::content(name_), QByteArray("A=\nB=1\n"));
}

void TestConfigParser::missingFile()
{
    ConfigParser parser(name_);
    QVERIFY(parser[QStringLiteral("A")].isEmpty());
    QVERIFY(TextFile::names().isEmpty());
    parser.sync();
    QCOMPARE(TextFile::content(name_), QByteArray("A=\n"));
}

void TestConfigParser::nothingIsWrittenBeforeSync()
{
    TextFile::write(name_, "A = 1");
    {
        ConfigParser parser(name_);
        parser[QStringLiteral("A")] = QStringLiteral("2");
    }
    QCOMPARE(TextFile::content(name_), QByteArray("A = 1"));
}

STALLO_TEST_MAIN(TestConfigParser)
#include "tst_configparser.moc"
