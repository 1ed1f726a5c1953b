// SPDX-License-Identifier: MIT
#include "pages/passagetable.h"

#include "app/settings.h"
#include "app/shellaccess.h"
#include "net/events.h"
#include "pages/proportionalsclalewidget.h"
#include "records/scanmodel.h"
#include "records/vasksettings.h"
#include "style/brelstyle.h"
#include "style/brelwindow.h"
#include "tests/support/modalanswers.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QFileDialog>
#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QSignalSpy>
#include <QTableView>
#include <QTemporaryDir>

namespace
{

Scan passage()
{
    Scan scan;
    scan.setDateTime(QDateTime(QDate(2026, 9, 30), QTime(22, 28, 58), Qt::UTC));
    scan.setNumber(QStringLiteral("M?88MM8*8"));
    scan.setAccessKey(QString(31, QLatin1Char('k')));
    scan.setComment(QString(63, QLatin1Char('c')));
    scan.setInAccessList(true);
    return scan;
}

QByteArray bytes(const Access &access)
{
    return QByteArray(access.data(), Access::size);
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

} // namespace

class TestPassageTable : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void columnsHoldTheirTexts();
    void columnsAreFittedOnce();
    void tellsWhereNumbersAre();
    void photoFillsItsPlace();
    void menuHasOneAction();
    void asksForPhotoName();
    void completesPhotoName_data();
    void completesPhotoName();
    void photoGivenUp();
    void sendsEntryToTheFrame();
    void sendsEntryToTheMainWindow();
    void sendsEntryToNobody();

private:
    QString onStick(const QString &name) const { return stick_->filePath(name); }
    static QVector<QByteArray> expectedEntries()
    {
        Access access;
        access.setNumber(passage().number());
        access.setAccessKey(passage().accessKey());
        access.setComment(passage().comment());
        return {bytes(access)};
    }

    std::unique_ptr<QTemporaryDir> stick_;
    std::unique_ptr<ModalAnswers> answers_;
    std::unique_ptr<ScanModel> model_;
    std::unique_ptr<QTableView> table_;
};

void TestPassageTable::initTestCase()
{
    auto *style = new BrelStyle;
    QApplication::setStyle(style);
    QApplication::setPalette(style->standardPalette());
}

void TestPassageTable::init()
{
    stick_ = std::make_unique<QTemporaryDir>();
    answers_ = std::make_unique<ModalAnswers>();
    TestSurroundings::freshSettings()->setLastSavedPhoto(stick_->path());
    QFile records(onStick(QStringLiteral("table.tpp")));
    QVERIFY(records.open(QIODevice::WriteOnly));
    QCOMPARE(records.write(passage().data(), Scan::size), qint64(Scan::size));
    records.close();
    model_ = std::make_unique<ScanModel>(records.fileName(), nullptr);
    QCOMPARE(model_->rowCount(), 1);
    table_ = std::make_unique<QTableView>();
    table_->setModel(model_.get());
}

void TestPassageTable::cleanup()
{
    QCOMPARE(answers_->left(), 0);
    QCOMPARE(answers_->unexpected(), QStringList());
    ShellAccess::setMainWindow(nullptr);
    topLevelBrelWindow = nullptr;
    table_.reset();
    model_.reset();
}

void TestPassageTable::columnsHoldTheirTexts()
{
    TableColumns columns;
    table_->show();
    for (int column = 0; column < ScanModel::columns; ++column) {
        table_->setColumnWidth(column, 50);
    }
    columns.fit(table_.get(), PassageTable::widestTexts(table_.get()));
    const QFontMetrics metrics = table_->fontMetrics();
    for (const int column : {ScanModel::DateColumn, ScanModel::NumberColumn}) {
        const QString text = model_->index(0, column).data().toString();
        QVERIFY2(table_->columnWidth(column) > metrics.horizontalAdvance(text), qPrintable(text));
    }
    for (const int column : {ScanModel::InListColumn, ScanModel::GrantedColumn}) {
        const QString text = model_->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
        QVERIFY(!text.isEmpty());
        QVERIFY2(table_->columnWidth(column) > metrics.horizontalAdvance(text), qPrintable(text));
    }
    // The view elides nothing of them.
    for (const int column : {ScanModel::DateColumn, ScanModel::NumberColumn}) {
        QVERIFY(table_->columnWidth(column) >=
                table_->sizeHintForIndex(model_->index(0, column)).width());
    }
    for (const int column :
         {ScanModel::DeviceColumn, ScanModel::CommentColumn, ScanModel::KeyColumn}) {
        QVERIFY(table_->columnWidth(column) >= 50);
    }
}

void TestPassageTable::columnsAreFittedOnce()
{
    TableColumns columns;
    columns.fit(table_.get(), PassageTable::widestTexts(table_.get()));
    const int width = table_->columnWidth(ScanModel::NumberColumn);
    // The operator has made it narrower.
    table_->setColumnWidth(ScanModel::NumberColumn, width - 30);
    columns.fit(table_.get(), PassageTable::widestTexts(table_.get()));
    QCOMPARE(table_->columnWidth(ScanModel::NumberColumn), width - 30);
    TableColumns().fit(table_.get(), PassageTable::widestTexts(table_.get()));
    QCOMPARE(table_->columnWidth(ScanModel::NumberColumn), width);
}

void TestPassageTable::tellsWhereNumbersAre()
{
    const NumberSource source = PassageTable::numbersOf(model_.get());
    QCOMPARE(source.column, int(ScanModel::NumberColumn));
    QCOMPARE(source.recordSize, int(Scan::size));
    QCOMPARE(source.file(), model_->fileName());
    QCOMPARE(source.number(passage().data()), QStringLiteral("M#88MM8#8"));
    QCOMPARE(source.number(passage().data()),
             model_->index(0, ScanModel::NumberColumn).data().toString());
    model_->setFileName(QString());
    QCOMPARE(source.file(), QString());
}

