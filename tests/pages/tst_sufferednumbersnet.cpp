// SPDX-License-Identifier: MIT
#include "tests/pages/listcase.h"

#include <QDir>
#include <QPlainTextEdit>
#include <QSignalSpy>
#include <QTemporaryDir>

namespace
{

using Page = ListPage;

const QString busy = QStringLiteral("Error|Vask is busy now. Please try again later.");

// Threads of this process.
int threads()
{
    return QDir(QStringLiteral("/proc/self/task"))
        .entryList(QDir::Dirs | QDir::NoDotAndDotDot)
        .size();
}

// What the program writes to its log while this lives; what the platform has to say about windows
// is not meant.
class Log
{
public:
    Log()
        : before_(qInstallMessageHandler(note))
    {
        lines_.clear();
    }
    ~Log() { qInstallMessageHandler(before_); }
    Log(const Log &) = delete;
    Log &operator=(const Log &) = delete;

    static QStringList lines() { return lines_; }

private:
    static void note(QtMsgType, const QMessageLogContext &, const QString &text)
    {
        if (!text.startsWith(QLatin1String("This plugin does not support"))) {
            lines_ << text;
        }
    }

    QtMessageHandler before_;
    inline static QStringList lines_;
};

} // namespace

// Lists on their way from a device and back.
class TestSufferedNumbersNet : public ListCase
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup()
    {
        ListCase::cleanup();
        stick_.reset();
    }

    void fetches_data();
    void fetches();
    void puts_data();
    void puts();
    void changesOneEntry_data();
    void changesOneEntry();
    void fillsListUpToAThousand();
    void tellsThatThereIsNoList();
    void tellsThatDeviceIsBusy();
    void putsListInForceAfterGoodUploadOnly();
    void succeedsWithoutReload();
    void asksForDevice();
    void takesDeviceFromCommandLine();
    void namesLastDevice();
    void keepsTableFromElsewhere();
    void sendsNothingWithoutTable();
    void appends();
    void appendsWhatWasCurrent();
    void keepsFaceAfterFailedAppend();
    void goesOnAfterAppend();

private:
    // To the end, which goes well.
    void fetch()
    {
        page_->fetch(host());
        QVERIFY(page_->isBusy());
        QVERIFY(page_->becomesIdle());
    }
    void send()
    {
        page_->send(host());
        QVERIFY(page_->isBusy());
        QVERIFY(page_->becomesIdle());
    }
    void expectInForce(const QByteArray &list)
    {
        QTRY_COMPARE_WITH_TIMEOUT(device().activeAccessList(), list, patience);
        QCOMPARE(device().storedAccessList(), list);
    }

    std::unique_ptr<QTemporaryDir> stick_;
};

void TestSufferedNumbersNet::fetches_data()
{
    QTest::addColumn<int>("entries");
    for (const int entries : {0, 1, 40, 999, 1000}) {
        QTest::addRow("%d entries", entries) << entries;
    }
}

void TestSufferedNumbersNet::fetches()
{
    QFETCH(int, entries);
    giveDevice(Page::list(entries, 200));
    open(Page::list(3));
    page_->clickRow(1);
    fetch();
    QCOMPARE(ownList(), Page::list(entries, 200));
    QCOMPARE(page_->rows(), entries);
    QCOMPARE(page_->currentRow(), -1);
    if (entries > 0) {
        page_->clickRow(entries - 1);
        Access last = Page::entry(199 + entries);
        last.setId(static_cast<qint16>(entries));
        expectEdited(last);
    }
    QCOMPARE(title(), named(host()));
    QCOMPARE(reloads(), 0);
    QCOMPARE(device().journal().countRequests(), 1);
    QCOMPARE(device().storedAccessList(), Page::list(entries, 200));
    // What was fetched outlives the program.
    reopen();
    QCOMPARE(page_->rows(), entries);
    QCOMPARE(title(), named(QStringLiteral("local")));
}

void TestSufferedNumbersNet::puts_data()
{
    fetches_data();
}

void TestSufferedNumbersNet::puts()
{
    QFETCH(int, entries);
    giveDevice(Page::list(7, 300));
    open(Page::list(entries));
    send();
    expectInForce(Page::list(entries));
    QCOMPARE(reloads(), 1);
    QCOMPARE(device().journal().countRequests(), 1);
    QCOMPARE(device().unexpectedBytes(), QByteArray());
    QCOMPARE(title(), named(host()));
    QCOMPARE(ownList(), Page::list(entries));
    QCOMPARE(page_->rows(), entries);
}

