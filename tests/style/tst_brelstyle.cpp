// SPDX-License-Identifier: MIT
#include "style/brelstyle.h"

#include "style/contrast.h"
#include "style/metrics.h"
#include "tests/support/testmain.h"

#include <QDialog>
#include <QPainter>
#include <QPushButton>
#include <QSpinBox>
#include <QStyleOption>
#include <QTableWidget>
#include <QWheelEvent>

#include <memory>

Q_DECLARE_METATYPE(QPalette::ColorRole)

static_assert(Metrics::textContrast >= 7.0 && Metrics::disabledContrast >= 4.5,
              "texts are read at arm's length");
static_assert(Metrics::smallestFontPoints >= 11.0 &&
                  Metrics::fontPoints >= Metrics::smallestFontPoints,
              "texts are read at arm's length");

namespace
{

QImage drawn(QWidget &widget)
{
    return widget.grab().toImage().convertToFormat(QImage::Format_RGB32);
}

// The colour in a part of a picture that stands out most from its ground.
QColor mostDistinct(const QImage &image, const QRect &part, const QColor &ground)
{
    QColor found = ground;
    for (int y = part.top(); y <= part.bottom(); ++y) {
        for (int x = part.left(); x <= part.right(); ++x) {
            const QColor here = image.pixelColor(x, y);
            if (Contrast::ratio(here, ground) > Contrast::ratio(found, ground)) {
                found = here;
            }
        }
    }
    return found;
}

} // namespace

class TestBrelStyle : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void paletteContrast_data();
    void paletteContrast();
    void statesContrast();
    void itemContrast_data();
    void itemContrast();
    void uncolouredItemsKeepTheirColour();
    void statesDiffer();
    void focusFrame_data();
    void focusFrame();
    void smallFontsAreRaised();
    void wheelAndKeysStay();
    void dialogsHaveAnEdge();
};

void TestBrelStyle::initTestCase()
{
    auto *style = new BrelStyle;
    QApplication::setStyle(style);
    QApplication::setPalette(style->standardPalette());
}

void TestBrelStyle::paletteContrast_data()
{
    QTest::addColumn<QPalette::ColorRole>("text");
    QTest::addColumn<QPalette::ColorRole>("ground");
    const auto row = [](const char *name, QPalette::ColorRole text, QPalette::ColorRole ground) {
        QTest::newRow(name) << text << ground;
    };
    row("window", QPalette::WindowText, QPalette::Window);
    row("text on window", QPalette::Text, QPalette::Window);
    row("base", QPalette::Text, QPalette::Base);
    row("alternate base", QPalette::Text, QPalette::AlternateBase);
    row("button", QPalette::ButtonText, QPalette::Button);
    row("text on button", QPalette::Text, QPalette::Button);
    row("button text on base", QPalette::ButtonText, QPalette::Base);
    row("highlight", QPalette::HighlightedText, QPalette::Highlight);
    row("text on highlight", QPalette::Text, QPalette::Highlight);
    row("tool tip", QPalette::ToolTipText, QPalette::ToolTipBase);
    row("placeholder", QPalette::PlaceholderText, QPalette::Base);
    row("bright", QPalette::BrightText, QPalette::Window);
    row("link", QPalette::Link, QPalette::Base);
    row("link on window", QPalette::Link, QPalette::Window);
    row("visited", QPalette::LinkVisited, QPalette::Base);
    row("visited on window", QPalette::LinkVisited, QPalette::Window);
}

