// SPDX-License-Identifier: MIT
#include "tests/pages/archivefilescase.h"

#include "app/shellaccess.h"
#include "net/events.h"
#include "style/brelstyle.h"
#include "style/brelwindow.h"
#include "style/brelwindowtitle.h"
#include "style/metrics.h"

#include <QCheckBox>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QRadioButton>
#include <QStackedWidget>

namespace
{

QByteArray bytes(const Access &access)
{
    return QByteArray(access.data(), Access::size);
}

QByteArray entryOf(const Scan &scan)
{
    Access access;
    access.setNumber(scan.number());
    access.setAccessKey(scan.accessKey());
    access.setComment(scan.comment());
    return bytes(access);
}

// Takes access entries, as the main window does.
class Receiver : public QWidget
{
public:
    QVector<QByteArray> entries;

protected:
    void customEvent(QEvent *event) override
    {
        if (static_cast<int>(event->type()) == EventNumber::Suffered) {
            entries.append(bytes(static_cast<SufferedEvent *>(event)->access()));
        }
    }
};

QString named(const char *origin)
{
    return QStringLiteral("<center><font color='white' size='+2'>Archive view - </font>"
                          "<font color='White' size='+2'><I>") +
           QLatin1String(origin) + QStringLiteral("</I></center>");
}

QString words(const QWidget *widget)
{
    return QStringLiteral("%1 %2 %3x%4, wants %5x%6")
        .arg(QLatin1String(widget->metaObject()->className()), widget->objectName())
        .arg(widget->width())
        .arg(widget->height())
        .arg(widget->sizeHint().width())
        .arg(widget->sizeHint().height());
}

} // namespace

// What the Archive page tells the frame around it and the other pages, what it is told by events,
// and how it fits the smallest screen, in the program's style.
class TestArchiveWidgetShell : public ArchiveFilesCase
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        auto *style = new BrelStyle;
        QApplication::setStyle(style);
        QApplication::setPalette(style->standardPalette());
    }
    void init()
    {
        frame_ = std::make_unique<BrelWindow>();
        receiver_ = new Receiver; // the frame's
        frame_->setCentralWidget(receiver_);
        topLevelBrelWindow = frame_.get();
        setUp();
    }
    void cleanup()
    {
        tearDown();
        ShellAccess::setMainWindow(nullptr);
        topLevelBrelWindow = nullptr;
        frame_.reset();
    }

    void namesOrigin();
    void keepsOriginWhenLoadFails();
    void namesOriginOnlyWhileVisible();
    void worksWithoutFrame();
    void handsNumberOver();
    void handsNumberToMainWindowWithoutFrame();
    void handsNothingOver();
    void opensContextMenu();
    void warnsOfPipe();
    void showsProgress();
    void fitsSmallestScreen_data();
    void fitsSmallestScreen();
    void fitsDetailsOnSmallestScreen();
    void fitsColumnsToWhatTheyShow();
    void keepsColumnsAsTheOperatorSetThem();

private:
    QString title() const { return frame_->brelWindowTitle()->deviceName(); }
    QMenu *menu() const { return page_->table()->findChild<QMenu *>(); }
    // What is worked with or read on the face on view.
    QList<QWidget *> controls() const
    {
        QList<QWidget *> found;
        for (QWidget *widget : page_->page().findChildren<QWidget *>()) {
            const bool control = qobject_cast<QAbstractButton *>(widget) != nullptr ||
                                 qobject_cast<QLineEdit *>(widget) != nullptr ||
                                 qobject_cast<QTableView *>(widget) != nullptr ||
                                 qobject_cast<QLabel *>(widget) != nullptr ||
                                 widget->objectName() == QLatin1String("progressPie");
            // The corner of a table belongs to it.
            if (control && widget->isVisible() &&
                qobject_cast<QTableView *>(widget->parentWidget()) == nullptr) {
                found << widget;
            }
        }
        return found;
    }
    QRect placeOf(const QWidget *widget) const
    {
        return QRect(widget->mapTo(&page_->page(), QPoint()), widget->size());
    }
    void showSmall(const char *face)
    {
        auto *stack = page_->find<QStackedWidget>("stackedWidget");
        stack->setCurrentWidget(page_->find<QWidget>(face));
        page_->page().resize(1012, 420);
        QTRY_COMPARE(stack->width(), 1012);
        QCOMPARE(page_->page().size(), QSize(1012, 420));
    }

    std::unique_ptr<BrelWindow> frame_;
    Receiver *receiver_ = nullptr;
};

