// SPDX-License-Identifier: MIT
#include "pages/accessfiles.h"
#include "tests/pages/listcase.h"
#include "tests/support/blackhole.h"

#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <functional>

namespace
{

using Page = ListPage;
using Action = std::function<void()>;

const QByteArray deviceList = Page::list(40, 100);
const QByteArray panelList = Page::list(3);
const QByteArray viewList = Page::list(44, 200);

// Acts in the GUI thread, before the table is bound, when a job asks for it for the first or the
// second time.
class AtRequest : public QObject
{
public:
    AtRequest(SufferedNumbersWidget *page, int time, const Action &act)
        : act_(act)
    {
        connect(
            page, &SufferedNumbersWidget::setTableThreaded, this,
            [this, time, asked = 0]() mutable {
                if (++asked == time) {
                    // Overtakes the request.
                    QCoreApplication::postEvent(this, new QEvent(QEvent::User),
                                                Qt::HighEventPriority);
                }
            },
            Qt::DirectConnection);
    }

protected:
    void customEvent(QEvent *) override { act_(); }

private:
    Action act_;
};

} // namespace

// The program is closed at any moment of a job: the page is gone within two seconds, lists and
// files are what they were before or what they were to be, and the next start works.
class TestSufferedNumbersClosing : public ListCase
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void closesWithDevice_data();
    void closesWithDevice();
    void closesAtStart();
    void closesWithFiles_data();
    void closesWithFiles();
    void putsInForceWhatWasSent();

private:
    QString onStick(const char *name) const { return stick_->filePath(QString::fromLatin1(name)); }
    Action close()
    {
        return [this] { endTook_ = page_->end(); };
    }
    void closeAtRequest(int time)
    {
        atRequest_ = std::make_unique<AtRequest>(&page_->page(), time, close());
    }
    void listenNowhere(bool onLine)
    {
        hole_ = std::make_unique<BlackHole>(QHostAddress::LocalHost);
        if (onLine) {
            Settings::instance()->setVaskParkingPort(hole_->port());
        } else {
            Settings::instance()->setFileTransferPort(hole_->port());
        }
    }
    void prepare(const QString &moment);
    // What tells that the moment has come; none: at once.
    std::function<bool()> momentCame(const QString &moment);
    void startsAgain();

    std::unique_ptr<QTemporaryDir> stick_;
    std::unique_ptr<BlackHole> hole_;
    std::unique_ptr<AtRequest> atRequest_;
    int onLinePort_ = 0;
    int filePort_ = 0;
    qint64 endTook_ = -1;
    QByteArray newList_; // that the device is to have
};

void TestSufferedNumbersClosing::initTestCase()
{
    ListCase::initTestCase();
    const QString temporary = TestSurroundings::home() + QStringLiteral("/tmp");
    QVERIFY(QDir().mkpath(temporary));
    qputenv("TMPDIR", QFile::encodeName(temporary));
}

void TestSufferedNumbersClosing::init()
{
    ListCase::init();
    stick_ = std::make_unique<QTemporaryDir>();
    Page::write(onStick("list.tpa"), viewList);
    onLinePort_ = Settings::instance()->vaskParkingPort();
    filePort_ = Settings::instance()->fileTransferPort();
    endTook_ = -1;
    giveDevice(deviceList);
    open(panelList);
    page_->page().setTable(onStick("list.tpa"));
    page_->clickRow(43);
}

void TestSufferedNumbersClosing::cleanup()
{
    atRequest_.reset();
    ListCase::cleanup();
    hole_.reset();
    stick_.reset();
}

void TestSufferedNumbersClosing::closesWithDevice_data()
{
    QTest::addColumn<QString>("job");
    QTest::addColumn<QString>("moment");
    const auto row = [](const char *job, const char *moment) {
        QTest::addRow("%s, %s", job, moment)
            << QString::fromLatin1(job) << QString::fromLatin1(moment);
    };
    for (const char *job : {"fetch", "send", "append"}) {
        row(job, "at once");
        row(job, "connecting");
        row(job, "asking");
    }
    for (const char *job : {"fetch", "append"}) {
        row(job, "receiving");
        row(job, "falls silent");
    }
    row("fetch", "before the table is taken off");
    row("fetch", "before the new one is shown");
    for (const char *job : {"send", "append"}) {
        row(job, "asking for place");
        row(job, "stops reading");
        row(job, "putting in force");
    }
    row("append", "has ended");
}

