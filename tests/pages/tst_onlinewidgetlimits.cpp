// SPDX-License-Identifier: MIT
#include "app/settings.h"
#include "records/scan.h"
#include "tests/support/blackhole.h"
#include "tests/support/devices.h"
#include "tests/support/filelimit.h"
#include "tests/support/onlinepage.h"
#include "tests/support/testmain.h"
#include "tests/support/unreadable.h"

#include <QDir>
#include <QMessageBox>
#include <QTemporaryDir>

namespace
{

using Page = OnlinePage;

// Longer than the pauses between attempts, and than loaded machines take.
constexpr int patience = 15000;
constexpr int burstPatience = 60000;
// Within which the operator's window must be gone.
constexpr int longestEnd = 2000;

} // namespace

// The On-line page at its limits: full disks, bursts, and its end in the midst of everything.
class TestOnLineWidgetLimits : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        Page::prepare();
        devices_ = std::make_unique<Devices>();
        useSmallPhotos(device());
    }
    void cleanup()
    {
        page_.reset();
        devices_.reset();
    }

    void losesNothingOfABurst();
    void losesNothingOfTwoBursts();
    void reportsFullDiskOnce();
    void keepsFilesInStepOnFullDisk();
    void reportsDiskFullFromTheBeginning();
    void storesNoRowWithoutEntry_data();
    void storesNoRowWithoutEntry();
    void endsInEveryState_data();
    void endsInEveryState();
    void endsWhileSaving();

private:
    DeviceHost &device() { return devices_->first(); }
    static void useSmallPhotos(DeviceHost &host)
    {
        host.files().setMaker(
            DevicePaths::photoFolder(),
            [jpeg = Page::jpeg(32, 24)](const QString &) { return FileTree::contentOf(jpeg); });
    }
    void connectFirst()
    {
        page_ = std::make_unique<Page>();
        page_->page().selectDevice(device().address());
        QTRY_VERIFY_WITH_TIMEOUT(page_->button("buttonDisconnect1")->isEnabled(), patience);
        QTRY_COMPARE(device().onLineConnections(), 1);
    }
    void selectSecond(const QString &address)
    {
        Settings::instance()->setAddressList({address});
        page_->answers().expect(ModalAnswers::pressing("buttonOk"));
        page_->press("buttonSelectDevice2");
    }
    void begin(const QString &state);

    std::unique_ptr<Devices> devices_;
    std::unique_ptr<BlackHole> blackHole_;
    std::unique_ptr<Page> page_;
};

void TestOnLineWidgetLimits::losesNothingOfABurst()
{
    connectFirst();
    const QVector<OnLine> sent = Page::records(1000);
    device().pushAll(sent);
    QTRY_COMPARE_WITH_TIMEOUT(page_->rows(), sent.size(), burstPatience);
    QCOMPARE(Page::tableBytes(), Page::tableOf(sent));
    QCOMPARE(Page::indexBytes(), Page::indexOf({device().deviceId()}).repeated(sent.size()));
    QCOMPARE(page_->currentRow(), sent.size() - 1);
}

void TestOnLineWidgetLimits::losesNothingOfTwoBursts()
{
    connectFirst();
    DeviceHost &second = devices_->second();
    useSmallPhotos(second);
    selectSecond(second.address());
    QTRY_VERIFY_WITH_TIMEOUT(page_->button("buttonDisconnect2")->isEnabled(), patience);
    QTRY_COMPARE(second.onLineConnections(), 1);
    const QVector<OnLine> sent[] = {Page::records(1000), Page::records(1000, 5000)};
    device().pushAll(sent[0]);
    second.pushAll(sent[1]);
    QTRY_COMPARE_WITH_TIMEOUT(page_->rows(), 2000, burstPatience);
    const QByteArray table = Page::tableBytes();
    const QByteArray index = Page::indexBytes();
    QCOMPARE(table.size(), 2000 * Scan::size);
    QCOMPARE(index.size(), 2000 * 32);
    const QByteArray entries[] = {Page::indexOf({device().deviceId()}),
                                  Page::indexOf({second.deviceId()})};
    QByteArray stored[2];
    for (int row = 0; row < 2000; ++row) {
        const QByteArray entry = index.mid(row * 32, 32);
        QVERIFY(entry == entries[0] || entry == entries[1]);
        stored[entry == entries[0] ? 0 : 1] += table.mid(row * Scan::size, Scan::size);
    }
    QCOMPARE(stored[0], Page::tableOf(sent[0]));
    QCOMPARE(stored[1], Page::tableOf(sent[1]));
}

