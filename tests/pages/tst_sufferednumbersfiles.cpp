// SPDX-License-Identifier: MIT
#include "records/csv.h"
#include "records/vasksettings.h"
#include "tests/pages/listcase.h"
#include "tests/support/filelimit.h"
#include "tests/support/plainuser.h"

#include <QDateEdit>
#include <QDir>
#include <QFileDialog>
#include <QPlainTextEdit>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTimeEdit>

namespace
{

using Page = ListPage;

const QString dump = QStringLiteral("Dump");
const QString csv = QStringLiteral("Comma");
const QString titles = QStringLiteral("Id;Number;Date from;Date till;Key;Comment");

} // namespace

// Lists from files and to files, as the operator opens and saves them.
class TestSufferedNumbersFiles : public ListCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void opensOwnListAtStart();
    void startsWithoutFolder();
    void asksForFiles_data();
    void asksForFiles();
    void opensDump();
    void savesDump_data();
    void savesDump();
    void savesCsv();
    void bringsCsvBack();
    void opensLongList();
    void keepsTableWhenFileCannotBeOpened_data();
    void keepsTableWhenFileCannotBeOpened();
    void opensNoReadOnlyDump();
    void refusesOwnFile();
    void tellsFullDisk_data();
    void tellsFullDisk();
    void makesNewTable();
    void tellsWhereNoTableCanBeMade();
    void clearsTable_data();
    void clearsTable();
    void savesAndClears();

private:
    QString onStick(const QString &name) const { return stick_->filePath(name); }
    QStringList stickFiles() const
    {
        return QDir(stick_->path()).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }
    QString folder() const { return QFileInfo(stick_->path()).absoluteFilePath(); }
    static QString workingFolder() { return Settings::instance()->absoluteWorkingDirectory(); }
    void load(const QString &name)
    {
        page_->load(name);
        QVERIFY(page_->isBusy());
        QVERIFY(page_->becomesIdle());
    }
    void save(const QString &name, const QString &filter)
    {
        page_->save(name, filter);
        QVERIFY(page_->isBusy());
        QVERIFY(page_->becomesIdle());
    }
    void expectEmptyEditor() const
    {
        QCOMPARE(page_->find<QLineEdit>("lineEditId")->text(), QString());
        QCOMPARE(page_->find<QLineEdit>("lineEditNumber")->text(), QString());
        QCOMPARE(page_->find<QLineEdit>("lineEditKey")->text(), QString());
        QCOMPARE(page_->find<QPlainTextEdit>("textEditComment")->toPlainText(), QString());
        QVERIFY(page_->find<QDateEdit>("dateEditFrom")->date().daysTo(QDate::currentDate()) <= 1);
        QVERIFY(page_->find<QDateEdit>("dateEditTill")->date().daysTo(QDate::currentDate()) <= 1);
    }

    std::unique_ptr<QTemporaryDir> stick_;
};

void TestSufferedNumbersFiles::init()
{
    ListCase::init();
    stick_ = std::make_unique<QTemporaryDir>();
    Settings::instance()->setLastLoadedSufferedFile(Page::folder());
    Settings::instance()->setLastSavedSufferedFile(Page::folder());
}

void TestSufferedNumbersFiles::cleanup()
{
    ListCase::cleanup();
    stick_.reset();
}

void TestSufferedNumbersFiles::opensOwnListAtStart()
{
    QVERIFY(!QFile::exists(Page::ownList()));
    page_ = std::make_unique<Page>();
    QVERIFY(page_->becomesIdle());
    QCOMPARE(ownList(), QByteArray()); // made
    QCOMPARE(title(), named(QStringLiteral("local")));
    page_->press("buttonNew");
    const QByteArray list = ownList();
    QCOMPARE(list.size(), int(Access::size));

    page_.reset();
    auto page = std::make_unique<SufferedNumbersWidget>();
    QVERIFY(page->findChild<QWidget *>(QStringLiteral("busyPage"))->isVisibleTo(page.get()));
    page.reset();
    reopen();
    QCOMPARE(page_->rows(), 1);
    QCOMPARE(ownList(), list);
    QCOMPARE(title(), named(QStringLiteral("local")));
    QCOMPARE(Settings::instance()->lastLoadedSufferedFile(), Page::folder());
}

