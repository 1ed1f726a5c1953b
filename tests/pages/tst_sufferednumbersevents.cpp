// SPDX-License-Identifier: MIT
#include "app/mainwindow.h"
#include "app/shellaccess.h"
#include "app/startup.h"
#include "net/events.h"
#include "pages/archivewidget.h"
#include "pages/onlinewidget.h"
#include "tests/pages/listcase.h"
#include "tests/support/onlinepage.h"

#include <QMenu>
#include <QStackedWidget>

namespace
{

using Page = ListPage;

const QString nowhere = OnlinePage::nowhere();

// As the other pages make it of a passage, with the id that the list gives it.
QByteArray handedOver(const OnLine &passage, int id)
{
    Access access;
    access.setNumber(passage.number());
    access.setAccessKey(passage.accessKey());
    access.setComment(passage.comment());
    access.setId(static_cast<qint16>(id));
    return Page::bytes(access);
}

} // namespace

// The access list page in the main window: entries that come from the other pages, and its header
// beside theirs.
class TestSufferedNumbersEvents : public ListCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void takesEntryFromOnLinePage();
    void takesEntryFromArchivePage();
    void takesEveryEntryOnce();
    void takesEntriesWhileItStarts();
    void takesEntriesDuringJob_data();
    void takesEntriesDuringJob();
    void takesEntriesBehindQueuedJobs();
    void tellsThatListIsFull();
    void namesOriginOnlyWhileShown();
    void showsOwnFaceBehindOtherPage();

private:
    template <typename Widget>
    Widget *page() const
    {
        return window_->findChild<Widget *>();
    }
    SufferedNumbersWidget *list() const { return page<SufferedNumbersWidget>(); }
    bool isBusy() const
    {
        const auto *stack = list()->findChild<QStackedWidget *>(QStringLiteral("stackedWidget"));
        return stack->currentWidget()->objectName() == QLatin1String("busyPage");
    }
    int rows() const
    {
        return list()
            ->findChild<QTableView *>(QStringLiteral("tableViewSuffered"))
            ->model()
            ->rowCount();
    }
    void openWindow(const QByteArray &ownList)
    {
        Page::write(Page::ownList(), ownList);
        window_ = std::make_unique<MainWindow>();
        frame_->setCentralWidget(window_.get());
        frame_->show();
        QVERIFY(QTest::qWaitForWindowActive(frame_.get()));
    }
    void becomesIdle() const { QTRY_VERIFY_WITH_TIMEOUT(!isBusy(), patience); }
    // As another page does.
    static void post(const Access &access)
    {
        QCoreApplication::postEvent(ShellAccess::accessEntryReceiver(), new SufferedEvent(access));
    }
    // The row of a page's table is touched, and then the action of its context menu.
    static void handOver(QWidget *from, const char *table, int row)
    {
        auto *view = from->findChild<QTableView *>(QString::fromLatin1(table));
        QTest::mouseClick(view->viewport(), Qt::LeftButton, Qt::NoModifier,
                          view->visualRect(view->model()->index(row, 1)).center());
        view->findChild<QMenu *>()->actions().first()->trigger();
    }
    static QByteArray withId(int n, int id)
    {
        Access access = Page::entry(n);
        access.setId(static_cast<qint16>(id));
        return Page::bytes(access);
    }

    std::unique_ptr<MainWindow> window_;
    std::unique_ptr<ModalAnswers> operator_;
};

void TestSufferedNumbersEvents::init()
{
    ListCase::init();
    Startup::initTempDirectories();
    operator_ = std::make_unique<ModalAnswers>();
}

void TestSufferedNumbersEvents::cleanup()
{
    const QStringList unexpected = operator_->unexpected();
    const int left = operator_->left();
    operator_.reset();
    window_.reset();
    ListCase::cleanup();
    QCOMPARE(unexpected, QStringList());
    QCOMPARE(left, 0);
}

