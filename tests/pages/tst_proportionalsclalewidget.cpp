// SPDX-License-Identifier: MIT
#include "pages/proportionalsclalewidget.h"

#include "tests/support/testmain.h"

#include <QAccessible>
#include <QFontMetrics>
#include <QPainter>
#include <QVBoxLayout>

#include <cmath>
#include <memory>

namespace
{

// The colour of what a widget leaves unpainted.
const QColor untouched(Qt::magenta);

// What the widget paints itself, without the background that a window would give it.
QImage painted(QWidget &widget, const QRegion &region = QRegion())
{
    QImage image(widget.size().expandedTo(QSize(1, 1)), QImage::Format_RGB32);
    image.fill(untouched);
    widget.render(&image, region.boundingRect().topLeft(), region, QWidget::RenderFlags());
    return image;
}

// The smallest rectangle with all pixels that are as wanted.
template <typename Wanted>
QRect extent(const QImage &image, Wanted wanted)
{
    QRect found;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (wanted(QColor(image.pixel(x, y)))) {
                found |= QRect(x, y, 1, 1);
            }
        }
    }
    return found;
}

QRect extent(const QImage &image, const QColor &colour)
{
    return extent(image, [&colour](const QColor &pixel) { return pixel == colour; });
}

// The frame is a pattern of single red pixels; only the letters have four in a row.
QRect captionExtent(const QImage &image)
{
    const QRgb red = QColor(Qt::red).rgb();
    QRect found;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x + 4 <= image.width(); ++x) {
            if (image.pixel(x, y) == red && image.pixel(x + 1, y) == red &&
                image.pixel(x + 2, y) == red && image.pixel(x + 3, y) == red) {
                found |= QRect(x, y, 4, 1);
            }
        }
    }
    return found;
}

int brightestRed(const QImage &image, const QRect &part)
{
    int red = 0;
    for (int y = part.top(); y <= part.bottom(); ++y) {
        for (int x = part.left(); x <= part.right(); ++x) {
            red = std::max(red, qRed(image.pixel(x, y)));
        }
    }
    return red;
}

QPixmap photo(int width, int height, const QColor &colour = Qt::blue)
{
    QPixmap pixmap(width, height);
    pixmap.fill(colour);
    return pixmap;
}

QFont lineFont()
{
    QFont font = QApplication::font();
    font.setWeight(QFont::Bold);
    font.setPointSizeF(std::max(12.0, font.pointSizeF()));
    return font;
}

class PaintCounter : public QObject
{
public:
    int paints = 0;
    int layouts = 0;

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        paints += event->type() == QEvent::Paint ? 1 : 0;
        layouts += event->type() == QEvent::LayoutRequest ? 1 : 0;
        return false;
    }
};

} // namespace

class TestProportionalSclaleWidget : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void frame_data();
    void frame();
    void placeholder();
    void captionFits_data();
    void captionFits();
    void captionFont();
    void fontDoesNotDrift();
    void resizingSettles();
    void photo_data();
    void photo();
    void anotherPhotoOfTheSameSize();
    void linesBeginAtTheWidgetsTop_data();
    void linesBeginAtTheWidgetsTop();
    void secondLine();
    void oneListOfLines();
    void clear();
    void nothingToShow();
    void partIsPaintedAsPartOfTheWhole();
    void emptySizes_data();
    void emptySizes();
    void accessible();
};

void TestProportionalSclaleWidget::frame_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QRect>("frame");

    QTest::newRow("square") << QSize(400, 400) << QRect(0, 50, 400, 300);
    QTest::newRow("4:3") << QSize(400, 300) << QRect(0, 0, 400, 300);
    QTest::newRow("wide") << QSize(800, 300) << QRect(200, 0, 400, 300);
    QTest::newRow("high") << QSize(120, 500) << QRect(0, 205, 120, 90);
    QTest::newRow("rounded up") << QSize(333, 500) << QRect(0, 125, 333, 250);
    QTest::newRow("rounded down") << QSize(900, 100) << QRect(383, 0, 133, 100);
    QTest::newRow("no width") << QSize(0, 100) << QRect(0, 50, 0, 0);
}

