// SPDX-License-Identifier: MIT
#include "app/settings.h"
#include "net/events.h"
#include "net/passagetickets.h"
#include "pages/passagequeue.h"
#include "pages/proportionalsclalewidget.h"
#include "pages/twinlines.h"
#include "tests/support/blackhole.h"
#include "tests/support/devices.h"
#include "tests/support/onlinepage.h"
#include "tests/support/testmain.h"

#include <QAbstractSocket>
#include <QDir>
#include <QElapsedTimer>
#include <QThread>

namespace
{

using Page = OnlinePage;

// Longer than the pauses between attempts, and than loaded machines take.
constexpr int patience = 15000;

} // namespace

// The On-line page before more than it can take at once: floods of passages, one device in both
// slots, commands to devices that are gone.
class TestOnLineWidgetFlood : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        Page::prepare();
        devices_ = std::make_unique<Devices>();
        device().files().setMaker(
            DevicePaths::photoFolder(),
            [jpeg = Page::jpeg(32, 24)](const QString &) { return FileTree::contentOf(jpeg); });
    }
    void cleanup()
    {
        page_.reset();
        devices_.reset();
    }

    void countsTickets();
    void holdsDeviceBackWhileTheWindowIsBusy();
    void handlesInSlices();
    void handlesAtOnceWhatNobodyWaitsFor();
    void goesOnInsideDialogs();
    void pairsTwins_data();
    void pairsTwins();
    void storesPassagesOfOneDeviceInBothSlotsOnce();
    void losesNothingWhenOneOfTwoLinesIsReleased();
    void ignoresLateWordOfFormerDevice();
    void windowGoesOnDuringBarrierCommand();
    void reportsImpatientPressesOnce();

private:
    DeviceHost &device() { return devices_->first(); }
    void connectFirst()
    {
        page_ = std::make_unique<Page>();
        page_->page().selectDevice(device().address());
        QTRY_VERIFY_WITH_TIMEOUT(page_->button("buttonDisconnect1")->isEnabled(), patience);
        QTRY_COMPARE(device().onLineConnections(), 1);
    }
    void connectBoth()
    {
        connectFirst();
        Settings::instance()->setAddressList({device().address()});
        page_->answers().expect(ModalAnswers::pressing("buttonOk"));
        page_->press("buttonSelectDevice2");
        QTRY_VERIFY_WITH_TIMEOUT(page_->button("buttonDisconnect2")->isEnabled(), patience);
        QTRY_COMPARE(device().onLineConnections(), 2);
    }
    // As many presses as an impatient hand makes, at an address that never answers.
    void pressAtBlackHole(int presses)
    {
        page_ = std::make_unique<Page>();
        hole_ = std::make_unique<BlackHole>(QHostAddress(Page::nowhere()));
        Settings::instance()->setVaskParkingPort(hole_->port());
        page_->page().selectDevice(Page::nowhere());
        page_->button("buttonOpenBarrier1")->setEnabled(true);
        threadsBefore_ = threads();
        for (int n = 0; n < presses; ++n) {
            page_->press("buttonOpenBarrier1");
        }
    }

    static int threads()
    {
        return QDir(QStringLiteral("/proc/self/task"))
            .entryList(QDir::Dirs | QDir::NoDotAndDotDot)
            .size();
    }

    int threadsBefore_ = 0;
    std::unique_ptr<Devices> devices_;
    std::unique_ptr<BlackHole> hole_;
    std::unique_ptr<Page> page_;
};

void TestOnLineWidgetFlood::countsTickets()
{
    PassageTickets tickets(2);
    PassageTickets::Ticket first = tickets.takeAtOnce();
    const PassageTickets::Ticket second = tickets.take([] { return false; });
    QVERIFY(first && second);
    QVERIFY(!tickets.takeAtOnce());
    int asked = 0;
    QVERIFY(!tickets.take([&asked] { return ++asked > 3; }));
    {
        const PassageTickets::Ticket copy = first;
        first.reset();
        QVERIFY(!tickets.takeAtOnce());
    }
    QVERIFY(tickets.takeAtOnce());
    QVERIFY(!tickets.take([] { return true; }));
}

