// SPDX-License-Identifier: MIT
#include "style/brelwindow.h"
#include "style/metrics.h"
#include "tests/accessibility/panelcase.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QCalendarWidget>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QScreen>
#include <QScrollBar>
#include <QSpinBox>
#include <QStyleOption>
#include <QTableView>

using Metrics::touchSize;

namespace
{

bool touchable(const QSize &size)
{
    return size.width() >= touchSize && size.height() >= touchSize;
}

QString words(const QWidget *widget, const QSize &size)
{
    return QStringLiteral("%1 \"%2\" %3 x %4")
        .arg(QLatin1String(widget->metaObject()->className()), widget->objectName())
        .arg(size.width())
        .arg(size.height());
}

// What belongs to a larger control, whose whole is pressed.
bool isPart(const QWidget *widget)
{
    return widget->focusProxy() != nullptr ||
           qobject_cast<const QComboBox *>(widget->parentWidget()) != nullptr;
}

bool isControl(const QWidget *widget)
{
    return qobject_cast<const QAbstractButton *>(widget) != nullptr ||
           qobject_cast<const QLineEdit *>(widget) != nullptr ||
           qobject_cast<const QPlainTextEdit *>(widget) != nullptr ||
           qobject_cast<const QComboBox *>(widget) != nullptr ||
           qobject_cast<const QAbstractSpinBox *>(widget) != nullptr ||
           qobject_cast<const QScrollBar *>(widget) != nullptr;
}

// Windows whose lists have more rows than there is room for.
bool hasRows(const QString &window)
{
    return QStringList{QStringLiteral("archive"), QStringLiteral("list"), QStringLiteral("online"),
                       QStringLiteral("addresses"), QStringLiteral("files")}
        .contains(window);
}

} // namespace

// Everything that is pressed is large enough for a gloved finger where it stands: in the frame on
// the smallest screen and in every dialog, in each of the panel's languages.
class TestTouchTargets : public PanelCase
{
    Q_OBJECT

private Q_SLOTS:
    void frameKeepsToTheScreen_data();
    void frameKeepsToTheScreen();
    void controls_data();
    void controls();
    void rowsAndTitles_data();
    void rowsAndTitles();
    void arrowsOfFields_data();
    void arrowsOfFields();
    void entriesOfCombos();
    void entriesOfMenus_data();
    void entriesOfMenus();
    void daysOfTheCalendar();
};

void TestTouchTargets::frameKeepsToTheScreen_data()
{
    windows();
}

void TestTouchTargets::frameKeepsToTheScreen()
{
    QFETCH(const QString, window);
    panel_->with(window, [](QWidget &widget) {
        QCOMPARE(widget.screen()->size(), QSize(1024, 512));
        QVERIFY2(widget.width() <= 1024 && widget.height() <= 512,
                 qPrintable(words(&widget, widget.size())));
    });
}

void TestTouchTargets::controls_data()
{
    windows();
}

void TestTouchTargets::controls()
{
    QFETCH(const QString, window);
    panel_->with(window, [&window](QWidget &widget) {
        int seen = 0;
        int bars = 0;
        for (const QWidget *part : widget.findChildren<QWidget *>()) {
            if (!isControl(part) || isPart(part) || !part->isVisible()) {
                continue;
            }
            ++seen;
            bars += qobject_cast<const QScrollBar *>(part) != nullptr ? 1 : 0;
            QVERIFY2(touchable(part->size()), qPrintable(words(part, part->size())));
            // Nothing of it lies outside.
            const QRect place(part->mapTo(&widget, QPoint()), part->size());
            QVERIFY2(widget.rect().contains(place), qPrintable(words(part, part->size())));
            QCOMPARE(part->visibleRegion().boundingRect().size(), part->size());
        }
        QVERIFY(seen > 0 || qobject_cast<QMenu *>(&widget) != nullptr);
        QVERIFY(bars > 0 || !(hasRows(window) || window == QLatin1String("error")));
    });
}

void TestTouchTargets::rowsAndTitles_data()
{
    windows();
}

void TestTouchTargets::rowsAndTitles()
{
    QFETCH(const QString, window);
    panel_->with(window, [&window](QWidget &widget) {
        int views = 0;
        int rows = 0;
        int titled = 0;
        for (const QAbstractItemView *view : widget.findChildren<QAbstractItemView *>()) {
            if (!view->isVisible()) {
                continue;
            }
            if (const auto *titles = qobject_cast<const QHeaderView *>(view)) {
                for (int section = 0; section < titles->count(); ++section) {
                    const QSize size = titles->orientation() == Qt::Horizontal
                                           ? QSize(titles->sectionSize(section), titles->height())
                                           : QSize(titles->width(), titles->sectionSize(section));
                    ++titled;
                    QVERIFY2(titles->isSectionHidden(section) || touchable(size),
                             qPrintable(words(view->parentWidget(), size)));
                }
                continue;
            }
            ++views;
            const QAbstractItemModel *model = view->model();
            for (int row = 0; row < qMin(5, model->rowCount(view->rootIndex())); ++row) {
                // A table's grid belongs to the row above it.
                const auto *table = qobject_cast<const QTableView *>(view);
                const QSize size =
                    table != nullptr
                        ? QSize(table->columnWidth(0), table->rowHeight(row))
                        : view->visualRect(model->index(row, 0, view->rootIndex())).size();
                ++rows;
                QVERIFY2(touchable(size), qPrintable(words(view, size)));
            }
        }
        if (hasRows(window)) {
            QVERIFY(views > 0 && rows >= 5);
            // The addresses are a plain list.
            QVERIFY(titled > 0 || window == QLatin1String("addresses"));
        }
    });
}