void TestProportionalSclaleWidget::frame()
{
    QFETCH(QSize, size);
    QFETCH(QRect, frame);
    ProportionalSclaleWidget widget(QStringLiteral("No Photo"));
    QCOMPARE(widget.frame(), QRect());
    widget.resize(size);
    const QImage image = painted(widget);
    QCOMPARE(widget.frame().size(), frame.size());
    QVERIFY(frame.isEmpty() || widget.frame() == frame);
    QCOMPARE(extent(image, [](const QColor &pixel) { return pixel != untouched; }),
             frame.isEmpty() ? QRect() : frame);
}

void TestProportionalSclaleWidget::placeholder()
{
    ProportionalSclaleWidget widget(QStringLiteral("-"));
    widget.resize(400, 300);
    const QImage image = painted(widget);
    // Black pattern over red that darkens towards each edge.
    const int middle = brightestRed(image, QRect(185, 40, 30, 30));
    QVERIFY(middle > 40);
    QVERIFY(brightestRed(image, QRect(185, 2, 30, 8)) < middle / 2);
    QVERIFY(brightestRed(image, QRect(185, 290, 30, 8)) < middle / 2);
    QVERIFY(brightestRed(image, QRect(2, 135, 8, 30)) < middle / 2);
    QVERIFY(brightestRed(image, QRect(390, 135, 8, 30)) < middle / 2);
    int dark = 0;
    for (int y = 40; y < 70; ++y) {
        for (int x = 185; x < 215; ++x) {
            const QColor pixel(image.pixel(x, y));
            QCOMPARE(pixel.green(), 0);
            QCOMPARE(pixel.blue(), 0);
            dark += pixel.red() == 0 ? 1 : 0;
        }
    }
    QVERIFY(dark > 900 * 8 / 10);
    QVERIFY(dark < 900);
}

void TestProportionalSclaleWidget::captionFits_data()
{
    QTest::addColumn<QString>("caption");
    QTest::addColumn<QSize>("size");

    const QString waiting = QStringLiteral("Connecting to 192.168.100.200 ...");
    QTest::newRow("short") << QStringLiteral("No Data") << QSize(640, 480);
    QTest::newRow("long") << waiting << QSize(640, 480);
    QTest::newRow("long in a wide widget") << waiting << QSize(1200, 480);
    QTest::newRow("long in a high widget") << waiting << QSize(640, 900);
    QTest::newRow("large") << QStringLiteral("No Photo") << QSize(1920, 1080);
    QTest::newRow("one letter") << QStringLiteral("W") << QSize(400, 400);
}

void TestProportionalSclaleWidget::captionFits()
{
    QFETCH(QString, caption);
    QFETCH(QSize, size);
    // Set before and after the widget has its size, and after one that needed another font.
    ProportionalSclaleWidget before(caption);
    before.resize(size);
    ProportionalSclaleWidget after(QStringLiteral("X"));
    after.resize(size);
    painted(after);
    after.setEmptyText(caption);
    for (ProportionalSclaleWidget *widget : {&before, &after}) {
        const QRect letters = captionExtent(painted(*widget));
        const QRect frame = widget->frame();
        QVERIFY(!letters.isEmpty());
        QVERIFY(frame.adjusted(1, 1, -1, -1).contains(letters));
        QVERIFY(letters.width() > frame.width() * 3 / 4 || letters.height() > frame.height() / 2);
        QVERIFY(qAbs(letters.center().x() - frame.center().x()) < frame.width() / 20);
    }
    QCOMPARE(after.font(), before.font());
}

