// SPDX-License-Identifier: MIT
#include "tests/pages/archivefilescase.h"

#include "records/csv.h"
#include "tests/support/filelimit.h"

#include <sys/stat.h>

// Opening tables from files, through the page's buttons and the real file dialogs, and what comes
// back of a table that was saved.
class TestArchiveWidgetFiles : public ArchiveFilesCase
{
    Q_OBJECT

private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void asksForFileToLoad();
    void loadsDump_data();
    void loadsDump();
    void loadsDumpWithoutIndex();
    void keepsTableWhenDumpCannotBeOpened_data();
    void keepsTableWhenDumpCannotBeOpened();
    void loadsCsv();
    void replacesTemporaryArchiveByCsv();
    void leavesLoadedDumpAloneWhenCsvIsLoaded();
    void keepsTableWhenCsvCannotBeOpened_data();
    void keepsTableWhenCsvCannotBeOpened();
    void keepsDumpWhenCsvCannotBeOpened();
    void makesNoArchiveWhenCsvCannotBeOpened();
    void reportsFullDiskUnderCsv_data();
    void reportsFullDiskUnderCsv();

    void bringsDumpBack();
    void bringsCsvBack();
    void showsNoPhotosOfOnLineDump();

private:
    // A file of this name that even the superuser can only read: a program that runs. False where
    // the system lets it be written to.
    bool makeUnwritable(const QString &name) const
    {
        QFile file(onStick(name));
        return QFile::link(QCoreApplication::applicationFilePath(), file.fileName()) &&
               !file.open(QIODevice::ReadWrite | QIODevice::ExistingOnly);
    }
    static QByteArray dateOf(const Scan &scan)
    {
        return scan.dateTime().toString(CSV::dateFormat()).toLatin1();
    }
    // Passages with what a CSV file must quote or turn.
    static QVector<Scan> awkwardPassages()
    {
        Scan quoted = passage(1);
        quoted.setNumber(QStringLiteral("A?1*;\""));
        quoted.setComment(QStringLiteral("a;b \"c\", d"));
        quoted.setAccessKey(QString());
        quoted.setIncoming(false);
        quoted.setInAccessList(false);
        Scan denied = passage(2);
        denied.setAccessGranted(false);
        denied.setComment(QStringLiteral("\"all of it\""));
        Scan nothing;
        nothing.setIncoming(false);
        return {passage(0), quoted, denied, nothing};
    }
};

void TestArchiveWidgetFiles::asksForFileToLoad()
{
    load(makeDump(QStringLiteral("table.tpp"), 2));
    Settings::instance()->setLastLoadedArchiveFile(Page::folder());
    page_->answers().expect([](QWidget *window) {
        auto *dialog = qobject_cast<QFileDialog *>(window);
        QVERIFY(dialog != nullptr);
        QCOMPARE(dialog->acceptMode(), QFileDialog::AcceptOpen);
        QCOMPARE(dialog->windowTitle(), QStringLiteral("Open thoroughfare table from file"));
        QCOMPARE(dialog->nameFilters(),
                 (QStringList{QStringLiteral("Dump file (*.tpp)"),
                              QStringLiteral("Comma separated values file (*.csv)")}));
        QCOMPARE(dialog->directory().absolutePath(), QDir(Page::folder()).absolutePath());
        ModalAnswers::cancelling()(window);
    });
    page_->press("buttonLoad");
    QCOMPARE(page_->answers().left(), 0);
    QVERIFY(!page_->isBusy());
    QCOMPARE(page_->rows(), 2);
    QCOMPARE(Settings::instance()->lastLoadedArchiveFile(), Page::folder());
}

void TestArchiveWidgetFiles::loadsDump_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name :
         {"table.tpp", "may.2026.tpp", "with blank.tpp", "CAPITALS.TPP", "other.ending", "none"}) {
        QTest::newRow(name) << QString::fromLatin1(name);
    }
}

void TestArchiveWidgetFiles::loadsDump()
{
    QFETCH(QString, name);
    const QString table = makeDump(name, 5, {1, 4});
    QVERIFY(!page_->find<QPushButton>("buttonSave")->isEnabled());
    load(table);
    QCOMPARE(numbers(), numbersOf(5));
    QCOMPARE(devices(), devicesOf(5));
    QCOMPARE(page_->cell(3, ScanModel::CommentColumn), passage(3).comment());
    QCOMPARE(page_->progress(), 100);
    QVERIFY(page_->find<QPushButton>("buttonSave")->isEnabled());
    expectNothingShown();
    page_->clickRow(1);
    expectShown(1, 1, true);
    page_->clickRow(2);
    expectShown(2, 2, false);
    page_->clickRow(4);
    expectShown(4, 4, true);
    QCOMPARE(Settings::instance()->lastLoadedArchiveFile(), stickFolder());
    // It is read where it lies.
    QCOMPARE(Page::content(table), tableOf(5));
    QCOMPARE(Page::content(ScanModel::indexFileOf(table)), indexOf(5));
    QVERIFY(!QFile::exists(Page::recordFile()));
}

