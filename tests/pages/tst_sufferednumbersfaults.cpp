// SPDX-License-Identifier: MIT
#include "app/errorbrowser.h"
#include "tests/pages/listcase.h"
#include "tests/support/blackhole.h"
#include "tests/support/filelimit.h"

#include <QDir>
#include <QElapsedTimer>
#include <QMetaEnum>
#include <QTemporaryDir>

namespace
{

using Page = ListPage;

const QString busyText = QStringLiteral("Vask is busy now. Please try again later.");

// What a device holds, what the panel keeps as its own, and what the operator has on view: five
// blocks of the transfer each, not quite, but the panel's own.
const QByteArray deviceList = Page::list(40, 100);
const QByteArray panelList = Page::list(3);
const QByteArray viewList = Page::list(44, 200);

const Fault noFault = Fault::delay(0);

int threads()
{
    return QDir(QStringLiteral("/proc/self/task"))
        .entryList(QDir::Dirs | QDir::NoDotAndDotDot)
        .size();
}

} // namespace

Q_DECLARE_METATYPE(Fault)

// Everything that a device can do wrong in each step of a fetch, a sending and an append, and a
// panel whose disk is full: the device has the list before or the list after, never a part of one;
// the operator's table and files stay; he is told what he has to be told; and the next operation
// works.
class TestSufferedNumbersFaults : public ListCase
{
    Q_OBJECT

public:
    // In which a trouble comes. An append gets the list of the device first and puts it then.
    enum class Step { Fetch, Send, AppendGet, AppendPut, SendReload, AppendReload };
    Q_ENUM(Step)
    // What comes of it.
    enum class End {
        Good,
        Bad,
        None,    // the device says that it has no list
        Damaged, // what the device announces is no list
        Lost,    // sent, but not taken; the panel cannot know it
        Unsure,  // the panel may know it or not; what is sent is not taken
        Asleep   // sent and taken, but not in force
    };
    Q_ENUM(End)
    // What happens beside the fault: to the file service, to the panel's disk, to the reload.
    enum class Event { None, HangUp, Stop, Refuse, FullDisk, NoReload, DeadReload, UnreadReload };
    Q_ENUM(Event)

private Q_SLOTS:
    void init();
    void cleanup();

    void survives_data();
    void survives();
    void takesWhatIsSaid_data();
    void takesWhatIsSaid();
    void waitsForSilentDevice();
    void keepsTableWhenPanelDiskIsFull();

private:
    static bool isAppend(Step step)
    {
        return step == Step::AppendGet || step == Step::AppendPut || step == Step::AppendReload;
    }
    static bool isDownload(Step step) { return step == Step::Fetch || step == Step::AppendGet; }
    // The list that the device is to have.
    QByteArray newList(Step step) const
    {
        if (!isAppend(step)) {
            return step == Step::Fetch ? deviceList : viewList;
        }
        Access added = current_;
        added.setId(41);
        return deviceList + Page::bytes(added);
    }
    static void addRow(Step step, const char *name, const Fault &fault, End end, Event event);
    static void addDownloads(Step step);
    static void addUploads(Step step);
    static void addReloads(Step step);

    // What the device has to do for a thing to happen, and the thing.
    struct Plan {
        int requests = 0;
        std::function<void()> act;
    };
    Plan plan(Step step, const Fault &fault, Event event);
    void makeTrouble(Event event);
    // The job, to its end; the text of the error.
    QString run(Step step, const Plan &plan, End end);
    void expectOnDevice(Step step, End end);
    void expectOnPanel(Step step, End end, const QString &text);
    void worksAgain(Step step);

    std::unique_ptr<QTemporaryDir> stick_;
    std::unique_ptr<BlackHole> hole_;
    std::unique_ptr<FileLimit> limit_;
    QString name_; // of the file on view
    Access current_;
    int threadsBefore_ = 0;
    int onLinePort_ = 0;
};

