// SPDX-License-Identifier: MIT
#include "tests/pages/archivecase.h"
#include "tests/pages/athandover.h"
#include "tests/support/filelimit.h"

#include <QDir>
#include <QElapsedTimer>
#include <QMetaEnum>
#include <QTimer>

#include <cerrno>

namespace
{

using Page = ArchivePage;
using Action = AtHandover::Action;

constexpr int oldRows = 3;
constexpr int newRows = 40;
// The text's end is the system's.
const QString fullDisk = QStringLiteral("*full disk");

} // namespace

// Everything that can go wrong, in each step of a download: the page neither hangs nor crashes,
// says what it has to say, keeps table and index in step, and the next download works.
class TestArchiveWidgetFaults : public ArchiveCase
{
    Q_OBJECT

public:
    enum class Step { Identifier, Transfer, Appending, Showing, Photos };
    Q_ENUM(Step)

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void survives_data();
    void survives();

private:
    // What is done when it is due, beside what was prepared.
    struct Plan {
        std::function<bool()> due;
        Action act;
    };
    Plan planOf(Step step, const QString &trouble, const ArchiveDevice &archive);
    Plan planIdentifier(const QString &trouble);
    Plan planTransfer(const QString &trouble);
    Plan planAppending(const QString &trouble, const ArchiveDevice &archive);
    Plan planShowing(const QString &trouble);
    Plan planPhotos(const QString &trouble, const ArchiveDevice &archive);

    std::function<bool()> requested(const QString &path, int times = 1)
    {
        return [this, path, times] { return device().journal().countRequests(path) >= times; };
    }
    // The operator presses Cancel, or closes the program.
    Action cancel()
    {
        return [this] {
            sinceCancel_.start();
            page_->press("cancelProgress");
        };
    }
    Action close()
    {
        return [this] { endTook_ = page_->end(); };
    }
    Action cancelOrClose(const QString &trouble)
    {
        return trouble == QLatin1String("close") ? close() : cancel();
    }
    Action limitFiles(int bytes)
    {
        return [this, bytes] { limit_ = std::make_unique<FileLimit>(bytes); };
    }
    Action stopListening()
    {
        return [this] { device().setFileListening(false); };
    }
    void at(AtHandover::Time time, const Action &inWorker, const Action &inGui)
    {
        handover_ = std::make_unique<AtHandover>(&page_->page(), time, inWorker, inGui);
    }
    void endTroubles();
    // A download without trouble adds its rows to those that are there.
    void downloadsAgain();

    std::unique_ptr<FileLimit> limit_;
    Action atLastQuestion_; // of the dialogs before a download
    std::unique_ptr<AtHandover> handover_;
    QElapsedTimer sinceCancel_;
    qint64 endTook_ = -1;
};

void TestArchiveWidgetFaults::initTestCase()
{
    ArchiveCase::initTestCase();
    const QString temporary = TestSurroundings::home() + QStringLiteral("/tmp");
    QVERIFY(QDir().mkpath(temporary));
    qputenv("TMPDIR", QFile::encodeName(temporary));
    QCOMPARE(QDir::tempPath(), temporary);
}

void TestArchiveWidgetFaults::cleanup()
{
    handover_.reset();
    limit_.reset();
    atLastQuestion_ = nullptr;
    sinceCancel_.invalidate();
    endTook_ = -1;
    ArchiveCase::cleanup();
}

void TestArchiveWidgetFaults::survives_data()
{
    QTest::addColumn<Step>("step");
    QTest::addColumn<QString>("trouble");
    QTest::addColumn<QString>("error"); // empty: silence
    QTest::addColumn<int>("added");
    QTest::addColumn<int>("photos");
    const auto row = [](Step step, const char *trouble, const QString &error, int added,
                        int photos) {
        QTest::addRow("%s: %s", QMetaEnum::fromType<Step>().valueToKey(static_cast<int>(step)),
                      trouble)
            << step << QString::fromLatin1(trouble) << error << added << photos;
    };
    const auto text = [](const char *error) { return QString::fromLatin1(error); };
    const QString silence;

    row(Step::Identifier, "cancel", silence, 0, 0);
    row(Step::Identifier, "lost line", silence, newRows, newRows);
    row(Step::Identifier, "full disk", silence, newRows, newRows);
    row(Step::Identifier, "refused", silence, newRows, newRows);
    row(Step::Identifier, "silent", silence, 0, 0);
    row(Step::Identifier, "close", silence, 0, 0);
    row(Step::Transfer, "cancel", silence, 0, 0);
    row(Step::Transfer, "lost line", text("The remote host closed the connection"), 0, 0);
    row(Step::Transfer, "full disk", fullDisk, 0, 0);
    row(Step::Transfer, "refused", text("Connection timeout"), 0, 0);
    row(Step::Transfer, "no file", text("Can't download proper data"), 0, 0);
    row(Step::Transfer, "silent", silence, 0, 0);
    row(Step::Transfer, "falls silent", text("Timeout when reading file from vask"), 0, 0);
    row(Step::Transfer, "close", silence, 0, 0);
    row(Step::Appending, "cancel", silence, 0, 0);
    row(Step::Appending, "lost line", silence, newRows, 0);
    row(Step::Appending, "full disk", fullDisk, 0, 0);
    row(Step::Appending, "refused", silence, newRows, 0);
    row(Step::Appending, "silent", silence, newRows, 0);
    row(Step::Appending, "close", silence, 0, 0);
    row(Step::Showing, "cancel", silence, newRows, 0);
    row(Step::Showing, "close", silence, 0, 0);
    row(Step::Photos, "cancel", silence, newRows, 1);
    row(Step::Photos, "lost line", silence, newRows, 1);
    row(Step::Photos, "full disk", silence, newRows, 0);
    row(Step::Photos, "refused", silence, newRows, 0);
    row(Step::Photos, "silent", silence, newRows, 1);
    row(Step::Photos, "close", silence, 0, 0);
}

