// SPDX-License-Identifier: MIT
#include "style/brelstyle.h"
#include "style/metrics.h"
#include "tests/pages/listcase.h"

#include <QComboBox>
#include <QDateTimeEdit>
#include <QLabel>
#include <QMenu>
#include <QPlainTextEdit>
#include <QStackedWidget>
#include <QStyleOption>

#include <algorithm>

namespace
{

using Page = ListPage;

// What the frame leaves of the smallest window, and the page's own size on larger screens.
const QSize smallest(1012, 420);
const QSize sizes[] = {smallest, QSize(1268, 708), QSize(1908, 988)};

QString words(const QWidget *widget)
{
    return QStringLiteral("%1 %2 %3x%4, wants %5x%6")
        .arg(QLatin1String(widget->metaObject()->className()), widget->objectName())
        .arg(widget->width())
        .arg(widget->height())
        .arg(widget->sizeHint().width())
        .arg(widget->sizeHint().height());
}

template <typename... Kinds>
bool isOne(const QWidget *widget)
{
    return ((qobject_cast<const Kinds *>(widget) != nullptr) || ...);
}

// What a finger touches.
bool isControl(const QWidget *widget)
{
    return isOne<QAbstractButton, QLineEdit, QComboBox, QDateTimeEdit, QPlainTextEdit>(widget);
}

} // namespace

// How the access list page fits the screens, in the program's style: everything can be touched and
// read.
class TestSufferedNumbersShape : public ListCase
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void fitsScreens_data();
    void fitsScreens();
    void fitsBusyFace();
    void showsRowsAndColumns();
    void keepsColumnsAsTheOperatorSetThem();
    void showsWholeDatesAndTimes_data();
    void showsWholeDatesAndTimes();
    void showsGuidelines();
    void opensTouchableMenus();

private:
    QRect placeOf(const QWidget *widget) const
    {
        return QRect(widget->mapTo(&page_->page(), QPoint()), widget->size());
    }
    void resize(const QSize &size) const
    {
        page_->page().resize(size);
        QTRY_COMPARE(page_->find<QStackedWidget>("stackedWidget")->size(), size);
        QCOMPARE(page_->page().size(), size);
    }
    // What is worked with or read; the parts of a control belong to it.
    QList<QWidget *> all() const
    {
        QList<QWidget *> found;
        for (QWidget *widget : page_->page().findChildren<QWidget *>()) {
            const QWidget *parent = widget->parentWidget();
            if (widget->isVisible() && (isControl(widget) || isOne<QTableView, QLabel>(widget)) &&
                !isControl(parent) && !isOne<QTableView>(parent)) {
                found << widget;
            }
        }
        return found;
    }
    void expectFits(int controls) const;
};

void TestSufferedNumbersShape::initTestCase()
{
    ListCase::initTestCase();
    auto *style = new BrelStyle;
    QApplication::setStyle(style);
    QApplication::setPalette(style->standardPalette());
}

void TestSufferedNumbersShape::init()
{
    ListCase::init();
    open(Page::list(1000));
    page_->clickRow(1);
}

void TestSufferedNumbersShape::expectFits(int controls) const
{
    int seen = 0;
    const QList<QWidget *> widgets = all();
    for (const QWidget *each : widgets) {
        QVERIFY2(page_->page().rect().contains(placeOf(each)), qPrintable(words(each)));
        if (isControl(each)) {
            ++seen;
            QVERIFY2(each->width() >= Metrics::touchSize && each->height() >= Metrics::touchSize,
                     qPrintable(words(each)));
        }
        // Texts that are not typed are there in full.
        if (isOne<QAbstractButton, QLabel, QDateTimeEdit, QComboBox>(each)) {
            QVERIFY2(each->width() >= each->sizeHint().width() &&
                         each->height() >= each->sizeHint().height(),
                     qPrintable(words(each)));
        }
        for (const QWidget *other : widgets) {
            QVERIFY2(other == each || !placeOf(each).intersects(placeOf(other)),
                     qPrintable(words(each) + QStringLiteral(" on ") + words(other)));
        }
    }
    QCOMPARE(seen, controls);
    static_assert(Metrics::touchSize >= 44, "a gloved finger needs 44 px");
}

void TestSufferedNumbersShape::fitsScreens_data()
{
    QTest::addColumn<QSize>("size");
    for (const QSize &size : sizes) {
        QTest::addRow("%dx%d", size.width(), size.height()) << size;
    }
}

void TestSufferedNumbersShape::fitsScreens()
{
    QFETCH(QSize, size);
    resize(size);
    // Five buttons below; id, number, key, comment, two dates, two times; three buttons of the
    // record; a box, a field and three choices of the filter; the guideline.
    expectFits(5 + 8 + 3 + 5 + 1);
    // Where the number and the key are typed, they are seen whole.
    for (const char *name : {"lineEditNumber", "lineEditKey"}) {
        const auto *edit = page_->find<QLineEdit>(name);
        QVERIFY2(edit->width() > 2 * Metrics::fieldPadding + edit->fontMetrics().horizontalAdvance(
                                                                 QStringLiteral("M000MM000")),
                 qPrintable(words(edit)));
    }
    const auto *id = page_->find<QLineEdit>("lineEditId");
    QVERIFY2(id->width() > 2 * Metrics::fieldPadding +
                               id->fontMetrics().horizontalAdvance(QStringLiteral("1000")),
             qPrintable(words(id)));
    const auto *comment = page_->find<QPlainTextEdit>("textEditComment");
    QVERIFY2(comment->viewport()->height() >= comment->fontMetrics().height(),
             qPrintable(words(comment)));
}