void TestBrelStyle::paletteContrast()
{
    QFETCH(const QPalette::ColorRole, text);
    QFETCH(const QPalette::ColorRole, ground);
    const QPalette palette = BrelStyle().standardPalette();
    for (const QPalette::ColorGroup group :
         {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        const double wanted =
            group == QPalette::Disabled ? Metrics::disabledContrast : Metrics::textContrast;
        const double ratio =
            Contrast::ratio(palette.color(group, text), palette.color(group, ground));
        QVERIFY2(ratio >= wanted, qPrintable(QStringLiteral("group %1: %2").arg(group).arg(ratio)));
    }
}

void TestBrelStyle::statesContrast()
{
    for (const QColor &ground :
         {Metrics::pressed, Metrics::buttonHover, Metrics::highlight, Metrics::bar}) {
        QVERIFY(Contrast::ratio(Metrics::text, ground) >= Metrics::textContrast);
    }
    // What tells a control from the window it stands on.
    QVERIFY(Contrast::ratio(Metrics::line, Metrics::window) >= Metrics::partContrast);
    QVERIFY(Contrast::ratio(Metrics::accent, Metrics::button) >= Metrics::partContrast);
    QVERIFY(Contrast::ratio(Metrics::line, Metrics::alternateBase) >= Metrics::partContrast);
}

void TestBrelStyle::itemContrast_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<bool>("selected");
    QTest::addColumn<QColor>("background");
    QTest::addColumn<QColor>("foreground");
    const QColor none;
    const QColor red(Qt::red);
    QTest::newRow("red on base") << 0 << false << none << red;
    QTest::newRow("red on alternate base") << 1 << false << none << red;
    QTest::newRow("red on selected") << 0 << true << none << red;
    QTest::newRow("blue on base") << 0 << false << none << QColor(Qt::blue);
    QTest::newRow("green on selected") << 1 << true << none << QColor(Qt::darkGreen);
    QTest::newRow("red on white") << 0 << false << QColor(Qt::white) << red;
    QTest::newRow("red on navy") << 0 << false << QColor(0, 0, 90) << red;
}

void TestBrelStyle::itemContrast()
{
    QFETCH(const int, row);
    QFETCH(const bool, selected);
    QFETCH(const QColor, background);
    QFETCH(const QColor, foreground);
    QTableWidget table(2, 1);
    table.setAlternatingRowColors(true);
    QFont font = table.font();
    font.setPointSize(20);
    font.setBold(true);
    font.setStyleStrategy(QFont::NoAntialias);
    auto *item = new QTableWidgetItem(QStringLiteral("III"));
    item->setForeground(foreground);
    item->setFont(font);
    if (background.isValid()) {
        item->setBackground(background);
    }
    table.setItem(row, 0, item);
    item->setSelected(selected);
    table.show();

    const QRect cell = table.visualItemRect(item).adjusted(2, 2, -2, -2);
    const QImage image = drawn(*table.viewport());
    const QColor ground = image.pixelColor(cell.right(), cell.bottom());
    const QColor text = mostDistinct(image, cell, ground);
    QVERIFY2(Contrast::ratio(text, ground) >= Metrics::textContrast,
             qPrintable(text.name() + QLatin1String(" on ") + ground.name()));
    const int turn = qAbs(text.hslHue() - foreground.hslHue());
    QVERIFY2(qMin(turn, 360 - turn) <= 3, qPrintable(text.name()));
    QVERIFY(text.hslSaturation() > 100);
}

void TestBrelStyle::uncolouredItemsKeepTheirColour()
{
    QTableWidget table(1, 1);
    auto *item = new QTableWidgetItem(QStringLiteral("III"));
    QFont font = table.font();
    font.setPointSize(20);
    font.setStyleStrategy(QFont::NoAntialias);
    item->setFont(font);
    table.setItem(0, 0, item);
    table.show();
    const QRect cell = table.visualItemRect(item).adjusted(2, 2, -2, -2);
    QCOMPARE(mostDistinct(drawn(*table.viewport()), cell, Metrics::base), Metrics::text);
    item->setSelected(true);
    const QImage selected = drawn(*table.viewport());
    QCOMPARE(selected.pixelColor(cell.topRight()), Metrics::highlight);
    QCOMPARE(mostDistinct(selected, cell, Metrics::highlight), Metrics::brightText);
}