void TestSufferedNumbersEvents::takesEntryFromOnLinePage()
{
    openWindow(Page::list(3));
    becomesIdle();
    window_->showOnLine();
    auto *onLine = page<OnLineWidget>();
    onLine->selectDevice(nowhere);
    for (int n = 0; n < 3; ++n) {
        const OnLine passage = OnlinePage::record(n);
        OnLineEvent event(nowhere, passage, QString(), QStringLiteral("gate"), false);
        QCoreApplication::sendEvent(onLine, &event);
    }
    handOver(onLine, "tableViewOnLine", 1);
    QTRY_COMPARE(rows(), 4);
    QCOMPARE(ownList(), Page::list(3) + handedOver(OnlinePage::record(1), 4));
    handOver(onLine, "tableViewOnLine", 2);
    QTRY_COMPARE(rows(), 5);
    QCOMPARE(ownList(), Page::list(3) + handedOver(OnlinePage::record(1), 4) +
                            handedOver(OnlinePage::record(2), 5));
}

void TestSufferedNumbersEvents::takesEntryFromArchivePage()
{
    openWindow(Page::list(3));
    becomesIdle();
    window_->showArchive();
    const QString archive = Settings::instance()->archiveTempFile();
    Page::write(archive, OnlinePage::tableOf(OnlinePage::records(3)));
    auto *archivePage = page<ArchiveWidget>();
    archivePage->setTable(archive);
    handOver(archivePage, "tableViewArchive", 2);
    QTRY_COMPARE(rows(), 4);
    QCOMPARE(ownList(), Page::list(3) + handedOver(OnlinePage::record(2), 4));
    // It can be edited and sent at once.
    window_->showSuffered();
    QCOMPARE(title(), named(QStringLiteral("local")));
    QVERIFY(!isBusy());
}

void TestSufferedNumbersEvents::takesEveryEntryOnce()
{
    openWindow(QByteArray());
    becomesIdle();
    QByteArray expected;
    for (int n = 0; n < 50; ++n) {
        post(Page::entry(n / 2)); // also the same twice
        expected += withId(n / 2, n + 1);
    }
    QTRY_COMPARE(rows(), 50);
    QCoreApplication::sendPostedEvents();
    QCOMPARE(ownList(), expected);
    // Other events are none of its business.
    QCoreApplication::postEvent(window_.get(), new ProgressEvent(7));
    QCoreApplication::postEvent(window_.get(), new PipeEvent);
    QCoreApplication::sendPostedEvents();
    QCOMPARE(rows(), 50);
}

void TestSufferedNumbersEvents::takesEntriesWhileItStarts()
{
    Page::write(Page::ownList(), Page::list(3));
    window_ = std::make_unique<MainWindow>();
    frame_->setCentralWidget(window_.get());
    QVERIFY(isBusy());
    list()->appendSufferedRecord(Page::entry(70));
    post(Page::entry(71));
    QCOMPARE(ownList(), Page::list(3));
    becomesIdle();
    QTRY_COMPARE(rows(), 5);
    QCOMPARE(ownList(), Page::list(3) + withId(70, 4) + withId(71, 5));
}

void TestSufferedNumbersEvents::takesEntriesDuringJob_data()
{
    QTest::addColumn<bool>("good");
    QTest::newRow("that ends well") << true;
    QTest::newRow("that fails") << false;
}

void TestSufferedNumbersEvents::takesEntriesDuringJob()
{
    QFETCH(bool, good);
    giveDevice(Page::list(40, 100));
    openWindow(Page::list(3));
    becomesIdle();
    device().faults().add(good ? Fault::pause(2000, 300) : Fault::silent());
    window_->selectTab(MainWindow::SufferedTab, host());
    QVERIFY(isBusy());
    QTRY_COMPARE(device().journal().countRequests(), 1);
    for (const int n : {70, 71, 72}) {
        post(Page::entry(n));
    }
    QCoreApplication::sendPostedEvents();
    QVERIFY(isBusy());
    QCOMPARE(ownList(), Page::list(3)); // there is no list for them now
    QString heading;
    QString text;
    if (!good) {
        operator_->expect(ModalAnswers::reading(&heading, &text));
        device().dropFileConnections();
    }
    becomesIdle();
    const int before = good ? 40 : 3;
    QTRY_COMPARE(rows(), before + 3);
    QCoreApplication::sendPostedEvents();
    const QByteArray list = good ? Page::list(40, 100) : Page::list(3);
    QCOMPARE(ownList(),
             list + withId(70, before + 1) + withId(71, before + 2) + withId(72, before + 3));
    QCOMPARE(text, good ? QString() : QStringLiteral("Vask is busy now. Please try again later."));
}