void TestArchiveWidgetFiles::loadsDumpWithoutIndex()
{
    load(makeDump(QStringLiteral("with.tpp"), 3));
    const QString name = makeDump(QStringLiteral("without.tpp"), 3);
    QVERIFY(QFile::remove(ScanModel::indexFileOf(name)));
    load(name);
    QCOMPARE(numbers(), numbersOf(3));
    QCOMPARE(devices().join(QString()), QString());
    // And one that ends in the middle of a passage.
    Page::write(name, tableOf(4).chopped(1));
    load(name);
    QCOMPARE(numbers(), numbersOf(3));
}

void TestArchiveWidgetFiles::keepsTableWhenDumpCannotBeOpened_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("missing") << QStringLiteral("missing.tpp");
    QTest::newRow("folder") << QStringLiteral("folder.tpp");
    QTest::newRow("pipe") << QStringLiteral("pipe.tpp");
    QTest::newRow("not writable") << QStringLiteral("unwritable.tpp");
}

void TestArchiveWidgetFiles::keepsTableWhenDumpCannotBeOpened()
{
    QFETCH(QString, name);
    load(makeDump(QStringLiteral("table.tpp"), 3, {1}));
    page_->clickRow(1);
    Settings::instance()->setLastLoadedArchiveFile(Page::folder());
    const QString other = onStick(name);
    const bool unwritable = name.startsWith(QLatin1String("unwritable"));
    if (!unwritable) {
        Page::write(other, tableOf(9));
    } else if (!makeUnwritable(name)) {
        QSKIP("every file can be written to here");
    }
    // The dialog lets only files through that are there.
    const QString shown = failToLoad(other, [&] {
        if (!unwritable) {
            QFile::remove(other);
        }
        if (name.startsWith(QLatin1String("folder"))) {
            QDir().mkpath(other);
        } else if (name.startsWith(QLatin1String("pipe"))) {
            QCOMPARE(mkfifo(QFile::encodeName(other).constData(), 0600), 0);
        }
    });
    QVERIFY2(shown.startsWith(QLatin1String("Error|")) && shown.size() > 6, qPrintable(shown));
    QVERIFY2(!shown.contains(QLatin1String("Unknown error")), qPrintable(shown));
    QCOMPARE(numbers(), numbersOf(3));
    QCOMPARE(devices(), devicesOf(3));
    expectShown(1, 1, true);
    QVERIFY(page_->find<QPushButton>("buttonSave")->isEnabled());
    QCOMPARE(Settings::instance()->lastLoadedArchiveFile(), Page::folder());
    QVERIFY(!QFile::exists(ScanModel::indexFileOf(other)));
    // In the GUI thread it is the same.
    QCOMPARE(QStringLiteral("Error|") + page_->page().loadTableFromDatFile(other), shown);
    QCOMPARE(numbers(), numbersOf(3));
}

void TestArchiveWidgetFiles::loadsCsv()
{
    const QVector<Scan> expected = awkwardPassages().mid(0, 3) + QVector<Scan>{passage(5)};
    Page::write(onStick(QStringLiteral("list.CSV")),
                "whatever;the titles are\r\n" + dateOf(passage(0)) +
                    ";A000BC77;1;1;1;\"Novak, flat 12\";00012345\r\n"
                    "\n" + // skipped
                    dateOf(passage(1)) +
                    ";\"A?1*;\"\"\";0;0;7;\"a;b \"\"c\"\", d\";\n" + dateOf(passage(2)) +
                    ";A002BC77;-1;1;x;\"\"\"all of it\"\"\";00012345\n" + dateOf(passage(5)) +
                    ";A005BC77;1;1;1;\"Novak, flat 12\";00012345");
    QVector<Scan> read = expected;
    read[2].setIncoming(true);
    load(onStick(QStringLiteral("list.CSV")));
    QCOMPARE(page_->rows(), 4);
    QCOMPARE(Page::content(Page::recordFile()), tableOf(read));
    QCOMPARE(Page::content(Page::indexFile()), QByteArray());
    QCOMPARE(devices().join(QString()), QString());
    QCOMPARE(page_->progress(), 100);
    QCOMPARE(Settings::instance()->lastLoadedArchiveFile(), stickFolder());
    QVERIFY(page_->find<QPushButton>("buttonSave")->isEnabled());
    expectNothingShown();
}

