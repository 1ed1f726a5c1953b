// SPDX-License-Identifier: MIT
#include "style/brelwindowtitle.h"

#include "style/brelstyle.h"
#include "style/brelwindow.h"
#include "style/contrast.h"
#include "style/metrics.h"
#include "style/richline.h"
#include "tests/support/testmain.h"

#include <QAbstractButton>
#include <QLayout>
#include <QSignalSpy>

#include <memory>

namespace
{

QString deviceText(const QString &hosts)
{
    return QStringLiteral("<center><font color='white' size='+2'>Online - </font>"
                          "<font color='Grey' size='+2'><I>[%1]</I></font></center>")
        .arg(hosts);
}

} // namespace

class TestBrelWindowTitle : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void buttonsFromTheLeft();
    void everythingFits_data();
    void everythingFits();
    void longNameIsCut();
    void shortNameIsNotShrunk();
    void dimNamesCanBeRead();
    void accessibleNames();
    void clickKeepsTheFocusWhereItWas();
    void tellsWhatIsAskedFor_data();
    void tellsWhatIsAskedFor();

private:
    QRect placeOf(const QWidget *widget) const;
    RichLine *line(const char *name) const;

    std::unique_ptr<BrelWindow> window_;
    BrelWindowTitle *bar_ = nullptr;
    QVector<QAbstractButton *> pages_;
};

void TestBrelWindowTitle::initTestCase()
{
    auto *style = new BrelStyle;
    QApplication::setStyle(style);
    QApplication::setPalette(style->standardPalette());
}

void TestBrelWindowTitle::init()
{
    window_ = std::make_unique<BrelWindow>();
    bar_ = window_->brelWindowTitle();
    pages_.clear();
    for (const char *text : {"Archive view", "Suffered numbers", "On-Line"}) {
        pages_.append(bar_->createButton(QLatin1String(text)));
    }
    window_->setWindowTitle(QStringLiteral("<i>Stallo </i>"));
    window_->setCentralWidget(new QWidget);
    window_->resize(1024, 512);
    window_->show();
    QVERIFY(QTest::qWaitForWindowActive(window_.get()));
}

void TestBrelWindowTitle::cleanup()
{
    window_.reset();
}

QRect TestBrelWindowTitle::placeOf(const QWidget *widget) const
{
    return {widget->mapTo(bar_, QPoint()), widget->size()};
}

RichLine *TestBrelWindowTitle::line(const char *name) const
{
    return bar_->findChild<RichLine *>(QLatin1String(name));
}

void TestBrelWindowTitle::buttonsFromTheLeft()
{
    int left = 0;
    for (const QAbstractButton *button : qAsConst(pages_)) {
        QVERIFY(button->isCheckable() && !button->isChecked());
        QVERIFY(button->isVisible());
        QVERIFY(placeOf(button).left() >= left);
        left = placeOf(button).right();
    }
    QVERIFY(left < bar_->width() / 2);
    QCOMPARE(pages_.last()->text(), QStringLiteral("On-Line"));
}

void TestBrelWindowTitle::everythingFits_data()
{
    QTest::addColumn<QString>("hosts");
    QTest::addColumn<int>("width");
    const QString one = QStringLiteral("192.168.100.101");
    const QString two = QStringLiteral("192.168.100.101 / 192.168.100.102");
    QTest::newRow("one, 1024") << one << 1024;
    QTest::newRow("two, 1024") << two << 1024;
    QTest::newRow("two, 1280") << two << 1280;
    QTest::newRow("two, 1920") << two << 1920;
}

void TestBrelWindowTitle::everythingFits()
{
    QFETCH(const QString, hosts);
    QFETCH(const int, width);
    window_->resize(width, 512);
    bar_->setDeviceName(deviceText(hosts));
    QCOMPARE(bar_->deviceName(), deviceText(hosts));
    bar_->layout()->activate();

    QVector<QRect> places;
    for (const QAbstractButton *button : bar_->findChildren<QAbstractButton *>()) {
        QVERIFY2(button->width() >= Metrics::touchSize && button->height() >= Metrics::touchSize,
                 qPrintable(button->accessibleName()));
        QVERIFY(button->width() >= button->sizeHint().width());
        places.append(placeOf(button));
    }
    QCOMPARE(places.size(), 6);
    for (const char *name : {"deviceName", "title"}) {
        QVERIFY2(!line(name)->isCut(), name);
        places.append(placeOf(line(name)));
    }
    for (int i = 0; i < places.size(); ++i) {
        QVERIFY(bar_->rect().contains(places.at(i)));
        for (int j = 0; j < i; ++j) {
            QVERIFY(!places.at(i).intersects(places.at(j)));
        }
    }
}

