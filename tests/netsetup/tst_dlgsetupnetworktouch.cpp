// SPDX-License-Identifier: MIT
#include "netsetup/dlgsetupnetwork.h"

#include "netsetup/screenkeybord.h"
#include "style/contrast.h"
#include "style/metrics.h"
#include "tests/netsetup/networkdialogcase.h"

#include <QLabel>
#include <QScreen>
#include <QTranslator>

#include <algorithm>

using Metrics::touchSize;

namespace
{

// Translates every text into itself and writes down which ones it was asked for.
class AskedTexts : public QTranslator
{
public:
    QString translate(const char *context, const char *text, const char *, int) const override
    {
        if (qstrcmp(context, "Dialog") == 0) {
            texts.append(QString::fromLatin1(text));
        }
        return QString();
    }
    bool isEmpty() const override { return false; }

    mutable QStringList texts;
};

QRect placeIn(const QWidget *window, const QWidget *widget)
{
    return {widget->mapTo(window, QPoint()), widget->size()};
}

} // namespace

// How the dialog looks, and what a finger does to it.
class TestDlgSetupNetworkTouch : public NetworkDialogCase
{
    Q_OBJECT

private Q_SLOTS:
    void texts_data();
    void texts();
    void textsCanBeTranslated();
    void everyFieldHasAName();
    void pictures_data();
    void pictures();
    void hardwareAddress();
    void fitsTheSmallestScreen();
    void touchSizes();
    void nothingOverlaps();
    void noAutoDefaultButton();
    void centredOnItsParent();

    void keypadOnly();
    void keypadEditsTheFieldThatWasTouched();
    void wholeLineOfTheBoxIsPressed();

private:
    void press(const QStringList &keys) const
    {
        for (const QString &key : keys) {
            click(key.toLatin1().constData());
        }
    }
    // Touches a field behind its text, erases that, and types.
    void typeOnKeypad(const char *name, const QString &text) const;
};

void TestDlgSetupNetworkTouch::texts_data()
{
    QTest::addColumn<QString>("buddy");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *buddy, const char *text) {
        QTest::newRow(text) << QString::fromLatin1(buddy) << QString::fromLatin1(text);
    };
    row("leHostName", "Host name");
    row("leDomainName", "Domain name");
    row("cbUseDHCP", "Use DHCP");
    row("leIPAddress", "IP-address");
    row("leNetorkmask", "Network mask");
    row("leGateway", "Gateway");
    row("le1DNS", "First DNS-server");
    row("le2DNS", "Second DNS-server");
    row("", "Phisical (MAC) address");
    row("", "Attention!<br>Network settings will be applyed after reboot!");
}

// Each is there, whole, beside its field.
void TestDlgSetupNetworkTouch::texts()
{
    QFETCH(const QString, buddy);
    QFETCH(const QString, text);
    open();
    QCOMPARE(dialog_->windowTitle(), QStringLiteral("Network Settings"));
    QCOMPARE(button("pbApply")->text(), QStringLiteral("Apply"));
    QCOMPARE(button("pbCancel")->text(), QStringLiteral("Cancel"));
    const auto labels = dialog_->findChildren<QLabel *>();
    const auto found = std::find_if(labels.begin(), labels.end(),
                                    [&text](const QLabel *label) { return label->text() == text; });
    QVERIFY(found != labels.end());
    const QLabel *label = *found;
    QVERIFY(label->isVisible());
    QVERIFY(label->width() >= label->sizeHint().width());
    QVERIFY(label->height() >= label->sizeHint().height());
    if (!buddy.isEmpty()) {
        QVERIFY(label->buddy() != nullptr);
        QCOMPARE(label->buddy()->objectName(), buddy);
        const QRect words = placeIn(dialog_.get(), label);
        const QRect control = placeIn(dialog_.get(), label->buddy());
        QVERIFY(words.right() < control.left());
        QVERIFY(control.top() <= words.center().y() && words.center().y() <= control.bottom());
    } else if (text.contains(QLatin1Char('<'))) {
        QCOMPARE(label->textFormat(), Qt::RichText);
    }
}

void TestDlgSetupNetworkTouch::textsCanBeTranslated()
{
    AskedTexts asked;
    QCoreApplication::installTranslator(&asked);
    open();
    QCoreApplication::removeTranslator(&asked);
    for (const char *text :
         {"Network Settings", "Host name", "Domain name", "Use DHCP", "IP-address", "Network mask",
          "Gateway", "First DNS-server", "Second DNS-server", "Phisical (MAC) address", "Apply",
          "Cancel", "Attention!<br>Network settings will be applyed after reboot!"}) {
        QVERIFY2(asked.texts.contains(QLatin1String(text)), text);
    }
}