void TestArchiveWidgetFiles::replacesTemporaryArchiveByCsv()
{
    const auto line = [](int n) {
        return '\n' + dateOf(passage(n)) + ';' + numberOf(n).toLatin1() + ";1;1;1;c;k";
    };
    Page::write(onStick(QStringLiteral("list.csv")), "titles" + line(20) + line(21));
    // As a download leaves it, on view and not.
    for (const bool onView : {true, false}) {
        Page::write(Page::recordFile(), tableOf(9));
        Page::write(Page::indexFile(), indexOf(9));
        load(onView ? Page::recordFile() : makeDump(QStringLiteral("other.tpp"), 1));
        load(onStick(QStringLiteral("list.csv")));
        QCOMPARE(numbers(), numbersOf(2, 20));
        QCOMPARE(devices().join(QString()), QString());
        QCOMPARE(Page::content(Page::recordFile()).size(), 2 * int(Scan::size));
        QCOMPARE(Page::content(Page::indexFile()), QByteArray());
    }
    // Not added to the first.
    load(onStick(QStringLiteral("list.csv")));
    QCOMPARE(numbers(), numbersOf(2, 20));
}

void TestArchiveWidgetFiles::leavesLoadedDumpAloneWhenCsvIsLoaded()
{
    const QString other = makeDump(QStringLiteral("other.tpp"), 3, {0, 2});
    load(other);
    page_->clickRow(0);
    Page::write(onStick(QStringLiteral("list.csv")), "titles\n;B777BB77");
    load(onStick(QStringLiteral("list.csv")));
    QCOMPARE(numbers(), QStringList(QStringLiteral("B777BB77")));
    expectNothingShown();
    QCOMPARE(Page::content(other), tableOf(3));
    QCOMPARE(Page::content(ScanModel::indexFileOf(other)), indexOf(3));
    QCOMPARE(filesIn(onStick(QStringLiteral("other.jpegdata"))).size(), 2);
}

void TestArchiveWidgetFiles::keepsTableWhenCsvCannotBeOpened_data()
{
    QTest::addColumn<QString>("kind");
    for (const char *kind : {"missing", "folder", "pipe"}) {
        QTest::newRow(kind) << QString::fromLatin1(kind);
    }
}

void TestArchiveWidgetFiles::keepsTableWhenCsvCannotBeOpened()
{
    QFETCH(QString, kind);
    Page::write(Page::recordFile(), tableOf(4));
    Page::write(Page::indexFile(), indexOf(4));
    makePhotos(Page::recordFile(), {2});
    load(Page::recordFile());
    page_->clickRow(2);
    Settings::instance()->setLastLoadedArchiveFile(stickFolder());
    const QString source = onStick(QStringLiteral("list.csv"));
    Page::write(source, "titles\n;A001BC77");
    const QString shown = failToLoad(source, [&] {
        QFile::remove(source);
        if (kind == QLatin1String("folder")) {
            QDir().mkpath(source);
        } else if (kind == QLatin1String("pipe")) {
            QCOMPARE(mkfifo(QFile::encodeName(source).constData(), 0600), 0);
        }
    });
    QVERIFY2(shown.startsWith(QLatin1String("Error|")) && shown.size() > 6, qPrintable(shown));
    QVERIFY2(!shown.contains(QLatin1String("Unknown error")), qPrintable(shown));
    QCOMPARE(numbers(), numbersOf(4));
    QCOMPARE(devices(), devicesOf(4));
    expectShown(2, 2, true);
    QCOMPARE(Page::content(Page::recordFile()), tableOf(4));
    QCOMPARE(Page::content(Page::indexFile()), indexOf(4));
    QCOMPARE(Settings::instance()->lastLoadedArchiveFile(), stickFolder());
    QCOMPARE(QStringLiteral("Error|") + page_->page().loadTableFromCSVFile(source), shown);
    QCOMPARE(numbers(), numbersOf(4));
}

void TestArchiveWidgetFiles::keepsDumpWhenCsvCannotBeOpened()
{
    // While an archive that was downloaded before lies there.
    Page::write(Page::recordFile(), tableOf(4));
    load(makeDump(QStringLiteral("table.tpp"), 3, {21}, 20));
    page_->clickRow(1);
    const QString source = onStick(QStringLiteral("list.csv"));
    Page::write(source, "titles\n;A001BC77");
    const QString shown = failToLoad(source, [&source] { QFile::remove(source); });
    QCOMPARE(shown, QStringLiteral("Error|No such file or directory"));
    QCOMPARE(Page::content(Page::recordFile()), tableOf(4));
    QCOMPARE(page_->rows(), 3);
    QCOMPARE(numbers(), numbersOf(3, 20));
    expectShown(1, 21, true);
}

void TestArchiveWidgetFiles::makesNoArchiveWhenCsvCannotBeOpened()
{
    const QString source = onStick(QStringLiteral("list.csv"));
    Page::write(source, "titles\n;A001BC77");
    failToLoad(source, [&source] { QFile::remove(source); });
    QCOMPARE(page_->rows(), 0);
    QCOMPARE(filesIn(Page::folder()), QStringList());
}