void TestSufferedNumbersFiles::startsWithoutFolder()
{
    QVERIFY(QDir(Page::folder()).removeRecursively());
    page_ = std::make_unique<Page>();
    QVERIFY(page_->becomesIdle());
    QCOMPARE(page_->rows(), 0);
    QCOMPARE(errorAfter([this] {
                 QTimer::singleShot(0, &page_->page(), &SufferedNumbersWidget::newRecord);
             }),
             QStringLiteral("Error|Can't add the record"));
    page_->page().applyRecord();
    page_->press("buttonDelete");
    // A file from elsewhere works.
    Page::write(onStick(QStringLiteral("list.tpa")), Page::list(2));
    load(onStick(QStringLiteral("list.tpa")));
    QCOMPARE(page_->rows(), 2);
}

void TestSufferedNumbersFiles::asksForFiles_data()
{
    QTest::addColumn<QByteArray>("button");
    QTest::addColumn<QString>("heading");
    QTest::addColumn<bool>("saves");
    QTest::newRow("load") << QByteArray("buttonLoad")
                          << QStringLiteral("Open suffered table from file") << false;
    QTest::newRow("save") << QByteArray("buttonSave")
                          << QStringLiteral("Save suffered table to file") << true;
}

void TestSufferedNumbersFiles::asksForFiles()
{
    QFETCH(QByteArray, button);
    QFETCH(QString, heading);
    QFETCH(bool, saves);
    if (saves) {
        Settings::instance()->setLastSavedSufferedFile(folder());
    } else {
        Settings::instance()->setLastLoadedSufferedFile(folder());
    }
    open(Page::list(3));
    QStringList seen;
    QStringList filters;
    page_->answers().expect([&](QWidget *window) {
        if (auto *dialog = qobject_cast<QFileDialog *>(window)) {
            seen << dialog->windowTitle() << dialog->directory().absolutePath();
            filters = dialog->nameFilters();
        }
        window->close();
    });
    page_->press(button.constData());
    QCOMPARE(seen, (QStringList{heading, folder()}));
    QCOMPARE(filters, (QStringList{QStringLiteral("Dump file (*.tpa)"),
                                   QStringLiteral("Comma separated values file (*.csv)")}));
    QVERIFY(!page_->isBusy());
    QCOMPARE(ownList(), Page::list(3));
}

void TestSufferedNumbersFiles::opensDump()
{
    const QString name = onStick(QStringLiteral("list.tpa"));
    Page::write(name, Page::list(5));
    open(Page::list(3));
    load(name);
    QCOMPARE(page_->rows(), 5);
    QCOMPARE(title(), named(QStringLiteral("local")));
    QCOMPARE(Settings::instance()->lastLoadedSufferedFile(), folder());
    QCOMPARE(Settings::instance()->lastSavedSufferedFile(), Page::folder());
    // What is changed is changed in it.
    page_->clickRow(4);
    type("lineEditKey", QStringLiteral("new key"));
    page_->press("buttonApply");
    Access edited = listed(4);
    edited.setAccessKey(QStringLiteral("new key"));
    QCOMPARE(Page::content(name), Page::list(4) + Page::bytes(edited));
    QCOMPARE(ownList(), Page::list(3));
    QCOMPARE(stickFiles(), QStringList(QStringLiteral("list.tpa")));
    reopen();
    QCOMPARE(page_->rows(), 3);
}

void TestSufferedNumbersFiles::savesDump_data()
{
    QTest::addColumn<int>("entries");
    QTest::addColumn<QString>("typed");
    QTest::newRow("with ending") << 40 << QStringLiteral("saved.tpa");
    QTest::newRow("without ending") << 40 << QStringLiteral("saved");
    QTest::newRow("empty") << 0 << QStringLiteral("saved");
    QTest::newRow("full") << 1000 << QStringLiteral("saved");
}