void TestBrelStyle::statesDiffer()
{
    QPushButton button(QStringLiteral("Save"));
    button.setCheckable(true);
    button.resize(button.sizeHint());
    const QImage usual = drawn(button);
    button.setDown(true);
    const QImage pressed = drawn(button);
    button.setDown(false);
    button.setChecked(true);
    const QImage checked = drawn(button);
    button.setChecked(false);
    button.setEnabled(false);
    const QImage disabled = drawn(button);
    button.setChecked(true);
    const QImage checkedDisabled = drawn(button);
    // By their grounds, not only by a line.
    const QPoint ground(Metrics::padding / 2 + 1, usual.height() / 2);
    const QRgb grounds[] = {usual.pixel(ground), pressed.pixel(ground), checked.pixel(ground),
                            disabled.pixel(ground)};
    for (int i = 0; i < 4; ++i) {
        for (int j = 0; j < i; ++j) {
            QVERIFY2(grounds[i] != grounds[j], qPrintable(QStringLiteral("%1 %2").arg(i).arg(j)));
        }
    }
    QVERIFY(checkedDisabled != checked);
}

void TestBrelStyle::focusFrame_data()
{
    QTest::addColumn<bool>("byKeyboard");
    QTest::newRow("keyboard") << true;
    QTest::newRow("finger") << false;
}

void TestBrelStyle::focusFrame()
{
    QFETCH(const bool, byKeyboard);
    QImage image(80, 50, QImage::Format_RGB32);
    image.fill(Metrics::button);
    QPainter painter(&image);
    QStyleOptionFocusRect option;
    option.rect = image.rect();
    option.state.setFlag(QStyle::State_KeyboardFocusChange, byKeyboard);
    QApplication::style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter);
    painter.end();
    QCOMPARE(image.pixelColor(40, 0), byKeyboard ? Metrics::accent : Metrics::button);
    QCOMPARE(image.pixelColor(40, 1), byKeyboard ? Metrics::accent : Metrics::button);
    QCOMPARE(image.pixelColor(40, 25), Metrics::button);
}

void TestBrelStyle::smallFontsAreRaised()
{
    const QFont former = QApplication::font();
    QApplication::setStyle(QStringLiteral("Fusion"));
    QFont small = former;
    small.setPointSize(7);
    QApplication::setFont(small);
    QApplication::setFont(small, "QMenu");
    initTestCase();
    QVERIFY(QApplication::font().pointSizeF() >= Metrics::smallestFontPoints);
    QVERIFY(QApplication::font("QMenu").pointSizeF() >= Metrics::smallestFontPoints);

    // A user's own larger font stays.
    QApplication::setStyle(QStringLiteral("Fusion"));
    QFont large = former;
    large.setPointSize(17);
    QApplication::setFont(large);
    initTestCase();
    QCOMPARE(QApplication::font().pointSize(), 17);
    QApplication::setFont(former);
}

void TestBrelStyle::wheelAndKeysStay()
{
    QSpinBox spin;
    spin.setRange(0, 100);
    spin.setValue(50);
    spin.show();
    QVERIFY(QTest::qWaitForWindowActive(&spin));
    spin.setFocus();
    QTest::keyClick(&spin, Qt::Key_Up);
    QCOMPARE(spin.value(), 51);
    const QPointF centre = spin.rect().center();
    QWheelEvent wheel(centre, spin.mapToGlobal(centre.toPoint()), QPoint(), QPoint(0, -120),
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&spin, &wheel);
    QCOMPARE(spin.value(), 50);
}

void TestBrelStyle::dialogsHaveAnEdge()
{
    QDialog dialog;
    dialog.resize(200, 100);
    const QImage image = drawn(dialog);
    for (const QPoint &place : {QPoint(0, 50), QPoint(199, 50), QPoint(100, 0), QPoint(100, 99)}) {
        QCOMPARE(image.pixelColor(place), Metrics::line);
    }
    QCOMPARE(image.pixelColor(100, 50), QApplication::palette().color(QPalette::Window));
}

STALLO_TEST_MAIN(TestBrelStyle)
#include "tst_brelstyle.moc"