void TestSufferedNumbersNet::changesOneEntry_data()
{
    QTest::addColumn<int>("entries");
    QTest::addColumn<int>("row");
    QTest::newRow("the only one") << 1 << 0;
    QTest::newRow("of many") << 999 << 500;
    QTest::newRow("the last of a full list") << 1000 << 999;
}

// The resident's new car.
void TestSufferedNumbersNet::changesOneEntry()
{
    QFETCH(int, entries);
    QFETCH(int, row);
    const QByteArray before = Page::list(entries);
    giveDevice(before);
    open(QByteArray());
    fetch();
    page_->clickRow(row);
    Access edited;
    edited.setId(listed(row).id());
    edited.setNumber(QStringLiteral("X987YZ199"));
    edited.setDateTimeFrom(QDateTime(QDate(2026, 12, 1), QTime(7, 30, 15)));
    edited.setDateTimeTill(QDateTime(QDate(2027, 6, 30), QTime(23, 59, 59)));
    edited.setAccessKey(QStringLiteral("00777"));
    edited.setComment(QStringLiteral("Novak; flat 12, \"garage\""));
    page_->edit(edited);
    page_->press("buttonApply");
    send();
    const QByteArray after = before.left(row * Access::size) + Page::bytes(edited) +
                             before.mid((row + 1) * Access::size);
    QVERIFY(after != before);
    QCOMPARE(after.size(), before.size());
    expectInForce(after);
    QCOMPARE(reloads(), 1);
    // And so it comes back.
    fetch();
    QCOMPARE(ownList(), after);
    page_->clickRow(row);
    expectEdited(edited);
}

void TestSufferedNumbersNet::fillsListUpToAThousand()
{
    giveDevice(QByteArray());
    open(QByteArray());
    fetch();
    type("lineEditNumber", QStringLiteral("A001BC77"));
    page_->press("buttonNew");
    send();
    Access first;
    first.setId(1);
    first.setNumber(QStringLiteral("A001BC77"));
    expectInForce(Page::bytes(first));

    giveDevice(Page::list(999));
    fetch();
    page_->find<QPlainTextEdit>("textEditComment")->setPlainText(QStringLiteral("the last one"));
    page_->press("buttonNew");
    QCOMPARE(page_->rows(), 1000);
    page_->press("buttonNew");
    QCOMPARE(page_->rows(), 1000);
    send();
    first.setId(1000);
    first.setComment(QStringLiteral("the last one"));
    expectInForce(Page::list(999) + Page::bytes(first));
}

void TestSufferedNumbersNet::tellsThatThereIsNoList()
{
    giveDevice(Page::list(5));
    open(QByteArray());
    fetch();
    QCOMPARE(title(), named(host()));
    device().files().remove(DevicePaths::accessList());
    QCOMPARE(errorAfter([this] { page_->fetch(host()); }),
             QStringLiteral("Error|No access base on Vask find out"));
    QCOMPARE(title(), named(QStringLiteral("local")));
    QCOMPARE(ownList(), Page::list(5));
    QCOMPARE(page_->rows(), 5);
}

void TestSufferedNumbersNet::tellsThatDeviceIsBusy()
{
    giveDevice(Page::list(5));
    open(QByteArray());
    fetch();
    device().faults().add(Fault::answer("Error=Busy"));
    QCOMPARE(errorAfter([this] { page_->fetch(host()); }), busy);
    QCOMPARE(title(), named(QStringLiteral("local")));
    QCOMPARE(ownList(), Page::list(5));
    device().faults().clear();
    fetch();
    QCOMPARE(title(), named(host()));
    QCOMPARE(errorAfter([this] { page_->fetch(Devices::refused()); }), busy);
    QCOMPARE(page_->rows(), 5);
}

