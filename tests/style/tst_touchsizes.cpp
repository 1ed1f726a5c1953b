// SPDX-License-Identifier: MIT
#include "style/brelstyle.h"

#include "style/metrics.h"
#include "tests/support/testmain.h"

#include <QCalendarWidget>
#include <QCheckBox>
#include <QComboBox>
#include <QCompleter>
#include <QDateTimeEdit>
#include <QDir>
#include <QFileDialog>
#include <QGroupBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QSlider>
#include <QSpinBox>
#include <QStyleOption>
#include <QTabBar>
#include <QTableWidget>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <functional>
#include <memory>

using Metrics::touchSize;

static_assert(touchSize >= 44, "a gloved finger needs 44 px");
static_assert(Metrics::titleBarHeight >= touchSize && Metrics::windowButtonWidth >= touchSize,
              "every control needs the touch size");

namespace
{

using Maker = std::function<QWidget *()>;

bool touchable(const QSize &size)
{
    return size.width() >= touchSize && size.height() >= touchSize;
}

QString words(const QWidget *widget)
{
    return QStringLiteral("%1 %2 %3x%4")
        .arg(QLatin1String(widget->metaObject()->className()), widget->objectName())
        .arg(widget->width())
        .arg(widget->height());
}

// A control with nothing in it, or the least that it can have.
QPushButton *pushButton()
{
    return new QPushButton(QStringLiteral("I"));
}
QComboBox *comboBox(bool editable)
{
    auto *box = new QComboBox;
    box->setEditable(editable);
    box->addItem(QStringLiteral("I"));
    return box;
}
QDateTimeEdit *dateTimeEdit(bool calendar)
{
    auto *edit = new QDateTimeEdit;
    edit->setCalendarPopup(calendar);
    return edit;
}
QToolButton *toolButton(bool autoRaise)
{
    auto *button = new QToolButton;
    button->setAutoRaise(autoRaise);
    return button;
}
QSlider *slider(Qt::Orientation orientation)
{
    return new QSlider(orientation);
}

} // namespace

Q_DECLARE_METATYPE(Maker)

class TestTouchSizes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void controls_data();
    void controls();
    void squeezedControlsStayTouchable();
    void spinArrows_data();
    void spinArrows();
    void comboArrow();
    void wholeCheckBoxIsHit();
    void groupTitleIsHit();
    void tabs();
    void menus();
    void scrollBars();
    void scrollHandleFollows();
    void tableRows_data();
    void tableRows();
    void listAndTreeRows();
    void comboRows_data();
    void comboRows();
    void calendar();
    void messageBox();
    void fileDialog();
    void fileDialogForgetsItsColumns();
    void fileNamesOnOffer();

private:
    static void checkDialog(const QWidget &dialog);
};

void TestTouchSizes::initTestCase()
{
    auto *style = new BrelStyle;
    QApplication::setStyle(style);
    QApplication::setPalette(style->standardPalette());
}

void TestTouchSizes::controls_data()
{
    QTest::addColumn<Maker>("make");
    const auto row = [](const char *name, const Maker &make) { QTest::newRow(name) << make; };
    row("push button", pushButton);
    row("empty push button", [] { return new QPushButton; });
    row("tool button", [] { return toolButton(false); });
    row("flat tool button", [] { return toolButton(true); });
    row("check box", [] { return new QCheckBox; });
    row("radio button", [] { return new QRadioButton; });
    row("line edit", [] { return new QLineEdit; });
    row("combo box", [] { return comboBox(false); });
    row("editable combo box", [] { return comboBox(true); });
    row("spin box", [] { return new QSpinBox; });
    row("double spin box", [] { return new QDoubleSpinBox; });
    row("date and time", [] { return dateTimeEdit(false); });
    row("date with calendar", [] { return dateTimeEdit(true); });
    row("horizontal slider", [] { return slider(Qt::Horizontal); });
    row("vertical slider", [] { return slider(Qt::Vertical); });
}

void TestTouchSizes::controls()
{
    QFETCH(const Maker, make);
    const std::unique_ptr<QWidget> widget(make());
    widget->show();
    QVERIFY2(touchable(widget->size()), qPrintable(words(widget.get())));
    QVERIFY(touchable(widget->sizeHint().expandedTo(widget->minimumSize())));
}