void TestSufferedNumbersFiles::savesDump()
{
    QFETCH(int, entries);
    QFETCH(QString, typed);
    open(Page::list(entries));
    save(onStick(typed), dump);
    QCOMPARE(stickFiles(), QStringList(QStringLiteral("saved.tpa")));
    QCOMPARE(Page::content(onStick(QStringLiteral("saved.tpa"))), Page::list(entries));
    QCOMPARE(Settings::instance()->lastSavedSufferedFile(), folder());
    QCOMPARE(Settings::instance()->lastLoadedSufferedFile(), Page::folder());
    QCOMPARE(title(), named(QStringLiteral("local")));
    // The table stays where it was, and the dump comes back as it went.
    page_->press("buttonNew");
    QCOMPARE(Page::content(onStick(QStringLiteral("saved.tpa"))), Page::list(entries));
    load(onStick(QStringLiteral("saved.tpa")));
    QCOMPARE(page_->rows(), entries);
    QCOMPARE(Page::content(onStick(QStringLiteral("saved.tpa"))), Page::list(entries));
}

void TestSufferedNumbersFiles::savesCsv()
{
    open(Page::list(3));
    save(onStick(QStringLiteral("list")), csv);
    QCOMPARE(stickFiles(), QStringList(QStringLiteral("list.csv")));
    QCOMPARE(Settings::instance()->lastSavedSufferedFile(), folder());
    const QStringList lines =
        QString::fromLocal8Bit(Page::content(onStick(QStringLiteral("list.csv"))))
            .split(QLatin1Char('\n'));
    QCOMPARE(lines.size(), 4);
    QCOMPARE(lines.first(), titles);
    for (int n = 0; n < 3; ++n) {
        const Access access = listed(n);
        QCOMPARE(lines.at(n + 1), (QStringList{QString::number(n + 1), access.number(),
                                               access.dateTimeFrom().toString(CSV::dateFormat()),
                                               access.dateTimeTill().toString(CSV::dateFormat()),
                                               access.accessKey(), access.comment()})
                                      .join(QLatin1Char(';')));
    }
    QCOMPARE(ownList(), Page::list(3));
}

// The end of each entry becomes its begin.
void TestSufferedNumbersFiles::bringsCsvBack()
{
    open(Page::list(40));
    save(onStick(QStringLiteral("list")), csv);
    const QByteArray saved = Page::content(onStick(QStringLiteral("list.csv")));
    Page::write(onStick(QStringLiteral("other.tpa")), Page::list(7));
    load(onStick(QStringLiteral("other.tpa")));
    Settings::instance()->setLastLoadedSufferedFile(Page::folder());
    load(onStick(QStringLiteral("list.csv")));
    QByteArray expected;
    for (int n = 0; n < 40; ++n) {
        Access access = listed(n);
        access.setDateTimeFrom(access.dateTimeTill());
        access.setDateTimeTill(Access().dateTimeTill());
        expected += Page::bytes(access);
    }
    QCOMPARE(ownList(), expected);
    QCOMPARE(page_->rows(), 40);
    QCOMPARE(page_->cell(0, AccessModel::TillColumn), QStringLiteral("19 January 2038 06:14:07"));
    QCOMPARE(Settings::instance()->lastLoadedSufferedFile(), folder());
    QCOMPARE(title(), named(QStringLiteral("local")));
    QCOMPARE(Page::content(onStick(QStringLiteral("other.tpa"))), Page::list(7));
    // It is the panel's own list from now on.
    page_->clickRow(0);
    remove();
    QCOMPARE(ownList(), expected.mid(Access::size));
    QCOMPARE(Page::content(onStick(QStringLiteral("list.csv"))), saved);
}

void TestSufferedNumbersFiles::opensLongList()
{
    const QString name = onStick(QStringLiteral("long.tpa"));
    Page::write(name, Page::list(1200));
    open(Page::list(3));
    load(name);
    QCOMPARE(page_->rows(), 1200);
    page_->press("buttonNew");
    QCOMPARE(page_->rows(), 1200);
    QCOMPARE(Page::content(name), Page::list(1200));
}

void TestSufferedNumbersFiles::keepsTableWhenFileCannotBeOpened_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("dump") << QStringLiteral("gone.tpa");
    QTest::newRow("csv") << QStringLiteral("gone.csv");
}