void TestDlgSetupNetworkTouch::everyFieldHasAName()
{
    open();
    for (const QLineEdit *each : dialog_->findChildren<QLineEdit *>()) {
        QVERIFY(fieldNames().contains(each->objectName()));
    }
    QVERIFY(part<ScreenKeybord>("screenKbd")->isVisible());
    QCOMPARE(dialog_->findChildren<QPushButton *>().size(), 14 + 2);
}

void TestDlgSetupNetworkTouch::pictures_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("file");
    QTest::newRow("apply") << QStringLiteral("pbApply")
                           << QStringLiteral(":/pictures/resources/apply.png");
    QTest::newRow("cancel") << QStringLiteral("pbCancel")
                            << QStringLiteral(":/pictures/resources/cancel.png");
}

// Compiled in, on its button, and to be seen there.
void TestDlgSetupNetworkTouch::pictures()
{
    QFETCH(const QString, name);
    QFETCH(const QString, file);
    open();
    const QImage picture(file);
    QVERIFY(!picture.isNull());
    QCOMPARE(picture.width(), picture.height());
    QVERIFY(picture.width() >= 2 * Metrics::smallIcon);
    int drawn = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const QColor dot = picture.pixelColor(x, y);
            if (dot.alpha() == 255) {
                ++drawn;
                QVERIFY(Contrast::ratio(dot, Metrics::button) >= Metrics::partContrast);
                QVERIFY(Contrast::ratio(dot, Metrics::pressed) >= Metrics::partContrast);
            }
        }
    }
    QVERIFY(drawn > picture.width() * picture.height() / 10);
    QCOMPARE(qAlpha(picture.pixel(0, 0)), 0);
    const QPushButton *push = button(name.toLatin1().constData());
    QVERIFY(!push->icon().isNull());
    const auto format = QImage::Format_ARGB32_Premultiplied;
    QCOMPARE(push->icon().pixmap(picture.size()).toImage().convertToFormat(format),
             picture.convertToFormat(format));
}

void TestDlgSetupNetworkTouch::hardwareAddress()
{
    open();
    QCOMPARE(part<QLabel>("lMAC")->text(), QString());
    const int width = dialog_->width();
    dialog_->setHardwareAddress(QStringLiteral("00:1A:2B:3C:4D:5E"));
    QCOMPARE(part<QLabel>("lMAC")->text(), QStringLiteral("00:1A:2B:3C:4D:5E"));
    QCoreApplication::processEvents();
    QVERIFY(part<QLabel>("lMAC")->width() >= part<QLabel>("lMAC")->sizeHint().width());
    QCOMPARE(dialog_->width(), width);
}

void TestDlgSetupNetworkTouch::fitsTheSmallestScreen()
{
    openOnFiles();
    // Below a title bar of the window manager's.
    QVERIFY2(dialog_->width() <= 1024 && dialog_->height() <= 512 - 40,
             qPrintable(QStringLiteral("%1x%2").arg(dialog_->width()).arg(dialog_->height())));
    QVERIFY(dialog_->minimumSizeHint().width() <= 1024);
}

void TestDlgSetupNetworkTouch::touchSizes()
{
    open();
    QList<QWidget *> controls;
    for (QLineEdit *each : dialog_->findChildren<QLineEdit *>()) {
        controls.append(each);
        // An address, whole.
        QVERIFY(each->width() >
                2 * each->fontMetrics().horizontalAdvance(QStringLiteral("255.255.255.255")));
    }
    for (QPushButton *each : dialog_->findChildren<QPushButton *>()) {
        controls.append(each);
        QVERIFY(each->width() >= each->sizeHint().width());
    }
    controls.append(box());
    QCOMPARE(controls.size(), 7 + 16 + 1);
    for (const QWidget *each : qAsConst(controls)) {
        QVERIFY2(each->width() >= touchSize && each->height() >= touchSize,
                 qPrintable(each->objectName()));
    }
}

void TestDlgSetupNetworkTouch::nothingOverlaps()
{
    open();
    QList<QRect> places;
    for (const QWidget *each : dialog_->findChildren<QWidget *>()) {
        if (!each->isVisible() || qobject_cast<const ScreenKeybord *>(each) != nullptr ||
            qobject_cast<const QLineEdit *>(each->parentWidget()) != nullptr) {
            continue;
        }
        const QRect place = placeIn(dialog_.get(), each);
        QVERIFY2(dialog_->rect().contains(place), qPrintable(each->objectName()));
        for (const QRect &other : qAsConst(places)) {
            QVERIFY2(!place.intersects(other), qPrintable(each->objectName()));
        }
        places.append(place);
    }
    QCOMPARE(places.size(), 7 + 16 + 1 + 11);
}

