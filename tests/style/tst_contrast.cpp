// SPDX-License-Identifier: MIT
#include "style/contrast.h"

#include "tests/support/testmain.h"

class TestContrast : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ratio_data();
    void ratio();
    void readable_data();
    void readable();
    void leavesReadableAlone();
    void fallsBackToTheEnd();
};

void TestContrast::ratio_data()
{
    QTest::addColumn<QColor>("one");
    QTest::addColumn<QColor>("other");
    QTest::addColumn<double>("expected");
    QTest::newRow("black on white") << QColor(Qt::black) << QColor(Qt::white) << 21.0;
    QTest::newRow("white on black") << QColor(Qt::white) << QColor(Qt::black) << 21.0;
    QTest::newRow("same") << QColor(10, 90, 200) << QColor(10, 90, 200) << 1.0;
    QTest::newRow("red on white") << QColor(Qt::red) << QColor(Qt::white) << 3.998;
    QTest::newRow("grey on white") << QColor(118, 118, 118) << QColor(Qt::white) << 4.542;
}

void TestContrast::ratio()
{
    QFETCH(const QColor, one);
    QFETCH(const QColor, other);
    QFETCH(const double, expected);
    QVERIFY(qAbs(Contrast::ratio(one, other) - expected) < 0.002);
}

void TestContrast::readable_data()
{
    QTest::addColumn<QColor>("text");
    QTest::addColumn<QColor>("ground");
    QTest::newRow("red on base") << QColor(Qt::red) << Metrics::base;
    QTest::newRow("red on highlight") << QColor(Qt::red) << Metrics::highlight;
    QTest::newRow("blue on base") << QColor(Qt::blue) << Metrics::base;
    QTest::newRow("dark green on window") << QColor(Qt::darkGreen) << Metrics::window;
    QTest::newRow("red on white") << QColor(Qt::red) << QColor(Qt::white);
    QTest::newRow("yellow on white") << QColor(Qt::yellow) << QColor(Qt::white);
}

void TestContrast::readable()
{
    QFETCH(const QColor, text);
    QFETCH(const QColor, ground);
    const QColor result = Contrast::readable(text, ground);
    QVERIFY(Contrast::ratio(result, ground) >= Metrics::textContrast);
    // No further than needed, and still the same colour.
    QVERIFY(Contrast::ratio(result, ground) < Metrics::textContrast + 0.4);
    const int turn = qAbs(result.hslHue() - text.hslHue());
    QVERIFY2(qMin(turn, 360 - turn) <= 3, qPrintable(result.name()));
}

void TestContrast::leavesReadableAlone()
{
    const QColor text(200, 220, 30);
    QCOMPARE(Contrast::readable(text, Qt::black), text);
}

void TestContrast::fallsBackToTheEnd()
{
    // On a middle grey neither white nor black reaches the ratio.
    const QColor grey(118, 118, 118);
    QCOMPARE(Contrast::readable(Qt::red, grey), QColor(Qt::black));
}

STALLO_TEST_MAIN(TestContrast)
#include "tst_contrast.moc"