void TestOnLineWidgetFlood::holdsDeviceBackWhileTheWindowIsBusy()
{
    connectFirst();
    const QVector<OnLine> sent = Page::records(2000);
    device().files().remove(DevicePaths::videoFrame());
    device().pushAll(sent);
    // The window does nothing until the client asks for no more photos.
    const auto photos = [this] {
        return QDir(Page::folder() + QStringLiteral("/jpegdata")).entryList(QDir::Files).size();
    };
    int before = -1;
    for (int now = photos(); now != before || now == 0; now = photos()) {
        before = now;
        QThread::msleep(500);
    }
    // Those under way, and the one for which the client waits.
    QVERIFY2(before >= 200 && before <= 257, qPrintable(QString::number(before)));
    QTRY_COMPARE_WITH_TIMEOUT(page_->rows(), sent.size(), 60000);
    QCOMPARE(Page::tableBytes(), Page::tableOf(sent));
    QCOMPARE(page_->currentRow(), sent.size() - 1);
}

void TestOnLineWidgetFlood::handlesInSlices()
{
    const PassageTickets tickets(1000);
    QVector<OnLine> handled;
    QVector<int> slices;
    PassageQueue queue(
        [&](const OnLineEvent &event) {
            QThread::msleep(3);
            handled.append(event.onLine());
        },
        [&] { slices.append(handled.size()); });
    const QVector<OnLine> sent = Page::records(60);
    for (const OnLine &each : sent) {
        OnLineEvent event(Page::nowhere(), each, QString(), QString(), false);
        event.setOrigin(0, tickets.takeAtOnce());
        queue.add(event);
    }
    // Behind the others, although nobody waits for it.
    queue.add(OnLineEvent(Page::nowhere(), Page::record(99), QString(), QString(), false));
    QCOMPARE(handled.size(), 0);
    int turns = 0;
    while (handled.size() < 61) {
        QCoreApplication::processEvents();
        ++turns;
    }
    QVERIFY2(turns >= 9, qPrintable(QString::number(turns)));
    for (int n = 0; n < slices.size(); ++n) {
        QVERIFY(slices.at(n) - (n > 0 ? slices.at(n - 1) : 0) <= 7);
    }
    QCOMPARE(Page::tableOf(handled.mid(0, 60)), Page::tableOf(sent));
    QCOMPARE(handled.last().number(), Page::record(99).number());
}

void TestOnLineWidgetFlood::handlesAtOnceWhatNobodyWaitsFor()
{
    int handled = 0;
    int ended = 0;
    PassageQueue queue([&](const OnLineEvent &) { ++handled; }, [&] { ++ended; });
    queue.add(OnLineEvent(Page::nowhere(), Page::record(1), QString(), QString(), false));
    QCOMPARE(handled, 1);
    QCOMPARE(ended, 1);
}

void TestOnLineWidgetFlood::goesOnInsideDialogs()
{
    const PassageTickets tickets(10);
    int handled = 0;
    PassageQueue queue(
        [&](const OnLineEvent &) {
            if (++handled == 1) {
                QTRY_COMPARE(handled, 5); // as a dialog does, in a loop of its own
            }
        },
        [] {});
    for (int n = 0; n < 5; ++n) {
        OnLineEvent event(Page::nowhere(), Page::record(n), QString(), QString(), false);
        event.setOrigin(0, tickets.takeAtOnce());
        queue.add(event);
    }
    QTRY_COMPARE(handled, 5);
}

void TestOnLineWidgetFlood::pairsTwins_data()
{
    // A line's digit and a passage's letter each: "0a1a" is passage a on both lines.
    QTest::addColumn<QString>("brought");
    QTest::addColumn<QString>("stored");

    QTest::newRow("in turns") << "0a1a0b1b1c0c"
                              << "abc";
    QTest::newRow("one behind") << "0a0b0c1a1b1c"
                                << "abc";
    QTest::newRow("one misses some") << "0a0b0c1c0d1d"
                                     << "abcd";
    QTest::newRow("each misses some") << "0a1b0c1c"
                                      << "abc";
    QTest::newRow("ahead in turns") << "0a1b0b1c0c"
                                    << "abc";
    QTest::newRow("equal on one line") << "0a0a1a1a"
                                       << "aa";
    QTest::newRow("equal in turns") << "0a1a0a1a"
                                    << "aa";
    QTest::newRow("equal on one line only") << "0a0a0a"
                                            << "aaa";
    QTest::newRow("equal, one missed by the other") << "0a0a1a1b0b"
                                                    << "aab";
    QTest::newRow("only one line") << "1a1b1a"
                                   << "aba";
}

