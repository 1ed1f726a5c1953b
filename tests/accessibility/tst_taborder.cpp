// SPDX-License-Identifier: MIT
#include "netsetup/screenkeybord.h"
#include "style/brelwindow.h"
#include "tests/accessibility/panelcase.h"

#include <QAbstractButton>
#include <QCalendarWidget>
#include <QContextMenuEvent>
#include <QMenu>
#include <QRadioButton>
#include <QSet>
#include <QTableView>

#include <algorithm>
namespace
{

// The page buttons have no names of their own: page1 to page3.
QString nameOf(const QWidget *widget)
{
    if (!widget->objectName().isEmpty()) {
        return widget->objectName();
    }
    int place = 0;
    for (const QAbstractButton *button : widget->parentWidget()->findChildren<QAbstractButton *>(
             QString(), Qt::FindDirectChildrenOnly)) {
        place += button->objectName().isEmpty() ? 1 : 0;
        if (button == widget) {
            return (widget->parentWidget()->objectName().isEmpty()
                        ? QStringLiteral("page%1")
                        : widget->parentWidget()->objectName() + QStringLiteral("_%1"))
                .arg(place);
        }
    }
    return QLatin1String(widget->metaObject()->className());
}

QString focus()
{
    const QWidget *widget = QApplication::focusWidget();
    return widget != nullptr ? nameOf(widget) : QString();
}

void press(Qt::Key key)
{
    QTest::keyClick(QApplication::focusWidget(), key);
}

const QString titleBar =
    QStringLiteral("page1 page2 page3 buttonMinimize buttonMaximize buttonClose ");

} // namespace

// The panel by the keyboard alone: Tab and Shift+Tab lead through all there is, in reading order,
// in each of its languages.
class TestTabOrder : public PanelCase
{
    Q_OBJECT

private Q_SLOTS:
    void walksThroughAll_data();
    void walksThroughAll();
    void leavesNothingOut_data();
    void leavesNothingOut();
    void choicesByArrows_data();
    void choicesByArrows();
    void rowsByArrowsAndOut_data();
    void rowsByArrowsAndOut();
    void menuByItsKey();
    void calendarByKeys();
    void keypadLeavesTheFocus();

private:
    // Presses the key until the focus is back where it was; each control once, however many parts
    // of it the key stops at.
    static QStringList walk(Qt::Key key);
};

QStringList TestTabOrder::walk(Qt::Key key)
{
    constexpr int most = 200;
    QStringList visited;
    const QString first = focus();
    for (int step = 0; step < most; ++step) {
        const QString here = focus();
        if (visited.isEmpty() || here != visited.last()) {
            if (here == first && !visited.isEmpty()) {
                return visited;
            }
            visited << here;
        }
        press(key);
    }
    visited << QStringLiteral("and so on");
    return visited;
}

void TestTabOrder::walksThroughAll_data()
{
    QTest::addColumn<QString>("window");
    QTest::addColumn<QString>("order");
    const auto row = [](const char *window, const QString &order) {
        QTest::newRow(window) << QString::fromLatin1(window) << order;
    };
    row("archive", titleBar + QStringLiteral("tableViewArchive checkBoxFilter lineEditFilter "
                                             "radioButtonFull buttonNewTable buttonLoadFromNetwork "
                                             "buttonLoad buttonSave buttonSavePhoto"));
    row("archive, busy", titleBar + QStringLiteral("cancelProgress"));
    row("list", titleBar + QStringLiteral("tableViewSuffered checkBoxFilter lineEditFilter "
                                          "radioButtonFull lineEditId lineEditNumber dateEditFrom "
                                          "timeEditFrom dateEditTill timeEditTill lineEditKey "
                                          "textEditComment buttonNew buttonDelete buttonApply "
                                          "comboBoxGuideline buttonNewTable buttonLoadFromNetwork "
                                          "buttonSaveToNetwork buttonLoad buttonSave"));
    row("list, busy", titleBar.trimmed());
    row("online",
        titleBar + QStringLiteral("buttonSelectDevice1 buttonDisconnect1 buttonOpenBarrier1 "
                                  "buttonSelectDevice2 buttonDisconnect2 buttonOpenBarrier2 "
                                  "tableViewOnLine buttonNewTable buttonSave buttonSavePhoto"));
    row("online, busy", titleBar.trimmed());
    row("addresses", QStringLiteral("listWidgetAddresses buttonNew buttonRemove lineEditAddress "
                                    "spinBoxTPPort spinBoxFileTransfer buttonOk buttonCancel"));
    row("interval", QStringLiteral("rbBySelection deFrom teFrom deTo teTo buttonBox_1 "
                                   "buttonBox_2"));
    row("network", QStringLiteral("leHostName leDomainName cbUseDHCP leIPAddress leNetorkmask "
                                  "leGateway le1DNS le2DNS pbApply pbCancel"));
    row("error", QStringLiteral("textBrowser buttonOk"));
    row("message", QStringLiteral("qt_msgbox_buttonbox_1 qt_msgbox_buttonbox_2"));
    row("files", QStringLiteral("lookInCombo toParentButton newFolderButton listModeButton "
                                "detailModeButton sidebar treeView fileNameEdit fileTypeCombo "
                                "buttonBox_2"));
}

