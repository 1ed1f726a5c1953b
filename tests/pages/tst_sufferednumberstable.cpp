// SPDX-License-Identifier: MIT
#include "tests/pages/listcase.h"
#include "tests/support/filelimit.h"

#include <QContextMenuEvent>
#include <QLabel>
#include <QMenu>

namespace
{

using Page = ListPage;

} // namespace

Q_DECLARE_METATYPE(Qt::Key)
Q_DECLARE_METATYPE(Qt::KeyboardModifiers)

// The rows of the table: deleted, filtered, and what the keys and the context menu do.
class TestSufferedNumbersTable : public ListCase
{
    Q_OBJECT

private Q_SLOTS:
    void asksBeforeDeleting();
    void deletesNothingUnlessTold_data();
    void deletesNothingUnlessTold();
    void deletesSelectedRows_data();
    void deletesSelectedRows();
    void tellsFailedRemoval();
    void filters_data();
    void filters();
    void clearsTextOfOtherMode();
    void editsFilteredRows();
    void opensContextMenu();
    void obeysShortcuts_data();
    void obeysShortcuts();
    void appliesAndFiltersByKeys();
    void hidesButtonsWhenBusy();
};

void TestSufferedNumbersTable::asksBeforeDeleting()
{
    open(Page::list(3));
    page_->press("buttonDelete"); // nothing is selected
    QCOMPARE(page_->answers().given(), 0);
    page_->clickRow(1);
    QStringList texts;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    QMessageBox::StandardButtons buttons;
    page_->answers().expect([&](QWidget *window) {
        auto *box = qobject_cast<QMessageBox *>(window);
        QVERIFY(box != nullptr);
        texts << box->windowTitle() << box->text();
        icon = box->icon();
        buttons = box->standardButtons();
        QTest::mouseClick(box->button(QMessageBox::Cancel), Qt::LeftButton);
    });
    page_->press("buttonDelete");
    QCOMPARE(texts, (QStringList{QStringLiteral("Suffered numbers"),
                                 QStringLiteral("Do you want to remove this records?")}));
    QCOMPARE(icon, QMessageBox::Warning);
    QCOMPARE(buttons, QMessageBox::Ok | QMessageBox::Cancel);
    QCOMPARE(page_->answers().given(), 1);
    QCOMPARE(ownList(), Page::list(3));
}

void TestSufferedNumbersTable::deletesNothingUnlessTold_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("Escape") << Qt::Key_Escape;
    QTest::newRow("window closed") << Qt::Key_unknown;
}

void TestSufferedNumbersTable::deletesNothingUnlessTold()
{
    QFETCH(Qt::Key, key);
    open(Page::list(3));
    page_->clickRow(1);
    page_->answers().expect([key](QWidget *window) {
        if (key == Qt::Key_unknown) {
            window->close();
        } else {
            QTest::keyClick(window, key);
        }
    });
    page_->press("buttonDelete");
    QCOMPARE(page_->answers().given(), 1);
    QCOMPARE(ownList(), Page::list(3));
    QCOMPARE(page_->currentRow(), 1);
}

void TestSufferedNumbersTable::deletesSelectedRows_data()
{
    QTest::addColumn<QVector<int>>("rows");
    QTest::addColumn<QVector<int>>("left");
    using Rows = QVector<int>;
    QTest::newRow("first") << Rows{0} << Rows{1, 2, 3, 4, 5};
    QTest::newRow("last") << Rows{5} << Rows{0, 1, 2, 3, 4};
    QTest::newRow("in the midst") << Rows{2} << Rows{0, 1, 3, 4, 5};
    QTest::newRow("two beside each other") << Rows{2, 3} << Rows{0, 1, 4, 5};
    QTest::newRow("apart, out of order") << Rows{4, 0, 2} << Rows{1, 3, 5};
    QTest::newRow("all") << Rows{0, 1, 2, 3, 4, 5} << Rows{};
}

void TestSufferedNumbersTable::deletesSelectedRows()
{
    QFETCH(QVector<int>, rows);
    QFETCH(QVector<int>, left);
    open(Page::list(6));
    for (const int row : qAsConst(rows)) {
        page_->clickRow(row, row == rows.first() ? Qt::NoModifier : Qt::ControlModifier);
    }
    remove();
    QCOMPARE(ownList(), listOf(left));
    QCOMPARE(page_->rows(), left.size());
    // What the editor shows is the current row, if there is one.
    if (page_->currentRow() >= 0) {
        expectEdited(listed(left.at(page_->currentRow())));
    }
}

void TestSufferedNumbersTable::tellsFailedRemoval()
{
    open(Page::list(3));
    page_->clickRow(0);
    const FileLimit disk(0);
    page_->answers().expect([](QWidget *window) { QTest::keyClick(window, Qt::Key_Enter); });
    QCOMPARE(errorAfter([this] {
                 QTimer::singleShot(0, &page_->page(), &SufferedNumbersWidget::deleteRecord);
             }),
             QStringLiteral("Error|Can't remove row"));
    QCOMPARE(ownList(), Page::list(3));
    QCOMPARE(page_->rows(), 3);
}

