// SPDX-License-Identifier: MIT
#include "pages/devicetitle.h"
#include "style/brelwindow.h"
#include "style/brelwindowtitle.h"
#include "style/richline.h"
#include "tests/support/testmain.h"
#include "tests/translations/panelforms.h"
#include "tests/translations/textfit.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QSpinBox>
#include <QStandardItemModel>
#include <QStatusBar>
#include <QTabBar>
#include <QTableView>
#include <QToolButton>
#include <QTreeWidget>

#include <functional>

using Maker = std::function<QWidget *(const QString &)>;

Q_DECLARE_METATYPE(Maker)

namespace
{

const QString shortText = QStringLiteral("Text");
const QString longText = QStringLiteral("A text that is by far too long for the place it has here");

template <typename Kind>
QWidget *withText(const QString &text)
{
    return new Kind(text);
}

QWidget *wrapped(const QString &text)
{
    auto *label = new QLabel(text);
    label->setWordWrap(true);
    return label;
}

QWidget *rich(const QString &text)
{
    return new QLabel(QStringLiteral("<b>%1</b>").arg(text));
}

QWidget *toolButton(const QString &text)
{
    auto *button = new QToolButton;
    button->setToolButtonStyle(Qt::ToolButtonTextOnly);
    button->setText(text);
    return button;
}

QWidget *combo(const QString &text)
{
    auto *box = new QComboBox;
    box->addItems({shortText, text});
    return box;
}

QWidget *table(const QString &text)
{
    auto *view = new QTableView;
    auto *model = new QStandardItemModel(1, 1, view);
    model->setHorizontalHeaderLabels({text});
    view->setModel(model);
    return view;
}

QWidget *tree(const QString &text)
{
    auto *view = new QTreeWidget;
    view->setHeaderLabel(text);
    return view;
}

QWidget *treeCells(const QString &text)
{
    auto *view = new QTreeWidget;
    view->setColumnCount(2);
    view->setHeaderLabels({QString(), QString()});
    view->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    view->header()->setStretchLastSection(false);
    view->header()->setMinimumSectionSize(30);
    view->setColumnWidth(0, 30);
    view->setColumnWidth(1, 90);
    view->addTopLevelItem(new QTreeWidgetItem({longText, text}));
    return view;
}

QWidget *tabs(const QString &text)
{
    auto *bar = new QTabBar;
    bar->addTab(text);
    return bar;
}

QWidget *line(const QString &text)
{
    auto *rich = new RichLine(nullptr);
    rich->setText(text);
    return rich;
}

QString joined(const QStringList &faults)
{
    return QLatin1Char('\n') + faults.join(QLatin1Char('\n'));
}

} // namespace

// In the language of the locale and on the screen there is: every form can be read and touched.
class TestTextFit : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();

    void formFits_data();
    void formFits();
    void titleNamesDevice_data();
    void titleNamesDevice();
    void statusTipsFit_data() { pages(); }
    void statusTipsFit();
    void speaksTheLanguage();

    void seesLongText_data();
    void seesLongText();
    void seesLongValues();
    void seesWrongPlaces();

private:
    static void pages()
    {
        QTest::addColumn<QString>("form");
        for (const char *page : {"archive", "access list", "on-line"}) {
            QTest::newRow(page) << QString::fromLatin1(page);
        }
    }

    std::unique_ptr<PanelForms> forms_;
};

void TestTextFit::initTestCase()
{
    forms_ = std::make_unique<PanelForms>();
}

void TestTextFit::cleanupTestCase()
{
    forms_.reset();
}

void TestTextFit::formFits_data()
{
    QTest::addColumn<QString>("form");
    for (const QString &name : PanelForms::names()) {
        QTest::newRow(qPrintable(name)) << name;
    }
}

void TestTextFit::formFits()
{
    QFETCH(QString, form);
    const QWidget *shown = forms_->show(form);
    QVERIFY(shown != nullptr);
    const QSize screen = shown->screen()->size();
    QVERIFY2(QRect(QPoint(), screen).contains(QRect(QPoint(), shown->size())),
             qPrintable(QStringLiteral("%1x%2").arg(shown->width()).arg(shown->height())));
    QVERIFY(shown->width() >= shown->minimumSizeHint().width());
    QVERIFY(shown->height() >= shown->minimumSizeHint().height());
    const QStringList faults = TextFit::faults(shown);
    QVERIFY2(faults.isEmpty(), qPrintable(joined(faults)));
}