void TestProportionalSclaleWidget::captionFont()
{
    ProportionalSclaleWidget widget(QString(200, QLatin1Char('x')));
    widget.resize(100, 75);
    painted(widget);
    QCOMPARE(widget.font().pointSizeF(), 12.0);
    QCOMPARE(widget.font().weight(), 75);
    widget.setEmptyText(QStringLiteral("No Photo"));
    widget.resize(800, 600);
    painted(widget);
    const qreal points = widget.font().pointSizeF();
    QVERIFY(points > 50);
    QCOMPARE(widget.font().weight(), 75);
    widget.resize(400, 300);
    painted(widget);
    QCOMPARE(widget.font().pointSizeF() * 2, points);
    // A font in pixels has no point size to begin with.
    QFont pixels = widget.font();
    pixels.setPixelSize(20);
    widget.setFont(pixels);
    widget.resize(800, 600);
    painted(widget);
    QCOMPARE(widget.font().pointSizeF(), points);
}

void TestProportionalSclaleWidget::fontDoesNotDrift()
{
    ProportionalSclaleWidget widget(QStringLiteral("Not Assigned"));
    widget.resize(640, 480);
    painted(widget);
    const QFont font = widget.font();
    for (int width = 1; width < 1000; width += 37) {
        widget.resize(width, 1000 - width);
        painted(widget);
    }
    widget.resize(640, 480);
    painted(widget);
    QCOMPARE(widget.font(), font);
}

void TestProportionalSclaleWidget::resizingSettles()
{
    QWidget window;
    auto *layout = new QVBoxLayout(&window);
    auto *widget = new ProportionalSclaleWidget(QStringLiteral("No Photo"), &window);
    layout->addWidget(widget);
    window.resize(400, 300);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));

    PaintCounter counter;
    widget->installEventFilter(&counter);
    window.installEventFilter(&counter);
    const int width = widget->width();
    window.resize(500, 400);
    QTRY_COMPARE(widget->width(), width + 100);
    QTRY_VERIFY(counter.paints > 0);
    // Were each paint or layout to bring another, a hundred rounds would show a hundred.
    for (int i = 0; i < 100; ++i) {
        QCoreApplication::processEvents();
    }
    QVERIFY(counter.paints < 20);
    QVERIFY(counter.layouts < 20);
}

void TestProportionalSclaleWidget::photo_data()
{
    QTest::addColumn<QSize>("widget");
    QTest::addColumn<QSize>("photo");
    QTest::addColumn<QRect>("shown");

    QTest::newRow("same size") << QSize(400, 300) << QSize(400, 300) << QRect(0, 0, 400, 300);
    QTest::newRow("wider than the widget")
        << QSize(400, 400) << QSize(200, 100) << QRect(0, 100, 400, 200);
    QTest::newRow("higher than the widget")
        << QSize(400, 400) << QSize(100, 200) << QRect(100, 0, 200, 400);
    QTest::newRow("made smaller") << QSize(200, 200) << QSize(1600, 1200) << QRect(0, 25, 200, 150);
    QTest::newRow("a line of pixels") << QSize(100, 100) << QSize(2000, 1) << QRect();
}

void TestProportionalSclaleWidget::photo()
{
    QFETCH(QSize, widget);
    QFETCH(QSize, photo);
    QFETCH(QRect, shown);
    ProportionalSclaleWidget view(QStringLiteral("No Photo"));
    view.resize(widget);
    view.setPixmap(::photo(photo.width(), photo.height()));
    const QImage image = painted(view);
    QCOMPARE(extent(image, QColor(Qt::blue)), shown);
    QCOMPARE(extent(image, [](const QColor &pixel) { return pixel != untouched; }), shown);
    // The same again after a change of size.
    view.resize(widget * 2);
    const QRect doubled = extent(painted(view), QColor(Qt::blue));
    QCOMPARE(doubled.isEmpty() ? doubled.size() : doubled.size() / 2, shown.size());
}

void TestProportionalSclaleWidget::anotherPhotoOfTheSameSize()
{
    ProportionalSclaleWidget widget;
    widget.resize(100, 75);
    widget.setPixmap(::photo(400, 300, Qt::blue));
    QCOMPARE(extent(painted(widget), QColor(Qt::blue)), QRect(0, 0, 100, 75));
    widget.setPixmap(::photo(400, 300, Qt::cyan));
    QCOMPARE(extent(painted(widget), QColor(Qt::cyan)), QRect(0, 0, 100, 75));
}