void TestSufferedNumbersFaults::init()
{
    ListCase::init();
    stick_ = std::make_unique<QTemporaryDir>();
    name_ = stick_->filePath(QStringLiteral("list.tpa"));
    Page::write(name_, viewList);
    onLinePort_ = Settings::instance()->vaskParkingPort();
    giveDevice(deviceList);
    open(panelList);
    page_->page().setTable(name_);
    page_->clickRow(43);
    current_ = page_->edited();
    threadsBefore_ = threads();
}

void TestSufferedNumbersFaults::cleanup()
{
    limit_.reset();
    ListCase::cleanup();
    hole_.reset();
    stick_.reset();
}

void TestSufferedNumbersFaults::addRow(Step step, const char *name, const Fault &fault, End end,
                                       Event event)
{
    QTest::addRow("%s: %s", QMetaEnum::fromType<Step>().valueToKey(static_cast<int>(step)), name)
        << step << fault << event << end;
}

void TestSufferedNumbersFaults::addDownloads(Step step)
{
    const auto row = [step](const char *name, const Fault &fault, End end,
                            Event event = Event::None) { addRow(step, name, fault, end, event); };
    row("closed on accept", Fault::closeOnAccept(), End::Bad);
    row("reset on accept", Fault::resetOnAccept(), End::Bad);
    row("silent, then hung up", Fault::silent(), End::Bad, Event::HangUp);
    row("closed after the request", Fault::closeAfterRequest(), End::Bad);
    row("reset after the request", Fault::resetAfterRequest(), End::Bad);
    row("refused", Fault::answer("Error=Busy"), End::Bad);
    row("no list", Fault::answer("Error=Can't open file"), End::None);
    row("empty line", Fault::answer(""), End::Bad);
    row("garbage", Fault::garbage(), End::Bad);
    row("flood", Fault::flood(), End::Bad);
    row("no size", Fault::declaredSize("many"), End::Bad);
    row("size too small", Fault::sizeOffset(-50), End::Damaged);
    row("size too large", Fault::sizeOffset(116), End::Bad);
    row("closed at once", Fault::closeAfter(0), End::Bad);
    row("closed half-way", Fault::closeAfter(2000), End::Bad);
    row("closed between entries", Fault::closeAfter(20 * 116), End::Bad);
    row("closed before the last entry", Fault::closeAfter(-116), End::Bad);
    row("closed before the last byte", Fault::closeAfter(-1), End::Bad);
    row("reset half-way", Fault::resetAfter(2000), End::Bad);
    row("reset before the last entry", Fault::resetAfter(-116), End::Bad);
    row("reset at the end", Fault::resetAfter(40 * 116), End::Unsure);
    row("closed at the end", Fault::closeAtEnd(), End::Good);
    row("late", Fault::delay(300), End::Good);
    row("short pause", Fault::pause(2000, 200), End::Good);
    row("falls silent", Fault::pause(2000, 60000), End::Bad);
    row("trickle", Fault::trickle(128, 5), End::Good);
    row("stops reading", Fault::stopReading(), End::Good);
    row("hangs up", Fault::trickle(64, 10), End::Bad, Event::HangUp);
    row("goes away", Fault::trickle(64, 10), End::Bad, Event::Stop);
    row("not there", noFault, End::Bad, Event::Refuse);
    row("full disk", noFault, End::Bad, Event::FullDisk);
}