void TestTouchSizes::squeezedControlsStayTouchable()
{
    QWidget window;
    QVBoxLayout column(&window);
    QLineEdit edit;
    QSpinBox spin;
    QPushButton button(QStringLiteral("I"));
    QComboBox combo;
    QListWidget greedy;
    for (QWidget *widget :
         std::initializer_list<QWidget *>{&edit, &spin, &button, &combo, &greedy}) {
        column.addWidget(widget);
    }
    window.show();
    window.resize(1, 1);
    for (const QWidget *widget : std::initializer_list<QWidget *>{&edit, &spin, &button, &combo}) {
        QVERIFY2(widget->height() >= touchSize, qPrintable(words(widget)));
    }
}

void TestTouchSizes::spinArrows_data()
{
    QTest::addColumn<Qt::LayoutDirection>("direction");
    QTest::newRow("left to right") << Qt::LeftToRight;
    QTest::newRow("right to left") << Qt::RightToLeft;
}

void TestTouchSizes::spinArrows()
{
    QFETCH(const Qt::LayoutDirection, direction);
    QSpinBox spin;
    spin.setLayoutDirection(direction);
    spin.setRange(1, 65535);
    spin.setValue(10);
    spin.show();
    QStyleOptionSpinBox option;
    option.initFrom(&spin);
    option.subControls = QStyle::SC_All;
    const auto part = [&](QStyle::SubControl which) {
        return spin.style()->subControlRect(QStyle::CC_SpinBox, &option, which, &spin);
    };
    const QRect up = part(QStyle::SC_SpinBoxUp);
    const QRect down = part(QStyle::SC_SpinBoxDown);
    const QRect field = part(QStyle::SC_SpinBoxEditField);
    QVERIFY(touchable(up.size()));
    QVERIFY(touchable(down.size()));
    QVERIFY(!up.intersects(down) && !field.intersects(up) && !field.intersects(down));
    QVERIFY(spin.rect().contains(up) && spin.rect().contains(down));
    QVERIFY(field.width() >= spin.fontMetrics().horizontalAdvance(QStringLiteral("65535")));
    // And it is where it is drawn that it works, out to the corners.
    QTest::mouseClick(&spin, Qt::LeftButton, {}, up.topLeft() + QPoint(1, 1));
    QTest::mouseClick(&spin, Qt::LeftButton, {}, up.bottomRight() - QPoint(1, 1));
    QCOMPARE(spin.value(), 12);
    QTest::mouseClick(&spin, Qt::LeftButton, {}, down.bottomLeft() + QPoint(1, -1));
    QCOMPARE(spin.value(), 11);
}

void TestTouchSizes::comboArrow()
{
    const std::unique_ptr<QComboBox> combo(comboBox(true));
    combo->show();
    QStyleOptionComboBox option;
    option.initFrom(combo.get());
    option.editable = true;
    option.subControls = QStyle::SC_All;
    const QRect arrow = combo->style()->subControlRect(QStyle::CC_ComboBox, &option,
                                                       QStyle::SC_ComboBoxArrow, combo.get());
    QVERIFY(touchable(arrow.size()));
    QVERIFY(!arrow.intersects(combo->lineEdit()->geometry()));
}

void TestTouchSizes::wholeCheckBoxIsHit()
{
    QCheckBox box(QStringLiteral("I"));
    box.show();
    box.resize(300, 60);
    QTest::mouseClick(&box, Qt::LeftButton, {}, QPoint(298, 58));
    QVERIFY(box.isChecked());
    QTest::mouseClick(&box, Qt::LeftButton, {}, QPoint(1, 1));
    QVERIFY(!box.isChecked());
}

void TestTouchSizes::groupTitleIsHit()
{
    QGroupBox group(QStringLiteral("I"));
    group.setCheckable(true);
    group.setChecked(true);
    QVBoxLayout column(&group);
    QPushButton button(QStringLiteral("Inside"));
    column.addWidget(&button);
    group.show();
    QTest::mouseClick(&group, Qt::LeftButton, {}, QPoint(1, 1));
    QVERIFY(!group.isChecked());
    QTest::mouseClick(&group, Qt::LeftButton, {}, QPoint(touchSize - 2, touchSize - 2));
    QVERIFY(group.isChecked());
    QVERIFY(button.geometry().top() > touchSize);
    QVERIFY(group.rect().contains(button.geometry()));
}

void TestTouchSizes::tabs()
{
    QTabBar bar;
    bar.addTab(QStringLiteral("I"));
    bar.addTab(QStringLiteral("Second"));
    bar.show();
    for (int i = 0; i < bar.count(); ++i) {
        QVERIFY(touchable(bar.tabRect(i).size()));
    }
    bar.resize(60, bar.height());
    const auto arrows = bar.findChildren<QToolButton *>();
    QCOMPARE(arrows.size(), 2);
    for (const QToolButton *arrow : arrows) {
        QVERIFY2(arrow->width() >= touchSize, qPrintable(words(arrow)));
    }
}