void TestBrelWindowTitle::longNameIsCut()
{
    const QString name = QString(400, QLatin1Char('W'));
    bar_->setDeviceName(deviceText(name));
    bar_->layout()->activate();
    QCOMPARE(window_->width(), 1024);
    QVERIFY(line("deviceName")->isCut());
    QVERIFY(line("deviceName")->toolTip().contains(name));
    for (const QAbstractButton *button : bar_->findChildren<QAbstractButton *>()) {
        QVERIFY(bar_->rect().contains(placeOf(button)));
        QVERIFY(button->width() >= button->sizeHint().width());
    }
    bar_->setDeviceName(QString());
    QVERIFY(!line("deviceName")->isCut());
    QVERIFY(line("deviceName")->toolTip().isEmpty());
}

void TestBrelWindowTitle::shortNameIsNotShrunk()
{
    RichLine line(nullptr);
    line.setText(QStringLiteral("Online"));
    const int whole = line.sizeHint().width();
    line.resize(whole, Metrics::touchSize);
    line.show();
    QVERIFY(!line.isCut());
    QVERIFY(whole >= QFontMetrics(line.font()).horizontalAdvance(QStringLiteral("Online")));
    // The full width stays asked for after it had to shrink.
    line.resize(whole / 2, Metrics::touchSize);
    QVERIFY(line.isCut());
    QCOMPARE(line.sizeHint().width(), whole);
    QCOMPARE(line.minimumSizeHint().width(), 0);
}

void TestBrelWindowTitle::dimNamesCanBeRead()
{
    bar_->setDeviceName(QStringLiteral("<font color='Grey' size='+2'><b>[MMMM]</b></font>"));
    bar_->layout()->activate();
    const QRect place = placeOf(line("deviceName"));
    const QImage image = bar_->grab(place).toImage();
    QColor found = Metrics::bar;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor here = image.pixelColor(x, y);
            if (Contrast::ratio(here, Metrics::bar) > Contrast::ratio(found, Metrics::bar)) {
                found = here;
            }
        }
    }
    QVERIFY2(Contrast::ratio(found, Metrics::bar) >= Metrics::textContrast - 0.1,
             qPrintable(found.name()));
    // Still dimmer than that of a connected device.
    QVERIFY(Contrast::ratio(found, Metrics::bar) < 10.0);
}

void TestBrelWindowTitle::accessibleNames()
{
    for (const QAbstractButton *button : bar_->findChildren<QAbstractButton *>()) {
        QVERIFY(!button->accessibleName().isEmpty());
    }
    bar_->setDeviceName(deviceText(QStringLiteral("127.0.0.1")));
    QCOMPARE(line("deviceName")->accessibleName(), QStringLiteral("Online - [127.0.0.1]"));
    QCOMPARE(line("title")->accessibleName(), QStringLiteral("Stallo"));
}

void TestBrelWindowTitle::clickKeepsTheFocusWhereItWas()
{
    window_->centralWidget()->setFocusPolicy(Qt::StrongFocus);
    window_->centralWidget()->setFocus();
    QVERIFY(window_->centralWidget()->hasFocus());
    QTest::mouseClick(pages_.at(1), Qt::LeftButton);
    QVERIFY(pages_.at(1)->isChecked());
    QVERIFY(window_->centralWidget()->hasFocus());
}

void TestBrelWindowTitle::tellsWhatIsAskedFor_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<QByteArray>("notification");
    const auto row = [](const char *button, const char *notification) {
        QTest::newRow(button) << QString::fromLatin1(button) << QByteArray(notification);
    };
    row("buttonMinimize", SIGNAL(minimizeRequested()));
    row("buttonMaximize", SIGNAL(maximizeRequested()));
    row("buttonClose", SIGNAL(closeRequested()));
}

void TestBrelWindowTitle::tellsWhatIsAskedFor()
{
    QFETCH(const QString, button);
    QFETCH(const QByteArray, notification);
    BrelWindowTitle alone(nullptr);
    const QSignalSpy asked(&alone, notification.constData());
    alone.show();
    QTest::mouseClick(alone.findChild<QAbstractButton *>(button), Qt::LeftButton);
    QCOMPARE(asked.count(), 1);
}

STALLO_TEST_MAIN(TestBrelWindowTitle)
#include "tst_brelwindowtitle.moc"
