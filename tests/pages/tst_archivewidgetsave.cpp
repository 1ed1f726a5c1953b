// SPDX-License-Identifier: MIT
#include "tests/pages/archivefilescase.h"

#include "records/csv.h"
#include "tests/support/filelimit.h"

#include <QCheckBox>
#include <QMessageBox>

// Saving the table as a dump and as CSV, through the page's button and the real file dialog.
class TestArchiveWidgetSave : public ArchiveFilesCase
{
    Q_OBJECT

private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void asksForFileToSave();
    void savesDump_data();
    void savesDump();
    void savesDumpWithoutIndex();
    void replacesDump();
    void replacesDumpAfterQuestion();
    void refusesOwnFile();
    void savesCsv();
    void savesEveryRowOfFilteredTable();
    void reportsFailure_data();
    void reportsFailure();
    void reportsFullStick_data();
    void reportsFullStick();
    void keepsOldDumpOnFullStick();
    void reportsPhotosThatDoNotFit();
    void reportsPhotoThatCannotBeReplaced();
    void reportsPhotoFolderThatCannotBe();
    void savesInGuiThread();

private:
    // What this page loads, beside the stick.
    QString source(int rows, const QVector<int> &photos = {})
    {
        const QString name = Page::folder() + QStringLiteral("/source.tpp");
        Page::write(name, tableOf(rows));
        Page::write(ScanModel::indexFileOf(name), indexOf(rows));
        makePhotos(name, photos);
        return name;
    }
    QString savedPhoto(int n) const
    {
        return onStick(QStringLiteral("table.jpegdata/") + photoName(n));
    }
};

void TestArchiveWidgetSave::asksForFileToSave()
{
    load(source(2));
    Settings::instance()->setLastSavedArchiveFile(stick_->path());
    page_->answers().expect([this](QWidget *window) {
        auto *dialog = qobject_cast<QFileDialog *>(window);
        QVERIFY(dialog != nullptr);
        QCOMPARE(dialog->acceptMode(), QFileDialog::AcceptSave);
        QCOMPARE(dialog->windowTitle(), QStringLiteral("Save thoroughfare table to file"));
        QCOMPARE(dialog->nameFilters(),
                 (QStringList{QStringLiteral("Dump file (*.tpp)"),
                              QStringLiteral("Comma separated values file (*.csv)")}));
        QCOMPARE(dialog->directory().absolutePath(), QDir(stick_->path()).absolutePath());
        ModalAnswers::cancelling()(window);
    });
    page_->press("buttonSave");
    QCOMPARE(page_->answers().left(), 0);
    QVERIFY(!page_->isBusy());
    QCOMPARE(stickFiles(), QStringList());
    QCOMPARE(Settings::instance()->lastSavedArchiveFile(), stick_->path());
}

void TestArchiveWidgetSave::savesDump_data()
{
    QTest::addColumn<QString>("chosen");
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<QString>("photos");

    const auto row = [](const char *chosen, const char *table, const char *index,
                        const char *photos) {
        QTest::newRow(chosen) << QString::fromLatin1(chosen)
                              << QStringList{QString::fromLatin1(table), QString::fromLatin1(index)}
                              << QString::fromLatin1(photos);
    };
    row("table", "table.tpp", "table.tpp.index", "table.jpegdata");
    row("table.tpp", "table.tpp", "table.tpp.index", "table.jpegdata");
    row("table.csv", "table.csv.tpp", "table.tpp.index", "table.jpegdata");
    row("may.2026", "may.2026.tpp", "may.tpp.index", "may.jpegdata");
    row("with blank", "with blank.tpp", "with blank.tpp.index", "with blank.jpegdata");
}