void TestSufferedNumbersEvents::takesEntriesBehindQueuedJobs()
{
    giveDevice(Page::list(40, 100));
    Page::write(Page::ownList(), Page::list(3));
    window_ = std::make_unique<MainWindow>();
    frame_->setCentralWidget(window_.get());
    frame_->show();
    window_->selectTab(MainWindow::SufferedTab, host());
    list()->appendSufferedRecord(Page::entry(70));
    window_->selectTab(MainWindow::SufferedTab, host());
    list()->appendSufferedRecord(Page::entry(71));
    // The first one is in the list that the second fetch replaces.
    QTRY_COMPARE_WITH_TIMEOUT(ownList(), Page::list(40, 100) + withId(71, 41), patience);
    becomesIdle();
    QCOMPARE(device().journal().countRequests(), 2);
    QCOMPARE(rows(), 41);
}

void TestSufferedNumbersEvents::tellsThatListIsFull()
{
    openWindow(Page::list(1000));
    becomesIdle();
    QString heading;
    QString text;
    operator_->expect(ModalAnswers::reading(&heading, &text));
    post(Page::entry(1));
    QTRY_COMPARE(text, QStringLiteral("Can't add the record"));
    QCOMPARE(heading, QStringLiteral("Error"));
    QTRY_VERIFY(QApplication::activeModalWidget() == nullptr);
    QCOMPARE(rows(), 1000);
    QCOMPARE(ownList(), Page::list(1000));
}

void TestSufferedNumbersEvents::namesOriginOnlyWhileShown()
{
    giveDevice(Page::list(40, 100));
    openWindow(Page::list(3));
    becomesIdle();
    const QString archive = title(); // the page that is shown first
    QVERIFY(archive.contains(QStringLiteral("Archive view")));
    window_->showSuffered();
    QCOMPARE(title(), named(QStringLiteral("local")));
    device().faults().add(Fault::pause(2000, 200));
    list()->loadTableFromNet(host());
    QVERIFY(isBusy());
    QCOMPARE(title(), named(QStringLiteral("local")));
    window_->showArchive();
    becomesIdle();
    QCOMPARE(rows(), 40);
    QCOMPARE(title(), archive);
    list()->clearTable(false);
    QCOMPARE(title(), archive);
    window_->showSuffered();
    QCOMPARE(title(), named(QString()));
    list()->loadTableFromNet(host());
    becomesIdle();
    QCOMPARE(title(), named(host()));
    // As it stands in the bar.
    QCOMPARE(title(), QStringLiteral("<center><font color='white' size='+2'>Suffered numbers - "
                                     "</font><font color='White' size='+2'><I>127.0.0.1</I>"
                                     "</center>"));
}

void TestSufferedNumbersEvents::showsOwnFaceBehindOtherPage()
{
    giveDevice(Page::list(40, 100));
    openWindow(Page::list(3));
    becomesIdle();
    device().faults().add(Fault::silent());
    window_->selectTab(MainWindow::SufferedTab, host());
    QVERIFY(isBusy());
    // The other pages go on.
    window_->showOnLine();
    QVERIFY(page<OnLineWidget>()->isVisible());
    QVERIFY(title().contains(QStringLiteral("Online")));
    window_->showSuffered();
    QVERIFY(isBusy());
    QCOMPARE(title(), named(QStringLiteral("local")));
}

STALLO_TEST_MAIN(TestSufferedNumbersEvents)
#include "tst_sufferednumbersevents.moc"
