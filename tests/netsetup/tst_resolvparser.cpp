// SPDX-License-Identifier: MIT
#include "netsetup/resolvparser.h"

#include "tests/netsetup/textfile.h"
#include "tests/support/testmain.h"

#include <QTemporaryDir>

#include <memory>

class TestResolvParser : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void filesBeforeAndAfter_data();
    void filesBeforeAndAfter();
    void serversInOrder();
    void changesOneServer();
    void readingAddsAnEntry();

private:
    QString value(ResolvParser &parser, const char *key) const
    {
        return parser[QString::fromLatin1(key)];
    }

    std::unique_ptr<QTemporaryDir> folder_;
    const QString name_ = QStringLiteral("resolv.cfg");
};

void TestResolvParser::init()
{
    QDir::setCurrent(QDir::tempPath());
    folder_ = std::make_unique<QTemporaryDir>();
    QVERIFY(QDir::setCurrent(folder_->path()));
}

void TestResolvParser::filesBeforeAndAfter_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    const auto row = [](const char *name, const char *before, const char *after) {
        QTest::newRow(name) << QByteArray(before) << QByteArray(after);
    };

    row("empty", "", "");
    row("one server", "nameserver 10.0.0.1\n", "nameserver 10.0.0.1\n");
    row("no final line end", "nameserver 10.0.0.1", "nameserver 10.0.0.1\n");
    row("CR LF", "search lan\r\nnameserver 10.0.0.1\r\n", "search lan\nnameserver 10.0.0.1\n");
    row("tab", "nameserver\t10.0.0.1\n", "nameserver 10.0.0.1\n");
    row("many blanks", "nameserver \t  10.0.0.1\n", "nameserver 10.0.0.1\n");
    row("blanks behind", "nameserver 10.0.0.1  \n", "nameserver 10.0.0.1  \n");
    row("no address", "nameserver \n", "nameserver \n");
    row("three servers", "nameserver 1\nnameserver 2\nnameserver 3\n",
        "nameserver 1\nnameserver 2\nnameserver 3\n");
    row("the same twice", "nameserver 1\nnameserver 1\n", "nameserver 1\nnameserver 1\n");
    row("eleven servers",
        "nameserver 0\nnameserver 1\nnameserver 2\nnameserver 3\nnameserver 4\nnameserver 5\n"
        "nameserver 6\nnameserver 7\nnameserver 8\nnameserver 9\nnameserver 10\n",
        "nameserver 0\nnameserver 1\nnameserver 10\nnameserver 2\nnameserver 3\nnameserver 4\n"
        "nameserver 5\nnameserver 6\nnameserver 7\nnameserver 8\nnameserver 9\n");
    row("other lines come first", "nameserver 1\n# text\n\noptions timeout:1\n",
        "# text\n\noptions timeout:1\nnameserver 1\n");
    row("a setting is no setting here", "A = 1\nnameserver 1\n", "A = 1\nnameserver 1\n");
    row("comment 10 before comment 2", "#0\n#1\n#2\n#3\n#4\n#5\n#6\n#7\n#8\n#9\n#10\n",
        "#0\n#1\n#10\n#2\n#3\n#4\n#5\n#6\n#7\n#8\n#9\n");

    // What is no server, and so comes before them.
    row("indented", "nameserver 1\n nameserver 2\n", " nameserver 2\nnameserver 1\n");
    row("in a comment", "nameserver 1\n#nameserver 2\n", "#nameserver 2\nnameserver 1\n");
    row("the word alone", "nameserver 1\nnameserver\n", "nameserver\nnameserver 1\n");
    row("a longer word", "nameserver 1\nnameservers 2\n", "nameservers 2\nnameserver 1\n");
    row("in capitals", "nameserver 1\nNAMESERVER 2\n", "NAMESERVER 2\nnameserver 1\n");
}

void TestResolvParser::filesBeforeAndAfter()
{
    QFETCH(const QByteArray, before);
    QFETCH(const QByteArray, after);
    TextFile::write(name_, before);
    ResolvParser(name_).sync();
    QCOMPARE(TextFile::content(name_), after);
    QCOMPARE(TextFile::names(), QStringList{name_});
}

void TestResolvParser::serversInOrder()
{
    TextFile::write(name_, "# text\nnameserver 10.0.0.1\nsearch lan\nnameserver\t10.0.0.2\n"
                           "nameserver 10.0.0.3\n");
    ResolvParser parser(name_);
    QCOMPARE(value(parser, "nameserver0"), QStringLiteral("10.0.0.1"));
    QCOMPARE(value(parser, "nameserver1"), QStringLiteral("10.0.0.2"));
    QCOMPARE(value(parser, "nameserver2"), QStringLiteral("10.0.0.3"));
    QCOMPARE(value(parser, "__comment__0"), QStringLiteral("# text"));
    QCOMPARE(value(parser, "__comment__1"), QStringLiteral("search lan"));
}

void TestResolvParser::changesOneServer()
{
    TextFile::write(name_, "nameserver 1\nnameserver 2\nnameserver 3\n");
    ResolvParser parser(name_);
    parser[QStringLiteral("nameserver1")] = QStringLiteral("9");
    QCOMPARE(TextFile::content(name_), QByteArray("nameserver 1\nnameserver 2\nnameserver 3\n"));
    parser.sync();
    QCOMPARE(TextFile::content(name_), QByteArray("nameserver 1\nnameserver 9\nnameserver 3\n"));
}

void TestResolvParser::readingAddsAnEntry()
{
    ResolvParser parser(name_);
    QVERIFY(value(parser, "nameserver0").isEmpty());
    QVERIFY(value(parser, "nameserver1").isEmpty());
    QVERIFY(TextFile::names().isEmpty());
    parser.sync();
    QCOMPARE(TextFile::content(name_), QByteArray("nameserver \nnameserver \n"));
}

STALLO_TEST_MAIN(TestResolvParser)
#include "tst_resolvparser.moc"
