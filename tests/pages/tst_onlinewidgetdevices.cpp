// SPDX-License-Identifier: MIT
#include "app/settings.h"
#include "pages/proportionalsclalewidget.h"
#include "records/scanmodel.h"
#include "simulator/livefeed.h"
#include "tests/support/devices.h"
#include "tests/support/onlinepage.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QTimer>

namespace
{

using Page = OnlinePage;

// Longer than the pauses between attempts, and than loaded machines take.
constexpr int patience = 15000;

} // namespace

// The On-line page with simulated devices, from the choice of an address to New table.
class TestOnLineWidgetDevices : public QObject
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
        const QStringList unexpected = page_ ? page_->answers().unexpected() : QStringList();
        const int left = page_ ? page_->answers().left() : 0;
        page_.reset();
        devices_.reset();
        QCOMPARE(unexpected, QStringList());
        QCOMPARE(left, 0);
    }

    void beginsEmpty();
    void emptiesFoldersAtConstruction();
    void selectsByDialog();
    void typesAddressInDialog();
    void cancelLeavesAllAsItWas();
    void selectsWithoutButton();
    void selectsSecondDevice();
    void showsPassagesOfBothDevices();
    void storesOddRecords();
    void showsLatePicture();
    void disconnects();
    void disconnectNeedsItsButton();
    void selectsAgainAtOnce();
    void dropsPassagesAfterDisconnect();
    void changesDevice();
    void comesBackAfterLoss();
    void beginsNewTableWhileDevicesGoOn();
    void beginsNewTableInTheMidstOfPassages();
    void opensBarrier();
    void barrierNeedsItsButton();
    void reportsBarrierFailure_data();
    void reportsBarrierFailure();

private:
    DeviceHost &device() { return devices_->first(); }
    static void useSmallPhotos(DeviceHost &host)
    {
        host.files().setMaker(
            DevicePaths::photoFolder(),
            [jpeg = Page::jpeg(32, 24)](const QString &) { return FileTree::contentOf(jpeg); });
    }
    void makePage() { page_ = std::make_unique<Page>(); }
    void select(const char *button, const QString &address)
    {
        Settings::instance()->setAddressList({address});
        page_->answers().expect(ModalAnswers::pressing("buttonOk"));
        page_->press(button);
    }
    void connectFirst()
    {
        makePage();
        select("buttonSelectDevice1", device().address());
        QTRY_VERIFY_WITH_TIMEOUT(page_->button("buttonDisconnect1")->isEnabled(), patience);
        QTRY_COMPARE(device().onLineConnections(), 1);
    }
    void connectSecond()
    {
        useSmallPhotos(devices_->second());
        select("buttonSelectDevice2", devices_->second().address());
        QTRY_VERIFY_WITH_TIMEOUT(page_->button("buttonDisconnect2")->isEnabled(), patience);
        QTRY_COMPARE(devices_->second().onLineConnections(), 1);
    }
    void expectUnassigned(int channel)
    {
        const ProportionalSclaleWidget *camera = page_->camera(channel);
        QCOMPARE(camera->objectName(), QString());
        QCOMPARE(camera->emptyText(), QStringLiteral("Not Assigned"));
        QCOMPARE(camera->lines(), QStringList());
        QVERIFY(camera->pixmap().isNull());
        const bool first = channel == 0;
        QVERIFY(!page_->button(first ? "buttonDisconnect1" : "buttonDisconnect2")->isEnabled());
        QVERIFY(!page_->button(first ? "buttonOpenBarrier1" : "buttonOpenBarrier2")->isEnabled());
        QVERIFY(page_->button(first ? "buttonSelectDevice1" : "buttonSelectDevice2")->isEnabled());
    }

    std::unique_ptr<Devices> devices_;
    std::unique_ptr<Page> page_;
};

void TestOnLineWidgetDevices::beginsEmpty()
{
    makePage();
    expectUnassigned(0);
    expectUnassigned(1);
    QCOMPARE(page_->photo()->emptyText(), QStringLiteral("No Photo"));
    QVERIFY(!page_->isBusy());
    QCOMPARE(page_->rows(), 0);
    QVERIFY(!page_->button("buttonSave")->isEnabled());
    QVERIFY(!page_->button("buttonSavePhoto")->isEnabled());
    QVERIFY(page_->button("buttonNewTable")->isEnabled());
    QVERIFY(!page_->button("buttomNetworkSetup")->isVisible());
    QCOMPARE(page_->page().windowTitle(), QStringLiteral("On-Line"));
    const auto *busy = page_->page().findChild<QLabel *>(QStringLiteral("labelBusy"));
    QCOMPARE(busy->text(), QStringLiteral("<h1>Vask operation in progress</h1>"));
    QCOMPARE(device().onLineConnections(), 0);
    QCOMPARE(device().journal().countRequests(), 0);
}