void TestSufferedNumbersNet::putsListInForceAfterGoodUploadOnly()
{
    giveDevice(Page::list(5));
    open(Page::list(9));
    device().faults().add(Fault::answer("Error=Disk is full").onlyFor(Fault::Method::Put));
    QCOMPARE(errorAfter([this] { page_->send(host()); }), busy);
    QCOMPARE(title(), named(QStringLiteral("local")));
    QCOMPARE(errorAfter([this] { page_->send(Devices::refused()); }), busy);
    QCOMPARE(device().storedAccessList(), Page::list(5));
    QCOMPARE(reloads(), 0);
    QCOMPARE(device().journal().count(JournalEntry::Kind::OnLineOpened), 0);
    QCOMPARE(ownList(), Page::list(9));
}

void TestSufferedNumbersNet::succeedsWithoutReload()
{
    giveDevice(Page::list(5));
    open(Page::list(9));
    device().setOnLineListening(false);
    send();
    QTRY_COMPARE(device().storedAccessList(), Page::list(9));
    QCOMPARE(device().activeAccessList(), Page::list(5));
    QCOMPARE(title(), named(host()));
    device().setOnLineListening(true);
    SufferedNumbersWidget::reloadVaskPassbase(host());
    expectInForce(Page::list(9));
}

void TestSufferedNumbersNet::asksForDevice()
{
    giveDevice(Page::list(5));
    open(Page::list(2));
    page_->clickRow(1);
    Settings::instance()->setAddressList({host()});
    for (const char *button : {"buttonLoadFromNetwork", "buttonSaveToNetwork", ""}) {
        page_->answers().expect(ModalAnswers::pressing("buttonCancel"));
        if (*button != '\0') {
            page_->press(button);
        } else {
            page_->page().appendToVask();
        }
        QVERIFY(!page_->isBusy());
    }
    page_->answers().expect(ModalAnswers::pressing("buttonCancel"));
    page_->page().loadTableFromNet(QString());
    QVERIFY(!page_->isBusy());
    QCOMPARE(page_->answers().given(), 4);
    QCOMPARE(device().journal().countRequests(), 0);
    QCOMPARE(ownList(), Page::list(2));
}

void TestSufferedNumbersNet::takesDeviceFromCommandLine()
{
    giveDevice(Page::list(5));
    Page::write(Page::ownList(), Page::list(2));
    // Before there is an event loop, and the page's own list is still to be opened.
    page_ = std::make_unique<Page>();
    page_->page().loadTableFromNet(host());
    QVERIFY(page_->isBusy());
    QTRY_COMPARE_WITH_TIMEOUT(title(), named(host()), patience);
    QVERIFY(page_->becomesIdle());
    QCOMPARE(page_->rows(), 5);
    QCOMPARE(page_->answers().given(), 0);
}

void TestSufferedNumbersNet::namesLastDevice()
{
    giveDevice(Page::list(5));
    DeviceHost &second = devices_->second();
    second.files().set(DevicePaths::accessList(), Page::list(6, 100));
    open(QByteArray());
    QCOMPARE(title(), named(QStringLiteral("local")));
    fetch();
    QCOMPARE(title(), named(host()));
    page_->fetch(second.address());
    QVERIFY(page_->becomesIdle());
    QCOMPARE(title(), named(second.address()));
    QCOMPARE(page_->rows(), 6);
    send();
    QCOMPARE(title(), named(host()));
    expectInForce(Page::list(6, 100));
    QCOMPARE(second.storedAccessList(), Page::list(6, 100));
    QCOMPARE(second.reloadCount(), 0);
}

void TestSufferedNumbersNet::keepsTableFromElsewhere()
{
    stick_ = std::make_unique<QTemporaryDir>();
    const QString name = stick_->filePath(QStringLiteral("list.tpa"));
    Page::write(name, Page::list(4));
    giveDevice(Page::list(5));
    open(Page::list(2));
    page_->load(name);
    QVERIFY(page_->becomesIdle());
    page_->clickRow(3);
    type("lineEditKey", QStringLiteral("new"));
    page_->press("buttonApply");
    const QByteArray edited = Page::content(name);
    QVERIFY(edited != Page::list(4));
    send(); // the table that is on view
    expectInForce(edited);
    QCOMPARE(ownList(), Page::list(2));
    giveDevice(Page::list(5));
    fetch();
    QCOMPARE(ownList(), Page::list(5));
    QCOMPARE(page_->rows(), 5);
    page_->clickRow(0);
    remove();
    QCOMPARE(Page::content(name), edited);
    QCOMPARE(ownList().size(), int(4 * Access::size));
}