void TestArchiveWidgetShell::namesOrigin()
{
    QCOMPARE(title(), named(""));
    load(makeDump(QStringLiteral("table.tpp"), 2));
    QCOMPARE(title(), named("local"));
    page_->press("buttonNewTable");
    QCOMPARE(title(), named(""));
    Page::write(onStick(QStringLiteral("list.csv")), "titles\n;A001BC77");
    load(onStick(QStringLiteral("list.csv")));
    QCOMPARE(title(), named("local"));
    save(onStick(QStringLiteral("saved")), dump);
    QCOMPARE(title(), named("local"));
    page_->page().newTable();
    QCOMPARE(title(), named(""));
}

void TestArchiveWidgetShell::keepsOriginWhenLoadFails()
{
    const QString name = makeDump(QStringLiteral("table.tpp"), 2);
    Page::write(onStick(QStringLiteral("list.csv")), "titles\n;A001BC77");
    for (const QString &gone : {name, onStick(QStringLiteral("list.csv"))}) {
        failToLoad(gone, [&gone] { QFile::remove(gone); });
        QCOMPARE(title(), named(""));
    }
    load(makeDump(QStringLiteral("table.tpp"), 2));
    failToLoad(name, [&name] { QFile::remove(name); });
    QCOMPARE(title(), named("local"));
}

void TestArchiveWidgetShell::namesOriginOnlyWhileVisible()
{
    const QString other = QStringLiteral("another page");
    beginLoad(makeDump(QStringLiteral("table.tpp"), 2));
    page_->page().hide();
    frame_->brelWindowTitle()->setDeviceName(other);
    QTRY_VERIFY(!page_->isBusy());
    QCOMPARE(page_->rows(), 2);
    QCOMPARE(title(), other);
    page_->page().show();
    QCOMPARE(title(), named("local"));
    page_->page().hide();
    frame_->brelWindowTitle()->setDeviceName(other);
    page_->page().newTable();
    QCOMPARE(title(), other);
    page_->page().show();
    QCOMPARE(title(), named(""));
}

void TestArchiveWidgetShell::worksWithoutFrame()
{
    topLevelBrelWindow = nullptr;
    load(makeDump(QStringLiteral("table.tpp"), 2));
    page_->page().setDeviceString();
    page_->clickRow(1);
    page_->page().addToSuffered(); // to nobody
    page_->press("buttonNewTable");
    QCOMPARE(page_->rows(), 0);
    QVERIFY(receiver_->entries.isEmpty());
}

void TestArchiveWidgetShell::handsNumberOver()
{
    Scan odd = passage(1);
    odd.setNumber(QStringLiteral("A?12*"));
    odd.setComment(QStringLiteral("a <b>comment</b>; \"quoted\""));
    Page::write(onStick(QStringLiteral("table.tpp")), tableOf({passage(0), odd, passage(2)}));
    load(onStick(QStringLiteral("table.tpp")));
    Receiver mainWindow;
    ShellAccess::setMainWindow(&mainWindow);
    QCOMPARE(menu()->title(), QStringLiteral("Add number to suffered"));
    QCOMPARE(menu()->actions().size(), 1);
    QCOMPARE(menu()->actions().first()->text(), QStringLiteral("Add number to suffered"));
    page_->clickRow(1);
    menu()->actions().first()->trigger();
    // Posted, not called.
    QCOMPARE(receiver_->entries.size(), 0);
    QTRY_COMPARE(receiver_->entries, QVector<QByteArray>{entryOf(odd)});
    // The row of the table, not of what the filter leaves.
    choose("checkBoxFilter");
    type(numberOf(2));
    page_->clickRow(0);
    menu()->actions().first()->trigger();
    QTRY_COMPARE(receiver_->entries, (QVector<QByteArray>{entryOf(odd), entryOf(passage(2))}));
    QVERIFY(mainWindow.entries.isEmpty());
}