void TestSufferedNumbersFiles::keepsTableWhenFileCannotBeOpened()
{
    QFETCH(QString, name);
    Page::write(onStick(QStringLiteral("list.tpa")), Page::list(5));
    Page::write(onStick(name), "titles");
    open(Page::list(3));
    load(onStick(QStringLiteral("list.tpa")));
    page_->clickRow(2);
    Settings::instance()->setLastLoadedSufferedFile(Page::folder());
    // Gone between the choice and the job.
    QCOMPARE(errorAfter([&] {
                 page_->load(onStick(name));
                 QFile::remove(onStick(name));
             }),
             QStringLiteral("Error|No such file or directory"));
    QCOMPARE(page_->rows(), 5);
    QCOMPARE(Page::content(onStick(QStringLiteral("list.tpa"))), Page::list(5));
    QCOMPARE(ownList(), Page::list(3));
    QCOMPARE(stickFiles(), QStringList(QStringLiteral("list.tpa")));
    QCOMPARE(Settings::instance()->lastLoadedSufferedFile(), Page::folder());
    page_->press("buttonNew");
    QCOMPARE(Page::content(onStick(QStringLiteral("list.tpa"))).size(), int(6 * Access::size));
}

void TestSufferedNumbersFiles::opensNoReadOnlyDump()
{
    const QString name = onStick(QStringLiteral("list.tpa"));
    Page::write(name, Page::list(5));
    const auto read = QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther;
    QVERIFY(QFile::setPermissions(stick_->path(),
                                  read | QFile::ExeOwner | QFile::ExeGroup | QFile::ExeOther));
    QVERIFY(QFile::setPermissions(name, read));
    open(Page::list(3));
    QString error;
    {
        const PlainUser user;
        if (!PlainUser::isOne()) {
            QSKIP("root writes everywhere");
        }
        QCOMPARE(Page::content(name), Page::list(5));
        error = errorAfter([&] { page_->load(name); });
    }
    QCOMPARE(error, QStringLiteral("Error|Permission denied"));
    QCOMPARE(page_->rows(), 3);
    QCOMPARE(Page::content(name), Page::list(5));
}

void TestSufferedNumbersFiles::refusesOwnFile()
{
    const QString name = onStick(QStringLiteral("list.tpa"));
    Page::write(name, Page::list(5));
    open(Page::list(3));
    load(name);
    for (const QString &filter : {dump, csv}) {
        const QString typed = filter == dump ? name : onStick(QStringLiteral("link.csv"));
        if (filter == csv) {
            QVERIFY(QFile::link(name, typed));
        }
        // The toolkit asks first whether the file is to be replaced.
        QCOMPARE(errorAfter([&] {
                     page_->answers().expect(ModalAnswers::savingAs(typed, filter));
                     page_->answers().expect([](QWidget *window) {
                         auto *box = qobject_cast<QMessageBox *>(window);
                         QVERIFY(box != nullptr);
                         QTest::mouseClick(box->button(QMessageBox::Yes), Qt::LeftButton);
                     });
                     page_->press("buttonSave");
                 }),
                 QStringLiteral("Error|Destination file exists"));
        QCOMPARE(Page::content(name), Page::list(5));
    }
    QCOMPARE(Settings::instance()->lastSavedSufferedFile(), Page::folder());
}

void TestSufferedNumbersFiles::tellsFullDisk_data()
{
    QTest::addColumn<QString>("filter");
    QTest::addColumn<QString>("name");
    QTest::newRow("dump") << dump << QStringLiteral("saved.tpa");
    QTest::newRow("csv") << csv << QStringLiteral("saved.csv");
}

void TestSufferedNumbersFiles::tellsFullDisk()
{
    QFETCH(QString, filter);
    QFETCH(QString, name);
    open(Page::list(100));
    QString error;
    {
        const FileLimit disk(3000);
        error = errorAfter([&] { page_->save(onStick(name), filter); });
    }
    QCOMPARE(error, QStringLiteral("Error|File too large"));
    QCOMPARE(stickFiles(), QStringList());
    QCOMPARE(Settings::instance()->lastSavedSufferedFile(), Page::folder());
    QCOMPARE(ownList(), Page::list(100));
    QCOMPARE(page_->rows(), 100);
    save(onStick(name), filter);
    QCOMPARE(stickFiles(), QStringList(name));
}