void TestOnLineWidgetDevices::emptiesFoldersAtConstruction()
{
    const QString folder = Page::folder();
    QVERIFY(QDir(folder).mkpath(QStringLiteral("jpegdata/deep")));
    const QString deep = folder + QStringLiteral("/jpegdata/deep/kept.txt");
    Page::write(deep, "kept");
    Page::write(folder + QStringLiteral("/tmponline.tpp"), Page::tableOf(Page::records(3)));
    Page::write(folder + QStringLiteral("/tmponline.tpp.index"), QByteArray(96, 'x'));
    Page::write(Page::pictureFile(Page::record(1)), "yesterday");
    makePage();
    QCOMPARE(page_->rows(), 0);
    QCOMPARE(Page::tableBytes(), QByteArray());
    QCOMPARE(Page::indexBytes(), QByteArray());
    QVERIFY(!QFile::exists(Page::pictureFile(Page::record(1))));
    QCOMPARE(Page::content(deep), QByteArray("kept"));
}

void TestOnLineWidgetDevices::selectsByDialog()
{
    makePage();
    device().setOnLineListening(false);
    select("buttonSelectDevice1", device().address());
    QCOMPARE(page_->camera(0)->objectName(), device().address());
    QCOMPARE(page_->camera(0)->emptyText(), QStringLiteral("No Data"));
    QCOMPARE(page_->camera(0)->lines(),
             QStringList(QStringLiteral("Connecting to %1 ...").arg(device().address())));
    QVERIFY(!page_->button("buttonDisconnect1")->isEnabled());
    QVERIFY(!page_->button("buttonOpenBarrier1")->isEnabled());
    device().setOnLineListening(true);
    QTRY_VERIFY_WITH_TIMEOUT(page_->button("buttonDisconnect1")->isEnabled(), patience);
    QVERIFY(page_->button("buttonOpenBarrier1")->isEnabled());
    QCOMPARE(page_->camera(0)->lines(), QStringList(device().address()));
    // The camera's picture comes by itself.
    QTRY_VERIFY_WITH_TIMEOUT(!page_->camera(0)->pixmap().isNull(), patience);
    expectUnassigned(1);
}

void TestOnLineWidgetDevices::typesAddressInDialog()
{
    makePage();
    page_->answers().expect([this](QWidget *dialog) {
        auto *edit = dialog->findChild<QLineEdit *>(QStringLiteral("lineEditAddress"));
        QTest::keyClicks(edit, device().address());
        QTest::mouseClick(dialog->findChild<QPushButton *>(QStringLiteral("buttonNew")),
                          Qt::LeftButton);
        QTest::mouseClick(dialog->findChild<QPushButton *>(QStringLiteral("buttonOk")),
                          Qt::LeftButton);
    });
    page_->press("buttonSelectDevice2");
    QCOMPARE(page_->camera(1)->objectName(), device().address());
    QCOMPARE(Settings::instance()->addressList(), QStringList(device().address()));
    QTRY_VERIFY_WITH_TIMEOUT(page_->button("buttonOpenBarrier2")->isEnabled(), patience);
    expectUnassigned(0);
}

void TestOnLineWidgetDevices::cancelLeavesAllAsItWas()
{
    connectFirst();
    for (const char *button : {"buttonSelectDevice1", "buttonSelectDevice2"}) {
        page_->answers().expect(ModalAnswers::pressing("buttonCancel"));
        page_->press(button);
    }
    QCOMPARE(page_->camera(0)->objectName(), device().address());
    QCOMPARE(page_->camera(0)->lines(), QStringList(device().address()));
    QVERIFY(page_->button("buttonDisconnect1")->isEnabled());
    expectUnassigned(1);
    device().push(Page::record(1));
    QTRY_COMPARE(page_->rows(), 1);
    QCOMPARE(device().onLineConnections(), 1);
}