void TestTextFit::titleNamesDevice_data()
{
    QTest::addColumn<QString>("page");
    const auto row = [](const char *name, const char *context, const char *source) {
        QTest::newRow(name) << QCoreApplication::translate(context, source);
    };
    row("archive", "ArchiveWidget", "Archive view");
    row("access list", "SufferedNumbersWidget", "Suffered numbers");
    row("on-line", "OnLineWidget", "Online");
}

void TestTextFit::titleNamesDevice()
{
    QFETCH(QString, page);
    BrelWindowTitle *title = forms_->frame()->brelWindowTitle();
    title->setDeviceName(DeviceTitle::device(page, QStringLiteral("192.168.100.100")));
    QCoreApplication::processEvents();
    const QStringList faults = TextFit::faults(title);
    QVERIFY2(faults.isEmpty(), qPrintable(joined(faults)));
}

void TestTextFit::statusTipsFit()
{
    QFETCH(QString, form);
    QVERIFY(forms_->show(form) != nullptr);
    const auto *bar = forms_->frame()->findChild<QStatusBar *>();
    QVERIFY(bar->isVisible());
    int seen = 0;
    for (const QWidget *widget : forms_->page()->findChildren<QWidget *>()) {
        seen += widget->statusTip().isEmpty() ? 0 : 1;
        QVERIFY2(bar->fontMetrics().horizontalAdvance(widget->statusTip()) < bar->width(),
                 qPrintable(widget->statusTip()));
    }
    QVERIFY(seen > 0);
}

void TestTextFit::speaksTheLanguage()
{
    // Or the rest would say nothing about the language.
    QCOMPARE(PanelForms::language(), qEnvironmentVariable("STALLO_LANGUAGE"));
    const QWidget *shown = forms_->show(QStringLiteral("addresses"));
    QVERIFY(shown != nullptr);
    QCOMPARE(shown->findChild<QPushButton *>(QStringLiteral("buttonCancel"))->text(),
             QCoreApplication::translate("AddressDialogClass", "Cancel"));
}

void TestTextFit::seesLongText_data()
{
    QTest::addColumn<Maker>("make");
    const auto row = [](const char *name, const Maker &make) { QTest::newRow(name) << make; };
    row("label", withText<QLabel>);
    row("wrapped label", wrapped);
    row("rich label", rich);
    row("push button", withText<QPushButton>);
    row("check box", withText<QCheckBox>);
    row("radio button", withText<QRadioButton>);
    row("tool button", toolButton);
    row("group box", withText<QGroupBox>);
    row("combo box", combo);
    row("table", table);
    row("tree", tree);
    row("cells of a tree", treeCells);
    row("tabs", tabs);
    row("title", line);
}

void TestTextFit::seesLongText()
{
    QFETCH(Maker, make);
    for (const QString &text : {shortText, longText}) {
        QWidget window;
        QWidget *widget = make(text);
        widget->setParent(&window);
        widget->setGeometry(0, 0, 140, 80);
        window.resize(400, 200);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        const QStringList faults = TextFit::faults(&window);
        QVERIFY2(faults.isEmpty() == (text == shortText), qPrintable(joined(faults)));
    }
}

void TestTextFit::seesLongValues()
{
    for (const int width : {300, 120}) {
        QWidget window;
        QSpinBox port(&window);
        port.setMaximum(65535);
        QDateEdit date(&window);
        date.setDisplayFormat(QStringLiteral("dd.MM.yyyy"));
        port.setGeometry(0, 0, width, 44);
        date.setGeometry(0, 50, width, 44);
        window.resize(400, 200);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QCOMPARE(TextFit::faults(&window).size(), width == 300 ? 0 : 2);
    }
}

void TestTextFit::seesWrongPlaces()
{
    QWidget window;
    QPushButton first(shortText, &window);
    QPushButton second(shortText, &window);
    first.setGeometry(0, 0, 100, 44);
    second.setGeometry(100, 0, 100, 44);
    window.resize(400, 200);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    const auto fault = [&window] { return TextFit::faults(&window).join(QLatin1Char('\n')); };
    QCOMPARE(fault(), QString());
    second.move(99, 0);
    QVERIFY(fault().contains(QStringLiteral("lies on")));
    second.move(301, 0);
    QVERIFY(fault().contains(QStringLiteral("lies outside")));
    second.setGeometry(100, 0, 100, 43);
    QVERIFY(fault().contains(QStringLiteral("too small")));
}

STALLO_TEST_MAIN(TestTextFit)
#include "tst_textfit.moc"