void TestSufferedNumbersFaults::addUploads(Step step)
{
    const auto row = [step](const char *name, const Fault &fault, End end,
                            Event event = Event::None) { addRow(step, name, fault, end, event); };
    row("closed on accept", Fault::closeOnAccept(), End::Bad);
    row("reset on accept", Fault::resetOnAccept(), End::Bad);
    row("silent", Fault::silent(), End::Bad);
    row("silent, then hung up", Fault::silent(), End::Bad, Event::HangUp);
    row("closed after the request", Fault::closeAfterRequest(), End::Bad);
    row("reset after the request", Fault::resetAfterRequest(), End::Bad);
    row("refused", Fault::answer("Error=Disk is full"), End::Bad);
    row("no file", Fault::answer("Error=Can't open file"), End::Bad);
    row("empty line", Fault::answer(""), End::Lost);
    row("garbage", Fault::garbage(), End::Lost);
    row("flood", Fault::flood(), End::Bad);
    row("closed at once", Fault::closeAfter(0), End::Unsure);
    row("closed half-way", Fault::closeAfter(2000), End::Unsure);
    row("closed between entries", Fault::closeAfter(20 * 116), End::Unsure);
    row("closed before the last byte", Fault::closeAfter(-1), End::Unsure);
    row("reset at once", Fault::resetAfter(0), End::Unsure);
    row("reset half-way", Fault::resetAfter(2000), End::Unsure);
    row("reset before the last byte", Fault::resetAfter(-1), End::Unsure);
    row("stops reading", Fault::stopReading(), End::Lost);
    row("stops reading half-way", Fault::stopReading(2000), End::Lost);
    row("closed at the end", Fault::closeAtEnd(), End::Good);
    row("late", Fault::delay(300), End::Good);
    // These have no meaning for an upload.
    row("no size", Fault::declaredSize("many"), End::Good);
    row("size too small", Fault::sizeOffset(-50), End::Good);
    row("pause", Fault::pause(2000, 60000), End::Good);
    row("trickle", Fault::trickle(), End::Good);
    row("replaced", Fault::replace(2000, viewList), End::Good);
    row("goes away", Fault::silent(), End::Bad, Event::Stop);
    row("not there", noFault, End::Bad, Event::Refuse);
}

void TestSufferedNumbersFaults::addReloads(Step step)
{
    addRow(step, "well", noFault, End::Good, Event::None);
    addRow(step, "refused", noFault, End::Asleep, Event::NoReload);
    addRow(step, "never connects", noFault, End::Asleep, Event::DeadReload);
    addRow(step, "not read", noFault, End::Asleep, Event::UnreadReload);
}

void TestSufferedNumbersFaults::survives_data()
{
    QTest::addColumn<Step>("step");
    QTest::addColumn<Fault>("fault");
    QTest::addColumn<Event>("event");
    QTest::addColumn<End>("end");
    addDownloads(Step::Fetch);
    addDownloads(Step::AppendGet);
    addUploads(Step::Send);
    addUploads(Step::AppendPut);
    addReloads(Step::SendReload);
    addReloads(Step::AppendReload);
}

// An append gets the list first: what concerns its second connection waits for the first one.
TestSufferedNumbersFaults::Plan TestSufferedNumbersFaults::plan(Step step, const Fault &fault,
                                                                Event event)
{
    const auto method = isDownload(step) ? Fault::Method::Get : Fault::Method::Put;
    const bool later = step == Step::AppendPut && (fault.isOnAccept() || event == Event::Refuse);
    if (later) {
        device().faults().add(Fault::delay(200).onlyFor(Fault::Method::Get));
        return {1, [this, fault, event] {
                    if (fault.isOnAccept()) {
                        device().faults().add(fault);
                    }
                    makeTrouble(event);
                }};
    }
    device().faults().add(fault.isOnAccept() ? fault : fault.onlyFor(method));
    if (event == Event::HangUp || event == Event::Stop) {
        return {step == Step::AppendPut ? 2 : 1, [this, event] { makeTrouble(event); }};
    }
    makeTrouble(event);
    return {};
}

void TestSufferedNumbersFaults::makeTrouble(Event event)
{
    switch (event) {
    case Event::None:
        break;
    case Event::HangUp:
        device().dropFileConnections();
        break;
    case Event::Stop:
        device().stop();
        break;
    case Event::Refuse:
        device().setFileListening(false);
        break;
    case Event::FullDisk:
        limit_ = std::make_unique<FileLimit>(2000);
        break;
    case Event::NoReload:
        device().setOnLineListening(false);
        break;
    case Event::DeadReload:
        hole_ = std::make_unique<BlackHole>(QHostAddress::LocalHost);
        Settings::instance()->setVaskParkingPort(hole_->port());
        break;
    case Event::UnreadReload:
        device().setOnLineReading(false);
        break;
    }
}

