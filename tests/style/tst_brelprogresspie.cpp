// SPDX-License-Identifier: MIT
#include "style/brelprogresspie.h"

#include "style/brelstyle.h"
#include "style/metrics.h"
#include "tests/support/testmain.h"

#include <QAccessible>
#include <QtMath>

#include <cmath>

class TestBrelProgressPie : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void clamps_data();
    void clamps();
    void fillsClockwiseFromTheTop();
    void tellsItsValue();
    void suffixIsDrawn();
    void survivesEmptySizes();
};

namespace
{

QImage drawn(BrelProgressPie &pie)
{
    pie.setPalette(BrelStyle().standardPalette());
    return pie.grab().toImage();
}

// The colour of the ring at an hour of the clock.
QColor atHour(const QImage &image, double hour)
{
    const double angle = hour / 12.0 * 2.0 * M_PI;
    const double reach = image.width() / 2.0 - image.width() / 20.0 - 1;
    const double half = image.width() / 2.0;
    return image.pixelColor(static_cast<int>(half + reach * std::sin(angle)),
                            static_cast<int>(half - reach * std::cos(angle)));
}

} // namespace

void TestBrelProgressPie::clamps_data()
{
    QTest::addColumn<int>("given");
    QTest::addColumn<int>("kept");
    QTest::newRow("zero") << 0 << 0;
    QTest::newRow("middle") << 42 << 42;
    QTest::newRow("full") << 100 << 100;
    QTest::newRow("above") << 101 << 100;
    QTest::newRow("far above") << 2147483647 << 100;
    QTest::newRow("below") << -1 << 0;
}

void TestBrelProgressPie::clamps()
{
    QFETCH(const int, given);
    QFETCH(const int, kept);
    BrelProgressPie pie(nullptr);
    pie.setProgress(given);
    QCOMPARE(pie.progress(), kept);
}

void TestBrelProgressPie::fillsClockwiseFromTheTop()
{
    BrelProgressPie pie(nullptr);
    pie.resize(200, 200);
    pie.setProgress(50);
    const QImage half = drawn(pie);
    QCOMPARE(atHour(half, 1), Metrics::accent);
    QCOMPARE(atHour(half, 5), Metrics::accent);
    QCOMPARE(atHour(half, 7), Metrics::quietLine);
    QCOMPARE(atHour(half, 11), Metrics::quietLine);
    pie.setProgress(0);
    QCOMPARE(atHour(drawn(pie), 1), Metrics::quietLine);
    pie.setProgress(100);
    QCOMPARE(atHour(drawn(pie), 11.9), Metrics::accent);
}

void TestBrelProgressPie::tellsItsValue()
{
    BrelProgressPie pie(nullptr);
    QCOMPARE(pie.accessibleName(), QStringLiteral("0%"));
    pie.setProgress(7);
    QCOMPARE(pie.accessibleName(), QStringLiteral("7%"));
    pie.setSuffix(QStringLiteral("photos"));
    QCOMPARE(pie.suffix(), QStringLiteral("photos"));
    QCOMPARE(pie.accessibleName(), QStringLiteral("7% photos"));
    QAccessibleInterface *spoken = QAccessible::queryAccessibleInterface(&pie);
    QCOMPARE(spoken->role(), QAccessible::ProgressBar);
    QCOMPARE(spoken->text(QAccessible::Name), QStringLiteral("Progress"));
    QCOMPARE(spoken->text(QAccessible::Value), QStringLiteral("7% photos"));
    QVERIFY(spoken->valueInterface() != nullptr);
    QCOMPARE(spoken->valueInterface()->currentValue(), QVariant(7));
    pie.setProgress(8);
    QCOMPARE(spoken->valueInterface()->currentValue(), QVariant(8));
    // Another widget is no progress bar.
    const QWidget other;
    QCOMPARE(QAccessible::queryAccessibleInterface(const_cast<QWidget *>(&other))->role(),
             QAccessible::Client);
}

void TestBrelProgressPie::suffixIsDrawn()
{
    BrelProgressPie pie(nullptr);
    pie.resize(200, 200);
    const QImage without = drawn(pie);
    pie.setSuffix(QStringLiteral("photos"));
    const QImage with = drawn(pie);
    QVERIFY(with != without);
    // Below the middle there is text now, and the ring is untouched by it.
    const QRect below(60, 118, 80, 30);
    QVERIFY(with.copy(below) != without.copy(below));
    QCOMPARE(with.copy(0, 0, 200, 20), without.copy(0, 0, 200, 20));
}

void TestBrelProgressPie::survivesEmptySizes()
{
    BrelProgressPie pie(nullptr);
    pie.setSuffix(QStringLiteral("a suffix far too long for so small a ring"));
    for (const QSize &size : {QSize(0, 0), QSize(1, 1), QSize(5, 300), QSize(12, 12)}) {
        pie.resize(size);
        QImage image(qMax(1, size.width()), qMax(1, size.height()), QImage::Format_RGB32);
        pie.render(&image);
        QCOMPARE(pie.size(), size);
    }
}

STALLO_TEST_MAIN(TestBrelProgressPie)
#include "tst_brelprogresspie.moc"