void TestOnLineWidgetFlood::pairsTwins()
{
    QFETCH(QString, brought);
    const QString host = Page::nowhere();
    TwinLines lines;
    QString stored;
    for (int n = 0; n < brought.size(); n += 2) {
        const QChar passage = brought.at(n + 1);
        if (!lines.isRepeated(brought.at(n).digitValue(), Page::record(passage.unicode()), host,
                              true)) {
            stored += passage;
        }
    }
    QTEST(stored, "stored");
    QVERIFY(!lines.isRepeated(-1, Page::record('z'), host, true));
    QVERIFY(!lines.isRepeated(0, Page::record('z'), host, true));
    QVERIFY(!lines.isRepeated(0, Page::record('y'), host, true));
    // One slot is released: what it still brings was brought before.
    QVERIFY(lines.isRepeated(1, Page::record('z'), host, false));
    QVERIFY(lines.isRepeated(1, Page::record('y'), host, false));
    // Another device's passage ends that.
    QVERIFY(!lines.isRepeated(0, Page::record('x'), host, true));
    QVERIFY(!lines.isRepeated(0, Page::record('x'), QStringLiteral("other"), false));
    QVERIFY(!lines.isRepeated(1, Page::record('x'), host, false));
}

void TestOnLineWidgetFlood::storesPassagesOfOneDeviceInBothSlotsOnce()
{
    connectBoth();
    QVector<OnLine> sent = Page::records(300);
    sent.append(Page::record(299)); // the same bytes again are another passage
    device().pushAll(sent);
    QTRY_COMPARE_WITH_TIMEOUT(page_->rows(), sent.size(), 60000);
    // Both lines have brought all when each photo was asked for twice.
    const QString last = Page::record(299).fileName();
    QTRY_COMPARE_WITH_TIMEOUT(device().journal().countRequests(last), 4, 60000);
    device().push(Page::record(500));
    QTRY_COMPARE(device().journal().countRequests(Page::record(500).fileName()), 2);
    sent.append(Page::record(500));
    QTRY_COMPARE(page_->rows(), sent.size());
    QCOMPARE(Page::tableBytes(), Page::tableOf(sent));
}

void TestOnLineWidgetFlood::losesNothingWhenOneOfTwoLinesIsReleased()
{
    connectBoth();
    device().push(Page::record(1));
    QTRY_COMPARE(page_->rows(), 1);
    page_->press("buttonDisconnect1");
    QTRY_COMPARE_WITH_TIMEOUT(device().onLineConnections(), 1, patience);
    device().push(Page::record(2));
    QTRY_COMPARE_WITH_TIMEOUT(page_->rows(), 2, patience);
    device().resetOnLine();
    QTRY_COMPARE_WITH_TIMEOUT(device().onLineConnections(), 1, patience);
    device().push(Page::record(3));
    QTRY_COMPARE_WITH_TIMEOUT(page_->rows(), 3, patience);
    QCOMPARE(Page::tableBytes(), Page::tableOf(Page::records(3, 1)));
}

void TestOnLineWidgetFlood::ignoresLateWordOfFormerDevice()
{
    page_ = std::make_unique<Page>();
    page_->page().selectDevice(Page::nowhere());
    PipeEvent late;
    late.state = QAbstractSocket::ConnectedState;
    late.channel = 0;
    late.hostName = QStringLiteral("127.0.0.8");
    QCoreApplication::sendEvent(&page_->page(), &late);
    QVERIFY(!page_->button("buttonOpenBarrier1")->isEnabled());
    QVERIFY(page_->camera(0)->lines().first().startsWith(QStringLiteral("Connecting")));
    late.hostName = Page::nowhere();
    QCoreApplication::sendEvent(&page_->page(), &late);
    QVERIFY(page_->button("buttonOpenBarrier1")->isEnabled());
    QCOMPARE(page_->camera(0)->lines(), QStringList(Page::nowhere()));
}

void TestOnLineWidgetFlood::windowGoesOnDuringBarrierCommand()
{
    QElapsedTimer clock;
    pressAtBlackHole(20);
    clock.start();
    QCoreApplication::processEvents();
    QVERIFY2(clock.elapsed() < 1000, qPrintable(QString::number(clock.elapsed())));
    const qint64 took = page_->end();
    QVERIFY2(took < 1000, qPrintable(QString::number(took)));
}

void TestOnLineWidgetFlood::reportsImpatientPressesOnce()
{
    pressAtBlackHole(3);
    QString title;
    QString text;
    page_->answers().expect([&](QWidget *window) {
        // The others fail while it is open.
        QTRY_VERIFY_WITH_TIMEOUT(threads() <= threadsBefore_, 5000);
        ModalAnswers::reading(&title, &text)(window);
    });
    QTRY_COMPARE_WITH_TIMEOUT(title, QStringLiteral("Error"), patience);
    QCOMPARE(text, QStringLiteral("Socket operation timed out"));
    QCOMPARE(page_->answers().unexpected(), QStringList());
}

STALLO_TEST_MAIN(TestOnLineWidgetFlood)
#include "tst_onlinewidgetflood.moc"