void TestArchiveWidgetSave::savesDump()
{
    QFETCH(QString, chosen);
    QFETCH(QStringList, files);
    QFETCH(QString, photos);
    load(source(5, {1, 4}));
    Page::write(Page::folder() + QStringLiteral("/source.jpegdata/stranger.jpeg"), "of no row");
    page_->clickRow(1);
    save(onStick(chosen), dump);
    QCOMPARE(Page::content(onStick(files.at(0))), tableOf(5));
    QCOMPARE(Page::content(onStick(files.at(1))), indexOf(5));
    files.sort();
    QCOMPARE(stickFiles(), files);
    QCOMPARE(QDir(stick_->path()).entryList(QDir::Dirs | QDir::NoDotAndDotDot),
             QStringList(photos));
    QCOMPARE(filesIn(onStick(photos)), (QStringList{photoName(1), photoName(4)}));
    QCOMPARE(Page::content(onStick(photos + QLatin1Char('/') + photoName(1))), photoOf(1));
    QCOMPARE(Page::content(onStick(photos + QLatin1Char('/') + photoName(4))), photoOf(4));
    QCOMPARE(Settings::instance()->lastSavedArchiveFile(), stickFolder());
    QCOMPARE(page_->progress(), 100);
    // The table stays where it was.
    QCOMPARE(numbers(), numbersOf(5));
    expectShown(1, 1, true);
    QVERIFY(page_->find<QPushButton>("buttonSave")->isEnabled());
}

void TestArchiveWidgetSave::savesDumpWithoutIndex()
{
    const QString name = source(3);
    QVERIFY(QFile::remove(ScanModel::indexFileOf(name)));
    load(name);
    Page::write(onStick(QStringLiteral("table.tpp.index")), "of an older dump");
    save(onStick(QStringLiteral("table")), dump);
    QCOMPARE(Page::content(onStick(QStringLiteral("table.tpp"))), tableOf(3));
    QCOMPARE(Page::content(onStick(QStringLiteral("table.tpp.index"))), QByteArray());
}

void TestArchiveWidgetSave::replacesDump()
{
    load(source(3, {0, 2}));
    Page::write(onStick(QStringLiteral("table.tpp")), QByteArray(5000, 'x'));
    Page::write(onStick(QStringLiteral("table.tpp.index")), QByteArray(5000, 'x'));
    QVERIFY(QDir().mkpath(onStick(QStringLiteral("table.jpegdata"))));
    Page::write(savedPhoto(1), "a photo that this table does not have");
    Page::write(savedPhoto(2), QByteArray(9000, 'x'));
    save(onStick(QStringLiteral("table")), dump);
    QCOMPARE(Page::content(onStick(QStringLiteral("table.tpp"))), tableOf(3));
    QCOMPARE(Page::content(onStick(QStringLiteral("table.tpp.index"))), indexOf(3));
    QCOMPARE(Page::content(savedPhoto(0)), photoOf(0));
    QCOMPARE(Page::content(savedPhoto(1)), QByteArray("a photo that this table does not have"));
    QCOMPARE(Page::content(savedPhoto(2)), photoOf(2));
}

void TestArchiveWidgetSave::replacesDumpAfterQuestion()
{
    load(source(3));
    const QString name = onStick(QStringLiteral("table.tpp"));
    Page::write(name, QByteArray(5000, 'x'));
    page_->answers().expect(ModalAnswers::savingAs(name, QString::fromLatin1(dump)));
    page_->answers().expect([](QWidget *window) {
        auto *question = qobject_cast<QMessageBox *>(window);
        QVERIFY(question != nullptr);
        QTest::mouseClick(question->button(QMessageBox::Yes), Qt::LeftButton);
    });
    page_->press("buttonSave");
    QTRY_VERIFY(!page_->isBusy());
    QCOMPARE(Page::content(name), tableOf(3));
}