QString TestSufferedNumbersFaults::run(Step step, const Plan &plan, End end)
{
    if (isAppend(step)) {
        page_->append(host());
    } else if (step == Step::Fetch) {
        page_->fetch(host());
    } else {
        page_->send(host());
    }
    QString heading;
    QString text;
    if (!isAppend(step) &&
        (end == End::Bad || end == End::None || end == End::Damaged || end == End::Unsure)) {
        page_->answers().expect(ModalAnswers::reading(&heading, &text));
    }
    if (plan.act) {
        [&] {
            QTRY_VERIFY_WITH_TIMEOUT(device().journal().countRequests() >= plan.requests, patience);
        }();
        plan.act();
    }
    if (isAppend(step)) {
        [&] { QTRY_COMPARE_WITH_TIMEOUT(threads(), threadsBefore_, patience); }();
        return QString();
    }
    [&] { QVERIFY(page_->becomesIdle()); }();
    if (end == End::Unsure && page_->answers().left() == 1) {
        // Used up, so that it is not given to another one.
        ErrorBrowser::error(QStringLiteral("Error"), QString(), &page_->page());
    }
    [&] { QCOMPARE(heading, text.isNull() ? QString() : QStringLiteral("Error")); }();
    return text;
}

void TestSufferedNumbersFaults::expectOnDevice(Step step, End end)
{
    limit_.reset();
    const bool taken = end == End::Good || end == End::Asleep;
    const bool told = end == End::Good || end == End::Lost;
    const int reloadsExpected = told && step != Step::Fetch ? 1 : 0;
    if (end != End::Unsure) {
        // What the panel has sent is still on its way.
        QTRY_COMPARE_WITH_TIMEOUT(device().storedAccessList(), taken ? newList(step) : deviceList,
                                  patience);
        QTRY_COMPARE_WITH_TIMEOUT(reloads(), reloadsExpected, patience);
    }
    // Nothing more is to come.
    device().dropFileConnections();
    device().dropOnLine();
    QTRY_COMPARE_WITH_TIMEOUT(device().fileConnections() + device().onLineConnections(), 0,
                              patience);
    const QByteArray stored = device().storedAccessList();
    const QByteArray active = device().activeAccessList();
    if (end == End::Unsure && isDownload(step)) {
        QVERIFY(stored == deviceList || stored == newList(step));
        QCOMPARE(active, stored);
        return;
    }
    QCOMPARE(stored, taken ? newList(step) : deviceList);
    QCOMPARE(active, end == End::Good ? newList(step) : deviceList);
    if (end != End::Unsure) {
        QCOMPARE(reloads(), reloadsExpected);
    }
}

void TestSufferedNumbersFaults::expectOnPanel(Step step, End end, const QString &text)
{
    QCOMPARE(Page::content(name_), viewList);
    if (isAppend(step)) {
        QVERIFY(page_->isBusy());
        QCOMPARE(page_->answers().given(), 1); // the address
        QCOMPARE(ownList(), panelList);
        QCOMPARE(page_->rows(), 44);
        return;
    }
    QVERIFY2(end != End::Unsure || text.isEmpty() || text == busyText, qPrintable(text));
    if (end != End::Unsure) {
        QCOMPARE(text, end == End::None      ? QStringLiteral("No access base on Vask find out")
                       : end == End::Damaged ? QStringLiteral("The access list of Vask is damaged.")
                       : end == End::Bad     ? busyText
                                             : QString());
    }
    const bool fetched = step == Step::Fetch && text.isEmpty();
    QCOMPARE(ownList(), fetched ? deviceList : panelList);
    QCOMPARE(page_->rows(), fetched ? 40 : 44);
    QCOMPARE(page_->cell(39, AccessModel::KeyColumn), Page::entry(fetched ? 139 : 239).accessKey());
    QCOMPARE(title(), named(text.isEmpty() ? host() : QStringLiteral("local")));
}