void TestProportionalSclaleWidget::linesBeginAtTheWidgetsTop_data()
{
    QTest::addColumn<QSize>("photo");
    QTest::addColumn<QString>("caption");
    QTest::addColumn<int>("left");

    QTest::newRow("wide photo") << QSize(200, 100) << QString() << 0;
    QTest::newRow("high photo") << QSize(100, 200) << QString() << 100;
    QTest::newRow("frame") << QSize() << QStringLiteral("-") << 0;
    QTest::newRow("nothing") << QSize() << QString() << 0;
}

void TestProportionalSclaleWidget::linesBeginAtTheWidgetsTop()
{
    QFETCH(QSize, photo);
    QFETCH(QString, caption);
    QFETCH(int, left);
    ProportionalSclaleWidget widget(caption);
    widget.resize(400, 400);
    if (!photo.isEmpty()) {
        widget.setPixmap(::photo(photo.width(), photo.height()));
    }
    widget.setStatistics({QStringLiteral("HH")});
    const QRect letters = extent(painted(widget), QColor(Qt::green));
    // Letters without anything below the baseline end right above it.
    const int height = QFontMetrics(lineFont())
                           .boundingRect(QRect(), Qt::AlignLeft, QStringLiteral("HH"))
                           .height();
    QVERIFY(qAbs(letters.bottom() + 1 - height) <= 1);
    QVERIFY(letters.left() >= left);
    QVERIFY(letters.left() <= left + 4);
    QVERIFY(letters.top() > 0);
}

void TestProportionalSclaleWidget::secondLine()
{
    ProportionalSclaleWidget widget(QStringLiteral("-"));
    widget.resize(800, 300);
    widget.setStatistics({QStringLiteral("H"), QStringLiteral("HHHH")});
    const QImage image = painted(widget);
    const int height =
        QFontMetrics(lineFont()).boundingRect(QRect(), Qt::AlignLeft, QStringLiteral("H")).height();
    const QRect first = extent(image.copy(0, 0, 800, height + 2), QColor(Qt::green));
    const QRect both = extent(image, QColor(Qt::green));
    QVERIFY(qAbs(first.bottom() + 1 - height) <= 1);
    QVERIFY(qAbs(both.bottom() + 1 - 2 * height) <= 1);
    // At the left edge of the frame, over the placeholder.
    QCOMPARE(widget.frame().left(), 200);
    QVERIFY(both.left() >= 200);
    QVERIFY(both.left() <= 204);
    QVERIFY(both.right() > first.right() + 10);
}

void TestProportionalSclaleWidget::oneListOfLines()
{
    const QString file = TestSurroundings::home() + QStringLiteral("/photo.jpeg");
    QVERIFY(::photo(40, 30).save(file, "JPEG"));
    ProportionalSclaleWidget widget;
    widget.setLayers(file, {QStringLiteral("a"), QStringLiteral("b")});
    QCOMPARE(widget.lines().join(QLatin1Char(' ')), QStringLiteral("a b"));
    QTRY_COMPARE(widget.pixmap().size(), QSize(40, 30));
    widget.setStatistics({QStringLiteral("c")});
    QCOMPARE(widget.lines(), QStringList{QStringLiteral("c")});
    QCOMPARE(widget.pixmap().size(), QSize(40, 30));
    widget.setPixmap(QStringLiteral("/no/such/file"));
    QTRY_VERIFY(!widget.isLoading());
    QVERIFY(widget.pixmap().isNull());
    QCOMPARE(widget.lines(), QStringList{QStringLiteral("c")});
    widget.setLayers(file, {});
    QVERIFY(widget.lines().isEmpty());
}