void TestArchiveWidgetSave::refusesOwnFile()
{
    const QString own = makeDump(QStringLiteral("table.tpp"), 4, {1});
    load(own);
    page_->clickRow(1);
    const QString refused = QStringLiteral("Error|Destination file exists");
    QCOMPARE(failToSave(onStick(QStringLiteral("table")), dump), refused);
    // Another table, but the same index.
    QCOMPARE(failToSave(onStick(QStringLiteral("table.may")), dump), refused);
    // The same file by another way.
    QVERIFY(QFile::link(stick_->path(), Page::folder() + QStringLiteral("/link")));
    QCOMPARE(failToSave(Page::folder() + QStringLiteral("/link/table"), dump), refused);
    QCOMPARE(Page::content(own), tableOf(4));
    QCOMPARE(Page::content(ScanModel::indexFileOf(own)), indexOf(4));
    QCOMPARE(Page::content(savedPhoto(1)), photoOf(1));
    QCOMPARE(stickFiles(),
             (QStringList{QStringLiteral("table.tpp"), QStringLiteral("table.tpp.index")}));
    expectShown(1, 1, true);
    // And in the GUI thread.
    QCOMPARE(page_->page().saveTableToDatFile(own), QStringLiteral("Destination file exists"));
    QCOMPARE(page_->page().saveTableToCSVFile(own), QStringLiteral("Destination file exists"));
    QCOMPARE(Page::content(own), tableOf(4));
}

void TestArchiveWidgetSave::savesCsv()
{
    Scan awkward = passage(1);
    awkward.setNumber(QStringLiteral("A?1*;\""));
    awkward.setComment(QStringLiteral("a;b \"c\", d"));
    awkward.setAccessKey(QString());
    awkward.setIncoming(false);
    awkward.setInAccessList(false);
    Scan denied = passage(2);
    denied.setAccessGranted(false);
    denied.setComment(QStringLiteral("plain"));
    const QString name = source(0, {0});
    Page::write(name, tableOf({passage(0), awkward, denied}));
    load(name);
    save(onStick(QStringLiteral("list")), csv);
    const auto date = [](int n) {
        return passage(n).dateTime().toString(QStringLiteral("dd.MM.yyyy hh:mm:ss")).toLatin1();
    };
    QCOMPARE(Page::content(onStick(QStringLiteral("list.csv"))),
             "Date;Number;In access list;Access granted;Vask ID;Comment;Key\n" + date(0) +
                 ";A000BC77;1;1;1;\"Novak, flat 12\";00012345\n" + date(1) +
                 ";\"A?1*;\"\"\";0;0;1;\"a;b \"\"c\"\", d\";\n" + date(2) +
                 ";A002BC77;1;1;0;plain;00012345");
    // Neither index nor photos.
    QCOMPARE(stickFiles(), QStringList(QStringLiteral("list.csv")));
    QVERIFY(!QFile::exists(onStick(QStringLiteral("list.jpegdata"))));
    QCOMPARE(Settings::instance()->lastSavedArchiveFile(), stickFolder());
    QCOMPARE(page_->progress(), 100);
    // The ending says nothing when the filter says otherwise.
    save(onStick(QStringLiteral("list.tpp")), csv);
    QVERIFY(Page::content(onStick(QStringLiteral("list.tpp.csv"))).startsWith("Date;"));
}

void TestArchiveWidgetSave::savesEveryRowOfFilteredTable()
{
    load(source(6));
    QTest::mouseClick(page_->find<QCheckBox>("checkBoxFilter"), Qt::LeftButton, Qt::NoModifier,
                      QPoint(10, 10));
    QTest::keyClicks(page_->find<QLineEdit>("lineEditFilter"), QStringLiteral("A003BC77"));
    QCOMPARE(numbers(), QStringList(numberOf(3)));
    save(onStick(QStringLiteral("table")), dump);
    QCOMPARE(Page::content(onStick(QStringLiteral("table.tpp"))), tableOf(6));
    save(onStick(QStringLiteral("table")), csv);
    QCOMPARE(Page::content(onStick(QStringLiteral("table.csv"))).count('\n'), 6);
    QCOMPARE(numbers(), QStringList(numberOf(3)));
}