void TestSufferedNumbersTable::filters_data()
{
    QTest::addColumn<QByteArray>("mode");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("left");
    const auto row = [](const char *name, const char *mode, const char *typed, const char *left) {
        QTest::newRow(name) << QByteArray(mode) << QString::fromLatin1(typed)
                            << QString::fromLatin1(left);
    };
    const char *whole = "radioButtonFull";
    const char *symbols = "radioButtonNotRegionalSymbols";
    const char *digits = "radioButtonNotRegionalNumbers";
    row("whole", whole, "A123BC77", "A123BC77");
    row("whole, small letters", whole, "a123", "A123BC77 A123XX99");
    row("nothing found", whole, "Z", "");
    row("symbols", symbols, "abc", "A123BC77 A456BC78");
    row("symbols, any letter", symbols, "a*c", "A123BC77 A456BC78");
    row("digits", digits, "123", "A123BC77 A123XX99 B123BC77");
}

void TestSufferedNumbersTable::filters()
{
    QFETCH(QByteArray, mode);
    QFETCH(QString, typed);
    QFETCH(QString, left);
    QByteArray list;
    for (const char *number : {"A123BC77", "A456BC78", "A123XX99", "B123BC77"}) {
        Access access = Page::entry(1);
        access.setNumber(QString::fromLatin1(number));
        list += Page::bytes(access);
    }
    open(list);
    choose("checkBoxFilter");
    QVERIFY(page_->find<QLineEdit>("lineEditFilter")->isEnabled());
    choose(mode.constData());
    type("lineEditFilter", typed);
    QTRY_COMPARE(numbers(), left);
    choose("checkBoxFilter"); // off
    QTRY_COMPARE(page_->rows(), 4);
    QVERIFY(!page_->find<QLineEdit>("lineEditFilter")->isEnabled());
    QCOMPARE(ownList(), list);
}

void TestSufferedNumbersTable::clearsTextOfOtherMode()
{
    open(Page::list(3));
    choose("checkBoxFilter");
    type("lineEditFilter", QStringLiteral("A001"));
    QTRY_COMPARE(page_->rows(), 1);
    choose("radioButtonNotRegionalNumbers");
    choose("radioButtonFull");
    type("lineEditFilter", QStringLiteral("!"));
    QCOMPARE(page_->find<QLineEdit>("lineEditFilter")->text(), QString());
    choose("radioButtonNotRegionalNumbers");
    type("lineEditFilter", QStringLiteral("001"));
    QTRY_COMPARE(page_->rows(), 1);
    choose("radioButtonFull");
    QCOMPARE(page_->find<QLineEdit>("lineEditFilter")->text(), QString());
    QTRY_COMPARE(page_->rows(), 3);
}

// What is done to a row is done to the entry that it shows.
void TestSufferedNumbersTable::editsFilteredRows()
{
    open(Page::list(9));
    choose("checkBoxFilter");
    type("lineEditFilter", QStringLiteral("A007"));
    QTRY_COMPARE(page_->rows(), 1);
    page_->clickRow(0);
    expectEdited(listed(7));
    type("lineEditKey", QStringLiteral("new key"));
    page_->press("buttonApply");
    Access edited = listed(7);
    edited.setAccessKey(QStringLiteral("new key"));
    QCOMPARE(ownList(), Page::list(7) + Page::bytes(edited) + listOf({8}));
    // A new one that the filter does not hide becomes current in its place.
    page_->press("buttonNew");
    QCOMPARE(page_->rows(), 2);
    QCOMPARE(page_->currentRow(), 1);
    QCOMPARE(page_->edited().id(), qint16(10));
    remove();
    page_->clickRow(0);
    remove();
    QCOMPARE(page_->rows(), 0);
    QCOMPARE(ownList(), Page::list(7) + listOf({8}));
    choose("checkBoxFilter");
    QTRY_COMPARE(page_->rows(), 8);
}

void TestSufferedNumbersTable::opensContextMenu()
{
    open(Page::list(3));
    QMenu *menu = page_->menu();
    QCOMPARE(menu->title(), QStringLiteral("Append to Vask"));
    QCOMPARE(menu->actions().size(), 1);
    QAction *action = menu->actions().first();
    QCOMPARE(action->text(), QStringLiteral("Append to Vask"));
    action->trigger(); // without a row
    QCOMPARE(page_->answers().given(), 0);
    page_->clickRow(1);
    QWidget *viewport = page_->table()->viewport();
    // At the left, where the menu has space on every screen.
    const QPoint place(
        4, page_->table()->visualRect(page_->table()->model()->index(1, 0)).center().y());
    QContextMenuEvent event(QContextMenuEvent::Mouse, place, viewport->mapToGlobal(place));
    QCoreApplication::sendEvent(viewport, &event);
    QVERIFY(menu->isVisible());
    QCOMPARE(menu->pos(), viewport->mapToGlobal(place));
    QString seen;
    page_->answers().expect([&seen](QWidget *window) {
        seen = window->windowTitle();
        window->close();
    });
    QTest::mouseClick(menu, Qt::LeftButton, Qt::NoModifier, menu->actionGeometry(action).center());
    QTRY_COMPARE(seen, QStringLiteral("Vask-parking devices configurator"));
    QVERIFY(!page_->isBusy()); // nothing was chosen
    QCOMPARE(device().journal().countRequests(), 0);
}