void TestProportionalSclaleWidget::clear()
{
    ProportionalSclaleWidget widget(QStringLiteral("No Photo"));
    widget.resize(400, 300);
    widget.setPixmap(::photo(40, 30));
    widget.setStatistics({QStringLiteral("HH")});
    QVERIFY(!extent(painted(widget), QColor(Qt::green)).isEmpty());
    widget.clear();
    QVERIFY(widget.pixmap().isNull());
    QCOMPARE(widget.lines(), QStringList());
    QCOMPARE(widget.emptyText(), QStringLiteral("No Photo"));
    const QImage image = painted(widget);
    QVERIFY(extent(image, QColor(Qt::green)).isEmpty());
    QVERIFY(extent(image, QColor(Qt::blue)).isEmpty());
    QVERIFY(!captionExtent(image).isEmpty());
}

void TestProportionalSclaleWidget::nothingToShow()
{
    ProportionalSclaleWidget widget;
    widget.resize(200, 200);
    QVERIFY(
        extent(painted(widget), [](const QColor &pixel) { return pixel != untouched; }).isEmpty());
}

void TestProportionalSclaleWidget::partIsPaintedAsPartOfTheWhole()
{
    const QRect part(150, 20, 100, 60);
    ProportionalSclaleWidget widget(QStringLiteral("No Photo"));
    widget.resize(400, 300);
    widget.setStatistics({QStringLiteral("A long enough line of text")});
    QCOMPARE(painted(widget, part).copy(part), painted(widget).copy(part));
    QImage picture(400, 300, QImage::Format_RGB32);
    for (int x = 0; x < 400; ++x) {
        for (int y = 0; y < 300; ++y) {
            picture.setPixel(x, y, qRgb(x / 2, y / 2, 200));
        }
    }
    widget.setPixmap(QPixmap::fromImage(picture));
    QCOMPARE(painted(widget, part).copy(part), painted(widget).copy(part));
}

void TestProportionalSclaleWidget::emptySizes_data()
{
    QTest::addColumn<QSize>("size");

    QTest::newRow("nothing") << QSize(0, 0);
    QTest::newRow("no width") << QSize(0, 300);
    QTest::newRow("no height") << QSize(300, 0);
    QTest::newRow("one pixel") << QSize(1, 1);
    QTest::newRow("a line") << QSize(300, 1);
}

void TestProportionalSclaleWidget::emptySizes()
{
    QFETCH(QSize, size);
    ProportionalSclaleWidget widget;
    widget.resize(300, 200);
    for (const QString &caption : {QString(), QStringLiteral("No Photo")}) {
        for (const QPixmap &pixmap : {QPixmap(), ::photo(40, 30)}) {
            widget.setEmptyText(caption);
            widget.setPixmap(pixmap);
            widget.setStatistics({QStringLiteral("H"), QString()});
            widget.resize(size);
            painted(widget);
            QVERIFY(std::isfinite(widget.font().pointSizeF()));
            QVERIFY(widget.font().pointSizeF() >= 12);
            // And back again.
            widget.resize(300, 200);
            painted(widget);
            QVERIFY(widget.font().pointSizeF() >= 12);
            QVERIFY(widget.font().pointSizeF() < 200);
        }
    }
}

void TestProportionalSclaleWidget::accessible()
{
    ProportionalSclaleWidget widget(QStringLiteral("No Photo"));
    QAccessibleInterface *spoken = QAccessible::queryAccessibleInterface(&widget);
    QVERIFY(spoken != nullptr);
    QCOMPARE(spoken->text(QAccessible::Name), QStringLiteral("No Photo"));
    QCOMPARE(spoken->text(QAccessible::Description), QString());
    widget.setStatistics({QStringLiteral("A123BC77"), QStringLiteral("Granted")});
    QCOMPARE(spoken->text(QAccessible::Description), QStringLiteral("A123BC77\nGranted"));
    widget.setPixmap(::photo(40, 30));
    QCOMPARE(spoken->text(QAccessible::Name), QStringLiteral("Photo"));
    widget.clear();
    widget.setEmptyText(QStringLiteral("No Data"));
    QCOMPARE(spoken->text(QAccessible::Name), QStringLiteral("No Data"));
    QCOMPARE(spoken->text(QAccessible::Description), QString());
}

STALLO_TEST_MAIN(TestProportionalSclaleWidget)
#include "tst_proportionalsclalewidget.moc"