void TestArchiveWidgetSave::reportsFailure_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QByteArray>("filter");
    for (const char *filter : {dump, csv}) {
        for (const char *folder : {"/proc", "/no such folder"}) {
            QTest::addRow("%s, %s", filter, folder)
                << QString::fromLatin1(folder) << QByteArray(filter);
        }
    }
}

void TestArchiveWidgetSave::reportsFailure()
{
    QFETCH(QString, folder);
    QFETCH(QByteArray, filter);
    load(source(2));
    const QString before = Settings::instance()->lastSavedArchiveFile();
    const QString shown = failToSave(folder + QStringLiteral("/table"), filter.constData());
    QVERIFY2(shown.startsWith(QLatin1String("Error|")) && shown.size() > 6, qPrintable(shown));
    QVERIFY2(!shown.contains(QLatin1String("Unknown error")), qPrintable(shown));
    QCOMPARE(Settings::instance()->lastSavedArchiveFile(), before);
    QCOMPARE(numbers(), numbersOf(2));
    QVERIFY(page_->find<QPushButton>("buttonSave")->isEnabled());
}

void TestArchiveWidgetSave::reportsFullStick_data()
{
    QTest::addColumn<QByteArray>("filter");
    QTest::addColumn<int>("rows");
    QTest::addColumn<int>("limit");

    QTest::newRow("dump, no byte") << QByteArray(dump) << 5 << 0;
    QTest::newRow("dump, in a record") << QByteArray(dump) << 5 << 300;
    QTest::newRow("dump, last byte") << QByteArray(dump) << 5 << 5 * 116 - 1;
    QTest::newRow("large dump") << QByteArray(dump) << 800 << 70000;
    QTest::newRow("csv, no byte") << QByteArray(csv) << 5 << 0;
    QTest::newRow("csv, in a line") << QByteArray(csv) << 5 << 200;
    QTest::newRow("large csv, in a later piece") << QByteArray(csv) << 2000 << 80000;
}

void TestArchiveWidgetSave::reportsFullStick()
{
    QFETCH(QByteArray, filter);
    QFETCH(int, rows);
    QFETCH(int, limit);
    load(source(rows));
    QString shown;
    {
        const FileLimit full(static_cast<rlim_t>(limit));
        shown = failToSave(onStick(QStringLiteral("table")), filter.constData());
    }
    QCOMPARE(shown, QStringLiteral("Error|File too large"));
    QCOMPARE(stickFiles(), QStringList());
    QCOMPARE(page_->rows(), rows);
    // With space again it fits.
    save(onStick(QStringLiteral("table")), filter.constData());
    QVERIFY(!stickFiles().isEmpty());
}

void TestArchiveWidgetSave::keepsOldDumpOnFullStick()
{
    load(source(5, {1}));
    Page::write(onStick(QStringLiteral("table.tpp")), "old table");
    Page::write(onStick(QStringLiteral("table.tpp.index")), "old index");
    makePhotos(onStick(QStringLiteral("table.tpp")), {});
    Page::write(savedPhoto(1), "old photo");
    {
        const FileLimit full(100);
        QCOMPARE(failToSave(onStick(QStringLiteral("table")), dump),
                 QStringLiteral("Error|File too large"));
    }
    QCOMPARE(Page::content(onStick(QStringLiteral("table.tpp"))), QByteArray("old table"));
    QCOMPARE(Page::content(onStick(QStringLiteral("table.tpp.index"))), QByteArray("old index"));
    QCOMPARE(Page::content(savedPhoto(1)), QByteArray("old photo"));
    QCOMPARE(stickFiles().size(), 2);
}