TestArchiveWidgetFaults::Plan TestArchiveWidgetFaults::planIdentifier(const QString &trouble)
{
    const QString streams = DevicePaths::streams();
    if (trouble == QLatin1String("lost line")) {
        device().faults().add(Fault::closeAfterRequest().on(streams).times(2));
        device().faults().add(Fault::resetAfterRequest().on(streams).times(2));
        return {};
    }
    if (trouble == QLatin1String("full disk")) {
        atLastQuestion_ = limitFiles(0); // the dialog before it stores the addresses
        return {requested(streams, 3), [this] { limit_.reset(); }};
    }
    if (trouble == QLatin1String("refused")) {
        stopListening()();
        QTimer::singleShot(500, this, [this] { device().setFileListening(true); });
        return {};
    }
    if (trouble == QLatin1String("silent")) {
        device().faults().add(Fault::silent().on(streams));
    } else {
        device().files().remove(streams);
    }
    return {requested(streams), cancelOrClose(trouble)};
}

TestArchiveWidgetFaults::Plan TestArchiveWidgetFaults::planTransfer(const QString &trouble)
{
    const QString archive = DevicePaths::archive();
    if (trouble == QLatin1String("lost line")) {
        device().faults().add(Fault::closeAfter(2000).on(archive));
        return {};
    }
    if (trouble == QLatin1String("full disk")) {
        atLastQuestion_ = limitFiles(2000);
        return {};
    }
    if (trouble == QLatin1String("refused")) {
        device().faults().add(Fault::delay(300).on(DevicePaths::streams()));
        return {requested(DevicePaths::streams()), stopListening()};
    }
    if (trouble == QLatin1String("no file")) {
        device().files().remove(archive);
        return {};
    }
    if (trouble == QLatin1String("falls silent")) {
        device().faults().add(Fault::pause(2000, 60000).on(archive));
        return {};
    }
    device().faults().add(trouble == QLatin1String("silent") ? Fault::silent().on(archive)
                                                             : Fault::trickle(4, 1).on(archive));
    return {requested(archive), cancelOrClose(trouble)};
}

TestArchiveWidgetFaults::Plan TestArchiveWidgetFaults::planAppending(const QString &trouble,
                                                                     const ArchiveDevice &archive)
{
    const auto time = AtHandover::BeforeAppending;
    if (trouble == QLatin1String("lost line")) {
        at(
            time, [this] { device().stop(); }, nullptr);
    } else if (trouble == QLatin1String("full disk")) {
        at(time, limitFiles(2000), nullptr);
    } else if (trouble == QLatin1String("refused")) {
        at(time, stopListening(), nullptr);
    } else if (trouble == QLatin1String("silent")) {
        at(
            time, [this] { device().faults().add(Fault::silent()); }, nullptr);
        return {requested(archive.remotePhoto(newRows - 1)), cancel()};
    } else {
        at(time, nullptr, cancelOrClose(trouble));
    }
    return {};
}

TestArchiveWidgetFaults::Plan TestArchiveWidgetFaults::planShowing(const QString &trouble)
{
    at(AtHandover::AfterAppending, nullptr, cancelOrClose(trouble));
    return {};
}

TestArchiveWidgetFaults::Plan TestArchiveWidgetFaults::planPhotos(const QString &trouble,
                                                                  const ArchiveDevice &archive)
{
    const QString second = archive.remotePhoto(newRows - 2);
    if (trouble == QLatin1String("lost line")) {
        device().faults().add(Fault::trickle(4, 1).on(second));
        return {requested(second), [this] { device().stop(); }};
    }
    if (trouble == QLatin1String("full disk")) {
        // The table is longer already.
        at(AtHandover::AfterAppending, limitFiles(ArchiveDevice::photoSize - 1), nullptr);
        return {};
    }
    if (trouble == QLatin1String("refused")) {
        at(AtHandover::AfterAppending, stopListening(), nullptr);
        return {};
    }
    device().faults().add(trouble == QLatin1String("silent") ? Fault::silent().on(second)
                                                             : Fault::trickle(4, 1).on(second));
    return {requested(second), cancelOrClose(trouble)};
}

