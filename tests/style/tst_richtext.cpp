// SPDX-License-Identifier: MIT
#include "style/richtext.h"

#include "tests/support/testmain.h"

class TestRichText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isSimple_data();
    void isSimple();
};

void TestRichText::isSimple_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("simple");
    const auto row = [](const char *name, const QString &text, bool simple) {
        QTest::newRow(name) << text << simple;
    };
    const auto repeated = [](const char *text, int times) {
        return QString::fromLatin1(text).repeated(times);
    };
    row("none", QString(), true);
    row("a message", QStringLiteral("The file <b>cannot</b> be read<br>at all"), true);
    row("a device's title",
        QStringLiteral("<center><font color='white' size='+2'>On-Line - </font><font color='White' "
                       "size='+2'><I>[VASK-00012345 / 10.0.0.3]</I></font></center>"),
        true);
    row("a colour", QStringLiteral("<font color=\"#404040\">grey</font>"), true);
    row("a small table", QStringLiteral("<table border=1><tr><td>a</td></tr></table>"), true);
    row("200 tags", repeated("<b>", 200), true);
    row("4096 characters", QString(4096, QLatin1Char('x')), true);

    row("201 tags", repeated("<b>", 201), false);
    row("4097 characters", QString(4097, QLatin1Char('x')), false);
    row("many tables", repeated("<TABLE><tr><td>", 7), false);
    row("a cell over others", QStringLiteral("<table><td colSpan=2>a"), false);
    row("a cell below others", QStringLiteral("<table><td rowspan=2>a"), false);
    row("a broad border", QStringLiteral("<table border=99999>"), false);
    row("a quoted one", QStringLiteral("<table border = \"+99999\">"), false);
    row("digits that are written as others", QStringLiteral("<table border=&#57;9999>"), false);
    row("a style", QStringLiteral("<p style='border: solid 99999px'>"), false);
}

void TestRichText::isSimple()
{
    QFETCH(const QString, text);
    QFETCH(const bool, simple);
    QCOMPARE(RichText::isSimple(text), simple);
}

STALLO_TEST_MAIN(TestRichText)
#include "tst_richtext.moc"