void TestDlgSetupNetworkTouch::noAutoDefaultButton()
{
    open();
    for (const QPushButton *push : dialog_->findChildren<QPushButton *>()) {
        QVERIFY2(!push->autoDefault() && !push->isDefault(), qPrintable(push->objectName()));
    }
}

void TestDlgSetupNetworkTouch::centredOnItsParent()
{
    QWidget window;
    window.setGeometry(300, 200, 1024, 512);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QWidget page(&window);
    page.setGeometry(20, 30, 900, 460);
    page.show();
    const auto middle = [](const QWidget *parent) {
        return parent->mapToGlobal(parent->rect().center());
    };
    for (QWidget *parent : {&window, &page}) {
        DlgSetupNetwork dialog(parent);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        QCOMPARE(dialog.pos() + dialog.rect().center(), middle(parent));
    }
    DlgSetupNetwork dialog(&window);
    dialog.show();
    dialog.hide();
    window.move(310, 220);
    dialog.show();
    QCOMPARE(dialog.pos() + dialog.rect().center(), middle(&window));
    // Without a parent on the screen.
    DlgSetupNetwork alone(nullptr);
    alone.show();
    QCOMPARE(alone.pos() + alone.rect().center(), alone.screen()->availableGeometry().center());
}

void TestDlgSetupNetworkTouch::typeOnKeypad(const char *name, const QString &text) const
{
    QLineEdit *edit = field(name);
    QTest::mouseClick(edit, Qt::LeftButton, {}, QPoint(edit->width() - 10, edit->height() / 2));
    while (!edit->text().isEmpty()) {
        const int before = edit->text().size();
        click("pbBackSpace");
        QCOMPARE(edit->text().size(), before - 1);
    }
    for (const QChar letter : text) {
        click(letter == QLatin1Char('.') ? "pbComma"
                                         : (QStringLiteral("pb") + letter).toLatin1().constData());
        QVERIFY(edit->hasFocus());
    }
    QCOMPARE(edit->text(), text);
}

void TestDlgSetupNetworkTouch::keypadOnly()
{
    openOnFiles();
    typeOnKeypad("leIPAddress", QStringLiteral("192.168.10.47"));
    typeOnKeypad("leNetorkmask", QStringLiteral("255.255.240.0"));
    typeOnKeypad("leGateway", QStringLiteral("192.168.10.1"));
    typeOnKeypad("le1DNS", QString());
    typeOnKeypad("le2DNS", QStringLiteral("8.65.3.9"));
    // The names take digits at their ends.
    QLineEdit *host = field("leHostName");
    QTest::mouseClick(host, Qt::LeftButton, {}, QPoint(host->width() - 10, host->height() / 2));
    press({QStringLiteral("pb2"), QStringLiteral("pbSpace")});
    click("pbApply");
    QVERIFY(!dialog_->isVisible());
    QCOMPARE(
        NetworkFiles::contents(),
        QList<QByteArray>({"DOMAINNAME=park.lan\nHOSTNAME=gate2\n# panel\n",
                           "DEVICE=eth0\nDHCP=0\nGATEWAY=192.168.10.1\nIPADDR=192.168.10.47\n"
                           "NETMASK=255.255.240.0\n",
                           "search lan\nnameserver \nnameserver 8.65.3.9\nnameserver 10.0.0.7\n"}));
}

void TestDlgSetupNetworkTouch::keypadEditsTheFieldThatWasTouched()
{
    openOnFiles();
    QLineEdit *gateway = field("leGateway");
    QTest::mouseClick(gateway, Qt::LeftButton, {}, QPoint(8, gateway->height() / 2));
    press({QStringLiteral("pbDel"), QStringLiteral("pb2")});
    QCOMPARE(gateway->text(), QStringLiteral("20.0.0.1"));
    QCOMPARE(field("leIPAddress")->text(), QStringLiteral("10.0.0.2"));
    // The box takes no digits.
    click("cbUseDHCP");
    press({QStringLiteral("pb1"), QStringLiteral("pbDel"), QStringLiteral("pbBackSpace")});
    QVERIFY(box()->isChecked());
    QCOMPARE(gateway->text(), QStringLiteral("20.0.0.1"));
}

void TestDlgSetupNetworkTouch::wholeLineOfTheBoxIsPressed()
{
    openOnFiles();
    QTest::mouseClick(box(), Qt::LeftButton, {}, QPoint(box()->width() - 5, box()->height() - 5));
    QVERIFY(box()->isChecked());
    QVERIFY(box()->width() >= field("leIPAddress")->width());
}

STALLO_TEST_MAIN(TestDlgSetupNetworkTouch)
#include "tst_dlgsetupnetworktouch.moc"