void TestOnLineWidgetLimits::reportsFullDiskOnce()
{
    page_ = std::make_unique<Page>();
    const QString host = Page::nowhere();
    page_->page().selectDevice(host);
    for (const OnLine &record : Page::records(3)) {
        page_->tellPassage(record, host);
    }
    int boxes = 0;
    page_->answers().expect([&](QWidget *window) {
        auto *box = qobject_cast<QMessageBox *>(window);
        QVERIFY(box != nullptr);
        QCOMPARE(box->windowTitle(), QStringLiteral("Data error"));
        QCOMPARE(box->text(), QStringLiteral("It is not enoth space on disk!"));
        QCOMPARE(box->icon(), QMessageBox::Critical);
        QCOMPARE(box->standardButtons(), QMessageBox::StandardButtons(QMessageBox::Ok));
        // More passages come while the operator reads.
        page_->tellPassage(Page::record(4), host);
        page_->tellPassage(Page::record(5), host);
        const QWidgetList all = QApplication::topLevelWidgets();
        for (const QWidget *each : all) {
            boxes += each->isVisible() && qobject_cast<const QMessageBox *>(each) ? 1 : 0;
        }
        QTest::mouseClick(box->button(QMessageBox::Ok), Qt::LeftButton);
    });
    {
        const FileLimit full(3 * Scan::size + 50);
        page_->tellPassage(Page::record(3), host);
        QCOMPARE(boxes, 1);
        QCOMPARE(page_->rows(), 3);
        QCOMPARE(page_->currentRow(), 2);
        QCOMPARE(Page::tableBytes(), Page::tableOf(Page::records(3)));
        // A box that was closed does not keep the next one away.
        QString title;
        QString text;
        page_->answers().expect(ModalAnswers::reading(&title, &text));
        page_->tellPassage(Page::record(6), host);
        QCOMPARE(title, QStringLiteral("Data error"));
    }
    QCOMPARE(page_->answers().unexpected(), QStringList());
    QCOMPARE(page_->answers().left(), 0);
}

void TestOnLineWidgetLimits::keepsFilesInStepOnFullDisk()
{
    page_ = std::make_unique<Page>();
    const QString host = Page::nowhere();
    page_->page().selectDevice(host);
    QStringList gates;
    for (int n = 0; n < 3; ++n) {
        gates << QStringLiteral("gate %1").arg(n);
        page_->tellPassage(Page::record(n), host, gates.last());
    }
    for (int extra = 0; extra < Scan::size; extra += 23) {
        const FileLimit full(static_cast<rlim_t>(3 * Scan::size + extra));
        QString title;
        QString text;
        page_->answers().expect(ModalAnswers::reading(&title, &text));
        page_->tellPassage(Page::record(9), host, QStringLiteral("lost"));
        QCOMPARE(text, QStringLiteral("It is not enoth space on disk!"));
        QCOMPARE(page_->rows(), 3);
        QCOMPARE(Page::tableBytes(), Page::tableOf(Page::records(3)));
        QCOMPARE(Page::indexBytes(), Page::indexOf(gates));
    }
    gates << QStringLiteral("gate 3");
    page_->tellPassage(Page::record(3), host, gates.last());
    QCOMPARE(page_->rows(), 4);
    QCOMPARE(page_->currentRow(), 3);
    QCOMPARE(Page::tableBytes(), Page::tableOf(Page::records(4)));
    QCOMPARE(Page::indexBytes(), Page::indexOf(gates));
}