void TestTouchSizes::menus()
{
    QMenu menu;
    const QAction *plain = menu.addAction(QStringLiteral("I"));
    menu.addSeparator();
    QAction *checkable = menu.addAction(QStringLiteral("I"));
    checkable->setCheckable(true);
    menu.popup(QPoint(0, 0));
    QVERIFY(touchable(menu.actionGeometry(const_cast<QAction *>(plain)).size()));
    QVERIFY(touchable(menu.actionGeometry(checkable).size()));

    QMenuBar bar;
    QAction *entry = bar.addMenu(QStringLiteral("I"))->menuAction();
    bar.show();
    QVERIFY(touchable(bar.actionGeometry(entry).size()));
}

void TestTouchSizes::scrollBars()
{
    QListWidget list;
    list.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    list.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    list.resize(300, 300);
    list.show();
    QVERIFY(list.verticalScrollBar()->width() >= touchSize);
    QVERIFY(list.horizontalScrollBar()->height() >= touchSize);
}

void TestTouchSizes::scrollHandleFollows()
{
    QScrollBar bar(Qt::Vertical);
    bar.setRange(0, 100000);
    bar.setPageStep(1);
    bar.resize(touchSize, 400);
    bar.show();
    QStyleOptionSlider option;
    option.initFrom(&bar);
    option.orientation = Qt::Vertical;
    option.maximum = bar.maximum();
    option.pageStep = bar.pageStep();
    option.sliderPosition = bar.value();
    const auto handle = [&] {
        return bar.style()->subControlRect(QStyle::CC_ScrollBar, &option,
                                           QStyle::SC_ScrollBarSlider, &bar);
    };
    QVERIFY(touchable(handle().size()));
    QCOMPARE(handle().top(), 0);
    const QPoint grip = handle().center();
    QTest::mousePress(&bar, Qt::LeftButton, {}, grip);
    QMouseEvent pull(QEvent::MouseMove, grip + QPoint(0, 1000), Qt::NoButton, Qt::LeftButton, {});
    QApplication::sendEvent(&bar, &pull);
    QCOMPARE(bar.value(), bar.maximum());
    option.sliderPosition = bar.value();
    QCOMPARE(handle().bottom(), bar.rect().bottom());
}

void TestTouchSizes::tableRows_data()
{
    QTest::addColumn<bool>("headerHidden");
    QTest::addColumn<int>("ownSize");
    QTest::newRow("default") << false << 0;
    QTest::newRow("hidden header") << true << 0;
    QTest::newRow("small own size") << false << 20;
    QTest::newRow("small own size, hidden header") << true << 20;
    QTest::newRow("large own size") << false << 70;
}

void TestTouchSizes::tableRows()
{
    QFETCH(const bool, headerHidden);
    QFETCH(const int, ownSize);
    QTableWidget table(3, 2);
    table.verticalHeader()->setHidden(headerHidden);
    if (ownSize > 0) {
        table.verticalHeader()->setDefaultSectionSize(ownSize);
    }
    table.show();
    for (int row = 0; row < table.rowCount(); ++row) {
        QVERIFY2(table.rowHeight(row) >= qMax(touchSize, ownSize),
                 qPrintable(QString::number(table.rowHeight(row))));
    }
    table.resizeRowsToContents();
    QVERIFY(table.rowHeight(0) >= touchSize);
    QVERIFY(table.horizontalHeader()->height() >= touchSize);
    QVERIFY(headerHidden || table.verticalHeader()->width() >= touchSize);
}

void TestTouchSizes::listAndTreeRows()
{
    QListWidget list;
    list.addItem(QStringLiteral("I"));
    list.show();
    QVERIFY(list.visualItemRect(list.item(0)).height() >= touchSize);

    QTreeWidget tree;
    tree.addTopLevelItem(new QTreeWidgetItem({QStringLiteral("I")}));
    tree.show();
    QVERIFY(tree.visualItemRect(tree.topLevelItem(0)).height() >= touchSize);
    QVERIFY(tree.header()->height() >= touchSize);
}

void TestTouchSizes::comboRows_data()
{
    QTest::addColumn<bool>("editable");
    QTest::newRow("fixed") << false;
    QTest::newRow("editable") << true;
}

void TestTouchSizes::comboRows()
{
    QFETCH(const bool, editable);
    const std::unique_ptr<QComboBox> combo(comboBox(editable));
    combo->addItem(QStringLiteral("II"));
    combo->show();
    combo->showPopup();
    const QAbstractItemView *view = combo->view();
    QVERIFY(view->visualRect(combo->model()->index(1, 0)).height() >= touchSize);
    combo->hidePopup();
}

