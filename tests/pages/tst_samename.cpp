// SPDX-License-Identifier: MIT
#include "app/settings.h"
#include "net/events.h"
#include "pages/proportionalsclalewidget.h"
#include "records/photoname.h"
#include "records/vasksettings.h"
#include "simulator/livefeed.h"
#include "tests/support/archivepage.h"
#include "tests/support/devices.h"
#include "tests/support/onlinepage.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QTemporaryDir>

namespace
{

constexpr int patience = 20000;
constexpr int firstWidth = 40;
constexpr int secondWidth = 56;

// Opened by hand at both barriers at once.
OnLine opened()
{
    return SampleRecords::plain(QStringLiteral("O000OO00"),
                                QDateTime(QDate(2026, 11, 21), QTime(12, 0), Qt::UTC));
}

QString ownFile(const QString &folder, const DeviceHost &device)
{
    return folder + QLatin1Char('/') +
           PhotoName::ofDevice(VaskSettings::picFileName(opened()), device.deviceId());
}

} // namespace

// Two devices report the same number in the same second: each row has its own device's photo, or
// none, wherever it is shown, saved or copied.
class TestSameName : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void rowsHaveTheirOwnPhotos_data();
    void rowsHaveTheirOwnPhotos();
    void equalIdentifiersShowNeither();
    void latePhotoGoesToItsRow();
    void repostShowsItsRowOnly();
    void newTableForgetsWhoWasFirst();
    void archivesAddedUp_data();
    void archivesAddedUp();

private:
    DeviceHost &first() { return devices_->first(); }
    DeviceHost &second() { return devices_->second(); }
    static void serve(DeviceHost &device, int width)
    {
        device.files().setMaker(DevicePaths::photoFolder(),
                                [jpeg = OnlinePage::jpeg(width, 30)](const QString &) {
                                    return FileTree::contentOf(jpeg);
                                });
    }
    static void refuse(DeviceHost &device)
    {
        device.faults().add(Fault::answer("Error=Can't open file").on(opened().fileName()));
    }
    void connectBoth()
    {
        page_ = std::make_unique<OnlinePage>();
        const char *const buttons[] = {"buttonSelectDevice1", "buttonSelectDevice2"};
        DeviceHost *const hosts[] = {&first(), &second()};
        for (int slot = 0; slot < 2; ++slot) {
            Settings::instance()->setAddressList({hosts[slot]->address()});
            page_->answers().expect(ModalAnswers::pressing("buttonOk"));
            page_->press(buttons[slot]);
            QTRY_COMPARE_WITH_TIMEOUT(hosts[slot]->onLineConnections(), 1, patience);
        }
    }
    void pushBoth()
    {
        const int rows = page_->rows();
        first().push(opened());
        QTRY_COMPARE_WITH_TIMEOUT(page_->rows(), rows + 1, patience);
        second().push(opened());
        QTRY_COMPARE_WITH_TIMEOUT(page_->rows(), rows + 2, patience);
    }
    static void expectWidth(const ProportionalSclaleWidget *view, int width)
    {
        QTRY_VERIFY_WITH_TIMEOUT(!view->isLoading(), patience);
        QCOMPARE(view->photoSize().width(), width);
    }
    static QString shared() { return OnlinePage::folder() + QStringLiteral("/jpegdata"); }
    void expectDumpWith(const QString &name, int firstShown, int secondShown);

    std::unique_ptr<Devices> devices_;
    std::unique_ptr<OnlinePage> page_;
    std::unique_ptr<QTemporaryDir> stick_;
};

void TestSameName::init()
{
    OnlinePage::prepare();
    QVERIFY(QDir().mkpath(ArchivePage::folder()));
    Settings::instance()->setVideoTimeout(60000);
    stick_ = std::make_unique<QTemporaryDir>();
    devices_ = std::make_unique<Devices>();
    serve(first(), firstWidth);
    serve(second(), secondWidth);
}

void TestSameName::cleanup()
{
    page_.reset();
    devices_.reset();
    stick_.reset();
}