void TestTabOrder::walksThroughAll()
{
    QFETCH(const QString, window);
    QFETCH(const QString, order);
    const QStringList wanted = order.split(QLatin1Char(' '));
    panel_->with(window, [&](QWidget &widget) {
        for (QWidget *part : widget.findChildren<QWidget *>()) {
            if (part->isVisible() && nameOf(part) == wanted.first() &&
                part->focusPolicy() != Qt::NoFocus) {
                part->setFocus(Qt::TabFocusReason);
            }
        }
        QCOMPARE(walk(Qt::Key_Tab), wanted);
        QStringList back = walk(Qt::Key_Backtab);
        back << back.takeFirst();
        std::reverse(back.begin(), back.end());
        QCOMPARE(back, wanted);
    });
}

void TestTabOrder::leavesNothingOut_data()
{
    QTest::addColumn<QString>("window");
    for (const QString &window : Panel::windows()) {
        // Menus and the calendar have keys of their own.
        if (!window.endsWith(QLatin1String("menu")) && window != QLatin1String("calendar")) {
            QTest::newRow(qPrintable(window)) << window;
        }
    }
}

void TestTabOrder::leavesNothingOut()
{
    QFETCH(const QString, window);
    panel_->with(window, [](QWidget &widget) {
        if (QApplication::focusWidget() == nullptr) {
            QTest::keyClick(&widget, Qt::Key_Tab);
        }
        const QStringList order = walk(Qt::Key_Tab);
        const QSet<QString> visited(order.begin(), order.end());
        for (const QWidget *part : widget.findChildren<QWidget *>()) {
            const auto *button = qobject_cast<const QAbstractButton *>(part);
            const bool works = button != nullptr || (part->focusPolicy() & Qt::TabFocus) != 0;
            if (!works || !part->isVisible() || !part->isEnabled() ||
                part->focusProxy() != nullptr || visited.contains(nameOf(part))) {
                continue;
            }
            // The choices beside the one that is visited come by arrows, the keys of the pad type
            // what the keyboard has anyway, and Ctrl+A is the corner of a table.
            const bool otherwise =
                qobject_cast<const QRadioButton *>(part) != nullptr ||
                qobject_cast<const ScreenKeybord *>(part->parentWidget()) != nullptr ||
                qobject_cast<const QTableView *>(part->parentWidget()) != nullptr;
            QVERIFY2(otherwise, qPrintable(nameOf(part)));
        }
    });
}

void TestTabOrder::choicesByArrows_data()
{
    QTest::addColumn<QString>("window");
    QTest::addColumn<QStringList>("choices");
    const QStringList modes = {QStringLiteral("radioButtonFull"),
                               QStringLiteral("radioButtonNotRegionalSymbols"),
                               QStringLiteral("radioButtonNotRegionalNumbers")};
    QTest::newRow("archive") << QStringLiteral("archive") << modes;
    QTest::newRow("list") << QStringLiteral("list") << modes;
    QTest::newRow("interval") << QStringLiteral("interval")
                              << QStringList{QStringLiteral("rbAllArchive"),
                                             QStringLiteral("rbBySelection")};
}