// Without trouble a list is fetched, changed and sent.
void TestSufferedNumbersFaults::worksAgain(Step step)
{
    device().faults().clear();
    Settings::instance()->setVaskParkingPort(onLinePort_);
    QTRY_VERIFY_WITH_TIMEOUT(device().start(), patience);
    device().setFileListening(true);
    device().setOnLineListening(true);
    device().setOnLineReading(true);
    if (isAppend(step)) {
        page_->page().loadTableFromNet(host()); // which brings the table face back
    } else {
        page_->fetch(host());
    }
    QVERIFY(page_->becomesIdle());
    QCOMPARE(ownList(), device().storedAccessList());
    page_->clickRow(0);
    page_->press("buttonNew");
    const QByteArray list = ownList();
    QVERIFY(list.size() > device().storedAccessList().size());
    page_->send(host());
    QVERIFY(page_->becomesIdle());
    QTRY_COMPARE_WITH_TIMEOUT(device().activeAccessList(), list, patience);
    QCOMPARE(device().storedAccessList(), list);
    QCOMPARE(Page::content(name_), viewList);
}

void TestSufferedNumbersFaults::survives()
{
    QFETCH(Step, step);
    QFETCH(Fault, fault);
    QFETCH(Event, event);
    QFETCH(End, end);
    const QString text = run(step, plan(step, fault, event), end);
    expectOnDevice(step, end);
    expectOnPanel(step, end, text);
    worksAgain(step);
}

// Lists that no panel can tell from good ones: they consist of whole entries, and as many bytes
// came as were promised.
void TestSufferedNumbersFaults::takesWhatIsSaid_data()
{
    QTest::addColumn<Fault>("fault");
    QTest::addColumn<QByteArray>("list");
    QTest::newRow("an entry less") << Fault::sizeOffset(-116) << deviceList.left(39 * 116);
    QTest::newRow("replaced meanwhile")
        << Fault::replace(20 * 116, viewList)
        << deviceList.left(20 * 116) + viewList.mid(20 * 116, 20 * 116);
}

void TestSufferedNumbersFaults::takesWhatIsSaid()
{
    QFETCH(Fault, fault);
    device().faults().add(fault);
    page_->fetch(host());
    QVERIFY(page_->becomesIdle());
    QTEST(ownList(), "list");
}

void TestSufferedNumbersFaults::waitsForSilentDevice()
{
    constexpr int longest = 30000; // that a device may take to answer
    device().faults().add(Fault::silent());
    QString heading;
    QString text;
    QElapsedTimer clock;
    page_->fetch(host());
    clock.start();
    page_->answers().expect(ModalAnswers::reading(&heading, &text));
    QTRY_COMPARE_WITH_TIMEOUT(text, busyText, 2 * longest);
    QVERIFY2(clock.elapsed() >= longest - 500, qPrintable(QString::number(clock.elapsed())));
    QVERIFY(page_->becomesIdle());
    QCOMPARE(ownList(), panelList);
}

// The list is there and cannot be kept.
void TestSufferedNumbersFaults::keepsTableWhenPanelDiskIsFull()
{
    connect(
        &page_->page(), &SufferedNumbersWidget::setTableThreaded, this,
        [this](const QString &name) {
            if (name.isEmpty()) {
                makeTrouble(Event::FullDisk);
            }
        },
        Qt::DirectConnection);
    QCOMPARE(errorAfter([this] { page_->fetch(host()); }), QStringLiteral("Error|File too large"));
    limit_.reset();
    QCOMPARE(ownList(), panelList);
    QCOMPARE(QDir(Page::folder()).entryList(QDir::Files | QDir::Hidden).size(), 1);
    QCOMPARE(Page::content(name_), viewList);
    QCOMPARE(page_->rows(), 44);
    // And the table can be worked with.
    page_->clickRow(0);
    type("lineEditKey", QStringLiteral("new"));
    page_->press("buttonApply");
    QVERIFY(Page::content(name_) != viewList);
    QCOMPARE(Page::content(name_).size(), viewList.size());
}

STALLO_TEST_MAIN(TestSufferedNumbersFaults)
#include "tst_sufferednumbersfaults.moc"