void TestSufferedNumbersFiles::makesNewTable()
{
    open(Page::list(3));
    page_->clickRow(1);
    const QDateTime before = QDateTime::currentDateTime();
    page_->press("buttonNewTable");
    QVERIFY(page_->isBusy());
    QVERIFY(page_->becomesIdle());
    QCOMPARE(page_->rows(), 0);
    QCOMPARE(title(), named(QStringLiteral("local")));
    const QStringList made = QDir(workingFolder()).entryList(QDir::Files);
    QCOMPARE(made.size(), 1);
    const auto match =
        QRegularExpression(QStringLiteral("^accessbase_(.*)\\.tpa$")).match(made.first());
    QVERIFY2(match.hasMatch(), qPrintable(made.first()));
    const QDateTime time = QDateTime::fromString(match.captured(1), VaskSettings::dateFormat());
    QVERIFY(time >= before.addSecs(-1) && time <= QDateTime::currentDateTime());
    // What comes now is in it, and the other list is as it was.
    type("lineEditNumber", QStringLiteral("X123YZ77"));
    page_->press("buttonNew");
    const QString name = workingFolder() + QLatin1Char('/') + made.first();
    QCOMPARE(Page::content(name).size(), int(Access::size));
    QCOMPARE(Page::content(name).mid(2, 8), QByteArray("X123YZ77"));
    QCOMPARE(ownList(), Page::list(3));
    QCOMPARE(Settings::instance()->lastLoadedSufferedFile(), Page::folder());
}

void TestSufferedNumbersFiles::tellsWhereNoTableCanBeMade()
{
    open(Page::list(3));
    Settings::instance()->setWorkingDirectory(onStick(QStringLiteral("missing")));
    QCOMPARE(errorAfter([this] { page_->press("buttonNewTable"); }),
             QStringLiteral("Error|No such file or directory"));
    QCOMPARE(page_->rows(), 3);
    QCOMPARE(ownList(), Page::list(3));
}

void TestSufferedNumbersFiles::clearsTable_data()
{
    QTest::addColumn<bool>("removeFile");
    QTest::newRow("and its file") << true;
    QTest::newRow("only") << false;
}

void TestSufferedNumbersFiles::clearsTable()
{
    QFETCH(bool, removeFile);
    open(Page::list(3));
    page_->clickRow(1);
    page_->page().clearTable(removeFile);
    QCOMPARE(page_->rows(), 0);
    QVERIFY(!page_->isBusy());
    expectEmptyEditor();
    QCOMPARE(title(), named(QString()));
    QCOMPARE(QFile::exists(Page::ownList()), !removeFile);
    if (!removeFile) {
        QCOMPARE(ownList(), Page::list(3));
    }
    // A table from elsewhere is not removed.
    const QString name = onStick(QStringLiteral("list.tpa"));
    Page::write(name, Page::list(5));
    load(name);
    page_->page().clearTable(removeFile);
    QCOMPARE(page_->rows(), 0);
    QCOMPARE(Page::content(name), Page::list(5));
    reopen();
    QCOMPARE(page_->rows(), removeFile ? 0 : 3);
}

void TestSufferedNumbersFiles::savesAndClears()
{
    open(Page::list(3));
    page_->clickRow(1);
    const QString dumped = workingFolder() + QStringLiteral("/may.tpa/may.tpa");
    QCOMPARE(page_->page().saveTableToDatFileAndClear(QStringLiteral("/any/where/may.tpa")),
             QString());
    QCOMPARE(Page::content(dumped), Page::list(3));
    QCOMPARE(page_->rows(), 0);
    expectEmptyEditor();
    QCOMPARE(title(), named(QString()));
    QVERIFY(!QFile::exists(Page::ownList()));
    QCOMPARE(page_->page().saveTableToDatFileAndClear(QStringLiteral("may.tpa")),
             QStringLiteral("The dump has already been created"));
    QCOMPARE(Page::content(dumped), Page::list(3));
    Settings::instance()->setWorkingDirectory(onStick(QStringLiteral("missing")));
    QCOMPARE(page_->page().saveTableToDatFileAndClear(QStringLiteral("june.tpa")),
             QStringLiteral("Can't create dump directory"));
}

STALLO_TEST_MAIN(TestSufferedNumbersFiles)
#include "tst_sufferednumbersfiles.moc"