void TestArchiveWidgetShell::handsNumberToMainWindowWithoutFrame()
{
    topLevelBrelWindow = nullptr;
    Receiver mainWindow;
    ShellAccess::setMainWindow(&mainWindow);
    load(makeDump(QStringLiteral("table.tpp"), 2));
    page_->clickRow(1);
    page_->page().addToSuffered();
    QTRY_COMPARE(mainWindow.entries, QVector<QByteArray>{entryOf(passage(1))});
    QVERIFY(receiver_->entries.isEmpty());
}

void TestArchiveWidgetShell::handsNothingOver()
{
    page_->page().addToSuffered();
    load(makeDump(QStringLiteral("table.tpp"), 2));
    page_->page().addToSuffered();
    page_->clickRow(1);
    page_->page().showRecord(QModelIndex());
    page_->page().addToSuffered();
    QCoreApplication::sendPostedEvents(receiver_);
    QVERIFY(receiver_->entries.isEmpty());
}

void TestArchiveWidgetShell::opensContextMenu()
{
    load(makeDump(QStringLiteral("table.tpp"), 3));
    page_->clickRow(1);
    QWidget *viewport = page_->table()->viewport();
    // At the left, where the menu has space on every screen.
    const QPoint place(
        4, page_->table()->visualRect(page_->table()->model()->index(1, 0)).center().y());
    QContextMenuEvent event(QContextMenuEvent::Mouse, place, viewport->mapToGlobal(place));
    QCoreApplication::sendEvent(viewport, &event);
    QVERIFY(menu()->isVisible());
    QCOMPARE(menu()->pos(), viewport->mapToGlobal(place));
    const QRect action = menu()->actionGeometry(menu()->actions().first());
    QVERIFY(action.height() >= Metrics::touchSize);
    QTest::mouseClick(menu(), Qt::LeftButton, Qt::NoModifier, action.center());
    QTRY_COMPARE(receiver_->entries, QVector<QByteArray>{entryOf(passage(1))});
    QVERIFY(!menu()->isVisible());
}

void TestArchiveWidgetShell::warnsOfPipe()
{
    QString shown;
    page_->answers().expect([&shown](QWidget *window) {
        auto *box = qobject_cast<QMessageBox *>(window);
        QVERIFY(box != nullptr);
        QCOMPARE(box->icon(), QMessageBox::Warning);
        QCOMPARE(box->standardButtons(), QMessageBox::Ok);
        shown = box->windowTitle() + QLatin1Char('|') + box->text();
        QTest::mouseClick(box->button(QMessageBox::Ok), Qt::LeftButton);
    });
    auto *event = new PipeEvent;
    event->message = QStringLiteral("The line is lost.");
    event->state = 3;
    QCoreApplication::postEvent(&page_->page(), event);
    QTRY_COMPARE(shown, QStringLiteral("Error|The line is lost."));
    QVERIFY(!page_->isBusy());
}

void TestArchiveWidgetShell::showsProgress()
{
    for (const int percent : {0, 1, 57, 100}) {
        QCoreApplication::postEvent(&page_->page(), new ProgressEvent(percent));
        QTRY_COMPARE(page_->progress(), percent);
    }
    // Not its own.
    QCoreApplication::postEvent(&page_->page(), new SufferedEvent(Access()));
    QCoreApplication::postEvent(&page_->page(), new QEvent(QEvent::Type(1999)));
    QCoreApplication::sendPostedEvents(&page_->page());
    QCOMPARE(page_->progress(), 100);
    QVERIFY(!page_->isBusy());
}

void TestArchiveWidgetShell::fitsSmallestScreen_data()
{
    QTest::addColumn<QByteArray>("face");
    QTest::addColumn<int>("buttons");
    // Five buttons below, a box and three choices for the filter.
    QTest::newRow("table") << QByteArray("basePage") << 9;
    QTest::newRow("busy") << QByteArray("busyPage") << 1;
}