void TestSufferedNumbersShape::fitsBusyFace()
{
    device().faults().add(Fault::silent());
    page_->fetch(host());
    QVERIFY(page_->isBusy());
    resize(smallest);
    expectFits(0);
    const auto *label = page_->find<QLabel>("labelBusy");
    QVERIFY(label->isVisible());
    QCOMPARE(all(), QList<QWidget *>{page_->find<QWidget>("labelBusy")});
}

void TestSufferedNumbersShape::showsRowsAndColumns()
{
    resize(smallest);
    const QTableView *table = page_->table();
    QVERIFY2(table->rowAt(table->viewport()->height() - 1) >= 3, qPrintable(words(table)));
    QVERIFY(table->rowHeight(0) >= Metrics::touchSize);
    const QFontMetrics metrics = table->fontMetrics();
    const QRect number = table->visualRect(table->model()->index(0, AccessModel::NumberColumn));
    QVERIFY(table->viewport()->rect().contains(number));
    const auto isWide = [&](int column, const QString &text) {
        return table->columnWidth(column) > metrics.horizontalAdvance(text);
    };
    QVERIFY(isWide(AccessModel::IdColumn, QStringLiteral("1000")));
    QVERIFY(isWide(AccessModel::NumberColumn, QStringLiteral("M000MM000")));
    QVERIFY(isWide(AccessModel::FromColumn, page_->cell(0, AccessModel::FromColumn)));
    QVERIFY(isWide(AccessModel::TillColumn, QStringLiteral("30 September 2026 23:59:59")));
}

void TestSufferedNumbersShape::keepsColumnsAsTheOperatorSetThem()
{
    page_->table()->setColumnWidth(AccessModel::CommentColumn, 321);
    page_->page().hide();
    page_->page().show();
    QCOMPARE(page_->table()->columnWidth(AccessModel::CommentColumn), 321);
    giveDevice(Page::list(40));
    page_->fetch(host());
    QVERIFY(page_->becomesIdle());
    QCOMPARE(page_->table()->columnWidth(AccessModel::CommentColumn), 321);
}

void TestSufferedNumbersShape::showsWholeDatesAndTimes_data()
{
    QTest::addColumn<QByteArray>("name");
    for (const char *name : {"dateEditFrom", "dateEditTill", "timeEditFrom", "timeEditTill"}) {
        QTest::newRow(name) << QByteArray(name);
    }
}

void TestSufferedNumbersShape::showsWholeDatesAndTimes()
{
    QFETCH(QByteArray, name);
    resize(smallest);
    auto *edit = page_->find<QDateTimeEdit>(name.constData());
    edit->setDateTime(QDateTime(QDate(2026, 12, 30), QTime(20, 58, 58)));
    auto *line = edit->findChild<QLineEdit *>();
    QVERIFY2(line->width() >= line->fontMetrics().horizontalAdvance(edit->text()),
             qPrintable(words(edit) + QLatin1Char(' ') + words(line) + edit->text()));
    QVERIFY(edit->rect().contains(line->geometry()));
    // The year with all its digits.
    if (name.startsWith("date")) {
        QVERIFY2(edit->text().contains(QStringLiteral("2026")), qPrintable(edit->text()));
    }
}

void TestSufferedNumbersShape::showsGuidelines()
{
    resize(smallest);
    auto *box = page_->find<QComboBox>("comboBoxGuideline");
    QCOMPARE(box->count(), 6);
    QStyleOptionComboBox option;
    option.initFrom(box);
    option.subControls = QStyle::SC_All;
    const QRect field = box->style()->subControlRect(QStyle::CC_ComboBox, &option,
                                                     QStyle::SC_ComboBoxEditField, box);
    for (int each = 0; each < box->count(); ++each) {
        QVERIFY2(box->fontMetrics().horizontalAdvance(box->itemText(each)) <= field.width(),
                 qPrintable(box->itemText(each)));
    }
    box->showPopup();
    const QAbstractItemView *view = box->view();
    for (int each = 0; each < box->count(); ++each) {
        const QRect row = view->visualRect(box->model()->index(each, 0));
        QVERIFY(row.height() >= Metrics::touchSize);
        QVERIFY2(row.width() >= view->fontMetrics().horizontalAdvance(box->itemText(each)),
                 qPrintable(box->itemText(each)));
    }
    box->hidePopup();
    QCOMPARE(page_->find<QLabel>("labelGuideline")->text(),
             QStringLiteral("The guideline of number coincidence"));
}

void TestSufferedNumbersShape::opensTouchableMenus()
{
    QMenu *menu = page_->menu();
    menu->popup(QPoint(10, 10));
    const QSize action = menu->actionGeometry(menu->actions().first()).size();
    QVERIFY(action.width() >= Metrics::touchSize && action.height() >= Metrics::touchSize);
    menu->close();
}

STALLO_TEST_MAIN(TestSufferedNumbersShape)
#include "tst_sufferednumbersshape.moc"