void TestTabOrder::choicesByArrows()
{
    QFETCH(const QString, window);
    QFETCH(const QStringList, choices);
    panel_->with(window, [&](QWidget &widget) {
        QWidget *parent = window == QLatin1String("interval") ? &widget : &panel_->page();
        const auto choice = [parent](const QString &name) {
            return parent->findChild<QRadioButton *>(name);
        };
        choice(choices.first())->setFocus();
        choice(choices.first())->setChecked(true);
        QSet<QString> reached;
        // The arrows go where the choices lie.
        for (const Qt::Key arrow :
             {Qt::Key_Down, Qt::Key_Down, Qt::Key_Right, Qt::Key_Up, Qt::Key_Left, Qt::Key_Down}) {
            reached.insert(focus());
            QVERIFY2(choices.contains(focus()), qPrintable(focus()));
            QVERIFY(choice(focus())->isChecked());
            press(arrow);
        }
        QCOMPARE(reached, QSet<QString>(choices.begin(), choices.end()));
        choice(choices.first())->setFocus();
        choice(choices.first())->setChecked(true);
    });
}

void TestTabOrder::rowsByArrowsAndOut_data()
{
    QTest::addColumn<QString>("window");
    for (const char *window : {"archive", "list", "online"}) {
        QTest::newRow(window) << QString::fromLatin1(window);
    }
}

void TestTabOrder::rowsByArrowsAndOut()
{
    QFETCH(const QString, window);
    panel_->with(window, [&](QWidget &) {
        QTableView *table = panel_->table();
        table->setFocus();
        table->setCurrentIndex(table->model()->index(1, 0));
        press(Qt::Key_Down);
        QCOMPARE(table->currentIndex().row(), 2);
        press(Qt::Key_End);
        press(Qt::Key_Tab);
        QVERIFY(!table->hasFocus());
        QCOMPARE(table->currentIndex().row(), 2);
        press(Qt::Key_Backtab);
        QVERIFY(table->hasFocus());
    });
}

// As the window system tells of the menu key.
void TestTabOrder::menuByItsKey()
{
    for (const char *window : {"archive", "list", "online"}) {
        panel_->with(QString::fromLatin1(window), [&](QWidget &) {
            QTableView *table = panel_->table();
            table->setFocus();
            const QPoint place(20, 20);
            QContextMenuEvent event(QContextMenuEvent::Keyboard, place, table->mapToGlobal(place));
            QApplication::sendEvent(QApplication::focusWidget(), &event);
            auto *menu = table->findChild<QMenu *>();
            QVERIFY(menu->isVisible());
            QTest::keyClick(menu, Qt::Key_Escape);
            QVERIFY(!menu->isVisible());
        });
    }
}

// It opens under a finger only; by the keyboard a day is typed.
void TestTabOrder::calendarByKeys()
{
    panel_->with(QStringLiteral("calendar"), [](QWidget &popup) {
        auto *calendar = popup.findChild<QCalendarWidget *>();
        const int month = calendar->selectedDate().month();
        press(Qt::Key_PageDown);
        QCOMPARE(calendar->selectedDate().month(), month % 12 + 1);
        press(Qt::Key_PageUp);
        QCOMPARE(calendar->selectedDate().month(), month);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
        QVERIFY(!popup.isVisible());
    });
}

// Its keys never take the focus: what they type goes to the field that has it.
void TestTabOrder::keypadLeavesTheFocus()
{
    for (const char *window : {"addresses", "network"}) {
        panel_->with(QString::fromLatin1(window), [](QWidget &widget) {
            const auto keys =
                widget.findChild<ScreenKeybord *>()->findChildren<QAbstractButton *>();
            QCOMPARE(keys.size(), 14);
            const QString before = focus();
            for (QAbstractButton *key : keys) {
                QCOMPARE(key->focusPolicy(), Qt::NoFocus);
                QTest::mousePress(key, Qt::LeftButton, {}, QPoint(-1, -1));
                QCOMPARE(focus(), before);
                QTest::mouseRelease(key, Qt::LeftButton, {}, QPoint(-1, -1));
            }
        });
    }
}

STALLO_TEST_MAIN(TestTabOrder)
#include "tst_taborder.moc"