void TestSufferedNumbersTable::obeysShortcuts_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::addColumn<QString>("dialog"); // that comes up
    QTest::addColumn<int>("rows");
    const auto row = [](const char *name, Qt::Key key, Qt::KeyboardModifiers modifiers,
                        const char *dialog, int rows) {
        QTest::newRow(name) << key << modifiers << QString::fromLatin1(dialog) << rows;
    };
    const char *addresses = "Vask-parking devices configurator";
    row("Ctrl+N", Qt::Key_N, Qt::ControlModifier, "", 4);
    row("Ctrl+R", Qt::Key_R, Qt::ControlModifier, "Suffered numbers", 3);
    row("Alt+N", Qt::Key_N, Qt::AltModifier, "", 0);
    row("Alt+Shift+W", Qt::Key_W, Qt::AltModifier | Qt::ShiftModifier, addresses, 3);
    row("Alt+W", Qt::Key_W, Qt::AltModifier, addresses, 3);
    row("Alt+L", Qt::Key_L, Qt::AltModifier, "Open suffered table from file", 3);
    row("Alt+S", Qt::Key_S, Qt::AltModifier, "Save suffered table to file", 3);
}

void TestSufferedNumbersTable::obeysShortcuts()
{
    QFETCH(Qt::Key, key);
    QFETCH(Qt::KeyboardModifiers, modifiers);
    QFETCH(QString, dialog);
    QFETCH(int, rows);
    open(Page::list(3));
    page_->clickRow(1);
    QString seen;
    if (!dialog.isEmpty()) {
        page_->answers().expect([&seen](QWidget *window) {
            seen = window->windowTitle();
            window->close();
        });
    }
    auto *comment = page_->find<QWidget>("textEditComment");
    comment->setFocus(); // as when the last thing was typed there
    QTest::keyClick(comment, key, modifiers);
    QTRY_COMPARE(seen, dialog);
    QTRY_COMPARE(page_->rows(), rows);
    QCOMPARE(device().journal().countRequests(), 0);
}

void TestSufferedNumbersTable::appliesAndFiltersByKeys()
{
    open(Page::list(3));
    page_->clickRow(1);
    type("lineEditNumber", QStringLiteral("X123YZ77"));
    QTest::keyClick(page_->find<QWidget>("lineEditNumber"), Qt::Key_Return, Qt::ControlModifier);
    QTRY_COMPARE(page_->cell(1, AccessModel::NumberColumn), QStringLiteral("X123YZ77"));
    // Not a line end in the comment.
    type("lineEditNumber", QStringLiteral("Z1"));
    QTest::keyClick(page_->find<QWidget>("textEditComment"), Qt::Key_Return, Qt::ControlModifier);
    QTRY_COMPARE(page_->cell(1, AccessModel::NumberColumn), QStringLiteral("Z1"));
    QCOMPARE(page_->cell(1, AccessModel::CommentColumn), listed(1).comment());
    QTest::keyClick(page_->find<QWidget>("lineEditNumber"), Qt::Key_F, Qt::AltModifier);
    QTRY_VERIFY(page_->find<QLineEdit>("lineEditFilter")->isEnabled());
}

void TestSufferedNumbersTable::hidesButtonsWhenBusy()
{
    open(Page::list(3));
    page_->clickRow(1);
    type("lineEditNumber", QStringLiteral("X1"));
    device().faults().add(Fault::silent());
    page_->fetch(host());
    QVERIFY(page_->isBusy());
    QVERIFY(page_->find<QLabel>("labelBusy")->isVisible());
    const int given = page_->answers().given();
    for (const Qt::Key key : {Qt::Key_N, Qt::Key_R, Qt::Key_Return}) {
        QTest::keyClick(&page_->page(), key, Qt::ControlModifier);
    }
    for (const Qt::Key key : {Qt::Key_N, Qt::Key_L, Qt::Key_S, Qt::Key_W}) {
        QTest::keyClick(&page_->page(), key, Qt::AltModifier);
    }
    QTest::keyClick(&page_->page(), Qt::Key_W, Qt::AltModifier | Qt::ShiftModifier);
    // A key presses a button for a moment.
    for (const QPushButton *button : page_->page().findChildren<QPushButton *>()) {
        QVERIFY2(!button->isDown() && !button->isVisible(), qPrintable(button->text()));
    }
    QCOMPARE(page_->answers().given(), given);
    QCOMPARE(ownList(), Page::list(3));
}

STALLO_TEST_MAIN(TestSufferedNumbersTable)
#include "tst_sufferednumberstable.moc"