void TestTouchTargets::arrowsOfFields_data()
{
    windows();
}

void TestTouchTargets::arrowsOfFields()
{
    QFETCH(const QString, window);
    panel_->with(window, [](QWidget &widget) {
        for (const QAbstractSpinBox *spin : widget.findChildren<QAbstractSpinBox *>()) {
            if (!spin->isVisible()) {
                continue;
            }
            const auto *date = qobject_cast<const QDateTimeEdit *>(spin);
            const bool opensCalendar = date != nullptr && date->calendarPopup();
            QStyleOptionSpinBox arrows;
            arrows.initFrom(spin);
            arrows.buttonSymbols = spin->buttonSymbols();
            arrows.frame = true;
            QStyleOptionComboBox drop;
            drop.initFrom(spin);
            drop.editable = true;
            const QStyle *style = spin->style();
            const QList<QRect> parts =
                opensCalendar ? QList<QRect>{style->subControlRect(QStyle::CC_ComboBox, &drop,
                                                                   QStyle::SC_ComboBoxArrow, spin)}
                              : QList<QRect>{style->subControlRect(QStyle::CC_SpinBox, &arrows,
                                                                   QStyle::SC_SpinBoxUp, spin),
                                             style->subControlRect(QStyle::CC_SpinBox, &arrows,
                                                                   QStyle::SC_SpinBoxDown, spin)};
            for (const QRect &part : parts) {
                QVERIFY2(touchable(part.size()), qPrintable(words(spin, part.size())));
                QVERIFY(spin->rect().contains(part));
            }
        }
    });
}

void TestTouchTargets::entriesOfCombos()
{
    const auto check = [](QComboBox *combo) {
        combo->showPopup();
        const QAbstractItemView *list = combo->view();
        QVERIFY(combo->count() > 0);
        for (int row = 0; row < combo->count(); ++row) {
            const QSize size = list->visualRect(combo->model()->index(row, 0)).size();
            QVERIFY2(touchable(size), qPrintable(words(combo, size)));
        }
        combo->hidePopup();
    };
    panel_->showSuffered();
    check(panel_->page().findChild<QComboBox *>(QStringLiteral("comboBoxGuideline")));
    panel_->with(QStringLiteral("files"), [&check](QWidget &dialog) {
        check(dialog.findChild<QComboBox *>(QStringLiteral("fileTypeCombo")));
    });
}

void TestTouchTargets::entriesOfMenus_data()
{
    QTest::addColumn<QString>("window");
    for (const char *menu : {"passage menu", "list menu", "address menu"}) {
        QTest::newRow(menu) << QString::fromLatin1(menu);
    }
}

void TestTouchTargets::entriesOfMenus()
{
    QFETCH(const QString, window);
    panel_->with(window, [](QWidget &widget) {
        const auto *menu = qobject_cast<QMenu *>(&widget);
        QVERIFY(menu != nullptr && !menu->actions().isEmpty());
        for (QAction *action : menu->actions()) {
            const QSize size = menu->actionGeometry(action).size();
            QVERIFY2(touchable(size), qPrintable(words(menu, size)));
        }
    });
}

void TestTouchTargets::daysOfTheCalendar()
{
    panel_->with(QStringLiteral("calendar"), [](QWidget &popup) {
        const auto *days = popup.findChild<QTableView *>();
        const QAbstractItemModel *model = days->model();
        for (int row = 0; row < model->rowCount(); ++row) {
            for (int column = 0; column < model->columnCount(); ++column) {
                const QRect day = days->visualRect(model->index(row, column));
                // The names of the days and the numbers of the weeks are not pressed.
                if (row > 0 && !day.isEmpty() && !days->isColumnHidden(column)) {
                    QVERIFY2(touchable(day.size()), qPrintable(words(days, day.size())));
                    QVERIFY(days->viewport()->rect().contains(day));
                }
            }
        }
        QVERIFY(popup.screen()->geometry().contains(popup.frameGeometry()));
    });
}

STALLO_TEST_MAIN(TestTouchTargets)
#include "tst_touchtargets.moc"