void TestOnLineWidgetDevices::selectsWithoutButton()
{
    makePage();
    page_->page().selectDevice(QString());
    expectUnassigned(0);
    page_->page().selectDevice();
    expectUnassigned(0);
    page_->page().selectDevice(device().address());
    QCOMPARE(page_->camera(0)->objectName(), device().address());
    QTRY_VERIFY_WITH_TIMEOUT(page_->button("buttonDisconnect1")->isEnabled(), patience);
    expectUnassigned(1);
}

void TestOnLineWidgetDevices::selectsSecondDevice()
{
    connectFirst();
    connectSecond();
    QCOMPARE(page_->camera(0)->lines(), QStringList(device().address()));
    QCOMPARE(page_->camera(1)->lines(), QStringList(devices_->second().address()));
}

void TestOnLineWidgetDevices::showsPassagesOfBothDevices()
{
    connectFirst();
    connectSecond();
    QVector<OnLine> sent;
    QStringList gates;
    for (int n = 0; n < 10; ++n) {
        DeviceHost &from = n % 3 == 0 ? devices_->second() : device();
        from.push(Page::record(n));
        sent.append(Page::record(n));
        gates << from.deviceId();
        QTRY_COMPARE(page_->rows(), n + 1);
        QCOMPARE(page_->cell(n, ScanModel::DeviceColumn), from.deviceId());
    }
    QCOMPARE(Page::tableBytes(), Page::tableOf(sent));
    QCOMPARE(Page::indexBytes(), Page::indexOf(gates));
    QTRY_COMPARE(page_->photo()->photoSize(), QSize(32, 24));
    QVERIFY(page_->button("buttonSavePhoto")->isEnabled());
}

void TestOnLineWidgetDevices::storesOddRecords()
{
    connectFirst();
    const QVector<OnLine> odd = SampleRecords::all(Page::record(1).dateTime());
    QVector<OnLine> kept;
    for (OnLine each : odd) {
        if (each.isValid()) {
            each.translateFromLocal();
            kept.append(each);
        }
    }
    QCOMPARE(kept.size(), odd.size() - 1);
    device().pushAll(odd);
    QTRY_COMPARE_WITH_TIMEOUT(page_->rows(), kept.size(), patience);
    QCOMPARE(Page::tableBytes(), Page::tableOf(kept));
}

void TestOnLineWidgetDevices::showsLatePicture()
{
    connectFirst();
    const OnLine late = Page::record(1);
    device().faults().add(Fault::answer("Error=Can't open file").on(late.fileName()));
    device().push(late);
    QTRY_COMPARE(page_->rows(), 1);
    QTRY_VERIFY(!page_->photo()->isLoading());
    QVERIFY(page_->photo()->pixmap().isNull());
    QVERIFY(!page_->button("buttonSavePhoto")->isEnabled());
    device().faults().clear();
    QTRY_VERIFY_WITH_TIMEOUT(page_->button("buttonSavePhoto")->isEnabled(), patience);
    QTRY_COMPARE(page_->photo()->photoSize(), QSize(32, 24));
    QCOMPARE(page_->rows(), 1);
}

void TestOnLineWidgetDevices::disconnects()
{
    connectFirst();
    connectSecond();
    QTRY_VERIFY_WITH_TIMEOUT(!page_->camera(0)->pixmap().isNull(), patience);
    page_->press("buttonDisconnect1");
    expectUnassigned(0);
    QTRY_COMPARE_WITH_TIMEOUT(device().onLineConnections(), 0, patience);
    QTRY_COMPARE_WITH_TIMEOUT(device().fileConnections(), 0, patience);
    expectUnassigned(0);
    QVERIFY(page_->button("buttonDisconnect2")->isEnabled());
    devices_->second().push(Page::record(1));
    QTRY_COMPARE(page_->rows(), 1);
}

void TestOnLineWidgetDevices::disconnectNeedsItsButton()
{
    connectFirst();
    page_->page().disconnectFromDevice();
    QPushButton stranger;
    connect(&stranger, &QPushButton::clicked, &page_->page(), &OnLineWidget::disconnectFromDevice);
    connect(page_->button("buttonNewTable"), &QPushButton::clicked, &page_->page(),
            &OnLineWidget::disconnectFromDevice);
    stranger.click();
    page_->press("buttonNewTable");
    QCOMPARE(page_->camera(0)->objectName(), device().address());
    QVERIFY(page_->button("buttonDisconnect1")->isEnabled());
    device().push(Page::record(1));
    QTRY_COMPARE(page_->rows(), 1);
}

