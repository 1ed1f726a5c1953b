// SPDX-License-Identifier: MIT
#include "tests/layers/sizerules.h"
#include "tests/support/testmain.h"

namespace
{

QString lines(int count, const char *line = "    work();\n")
{
    return QString::fromLatin1(line).repeated(count);
}

// A function of so many lines.
QString function(int length, const char *head = "void work()\n{\n")
{
    const QString begin = QString::fromLatin1(head);
    return begin + lines(length - begin.count(QLatin1Char('\n')) - 1) + QStringLiteral("}\n");
}

} // namespace

class TestSizes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tree();
    void rules_data();
    void rules();
};

void TestSizes::tree()
{
    const QString root = QStringLiteral(STALLO_SOURCE_DIR);
    const QVector<SourceFile> files = SourceTree::read(
        root, SourceTree::foldersWithSources(root) + QStringList{QStringLiteral("tests")},
        {QStringLiteral("*.h"), QStringLiteral("*.cpp")});
    QVERIFY(files.size() > 20);
    const QStringList violations = SizeRules::violations(files);
    QVERIFY2(violations.isEmpty(), qPrintable(violations.join(QLatin1Char('\n'))));
}

void TestSizes::rules_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("problem");

    QTest::newRow("empty file") << QString() << QString();
    QTest::newRow("file of 500") << lines(500) << QString();
    QTest::newRow("file of 501") << lines(501) << QStringLiteral("x.cpp: 501 lines");
    QTest::newRow("file of 501, the last one without an end")
        << lines(501).chopped(1) << QStringLiteral("x.cpp: 501 lines");
    QTest::newRow("function of 60") << function(60) << QString();
    QTest::newRow("function of 61")
        << function(61) << QStringLiteral("x.cpp:1: a function of 61 lines");
    QTest::newRow("two functions of 40")
        << function(40) + QLatin1Char('\n') + function(40) << QString();
    QTest::newRow("the second one too long") << function(40) + QLatin1Char('\n') + function(70)
                                             << QStringLiteral("x.cpp:42: a function of 70 lines");
    QTest::newRow("a head of several lines")
        << function(61, "Thing::Thing()\n    : a(1)\n    , b(2)\n{\n")
        << QStringLiteral("x.cpp:1: a function of 61 lines");
    QTest::newRow("blocks inside")
        << function(61, "void work()\n{\n    if (a) {\n    }\n\n    for (;;) {\n    }\n")
        << QStringLiteral("x.cpp:1: a function of 61 lines");
    QTest::newRow("a function right behind a comment")
        << function(62, "// Work.\nvoid work()\n{\n")
        << QStringLiteral("x.cpp:2: a function of 61 lines");
    QTest::newRow("a class") << QStringLiteral("class Thing\n{\n") + lines(100) +
                                    QStringLiteral("};\n")
                             << QString();
    QTest::newRow("a namespace of many functions")
        << QStringLiteral("namespace\n{\n\n") + function(40) + QLatin1Char('\n') + function(40) +
               QStringLiteral("\n} // namespace\n")
        << QString();
    QTest::newRow("a function in a namespace")
        << QStringLiteral("namespace thing\n{\n\n") + function(61) +
               QStringLiteral("\n} // namespace thing\n")
        << QStringLiteral("x.cpp:4: a function of 61 lines");
}

void TestSizes::rules()
{
    QFETCH(QString, text);
    QFETCH(QString, problem);
    const QStringList expected = problem.isEmpty() ? QStringList() : QStringList{problem};
    QCOMPARE(SizeRules::violations({{QStringLiteral("x.cpp"), text}}), expected);
}

STALLO_TEST_MAIN(TestSizes)
#include "tst_sizes.moc"
