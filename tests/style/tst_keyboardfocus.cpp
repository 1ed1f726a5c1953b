// SPDX-License-Identifier: MIT
#include "style/brelstyle.h"

#include "style/metrics.h"
#include "tests/support/testmain.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QSpinBox>
#include <QTabBar>
#include <QToolButton>
#include <QVBoxLayout>

#include <functional>

using Maker = std::function<QWidget *()>;
Q_DECLARE_METATYPE(Maker)

// Whoever works with the keyboard sees at every control where he is.
class TestKeyboardFocus : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void frameIsSeen_data();
    void frameIsSeen();
    void fingersLeaveNoFrameOnButtons();
};

namespace
{

int accentPixels(QWidget *widget)
{
    const QImage image = widget->grab().toImage();
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            count += image.pixelColor(x, y) == Metrics::accent ? 1 : 0;
        }
    }
    return count;
}

} // namespace

void TestKeyboardFocus::initTestCase()
{
    auto *style = new BrelStyle;
    QApplication::setStyle(style);
    QApplication::setPalette(style->standardPalette());
}

void TestKeyboardFocus::frameIsSeen_data()
{
    QTest::addColumn<Maker>("make");
    const auto row = [](const char *name, const Maker &make) { QTest::newRow(name) << make; };
    const QString text = QStringLiteral("Text");
    row("push button", [=] { return new QPushButton(text); });
    row("flat button", [=] {
        auto *button = new QPushButton(text);
        button->setFlat(true);
        return button;
    });
    row("tool button", [=] {
        auto *button = new QToolButton;
        button->setText(text);
        button->setFocusPolicy(Qt::StrongFocus);
        return button;
    });
    row("check box", [=] { return new QCheckBox(text); });
    row("check box without text", [] { return new QCheckBox; });
    row("radio button", [=] { return new QRadioButton(text); });
    row("line edit", [] { return new QLineEdit; });
    row("combo box", [=] {
        auto *box = new QComboBox;
        box->addItem(text);
        return box;
    });
    row("editable combo box", [=] {
        auto *box = new QComboBox;
        box->setEditable(true);
        return box;
    });
    row("spin box", [] { return new QSpinBox; });
    row("slider", [] { return new QSlider(Qt::Horizontal); });
    row("tabs", [=] {
        auto *bar = new QTabBar;
        bar->addTab(text);
        return bar;
    });
    row("list", [=] {
        auto *list = new QListWidget;
        list->addItem(text);
        list->setCurrentRow(0);
        return list;
    });
    row("checkable group", [=] {
        auto *group = new QGroupBox(text);
        group->setCheckable(true);
        return group;
    });
}

void TestKeyboardFocus::frameIsSeen()
{
    QFETCH(const Maker, make);
    QWidget window;
    auto *column = new QVBoxLayout(&window);
    auto *first = new QLineEdit;
    QWidget *widget = make();
    column->addWidget(first);
    column->addWidget(widget);
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    first->setFocus();
    const int without = accentPixels(widget);
    QTest::keyClick(first, Qt::Key_Tab);
    QVERIFY(widget->hasFocus());
    QVERIFY2(accentPixels(widget) >= without + 40,
             qPrintable(QStringLiteral("%1 %2").arg(without).arg(accentPixels(widget))));
}

void TestKeyboardFocus::fingersLeaveNoFrameOnButtons()
{
    QPushButton button(QStringLiteral("Text"));
    button.show();
    QVERIFY(QTest::qWaitForWindowActive(&button));
    QTest::mouseClick(&button, Qt::LeftButton);
    QVERIFY(button.hasFocus());
    QCOMPARE(accentPixels(&button), 0);
}

STALLO_TEST_MAIN(TestKeyboardFocus)
#include "tst_keyboardfocus.moc"