void TestOnLineWidgetDevices::selectsAgainAtOnce()
{
    connectFirst();
    for (int n = 0; n < 5; ++n) {
        page_->press("buttonDisconnect1");
        select("buttonSelectDevice1", device().address());
        QCOMPARE(page_->camera(0)->lines(),
                 QStringList(QStringLiteral("Connecting to %1 ...").arg(device().address())));
        QTRY_VERIFY_WITH_TIMEOUT(page_->button("buttonDisconnect1")->isEnabled(), patience);
        QTRY_COMPARE_WITH_TIMEOUT(device().onLineConnections(), 1, patience);
        device().push(Page::record(n));
        QTRY_COMPARE(page_->rows(), n + 1);
    }
    QTRY_VERIFY_WITH_TIMEOUT(!page_->camera(0)->pixmap().isNull(), patience);
}

void TestOnLineWidgetDevices::dropsPassagesAfterDisconnect()
{
    connectFirst();
    device().faults().add(Fault::delay(400).on(Page::record(1).fileName()));
    device().push(Page::record(1));
    QTRY_COMPARE(device().journal().countRequests(Page::record(1).fileName()), 1);
    page_->press("buttonDisconnect1");
    QTRY_COMPARE_WITH_TIMEOUT(device().onLineConnections(), 0, patience);
    QTRY_COMPARE_WITH_TIMEOUT(device().fileConnections(), 0, patience);
    page_->tellPassage(Page::record(2), device().address());
    QCOMPARE(page_->rows(), 0);
    expectUnassigned(0);
}

void TestOnLineWidgetDevices::changesDevice()
{
    connectFirst();
    QTRY_VERIFY_WITH_TIMEOUT(!page_->camera(0)->pixmap().isNull(), patience);
    DeviceHost &second = devices_->second();
    select("buttonSelectDevice1", second.address());
    QCOMPARE(page_->camera(0)->objectName(), second.address());
    QVERIFY(page_->camera(0)->pixmap().isNull());
    QTRY_COMPARE_WITH_TIMEOUT(second.onLineConnections(), 1, patience);
    QTRY_COMPARE_WITH_TIMEOUT(device().onLineConnections(), 0, patience);
    QTRY_COMPARE(page_->camera(0)->lines(), QStringList(second.address()));
    second.push(Page::record(1));
    QTRY_COMPARE_WITH_TIMEOUT(page_->rows(), 1, patience);
}

void TestOnLineWidgetDevices::comesBackAfterLoss()
{
    connectFirst();
    device().push(Page::record(1));
    QTRY_COMPARE(page_->rows(), 1);
    device().resetOnLine();
    QTRY_COMPARE_WITH_TIMEOUT(device().onLineConnections(), 1, patience);
    device().push(Page::record(2));
    QTRY_COMPARE_WITH_TIMEOUT(page_->rows(), 2, patience);
    QCOMPARE(Page::tableBytes(), Page::tableOf(Page::records(2, 1)));
    QCOMPARE(page_->camera(0)->lines(), QStringList(device().address()));
}

void TestOnLineWidgetDevices::beginsNewTableWhileDevicesGoOn()
{
    connectFirst();
    device().pushAll(Page::records(5));
    QTRY_COMPARE_WITH_TIMEOUT(page_->rows(), 5, patience);
    QVERIFY(QFile::exists(Page::pictureFile(Page::record(4))));
    page_->press("buttonNewTable");
    QCOMPARE(page_->rows(), 0);
    QCOMPARE(page_->photo()->lines(), QStringList());
    QVERIFY(page_->photo()->pixmap().isNull());
    QVERIFY(!page_->button("buttonSave")->isEnabled());
    QVERIFY(!page_->button("buttonSavePhoto")->isEnabled());
    QVERIFY(!QFile::exists(Page::pictureFile(Page::record(4))));
    QVERIFY(QFileInfo(Page::folder() + QStringLiteral("/jpegdata")).isDir());
    QCOMPARE(Page::tableBytes(), QByteArray());
    QCOMPARE(Page::indexBytes(), QByteArray());
    // An empty table once more.
    page_->press("buttonNewTable");
    device().pushAll(Page::records(3, 10));
    QTRY_COMPARE_WITH_TIMEOUT(page_->rows(), 3, patience);
    QCOMPARE(Page::tableBytes(), Page::tableOf(Page::records(3, 10)));
    const QString id = device().deviceId();
    QCOMPARE(Page::indexBytes(), Page::indexOf({id, id, id}));
    QCOMPARE(page_->currentRow(), 2);
    QVERIFY(page_->button("buttonSave")->isEnabled());
}