void TestTouchSizes::calendar()
{
    QCalendarWidget calendar;
    calendar.show();
    const auto *days = calendar.findChild<QTableView *>();
    QVERIFY(days != nullptr);
    QVERIFY(days->rowHeight(1) >= touchSize && days->columnWidth(1) >= touchSize);
    const QRect last = days->visualRect(days->model()->index(days->model()->rowCount() - 1, 1));
    QVERIFY(days->viewport()->rect().contains(last));
}

void TestTouchSizes::checkDialog(const QWidget &dialog)
{
    QVERIFY2(dialog.width() <= 1024 && dialog.height() <= 512, qPrintable(words(&dialog)));
    int seen = 0;
    for (const QWidget *widget : dialog.findChildren<QWidget *>()) {
        const bool control = qobject_cast<const QAbstractButton *>(widget) != nullptr ||
                             qobject_cast<const QLineEdit *>(widget) != nullptr ||
                             qobject_cast<const QComboBox *>(widget) != nullptr;
        // The corner button of a table and the like belong to another control.
        if (!control || !widget->isVisibleTo(&dialog) ||
            qobject_cast<const QComboBox *>(widget->parentWidget()) != nullptr) {
            continue;
        }
        ++seen;
        QVERIFY2(touchable(widget->size()), qPrintable(words(widget)));
        const QRect place(widget->mapTo(const_cast<QWidget *>(&dialog), QPoint()), widget->size());
        QVERIFY2(dialog.rect().contains(place), qPrintable(words(widget)));
    }
    QVERIFY(seen > 0);
}

void TestTouchSizes::messageBox()
{
    QMessageBox box(QMessageBox::Critical, QStringLiteral("Data error"),
                    QStringLiteral("It is not enoth space on disk!"),
                    QMessageBox::Ok | QMessageBox::Cancel);
    box.show();
    checkDialog(box);
}

void TestTouchSizes::fileDialog()
{
    QFileDialog dialog(nullptr, QStringLiteral("Save"), TestSurroundings::home(),
                       QStringLiteral("Comma separated values file (*.csv);;Dump file (*.tpp)"));
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.show();
    checkDialog(dialog);
    const auto *tree = dialog.findChild<QTreeView *>();
    QVERIFY(tree != nullptr);
    QVERIFY(tree->viewport()->height() >= 4 * touchSize);
}

// It keeps the columns of its list from one time to the next.
void TestTouchSizes::fileDialogForgetsItsColumns()
{
    for (int time = 0; time < 2; ++time) {
        QFileDialog dialog(nullptr, QStringLiteral("Save"), TestSurroundings::home());
        dialog.setOption(QFileDialog::DontUseNativeDialog);
        dialog.show();
        auto *header = dialog.findChild<QTreeView *>()->header();
        QCOMPARE(header->count(), 4);
        QCOMPARE(header->sectionResizeMode(0), QHeaderView::Stretch);
        for (int section = 1; section < header->count(); ++section) {
            QCOMPARE(header->sectionResizeMode(section), QHeaderView::ResizeToContents);
        }
        QCOMPARE(header->length(), header->viewport()->width());
        header->setStretchLastSection(true);
        header->setSectionResizeMode(QHeaderView::Interactive);
        header->resizeSection(3, touchSize);
    }
}

void TestTouchSizes::fileNamesOnOffer()
{
    QVERIFY(QDir::home().mkpath(QStringLiteral("offered")));
    QFileDialog dialog(nullptr, QStringLiteral("Save"), TestSurroundings::home());
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    auto *name = dialog.findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
    const QAbstractItemView *popup = name->completer()->popup();
    // What is typed before the folder has been read finds nothing.
    const auto *files = dialog.findChild<QTreeView *>(QStringLiteral("treeView"));
    QTRY_VERIFY(files->model()->rowCount(files->rootIndex()) > 0);
    name->clear();
    QTest::keyClicks(name, QStringLiteral("off"));
    QTRY_VERIFY(popup->isVisible());
    QVERIFY(popup->model()->rowCount() > 0);
    const QSize row = popup->visualRect(popup->model()->index(0, 0)).size();
    QVERIFY2(touchable(row), qPrintable(QString::number(row.height())));
    QVERIFY(popup->viewport()->height() >= touchSize);
    QVERIFY(!popup->accessibleName().isEmpty());
    name->completer()->popup()->hide();
}

STALLO_TEST_MAIN(TestTouchSizes)
#include "tst_touchsizes.moc"