// The dump as the Archive page shows it.
void TestSameName::expectDumpWith(const QString &name, int firstShown, int secondShown)
{
    ArchivePage archive;
    QCOMPARE(archive.page().loadTableFromDatFile(name), QString());
    QCOMPARE(archive.rows(), 2);
    archive.clickRow(0);
    expectWidth(archive.photo(), firstShown);
    QCOMPARE(archive.find<QPushButton>("buttonSavePhoto")->isEnabled(), firstShown > 0);
    archive.clickRow(1);
    expectWidth(archive.photo(), secondShown);
    QCOMPARE(archive.find<QPushButton>("buttonSavePhoto")->isEnabled(), secondShown > 0);
    // Saved once more, from here.
    const QString again = stick_->filePath(QStringLiteral("again.tpp"));
    archive.answers().expect(ModalAnswers::savingAs(again));
    archive.press("buttonSave");
    QVERIFY(archive.becomesIdle());
    const QString from = QFileInfo(name).absolutePath() + QStringLiteral("/dump.jpegdata");
    const QString to = stick_->filePath(QStringLiteral("again.jpegdata"));
    const QStringList names = QDir(from).entryList(QDir::Files, QDir::Name);
    QCOMPARE(QDir(to).entryList(QDir::Files, QDir::Name), names);
    for (const QString &each : names) {
        QCOMPARE(ArchivePage::content(to + QLatin1Char('/') + each),
                 ArchivePage::content(from + QLatin1Char('/') + each));
    }
}

void TestSameName::rowsHaveTheirOwnPhotos_data()
{
    QTest::addColumn<bool>("ofFirst");
    QTest::addColumn<bool>("ofSecond");

    QTest::newRow("both") << true << true;
    QTest::newRow("the first's fails") << false << true;
    QTest::newRow("the second's fails") << true << false;
    QTest::newRow("both fail") << false << false;
}

void TestSameName::rowsHaveTheirOwnPhotos()
{
    QFETCH(bool, ofFirst);
    QFETCH(bool, ofSecond);
    if (!ofFirst) {
        refuse(first());
    }
    if (!ofSecond) {
        refuse(second());
    }
    connectBoth();
    pushBoth();
    const int widths[] = {ofFirst ? firstWidth : 0, ofSecond ? secondWidth : 0};
    for (const int row : {0, 1, 0}) {
        page_->clickRow(row);
        expectWidth(page_->photo(), widths[row]);
        QCOMPARE(page_->button("buttonSavePhoto")->isEnabled(), widths[row] > 0);
        if (widths[row] > 0) {
            const QString copy = stick_->filePath(QStringLiteral("%1.jpeg").arg(row));
            page_->answers().expect(ModalAnswers::savingAs(copy));
            page_->press("buttonSavePhoto");
            QTRY_VERIFY_WITH_TIMEOUT(!page_->isBusy(), patience);
            QCOMPARE(OnlinePage::content(copy), OnlinePage::jpeg(widths[row], 30));
        }
    }
    // The file of the first keeps its name.
    QCOMPARE(QFile::exists(OnlinePage::pictureFile(opened())), ofFirst);
    const QString name = stick_->filePath(QStringLiteral("dump.tpp"));
    page_->answers().expect(ModalAnswers::savingAs(name, QStringLiteral("Dump")));
    page_->press("buttonSave");
    QTRY_VERIFY_WITH_TIMEOUT(!page_->isBusy(), patience);
    QVERIFY(QDir().rename(stick_->filePath(QStringLiteral("jpegdata")),
                          stick_->filePath(QStringLiteral("dump.jpegdata"))));
    page_.reset();
    expectDumpWith(name, widths[0], widths[1]);
}