void TestOnLineWidgetLimits::reportsDiskFullFromTheBeginning()
{
    page_ = std::make_unique<Page>();
    page_->page().selectDevice(Page::nowhere());
    QString title;
    QString text;
    {
        const FileLimit full(0);
        page_->answers().expect(ModalAnswers::reading(&title, &text));
        page_->tellPassage(Page::record(1), Page::nowhere());
    }
    QCOMPARE(text, QStringLiteral("It is not enoth space on disk!"));
    QCOMPARE(page_->rows(), 0);
    QVERIFY(!page_->button("buttonSave")->isEnabled());
    QCOMPARE(Page::indexBytes(), QByteArray());
    page_->tellPassage(Page::record(2), Page::nowhere());
    QCOMPARE(Page::tableBytes(), Page::tableOf(Page::records(1, 2)));
    QCOMPARE(Page::indexBytes(), Page::indexOf({QStringLiteral("gate")}));
}

void TestOnLineWidgetLimits::storesNoRowWithoutEntry_data()
{
    QTest::addColumn<int>("rows");
    QTest::newRow("first row") << 0;
    QTest::newRow("after others") << 3;
}

// Room for the row, none for its entry: neither is written.
void TestOnLineWidgetLimits::storesNoRowWithoutEntry()
{
    QFETCH(int, rows);
    page_ = std::make_unique<Page>();
    const QString host = Page::nowhere();
    const QString index = Page::folder() + QStringLiteral("/tmponline.tpp.index");
    page_->page().selectDevice(host);
    for (int n = 0; n < rows; ++n) {
        page_->tellPassage(Page::record(n), host);
    }
    if (rows == 0) {
        // It is opened with the first passage.
        QVERIFY(QFile::remove(index) && QDir().mkpath(index));
    } else {
        QVERIFY(Unreadable::makeReadOnly(index) > 0);
    }
    QString title;
    QString text;
    page_->answers().expect(ModalAnswers::reading(&title, &text));
    page_->tellPassage(Page::record(rows), host);
    QCOMPARE(title, QStringLiteral("Data error"));
    QCOMPARE(text, QStringLiteral("It is not enoth space on disk!"));
    QCOMPARE(page_->rows(), rows);
    QCOMPARE(Page::tableBytes(), Page::tableOf(Page::records(rows)));
    if (rows > 0) {
        QCOMPARE(Page::indexBytes(), Page::indexOf({QStringLiteral("gate")}).repeated(rows));
        return;
    }
    QVERIFY(QDir().rmdir(index));
    page_->tellPassage(Page::record(0), host);
    QCOMPARE(Page::tableBytes(), Page::tableOf(Page::records(1)));
    QCOMPARE(Page::indexBytes(), Page::indexOf({QStringLiteral("gate")}));
}

void TestOnLineWidgetLimits::endsInEveryState_data()
{
    QTest::addColumn<QString>("state");
    for (const char *state :
         {"unassigned", "refused", "black hole", "black hole for files", "identifier silent",
          "connected twice", "frame silent", "picture silent", "picture loaders", "burst",
          "just disconnected", "between disconnect and select"}) {
        QTest::newRow(state) << QString::fromLatin1(state);
    }
}