TestArchiveWidgetFaults::Plan TestArchiveWidgetFaults::planOf(Step step, const QString &trouble,
                                                              const ArchiveDevice &archive)
{
    switch (step) {
    case Step::Identifier:
        return planIdentifier(trouble);
    case Step::Transfer:
        return planTransfer(trouble);
    case Step::Appending:
        return planAppending(trouble, archive);
    case Step::Showing:
        return planShowing(trouble);
    case Step::Photos:
        return planPhotos(trouble, archive);
    }
    return {};
}

void TestArchiveWidgetFaults::endTroubles()
{
    handover_.reset();
    limit_.reset();
    device().faults().clear();
    device().files().restore(DevicePaths::streams());
    device().files().restore(DevicePaths::archive());
    QVERIFY(device().start());
    device().setFileListening(true);
}

void TestArchiveWidgetFaults::downloadsAgain()
{
    endTroubles();
    const QByteArray recordsBefore = records();
    const QByteArray indexBefore = index();
    const ArchiveDevice archive(device(), ArchiveDevice::passages(5));
    download(Page::wholeArchive());
    QCOMPARE(records(), recordsBefore + archive.records(0, 4));
    QCOMPARE(index(), indexBefore + archive.index(5));
    QCOMPARE(page_->rows() * static_cast<int>(Scan::size), records().size());
    for (int row = 0; row < 5; ++row) {
        QCOMPARE(Page::content(Page::photoFolder() + QLatin1Char('/') + archive.photoName(row)),
                 archive.photo(row));
    }
    QCOMPARE(title(), named(host()));
    // Nothing is left of what was fetched and thrown away.
    QCOMPARE(QDir(QDir::tempPath()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             QStringList());
}

void TestArchiveWidgetFaults::survives()
{
    QFETCH(Step, step);
    QFETCH(QString, trouble);
    QFETCH(QString, error);
    QFETCH(int, added);
    QFETCH(int, photos);
    const ArchiveDevice old(devices_->second(), ArchiveDevice::passages(oldRows));
    page_->download(devices_->second().address(), Page::wholeArchive());
    QVERIFY(page_->becomesIdle());
    const ArchiveDevice archive(device(), ArchiveDevice::passages(newRows));
    device().journal().clear();
    const Plan plan = planOf(step, trouble, archive);

    QString heading;
    QString text;
    page_->download(host(), [this](QWidget *window) {
        if (atLastQuestion_) {
            atLastQuestion_();
        }
        Page::wholeArchive()(window);
    });
    if (!error.isEmpty()) {
        page_->answers().expect(ModalAnswers::reading(&heading, &text));
    }
    if (plan.due) {
        QTRY_VERIFY_WITH_TIMEOUT(plan.due(), patience);
        plan.act();
    }
    if (trouble == QLatin1String("close")) {
        QTRY_VERIFY_WITH_TIMEOUT(endTook_ >= 0, patience);
        QVERIFY2(endTook_ < 2000, qPrintable(QString::number(endTook_)));
        QVERIFY(!QFile::exists(Page::recordFile()));
        QVERIFY(!QFile::exists(Page::indexFile()));
        QCOMPARE(Page::photoNames(), QStringList());
        page_ = std::make_unique<Page>();
        downloadsAgain();
        return;
    }
    QVERIFY(page_->becomesIdle());
    if (sinceCancel_.isValid()) {
        const qint64 taken = sinceCancel_.elapsed();
        QVERIFY2(taken <= 200, qPrintable(QString::number(taken)));
    }
    QCOMPARE(heading, error.isEmpty() ? QString() : QStringLiteral("Error"));
    if (error == fullDisk) {
        QCOMPARE(text.section(QStringLiteral(": "), -1), qt_error_string(EFBIG));
    } else {
        QCOMPARE(text, error);
    }
    QCOMPARE(page_->rows(), oldRows + added);
    QCOMPARE(records(), old.records(0, oldRows - 1) + archive.records(0, added - 1));
    QCOMPARE(index(), old.index(oldRows) + archive.index(added));
    QCOMPARE(title(), named(added > 0 ? host() : devices_->second().address()));
    QCOMPARE(Page::photoNames().size(), oldRows + photos);
    QCOMPARE(Page::photoNames().filter(QStringLiteral(".part")), QStringList());
    downloadsAgain();
}

STALLO_TEST_MAIN(TestArchiveWidgetFaults)
#include "tst_archivewidgetfaults.moc"