void TestSufferedNumbersClosing::prepare(const QString &moment)
{
    Faults &faults = device().faults();
    if (moment == QLatin1String("connecting")) {
        listenNowhere(false);
    } else if (moment == QLatin1String("asking")) {
        faults.add(Fault::silent());
    } else if (moment == QLatin1String("receiving")) {
        faults.add(Fault::trickle(64, 20));
    } else if (moment == QLatin1String("falls silent")) {
        faults.add(Fault::pause(2000, 60000));
    } else if (moment == QLatin1String("asking for place")) {
        faults.add(Fault::silent().onlyFor(Fault::Method::Put));
    } else if (moment == QLatin1String("stops reading")) {
        faults.add(Fault::stopReading().onlyFor(Fault::Method::Put));
    } else if (moment == QLatin1String("putting in force")) {
        listenNowhere(true);
    } else if (moment == QLatin1String("before the table is taken off")) {
        closeAtRequest(1);
    } else if (moment == QLatin1String("before the new one is shown")) {
        closeAtRequest(2);
    }
}

std::function<bool()> TestSufferedNumbersClosing::momentCame(const QString &moment)
{
    const auto counted = [this](JournalEntry::Kind kind) {
        return [this, kind] { return device().journal().count(kind) > 0; };
    };
    if (moment == QLatin1String("asking")) {
        return counted(JournalEntry::Kind::Request);
    }
    if (moment == QLatin1String("receiving") || moment == QLatin1String("falls silent")) {
        return counted(JournalEntry::Kind::Answer);
    }
    if (moment == QLatin1String("asking for place") || moment == QLatin1String("stops reading")) {
        return counted(JournalEntry::Kind::FaultUsed);
    }
    if (moment == QLatin1String("putting in force")) {
        return [this] { return device().storedAccessList() != deviceList; };
    }
    if (moment == QLatin1String("has ended")) {
        return [this] { return reloads() == 1 && device().onLineConnections() == 0; };
    }
    return nullptr;
}

void TestSufferedNumbersClosing::startsAgain()
{
    hole_.reset();
    device().faults().clear();
    device().dropFileConnections();
    QTRY_COMPARE_WITH_TIMEOUT(device().fileConnections() + device().onLineConnections(), 0,
                              patience);
    Settings::instance()->setVaskParkingPort(onLinePort_);
    Settings::instance()->setFileTransferPort(filePort_);
    reopen();
    QCOMPARE(page_->rows() * int(Access::size), ownList().size());
    page_->fetch(host());
    QVERIFY(page_->becomesIdle());
    QCOMPARE(ownList(), device().storedAccessList());
    page_->send(host());
    QVERIFY(page_->becomesIdle());
    QTRY_COMPARE_WITH_TIMEOUT(device().activeAccessList(), ownList(), patience);
}

void TestSufferedNumbersClosing::closesWithDevice()
{
    QFETCH(QString, job);
    QFETCH(QString, moment);
    Access added = page_->edited();
    added.setId(41);
    prepare(moment);
    newList_ = deviceList;
    if (job == QLatin1String("fetch")) {
        page_->fetch(host());
    } else if (job == QLatin1String("send")) {
        newList_ = viewList;
        page_->send(host());
    } else {
        newList_ = deviceList + Page::bytes(added);
        page_->append(host());
    }
    QVERIFY(page_->isBusy());
    if (atRequest_) {
        QTRY_VERIFY_WITH_TIMEOUT(endTook_ >= 0, patience);
    } else {
        const auto came = momentCame(moment);
        QTRY_VERIFY_WITH_TIMEOUT(!came || came(), patience);
        close()();
    }
    QVERIFY2(endTook_ < 2000, qPrintable(QString::number(endTook_)));
    const QByteArray stored = device().storedAccessList();
    const QByteArray active = device().activeAccessList();
    QVERIFY(stored == deviceList || stored == newList_);
    QVERIFY(active == deviceList || active == newList_);
    QVERIFY(ownList() == panelList || (job == QLatin1String("fetch") && ownList() == deviceList));
    QCOMPARE(Page::content(onStick("list.tpa")), viewList);
    QCOMPARE(QDir(Page::folder())
                 .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot)
                 .size(),
             1); // nothing of a transfer
    QCOMPARE(QDir(QDir::tempPath()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             QStringList(QFileInfo(stick_->path()).fileName()));
    if (moment != QLatin1String("at once") && !moment.startsWith(QLatin1String("before"))) {
        const bool sent =
            moment == QLatin1String("putting in force") || moment == QLatin1String("has ended");
        QCOMPARE(stored, sent ? newList_ : deviceList);
        QCOMPARE(active, moment == QLatin1String("has ended") ? newList_ : deviceList);
    }
    startsAgain();
}