void TestSameName::equalIdentifiersShowNeither()
{
    DeviceConfig config;
    config.deviceId = second().deviceId();
    devices_.reset();
    devices_ = std::make_unique<Devices>(config);
    serve(first(), firstWidth);
    serve(second(), secondWidth);
    connectBoth();
    pushBoth();
    QCOMPARE(OnlinePage::content(OnlinePage::pictureFile(opened())),
             OnlinePage::jpeg(firstWidth, 30));
    QCOMPARE(QDir(shared()).entryList(QDir::Files).size(), 2);
    for (int row = 0; row < 2; ++row) {
        page_->clickRow(row);
        expectWidth(page_->photo(), 0);
    }
}

void TestSameName::latePhotoGoesToItsRow()
{
    refuse(second());
    connectBoth();
    pushBoth();
    QCOMPARE(page_->currentRow(), 1);
    expectWidth(page_->photo(), 0);
    second().faults().clear();
    QTRY_VERIFY_WITH_TIMEOUT(page_->button("buttonSavePhoto")->isEnabled(), patience);
    expectWidth(page_->photo(), secondWidth);
    QCOMPARE(OnlinePage::content(ownFile(shared(), second())), OnlinePage::jpeg(secondWidth, 30));
    page_->clickRow(0);
    expectWidth(page_->photo(), firstWidth);
}

void TestSameName::repostShowsItsRowOnly()
{
    connectBoth();
    pushBoth();
    const DeviceHost *const hosts[] = {&first(), &second()};
    const QString files[] = {OnlinePage::pictureFile(opened()), ownFile(shared(), second())};
    for (int current = 0; current < 2; ++current) {
        page_->clickRow(current);
        QTRY_VERIFY(!page_->photo()->isLoading());
        for (int late = 0; late < 2; ++late) {
            OnLineEvent event(hosts[late]->address(), opened(), files[late],
                              hosts[late]->deviceId(), true);
            QCoreApplication::sendEvent(&page_->page(), &event);
            QCOMPARE(page_->photo()->isLoading(), late == current);
            QTRY_VERIFY(!page_->photo()->isLoading());
        }
    }
}

void TestSameName::newTableForgetsWhoWasFirst()
{
    connectBoth();
    pushBoth();
    QCOMPARE(QDir(shared()).entryList(QDir::Files).size(), 2);
    page_->press("buttonNewTable");
    QCOMPARE(QDir(shared()).entryList(QDir::Files).size(), 0);
    second().push(opened());
    QTRY_COMPARE_WITH_TIMEOUT(page_->rows(), 1, patience);
    QCOMPARE(OnlinePage::content(OnlinePage::pictureFile(opened())),
             OnlinePage::jpeg(secondWidth, 30));
}

void TestSameName::archivesAddedUp_data()
{
    rowsHaveTheirOwnPhotos_data();
}

void TestSameName::archivesAddedUp()
{
    QFETCH(bool, ofFirst);
    QFETCH(bool, ofSecond);
    const Scan passage(opened());
    for (DeviceHost *device : {&first(), &second()}) {
        device->files().set(DevicePaths::archive(), QByteArray(passage.data(), Scan::size));
    }
    if (!ofFirst) {
        refuse(first());
    }
    if (!ofSecond) {
        refuse(second());
    }
    const int widths[] = {ofFirst ? firstWidth : 0, ofSecond ? secondWidth : 0};
    ArchivePage archive;
    for (DeviceHost *device : {&first(), &second()}) {
        archive.download(device->address(), ArchivePage::wholeArchive());
        QVERIFY(archive.becomesIdle());
    }
    QCOMPARE(archive.rows(), 2);
    for (const int row : {0, 1, 0}) {
        archive.clickRow(row);
        expectWidth(archive.photo(), widths[row]);
        QCOMPARE(archive.find<QPushButton>("buttonSavePhoto")->isEnabled(), widths[row] > 0);
    }
    // Once more from the first device: its photo keeps its place.
    archive.download(first().address(), ArchivePage::wholeArchive());
    QVERIFY(archive.becomesIdle());
    const int again[] = {widths[0], widths[1], widths[0]};
    for (int row = 0; row < 3; ++row) {
        archive.clickRow(row);
        expectWidth(archive.photo(), again[row]);
    }
}

STALLO_TEST_MAIN(TestSameName)
#include "tst_samename.moc"
