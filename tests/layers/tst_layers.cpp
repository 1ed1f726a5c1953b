// SPDX-License-Identifier: MIT
#include "tests/layers/layerrules.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QFile>

namespace
{

const QStringList patterns{QStringLiteral("*.h"), QStringLiteral("*.cpp"), QStringLiteral("*.ui")};

QString root()
{
    return QStringLiteral(STALLO_SOURCE_DIR);
}

LayerRules committedRules()
{
    QFile table(root() + QStringLiteral("/tests/layers/floors.txt"));
    if (!table.open(QIODevice::ReadOnly)) {
        qFatal("cannot read the table of floors");
    }
    return LayerRules(QString::fromUtf8(table.readAll()));
}

} // namespace

class TestLayers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tree();
    void everyFolderIsChecked();
    void rules_data();
    void rules();
    void brokenTable_data();
    void brokenTable();
};

void TestLayers::tree()
{
    const LayerRules rules = committedRules();
    const QVector<SourceFile> files = SourceTree::read(root(), rules.folders(), patterns);
    QVERIFY(files.size() > 10);
    const QStringList violations = rules.violations(files);
    QVERIFY2(violations.isEmpty(), qPrintable(violations.join(QLatin1Char('\n'))));
}

// A new folder must not escape by not being listed.
void TestLayers::everyFolderIsChecked()
{
    const QStringList folders = committedRules().folders();
    QStringList unchecked;
    for (const QString &folder : SourceTree::foldersWithSources(root())) {
        if (!folders.contains(folder) && folder != QLatin1String("tests") &&
            folder != QLatin1String("bench") && folder != QLatin1String("fuzz")) {
            unchecked.append(folder);
        }
    }
    QCOMPARE(unchecked, QStringList());
}

void TestLayers::rules_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("problem");
    const auto row = [](const char *name, const char *path, const char *text, const char *problem) {
        QTest::newRow(name) << QString::fromLatin1(path) << QString::fromLatin1(text)
                            << QString::fromLatin1(problem);
    };

    row("down", "b/middle.h", "#pragma once\n#include \"a/low.h\"\n", "");
    row("its own header", "b/middle.cpp", "#include \"b/middle.h\"\n", "");
    row("the toolkit", "a/low.cpp", "#include <QString>\n#include <sys/types.h>\n", "");
    row("its own form", "b/middle.cpp", "#include \"ui_middle.h\"\n", "");
    row("generated code", "b/middle.cpp", "#include \"middle.moc\"\n", "");
    row("a word in a comment", "a/low.h", "// as #include \"b/middle.h\" would\n", "");
    row("a form with a widget from below", "b/middle.ui", "<header>a/low.h</header>", "");

    row("up", "a/low.h", "#include \"b/middle.h\"\n", "stands on floor 2, not below 1");
    row("up, behind other lines", "a/low.cpp",
        "#include \"a/low.h\"\n\n  #  include \"b/middle.h\"\n", "stands on floor 2, not below 1");
    row("the same floor", "b/middle.h", "#include \"b/beside.h\"\n",
        "stands on floor 2, not below 2");
    row("a form with a widget from above", "a/low.ui",
        "<header location=\"global\">b/middle.h</header>", "stands on floor 2, not below 1");
    row("another one's form", "b/middle.cpp", "#include \"ui_beside.h\"\n",
        "is the form of another class");
    row("not from the root", "b/middle.h", "#include \"beside.h\"\n",
        "is not included from the root");
    row("by a way up", "b/middle.h", "#include \"../a/low.h\"\n", "is not included from the root");
    row("no folder of rooms", "b/middle.h", "#include \"tests/x.h\"\n",
        "is not included from the root");
    row("in angle brackets", "b/middle.h", "#include <a/low.h>\n", "is ours and belongs in quotes");
    row("a header that is not listed", "b/middle.h", "#include \"a/new.h\"\n", "has no floor");
    row("a room that is not listed", "a/new.h", "", "the room has no floor");
    row("a room in a folder below", "a/more/low.h", "", "the room has no floor");
}

void TestLayers::rules()
{
    QFETCH(QString, path);
    QFETCH(QString, text);
    QFETCH(QString, problem);
    const LayerRules rules(QStringLiteral("# rooms\na/low 1\nb/middle 2 # of two\nb/beside  2\n"));
    const QStringList violations = rules.violations({{path, text}});
    QCOMPARE(violations.size(), problem.isEmpty() ? 0 : 1);
    if (!problem.isEmpty()) {
        QVERIFY2(violations.first().endsWith(problem), qPrintable(violations.first()));
    }
}

void TestLayers::brokenTable_data()
{
    QTest::addColumn<QString>("table");
    QTest::addColumn<QString>("mistake");

    QTest::newRow("listed twice") << QStringLiteral("a/low 1\na/low 2")
                                  << QStringLiteral("a/low is listed twice");
    QTest::newRow("no floor") << QStringLiteral("a/low")
                              << QStringLiteral("not a room and its floor: a/low");
    QTest::newRow("no folder") << QStringLiteral("low 1")
                               << QStringLiteral("not a room and its floor: low 1");
    QTest::newRow("two rooms") << QStringLiteral("a/low b/middle 1")
                               << QStringLiteral("not a room and its floor: a/low b/middle 1");
}

void TestLayers::brokenTable()
{
    QFETCH(QString, table);
    QFETCH(QString, mistake);
    QCOMPARE(LayerRules(table).violations({}), QStringList{mistake});
}

STALLO_TEST_MAIN(TestLayers)
#include "tst_layers.moc"