void TestSufferedNumbersNet::sendsNothingWithoutTable()
{
    giveDevice(Page::list(5));
    open(Page::list(2));
    page_->page().clearTable(false);
    QCOMPARE(errorAfter([this] { page_->send(host()); }), busy);
    QCOMPARE(device().storedAccessList(), Page::list(5));
    QCOMPARE(reloads(), 0);
    QCOMPARE(ownList(), Page::list(2));
}

void TestSufferedNumbersNet::appends()
{
    giveDevice(Page::list(40, 100));
    open(Page::list(9));
    page_->clickRow(4);
    const int threadsBefore = threads();
    const Log log;
    page_->append(host());
    QVERIFY(page_->isBusy());
    Access added = listed(4);
    added.setId(41);
    const QByteArray expected = Page::list(40, 100) + Page::bytes(added);
    expectInForce(expected);
    QTRY_COMPARE_WITH_TIMEOUT(threads(), threadsBefore, patience);
    QTRY_COMPARE_WITH_TIMEOUT(device().fileConnections() + device().onLineConnections(), 0,
                              patience);
    QCoreApplication::sendPostedEvents();
    // Debug builds add the place to the first line.
    QCOMPARE(Log::lines().size(), 2);
    QVERIFY(Log::lines().first().startsWith(
        QStringLiteral("QObject::connect: No such slot SufferedNumbersWidget::threadFinished()")));
    QCOMPARE(Log::lines().last(),
             QStringLiteral("QObject::connect:  (receiver name: 'SufferedNumbersWidgetClass')"));
    // Nothing turns back to the table.
    QVERIFY(page_->isBusy());
    QCOMPARE(page_->rows(), 9);
    QCOMPARE(ownList(), Page::list(9));
    QCOMPARE(reloads(), 1);
    QCOMPARE(device().journal().countRequests(), 2);
    QCOMPARE(title(), named(QStringLiteral("local")));
    const qint64 taken = page_->end();
    QVERIFY2(taken < 2000, qPrintable(QString::number(taken)));
    page_.reset();
}

// Not what becomes of it meanwhile.
void TestSufferedNumbersNet::appendsWhatWasCurrent()
{
    giveDevice(Page::list(40, 100));
    open(Page::list(9));
    page_->clickRow(4);
    device().faults().add(Fault::delay(100));
    page_->append(host());
    page_->page().setTable(QString());
    QCOMPARE(page_->rows(), 0);
    Access added = listed(4);
    added.setId(41);
    expectInForce(Page::list(40, 100) + Page::bytes(added));
}

void TestSufferedNumbersNet::keepsFaceAfterFailedAppend()
{
    giveDevice(Page::list(40, 100));
    open(Page::list(9));
    page_->clickRow(4);
    const int threadsBefore = threads();
    device().faults().add(Fault::answer("Error=Busy"));
    page_->append(host());
    QTRY_COMPARE_WITH_TIMEOUT(device().journal().countRequests(), 1, patience);
    QTRY_COMPARE_WITH_TIMEOUT(threads(), threadsBefore, patience);
    QVERIFY(page_->isBusy());
    QCOMPARE(device().storedAccessList(), Page::list(40, 100));
    QCOMPARE(reloads(), 0);
    QCOMPARE(page_->answers().given(), 1); // the address dialog, and no error
}

void TestSufferedNumbersNet::goesOnAfterAppend()
{
    giveDevice(Page::list(40, 100));
    open(Page::list(9));
    page_->clickRow(4);
    page_->append(host());
    QTRY_COMPARE_WITH_TIMEOUT(reloads(), 1, patience);
    // Entries come in, and a fetch brings the table back.
    page_->page().appendSufferedRecord(Page::entry(77));
    QTRY_COMPARE_WITH_TIMEOUT(page_->rows(), 10, patience);
    QVERIFY(page_->isBusy());
    page_->page().loadTableFromNet(host());
    QVERIFY(page_->becomesIdle());
    QCOMPARE(page_->rows(), 41);
    QCOMPARE(ownList(), device().storedAccessList());
}

STALLO_TEST_MAIN(TestSufferedNumbersNet)
#include "tst_sufferednumbersnet.moc"
