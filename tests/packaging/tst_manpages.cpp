// SPDX-License-Identifier: MIT
#include "tests/packaging/toolrun.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QRegularExpression>

#include <algorithm>

namespace
{

// What the panel's own source compares arguments with.
const QStringList panelOptions = {QStringLiteral("--archive"), QStringLiteral("--online"),
                                  QStringLiteral("--sufferred")};

QStringList sortedOnce(QStringList list)
{
    list.removeDuplicates();
    list.sort();
    return list;
}

QStringList allMatches(const QString &text, const QString &pattern)
{
    const QRegularExpression expression(pattern, QRegularExpression::MultilineOption);
    QStringList result;
    for (auto found = expression.globalMatch(text); found.hasNext();) {
        result += found.next().captured(1);
    }
    return sortedOnce(result);
}

QString pagePath(const QString &folder, const QString &program)
{
    return sourceFile("packaging/man/") + folder + program + QStringLiteral(".1");
}

// The lines that head an entry (those behind .TP), as a reader sees them.
QString headsOf(const QString &page)
{
    const QStringList lines = page.split(QLatin1Char('\n'));
    QString result;
    for (int n = 0; n + 1 < lines.size(); ++n) {
        if (lines.at(n) == QLatin1String(".TP")) {
            QString head = lines.at(n + 1);
            head.remove(QRegularExpression(QStringLiteral("^\\.[A-Z]+ ")));
            head.replace(QLatin1String("\\-"), QLatin1String("-"));
            head.remove(QLatin1Char('"'));
            result += head.simplified() + QLatin1Char('\n');
        }
    }
    return result;
}

QStringList without(const QStringList &list, const QStringList &taken)
{
    QStringList result;
    std::copy_if(list.begin(), list.end(), std::back_inserter(result),
                 [&taken](const QString &each) { return !taken.contains(each); });
    return result;
}

QString deviceHelp()
{
    const ToolRun help = ToolRun::of(QStringLiteral(STALLO_DEVICE), {QStringLiteral("--help")});
    return help.code == 0 ? QString::fromUtf8(help.output) : QString();
}

// The first words of what "|" separates in the line of the help that begins so.
QStringList wordsOfHelp(const QString &beginning)
{
    QStringList result;
    const QStringList lines = deviceHelp().split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        if (line.startsWith(beginning)) {
            for (const QString &form : line.split(QStringLiteral(" | "))) {
                result += form.section(QLatin1Char(' '), 0, 0);
            }
        }
    }
    return sortedOnce(result);
}

QStringList optionsOf(const QString &program)
{
    if (program == QLatin1String("stallo")) {
        return panelOptions;
    }
    if (program == QLatin1String("stallo-device")) {
        return sortedOnce(allMatches(deviceHelp(), QStringLiteral("^  (?:-[a-z], )?(--[a-z-]+)")) +
                          allMatches(deviceHelp(), QStringLiteral("^  (-[a-z]), ")));
    }
    return {};
}

} // namespace

// The manual pages against the programs: every option, command and variable is named in every
// language, nothing else is, and the pages are clean.
class TestManPages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void panelOptionsAreThoseOfTheSource();
    void options_data() { pages(); }
    void options();
    void commandsAndFaults_data();
    void commandsAndFaults();
    void environment_data() { pages(); }
    void environment();
    void isClean_data() { pages(); }
    void isClean();

private:
    static void pages();
    static void holdsJust(const QStringList &named, const QStringList &expected);
};

void TestManPages::pages()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("program");
    for (const char *folder : {"", "ru/"}) {
        for (const char *program : {"stallo", "stallo-netsetup", "stallo-device"}) {
            QTest::addRow("%s%s", folder, program)
                << QString::fromLatin1(folder) << QString::fromLatin1(program);
        }
    }
}

void TestManPages::panelOptionsAreThoseOfTheSource()
{
    QCOMPARE(allMatches(textOf(sourceFile("app/startup.cpp")), QStringLiteral("\"(--[a-z-]+)\"")),
             panelOptions);
}

void TestManPages::options()
{
    QFETCH(QString, folder);
    QFETCH(QString, program);
    const QStringList expected = optionsOf(program);
    QVERIFY(!expected.isEmpty() || program == QLatin1String("stallo-netsetup"));
    const QString heads = headsOf(textOf(pagePath(folder, program)));
    const QStringList named = allMatches(heads, QStringLiteral("(?:^|[ ,])(--?[a-z][a-z-]*)"));
    holdsJust(named, expected);
}

void TestManPages::holdsJust(const QStringList &named, const QStringList &expected)
{
    QVERIFY2(without(expected, named).isEmpty(),
             qPrintable(QStringLiteral("not in the page: ") +
                        without(expected, named).join(QLatin1Char(' '))));
    QVERIFY2(without(named, expected).isEmpty(),
             qPrintable(QStringLiteral("not in the program: ") +
                        without(named, expected).join(QLatin1Char(' '))));
}

void TestManPages::commandsAndFaults_data()
{
    QTest::addColumn<QString>("folder");
    QTest::newRow("English") << QString();
    QTest::newRow("Russian") << QStringLiteral("ru/");
}

void TestManPages::commandsAndFaults()
{
    QFETCH(QString, folder);
    const QStringList commands = wordsOfHelp(QStringLiteral("push "));
    const QStringList faults = wordsOfHelp(QStringLiteral("close-on-accept "));
    QVERIFY(commands.size() > 10 && faults.size() > 10);
    const QString heads = headsOf(textOf(pagePath(folder, QStringLiteral("stallo-device"))));
    const QStringList named = allMatches(heads, QStringLiteral("^([a-z][a-z-]*)"));
    const QStringList expected = sortedOnce(commands + faults);
    holdsJust(named, expected);
}

void TestManPages::environment()
{
    QFETCH(QString, folder);
    QFETCH(QString, program);
    const QString heads = headsOf(textOf(pagePath(folder, program)));
    QStringList variables = {QStringLiteral("LC_ALL"), QStringLiteral("LANG")};
    if (program == QLatin1String("stallo")) {
        const QDir sources(sourceFile("app"));
        for (const QString &name : sources.entryList({QStringLiteral("*.cpp")})) {
            variables += allMatches(textOf(sources.filePath(name)),
                                    QStringLiteral("(?:getenv|qEnvironmentVariable)\\(\"(\\w+)\""));
        }
        QVERIFY(variables.contains(QStringLiteral("STALLO_SCREENSHOTS")));
    }
    for (const QString &variable : qAsConst(variables)) {
        QVERIFY2(heads.contains(variable), qPrintable(variable));
    }
}

void TestManPages::isClean()
{
    QFETCH(QString, folder);
    QFETCH(QString, program);
    const ToolRun groff =
        ToolRun::of(QStringLiteral("groff"),
                    {QStringLiteral("-ww"), QStringLiteral("-z"), QStringLiteral("-k"),
                     QStringLiteral("-man"), QStringLiteral("-Tutf8"), pagePath(folder, program)});
    QCOMPARE(groff.errors, QByteArray());
    QCOMPARE(groff.code, 0);
}

STALLO_TEST_MAIN(TestManPages)
#include "tst_manpages.moc"