void TestArchiveWidgetShell::fitsSmallestScreen()
{
    QFETCH(QByteArray, face);
    QFETCH(int, buttons);
    load(makeDump(QStringLiteral("table.tpp"), 40, {1}));
    page_->clickRow(1);
    showSmall(face.constData());
    int seen = 0;
    const QList<QWidget *> all = controls();
    for (const QWidget *each : all) {
        QVERIFY2(page_->page().rect().contains(placeOf(each)), qPrintable(words(each)));
        if (qobject_cast<const QAbstractButton *>(each) != nullptr) {
            ++seen;
            QVERIFY2(each->width() >= each->sizeHint().width(), qPrintable(words(each)));
        }
        if (qobject_cast<const QAbstractButton *>(each) != nullptr ||
            qobject_cast<const QLineEdit *>(each) != nullptr) {
            QVERIFY2(each->width() >= Metrics::touchSize, qPrintable(words(each)));
            QVERIFY2(each->height() >= Metrics::touchSize, qPrintable(words(each)));
            QVERIFY2(each->height() >= each->sizeHint().height(), qPrintable(words(each)));
        }
        for (const QWidget *other : all) {
            QVERIFY2(other == each || !placeOf(each).intersects(placeOf(other)),
                     qPrintable(words(each) + QStringLiteral(" on ") + words(other)));
        }
    }
    QCOMPARE(seen, buttons);
    QVERIFY(Metrics::touchSize >= 44);
}

void TestArchiveWidgetShell::fitsDetailsOnSmallestScreen()
{
    load(makeDump(QStringLiteral("table.tpp"), 40));
    page_->clickRow(1);
    showSmall("basePage");
    // Some rows of the table, and the columns that tell what passed.
    const QTableView *table = page_->table();
    QVERIFY(table->rowAt(table->viewport()->height() - 1) >= 4);
    const QRect number = table->visualRect(table->model()->index(1, ScanModel::NumberColumn));
    QVERIFY(table->viewport()->rect().contains(number));
    QVERIFY(number.width() >= table->fontMetrics().horizontalAdvance(QStringLiteral("M000MM000")));
    // All lines over the placeholder.
    const ProportionalSclaleWidget *photo = page_->photo();
    QFont font = QApplication::font();
    font.setBold(true);
    const QFontMetrics metrics(font);
    QCOMPARE(photo->lines().size(), 7);
    QVERIFY2(photo->height() >= 7 * metrics.height(), qPrintable(words(photo)));
    for (const QString &line : photo->lines()) {
        QVERIFY2(photo->frame().left() + metrics.horizontalAdvance(line) <= photo->width(),
                 qPrintable(line));
    }
}

void TestArchiveWidgetShell::fitsColumnsToWhatTheyShow()
{
    const QTableView *table = page_->table();
    const auto isWide = [table](int column, const QString &text) {
        return table->columnWidth(column) > table->fontMetrics().horizontalAdvance(text);
    };
    const QString granted = QStringLiteral("Access granted");
    const QString date =
        QDateTime(QDate(2026, 9, 30), QTime(20, 48, 58)).toString(scanModelDateTimeFormat);
    QVERIFY(isWide(ScanModel::DateColumn, date));
    QVERIFY(isWide(ScanModel::GrantedColumn, granted));
    load(makeDump(QStringLiteral("table.tpp"), 3));
    QVERIFY(isWide(ScanModel::DateColumn, date));
    QVERIFY(isWide(ScanModel::DateColumn, page_->cell(0, ScanModel::DateColumn)));
    QVERIFY(isWide(ScanModel::GrantedColumn, granted));
}

void TestArchiveWidgetShell::keepsColumnsAsTheOperatorSetThem()
{
    load(makeDump(QStringLiteral("table.tpp"), 3));
    page_->table()->setColumnWidth(ScanModel::CommentColumn, 321);
    page_->page().hide();
    page_->page().show();
    QCOMPARE(page_->table()->columnWidth(ScanModel::CommentColumn), 321);
    load(makeDump(QStringLiteral("other.tpp"), 2));
    QCOMPARE(page_->table()->columnWidth(ScanModel::CommentColumn), 321);
}

STALLO_TEST_MAIN(TestArchiveWidgetShell)
#include "tst_archivewidgetshell.moc"