void TestOnLineWidgetLimits::begin(const QString &state)
{
    Settings *settings = Settings::instance();
    if (state == QLatin1String("unassigned")) {
        page_ = std::make_unique<Page>();
    } else if (state == QLatin1String("refused")) {
        page_ = std::make_unique<Page>();
        page_->page().selectDevice(Page::nowhere());
        selectSecond(QStringLiteral("127.0.0.8"));
    } else if (state == QLatin1String("black hole")) {
        blackHole_ = std::make_unique<BlackHole>(QHostAddress(device().address()));
        settings->setVaskParkingPort(blackHole_->port());
        page_ = std::make_unique<Page>();
        page_->page().selectDevice(device().address());
        // The identifier is there, and the next step is the line.
        QTRY_COMPARE(device().journal().countRequests(DevicePaths::streams()), 1);
        QTRY_VERIFY(device().journal().countRequests(DevicePaths::videoFrame()) > 1);
    } else if (state == QLatin1String("black hole for files")) {
        blackHole_ = std::make_unique<BlackHole>(QHostAddress(device().address()));
        settings->setFileTransferPort(blackHole_->port());
        page_ = std::make_unique<Page>();
        page_->page().selectDevice(device().address());
        selectSecond(Page::nowhere());
    } else if (state == QLatin1String("identifier silent")) {
        device().faults().add(Fault::silent().on(DevicePaths::streams()));
        page_ = std::make_unique<Page>();
        page_->page().selectDevice(device().address());
        QTRY_COMPARE(device().journal().countRequests(DevicePaths::streams()), 1);
    } else if (state == QLatin1String("frame silent")) {
        device().faults().add(Fault::silent().on(DevicePaths::videoFrame()));
        connectFirst();
        QTRY_VERIFY(device().journal().countRequests(DevicePaths::videoFrame()) > 0);
    } else if (state == QLatin1String("picture silent")) {
        device().faults().add(Fault::silent().on(Page::record(1).fileName()));
        connectFirst();
        device().push(Page::record(1));
        QTRY_COMPARE(device().journal().countRequests(Page::record(1).fileName()), 1);
    } else if (state == QLatin1String("picture loaders")) {
        connectFirst();
        device().faults().add(Fault::answer("Error"));
        device().pushAll(Page::records(30));
        QTRY_COMPARE_WITH_TIMEOUT(page_->rows(), 30, patience);
    } else if (state == QLatin1String("burst")) {
        connectFirst();
        device().pushAll(Page::records(1000));
        QTRY_VERIFY(page_->rows() > 3);
    } else {
        connectFirst();
        selectSecond(devices_->second().address());
        QTRY_VERIFY_WITH_TIMEOUT(page_->button("buttonDisconnect2")->isEnabled(), patience);
        if (state != QLatin1String("connected twice")) {
            page_->press("buttonDisconnect1");
            page_->press("buttonDisconnect2");
        }
        if (state == QLatin1String("between disconnect and select")) {
            page_->page().selectDevice(device().address());
        }
    }
}

void TestOnLineWidgetLimits::endsInEveryState()
{
    QFETCH(QString, state);
    begin(state);
    if (QTest::currentTestFailed()) {
        return;
    }
    const qint64 took = page_->end();
    QVERIFY2(took < longestEnd, qPrintable(QString::number(took)));
    blackHole_.reset();
    // Nothing that was on its way finds a page that is gone, and no line is left open.
    QTRY_COMPARE_WITH_TIMEOUT(device().onLineConnections(), 0, patience);
    QTRY_COMPARE_WITH_TIMEOUT(device().fileConnections(), 0, patience);
}

void TestOnLineWidgetLimits::endsWhileSaving()
{
    page_ = std::make_unique<Page>();
    page_->page().selectDevice(Page::nowhere());
    const QByteArray photo(200000, 'p');
    for (const OnLine &record : Page::records(300)) {
        Page::write(Page::pictureFile(record), photo);
        page_->tellPassage(record, Page::nowhere());
    }
    const QTemporaryDir stick;
    page_->answers().expect(
        ModalAnswers::savingAs(stick.filePath(QStringLiteral("table")), QStringLiteral("Dump")));
    page_->press("buttonSave");
    QVERIFY(page_->isBusy());
    const qint64 took = page_->end();
    QVERIFY2(took < longestEnd, qPrintable(QString::number(took)));
}

STALLO_TEST_MAIN(TestOnLineWidgetLimits)
#include "tst_onlinewidgetlimits.moc"