void TestPassageTable::photoFillsItsPlace()
{
    QLabel place;
    place.resize(400, 300);
    auto *view = PassageTable::createPhotoView(&place);
    QCOMPARE(view->parentWidget(), &place);
    QCOMPARE(view->emptyText(), QStringLiteral("No Photo"));
    place.show();
    QCOMPARE(view->geometry(), place.rect());
    place.resize(800, 200);
    QCOMPARE(view->geometry(), QRect(0, 0, 800, 200));
    QVERIFY(view->pixmap().isNull());
}

void TestPassageTable::menuHasOneAction()
{
    int called = 0;
    const QPointer<QMenu> menu(PassageTable::createMenu(table_.get(), [&called] { ++called; }));
    QCOMPARE(menu->parent(), table_.get());
    QCOMPARE(menu->actions().size(), 1);
    QCOMPARE(menu->actions().first()->text(), QStringLiteral("Add number to suffered"));
    QVERIFY(menu->actions().first()->isEnabled());
    menu->popup(QPoint(10, 10));
    QTest::mouseClick(menu, Qt::LeftButton, {},
                      menu->actionGeometry(menu->actions().first()).center());
    QCOMPARE(called, 1);
    QVERIFY(!menu->isVisible());
    table_.reset();
    QVERIFY(menu.isNull());
}

void TestPassageTable::asksForPhotoName()
{
    QWidget page;
    answers_->expect([&](QWidget *window) {
        const auto *dialog = qobject_cast<QFileDialog *>(window);
        QVERIFY(dialog != nullptr);
        QCOMPARE(dialog->windowTitle(), QStringLiteral("Save photo to file"));
        QCOMPARE(dialog->nameFilters(), QStringList(QStringLiteral("Image file (*.jpeg)")));
        QCOMPARE(dialog->acceptMode(), QFileDialog::AcceptSave);
        QCOMPARE(dialog->parentWidget(), &page);
        QCOMPARE(dialog->selectedFiles(),
                 QStringList(onStick(QStringLiteral("2026-09-30_22-28-58_M-88MM8-8.jpeg"))));
        QTest::keyClick(window->focusWidget(), Qt::Key_Return);
    });
    // The name that is offered can be taken as it is.
    QCOMPARE(PassageTable::askPhotoName(&page, passage()),
             onStick(VaskSettings::picFileName(passage())));
    // Where the dialog began is not changed by that.
    QCOMPARE(Settings::instance()->lastSavedPhoto(), stick_->path());
}

void TestPassageTable::completesPhotoName_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("name");
    const auto row = [](const char *typed, const char *name) {
        QTest::newRow(typed) << QString::fromLatin1(typed) << QString::fromLatin1(name);
    };
    row("photo", "photo.jpeg");
    row("photo.jpeg", "photo.jpeg");
    row("photo.jpg", "photo.jpg.jpeg");
    row("photo.JPEG", "photo.JPEG.jpeg");
    row("pho.to", "pho.to.jpeg");
}

void TestPassageTable::completesPhotoName()
{
    QFETCH(QString, typed);
    QFETCH(QString, name);
    answers_->expect(ModalAnswers::savingAs(onStick(typed)));
    QCOMPARE(PassageTable::askPhotoName(nullptr, passage()), onStick(name));
    QVERIFY(!QFile::exists(onStick(name)));
}

void TestPassageTable::photoGivenUp()
{
    answers_->expect(ModalAnswers::cancelling());
    QCOMPARE(PassageTable::askPhotoName(nullptr, passage()), QString());
}

void TestPassageTable::sendsEntryToTheFrame()
{
    BrelWindow frame;
    auto *central = new Receiver; // the frame's
    Receiver mainWindow;
    frame.setCentralWidget(central);
    topLevelBrelWindow = &frame;
    ShellAccess::setMainWindow(&mainWindow);
    PassageTable::addToAccessList(passage());
    QVERIFY(central->entries.isEmpty()); // posted, not sent
    QTRY_COMPARE(central->entries, expectedEntries());
    QVERIFY(mainWindow.entries.isEmpty());
}

void TestPassageTable::sendsEntryToTheMainWindow()
{
    Receiver mainWindow;
    ShellAccess::setMainWindow(&mainWindow);
    PassageTable::addToAccessList(passage());
    QTRY_COMPARE(mainWindow.entries, expectedEntries());
    // A frame with nothing in it cannot take it.
    BrelWindow frame;
    topLevelBrelWindow = &frame;
    PassageTable::addToAccessList(passage());
    QTRY_COMPARE(mainWindow.entries.size(), 2);
}

void TestPassageTable::sendsEntryToNobody()
{
    Receiver gone;
    ShellAccess::setMainWindow(&gone);
    ShellAccess::setMainWindow(nullptr);
    static int complaints; // the toolkit's, about an event for nobody
    complaints = 0;
    const auto count = [](QtMsgType, const QMessageLogContext &, const QString &) { ++complaints; };
    const QtMessageHandler before = qInstallMessageHandler(count);
    PassageTable::addToAccessList(passage());
    qInstallMessageHandler(before);
    QCOMPARE(complaints, 0);
    QCoreApplication::processEvents();
    QVERIFY(gone.entries.isEmpty());
}

STALLO_TEST_MAIN(TestPassageTable)
#include "tst_passagetable.moc"