void TestArchiveWidgetSave::reportsPhotosThatDoNotFit()
{
    const QString name = source(3, {1});
    const QString photos = Page::folder() + QStringLiteral("/source.jpegdata/");
    Page::write(photos + photoName(0), QByteArray(300000, 'p'));
    Page::write(photos + photoName(2), QByteArray(300000, 'p'));
    load(name);
    QString shown;
    {
        const FileLimit full(100000);
        shown = failToSave(onStick(QStringLiteral("table")), dump);
    }
    // A line for each.
    QVERIFY2(shown.startsWith(QLatin1String("Error|")), qPrintable(shown));
    const QStringList lines = shown.mid(6).split(QLatin1Char('\n'));
    QCOMPARE(lines.size(), 2);
    QVERIFY2(!lines.at(0).isEmpty() && lines.at(0) == lines.at(1), qPrintable(shown));
    QCOMPARE(Page::content(onStick(QStringLiteral("table.tpp"))), tableOf(3));
    QCOMPARE(filesIn(onStick(QStringLiteral("table.jpegdata"))), QStringList(photoName(1)));
    QCOMPARE(Page::content(savedPhoto(1)), photoOf(1));
    // The dump was written, so its folder counts as the last.
    QCOMPARE(Settings::instance()->lastSavedArchiveFile(), stickFolder());
}

void TestArchiveWidgetSave::reportsPhotoThatCannotBeReplaced()
{
    load(source(4, {0, 1, 3}));
    QVERIFY(QDir().mkpath(savedPhoto(1)));
    const QString shown = failToSave(onStick(QStringLiteral("table")), dump);
    QVERIFY2(shown.startsWith(QLatin1String("Error|")) && shown.size() > 6, qPrintable(shown));
    QVERIFY2(!shown.contains(QLatin1Char('\n')), qPrintable(shown));
    QVERIFY2(!shown.contains(QLatin1String("Unknown error")), qPrintable(shown));
    QCOMPARE(Page::content(savedPhoto(0)), photoOf(0));
    QCOMPARE(Page::content(savedPhoto(3)), photoOf(3));
    QVERIFY(QFileInfo(savedPhoto(1)).isDir());
}

void TestArchiveWidgetSave::reportsPhotoFolderThatCannotBe()
{
    load(source(2, {1}));
    Page::write(onStick(QStringLiteral("table.jpegdata")), "in the way");
    QCOMPARE(failToSave(onStick(QStringLiteral("table")), dump),
             QStringLiteral("Error|Can't create dir"));
    QCOMPARE(Page::content(onStick(QStringLiteral("table.tpp"))), tableOf(2));
    QCOMPARE(Page::content(onStick(QStringLiteral("table.tpp.index"))), indexOf(2));
    QCOMPARE(Page::content(onStick(QStringLiteral("table.jpegdata"))), QByteArray("in the way"));
}

void TestArchiveWidgetSave::savesInGuiThread()
{
    load(source(3, {2}));
    ArchiveWidget &page = page_->page();
    QCOMPARE(page.saveTableToDatFile(onStick(QStringLiteral("table.tpp"))), QString());
    QCOMPARE(Page::content(onStick(QStringLiteral("table.tpp"))), tableOf(3));
    QCOMPARE(Page::content(savedPhoto(2)), photoOf(2));
    QCOMPARE(page.saveTableToCSVFile(onStick(QStringLiteral("table.csv"))), QString());
    QCOMPARE(Page::content(onStick(QStringLiteral("table.csv"))).count('\n'), 3);
    // The table of the moment, whatever a job had before.
    load(makeDump(QStringLiteral("other.tpp"), 1, {}, 7));
    QCOMPARE(page.saveTableToDatFile(onStick(QStringLiteral("table.tpp"))), QString());
    QCOMPARE(Page::content(onStick(QStringLiteral("table.tpp"))), tableOf(1, 7));
    // A finished notification of no job is nobody's.
    page.threadFinished();
    QVERIFY(!page_->isBusy());
}

STALLO_TEST_MAIN(TestArchiveWidgetSave)
#include "tst_archivewidgetsave.moc"