void TestSufferedNumbersClosing::closesAtStart()
{
    for (int tries = 0; tries < 20; ++tries) {
        // Before its table is bound; every other time with more jobs behind.
        auto page = std::make_unique<SufferedNumbersWidget>();
        if (tries % 2 == 1) {
            page->loadTableFromNet(host());
            page->appendSufferedRecord(Page::entry(1));
            page->newTable();
        }
        QElapsedTimer clock;
        clock.start();
        page.reset();
        QVERIFY2(clock.elapsed() < 2000, qPrintable(QString::number(clock.elapsed())));
        QCOMPARE(ownList(), panelList);
    }
    startsAgain();
}

void TestSufferedNumbersClosing::closesWithFiles_data()
{
    QTest::addColumn<QString>("job");
    QTest::addColumn<int>("request"); // 0: at once
    const auto row = [](const char *job, int request) {
        QTest::addRow("%s, %d", job, request) << QString::fromLatin1(job) << request;
    };
    for (const int request : {0, 1}) {
        row("open dump", request);
        row("open csv", request);
        row("new table", request);
    }
    row("open csv", 2);
    row("save dump", 0);
    row("save csv", 0);
}

void TestSufferedNumbersClosing::closesWithFiles()
{
    QFETCH(QString, job);
    QFETCH(int, request);
    const QByteArray otherList = Page::list(1000, 500);
    Page::write(onStick("other.tpa"), otherList);
    QCOMPARE(AccessFiles::saveCsv(onStick("other.tpa"), {}, onStick("other.csv")), QString());
    QCOMPARE(AccessFiles::loadCsv(onStick("other.csv"), onStick("csv.tpa")), QString());
    const QByteArray csvList = Page::content(onStick("csv.tpa"));
    if (request > 0) {
        closeAtRequest(request);
    }
    if (job == QLatin1String("open dump")) {
        page_->load(onStick("other.tpa"));
    } else if (job == QLatin1String("open csv")) {
        page_->load(onStick("other.csv"));
    } else if (job == QLatin1String("new table")) {
        page_->page().newTable();
    } else if (job == QLatin1String("save dump")) {
        page_->save(onStick("saved.tpa"), QStringLiteral("Dump"));
    } else {
        page_->save(onStick("saved.csv"), QStringLiteral("Comma"));
    }
    QVERIFY(page_->isBusy());
    if (atRequest_) {
        QTRY_VERIFY_WITH_TIMEOUT(endTook_ >= 0, patience);
    } else {
        close()();
    }
    QVERIFY2(endTook_ < 2000, qPrintable(QString::number(endTook_)));
    QVERIFY(ownList() == panelList || (job == QLatin1String("open csv") && ownList() == csvList));
    QCOMPARE(Page::content(onStick("list.tpa")), viewList);
    QCOMPARE(Page::content(onStick("other.tpa")), otherList);
    const QByteArray saved = Page::content(onStick("saved.tpa"));
    QVERIFY(saved == viewList || saved == "no such file");
    const QByteArray lines = Page::content(onStick("saved.csv"));
    QVERIFY(lines.count('\n') == 44 || lines == "no such file");
    const QStringList files =
        QDir(stick_->path()).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    for (const QString &name : files) {
        QVERIFY2(name.count(QLatin1Char('.')) == 1, qPrintable(name)); // no half of a file
    }
    startsAgain();
}

// When the list is with the device already, the word to use it still goes out.
void TestSufferedNumbersClosing::putsInForceWhatWasSent()
{
    page_->send(host());
    QTRY_VERIFY_WITH_TIMEOUT(device().journal().count(JournalEntry::Kind::ContentReceived) == 1,
                             patience);
    close()();
    QVERIFY2(endTook_ < 2000, qPrintable(QString::number(endTook_)));
    QTRY_COMPARE_WITH_TIMEOUT(device().activeAccessList(), viewList, patience);
    QCOMPARE(reloads(), 1);
}

STALLO_TEST_MAIN(TestSufferedNumbersClosing)
#include "tst_sufferednumbersclosing.moc"