void TestArchiveWidgetFiles::reportsFullDiskUnderCsv_data()
{
    QTest::addColumn<int>("limit");
    QTest::newRow("no byte") << 0;
    QTest::newRow("in a passage") << 1000;
    QTest::newRow("between two") << 10 * int(Scan::size);
}

void TestArchiveWidgetFiles::reportsFullDiskUnderCsv()
{
    QFETCH(int, limit);
    const QString source = onStick(QStringLiteral("list.csv"));
    Page::write(source, "titles" + QByteArray("\n;A001BC77").repeated(20));
    Page::write(Page::recordFile(), tableOf(3));
    Page::write(Page::indexFile(), indexOf(3));
    load(Page::recordFile());
    Settings::instance()->setLastLoadedArchiveFile(Page::folder());
    QString shown;
    {
        const FileLimit full(static_cast<rlim_t>(limit));
        shown = failToLoad(source);
    }
    QCOMPARE(shown, QStringLiteral("Error|File too large"));
    // Not a part of the list, but what was there.
    QCOMPARE(numbers(), numbersOf(3));
    QCOMPARE(Page::content(Page::recordFile()), tableOf(3));
    QCOMPARE(Page::content(Page::indexFile()), indexOf(3));
    QCOMPARE(Settings::instance()->lastLoadedArchiveFile(), Page::folder());
    load(source);
    QCOMPARE(page_->rows(), 20);
}

void TestArchiveWidgetFiles::bringsDumpBack()
{
    load(makeDump(QStringLiteral("source.tpp"), 7, {0, 3, 6}));
    const QString saved = onStick(QStringLiteral("saved.tpp"));
    save(saved, dump);
    restart();
    QCOMPARE(page_->rows(), 0);
    load(saved);
    QCOMPARE(numbers(), numbersOf(7));
    QCOMPARE(devices(), devicesOf(7));
    for (int row = 0; row < 7; ++row) {
        page_->clickRow(row);
        expectShown(row, row, row % 3 == 0);
    }
    // Once more from there.
    const QString again = onStick(QStringLiteral("again.tpp"));
    save(again, dump);
    QCOMPARE(Page::content(again), tableOf(7));
    QCOMPARE(Page::content(ScanModel::indexFileOf(again)), indexOf(7));
    for (const int n : {0, 3, 6}) {
        QCOMPARE(Page::content(onStick(QStringLiteral("again.jpegdata/") + photoName(n))),
                 photoOf(n));
    }
    QCOMPARE(filesIn(onStick(QStringLiteral("again.jpegdata"))).size(), 3);
}

void TestArchiveWidgetFiles::bringsCsvBack()
{
    const QVector<Scan> passages = awkwardPassages();
    const QString source = onStick(QStringLiteral("source.tpp"));
    Page::write(source, tableOf(passages));
    load(source);
    QStringList cells;
    for (int which = 0; which < ScanModel::columns; ++which) {
        cells << column(which);
    }
    save(onStick(QStringLiteral("list")), csv);
    restart();
    load(onStick(QStringLiteral("list.csv")));
    QStringList back;
    for (int which = 0; which < ScanModel::columns; ++which) {
        back << column(which);
    }
    QCOMPARE(back, cells);
    QCOMPARE(Page::content(Page::recordFile()), tableOf(passages));
}

void TestArchiveWidgetFiles::showsNoPhotosOfOnLineDump()
{
    Page::write(onStick(QStringLiteral("table.tpp")), QByteArray());
    QVERIFY(
        QDir().mkpath(Settings::instance()->onLineTempDirectory() + QStringLiteral("/jpegdata")));
    QVERIFY(QDir().mkpath(Settings::instance()->videoTempDirectory()));
    {
        OnlinePage onLine;
        onLine.page().selectDevice(OnlinePage::nowhere());
        onLine.tellPassage(OnlinePage::record(1), OnlinePage::nowhere());
        Page::write(OnlinePage::pictureFile(OnlinePage::record(1)), photoOf(1));
        onLine.page().saveTableToDatFile(onStick(QStringLiteral("table.tpp")));
    }
    QCOMPARE(Page::content(onStick(QStringLiteral("jpegdata/") + photoName(1))), photoOf(1));
    load(onStick(QStringLiteral("table.tpp")));
    QCOMPARE(numbers(), numbersOf(1, 1));
    QCOMPARE(devices(), QStringList(QStringLiteral("gate")));
    page_->clickRow(0);
    expectShown(0, 1, false);
}

STALLO_TEST_MAIN(TestArchiveWidgetFiles)
#include "tst_archivewidgetfiles.moc"