void TestOnLineWidgetDevices::beginsNewTableInTheMidstOfPassages()
{
    connectFirst();
    const QVector<OnLine> stream = Page::records(200);
    QPushButton *button = page_->button("buttonNewTable");
    auto once = std::make_shared<QMetaObject::Connection>();
    *once = connect(page_->table()->model(), &QAbstractItemModel::rowsInserted, button,
                    [button, once](const QModelIndex &, int, int last) {
                        if (last == 20) {
                            disconnect(*once);
                            QTimer::singleShot(0, button, &QPushButton::click);
                        }
                    });
    device().pushAll(stream);
    const QByteArray end = Page::tableOf(stream.mid(199));
    QTRY_VERIFY_WITH_TIMEOUT(Page::tableBytes().endsWith(end), patience);
    // What is in the table is an unbroken end of what was sent.
    const QByteArray all = Page::tableOf(stream);
    QVERIFY(Page::tableBytes().size() < all.size());
    QVERIFY(all.endsWith(Page::tableBytes()));
    QCOMPARE(page_->rows() * 116, Page::tableBytes().size());
    QCOMPARE(page_->rows() * 32, Page::indexBytes().size());
}

void TestOnLineWidgetDevices::opensBarrier()
{
    connectFirst();
    connectSecond();
    for (int n = 1; n <= 3; ++n) {
        page_->press("buttonOpenBarrier1");
        QTRY_COMPARE(device().barrierCount(), n);
    }
    QCOMPARE(devices_->second().barrierCount(), 0);
    page_->press("buttonOpenBarrier2");
    QTRY_COMPARE(devices_->second().barrierCount(), 1);
    QTRY_COMPARE(device().onLineConnections(), 1);
    // On a connection of its own, and nothing but that byte.
    QByteArrayList commands;
    const QVector<JournalEntry> received = device().journal().entries(JournalEntry::Kind::Received);
    for (const JournalEntry &entry : received) {
        const QByteArray command = QByteArray(entry.data).replace("\xFF", "");
        if (!command.isEmpty()) {
            commands << command;
        }
    }
    QCOMPARE(commands, (QByteArrayList{"\xFD", "\xFD", "\xFD"}));
    QCOMPARE(device().unexpectedBytes(), QByteArray());
    QCOMPARE(device().reloadCount(), 0);
}

void TestOnLineWidgetDevices::barrierNeedsItsButton()
{
    connectFirst();
    page_->page().openBarrier();
    QPushButton stranger;
    connect(&stranger, &QPushButton::clicked, &page_->page(), &OnLineWidget::openBarrier);
    stranger.click();
    page_->press("buttonOpenBarrier1");
    QTRY_COMPARE(device().barrierCount(), 1);
    QCOMPARE(device().journal().count(JournalEntry::Kind::OnLineOpened), 2);
}

void TestOnLineWidgetDevices::reportsBarrierFailure_data()
{
    QTest::addColumn<bool>("assigned");
    QTest::addColumn<QString>("text");

    QTest::newRow("no listener") << true << QStringLiteral("Connection refused");
    QTest::newRow("no host") << false << QString();
}

void TestOnLineWidgetDevices::reportsBarrierFailure()
{
    QFETCH(bool, assigned);
    QFETCH(QString, text);
    if (assigned) {
        connectFirst();
        device().setOnLineListening(false);
    } else {
        makePage();
        page_->button("buttonOpenBarrier1")->setEnabled(true);
    }
    QString title;
    QString shown;
    page_->answers().expect(ModalAnswers::reading(&title, &shown));
    page_->press("buttonOpenBarrier1");
    QTRY_COMPARE_WITH_TIMEOUT(title, QStringLiteral("Error"), patience);
    QVERIFY(!shown.isEmpty());
    if (!text.isEmpty()) {
        QCOMPARE(shown, text);
    }
    QCOMPARE(device().barrierCount(), 0);
}

STALLO_TEST_MAIN(TestOnLineWidgetDevices)
#include "tst_onlinewidgetdevices.moc"
