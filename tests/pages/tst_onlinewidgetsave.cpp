// SPDX-License-Identifier: MIT
#include "app/settings.h"
#include "records/csv.h"
#include "records/vasksettings.h"
#include "tests/support/filelimit.h"
#include "tests/support/onlinepage.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QFileDialog>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTranslator>

namespace
{

using Page = OnlinePage;

const char *const dump = "Dump";
const char *const csv = "Comma";

// A catalogue that knows one text.
class OneText : public QTranslator
{
public:
    OneText(const char *source, const char *translated)
        : source_(source)
        , translated_(QString::fromLatin1(translated))
    {
    }
    bool isEmpty() const override { return false; }
    QString translate(const char *, const char *source, const char *, int) const override
    {
        return source_ == source ? translated_ : QString();
    }

private:
    QByteArray source_;
    QString translated_;
};

} // namespace

// Saving the live table, through the page's buttons and the real file dialog.
class TestOnLineWidgetSave : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        Page::prepare();
        stick_ = std::make_unique<QTemporaryDir>();
        page_ = std::make_unique<Page>();
        page_->page().selectDevice(Page::nowhere());
    }
    void cleanup()
    {
        const QStringList unexpected = page_->answers().unexpected();
        const int left = page_->answers().left();
        page_.reset();
        stick_.reset();
        QCOMPARE(unexpected, QStringList());
        QCOMPARE(left, 0);
    }

    void offersNamesAndFilters();
    void changesNothingWhenCancelled();
    void savesDump_data();
    void savesDump();
    void replacesDump();
    void replacesDumpAfterQuestion();
    void copiesPhotos();
    void savesCsv();
    void savesRowsOfTheMoment();
    void refusesOwnFile();
    void showsDeviceErrorAsItIs();
    void reportsFailure_data();
    void reportsFailure();
    void reportsFullStick_data();
    void reportsFullStick();
    void keepsOldDumpOnFullStick();
    void reportsPhotosThatDoNotFit();
    void reportsPhotoFolderThatCannotBe();
    void savesInGuiThread();

private:
    QString onStick(const QString &name) const { return stick_->filePath(name); }
    QStringList stickFiles() const
    {
        return QDir(stick_->path()).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }
    void fill(int rows)
    {
        for (const OnLine &record : Page::records(rows)) {
            page_->tellPassage(record, Page::nowhere());
        }
    }
    // Presses Save, answers the file dialog, and waits until the table is back on view.
    void save(const QString &name, const char *filter)
    {
        page_->answers().expect(ModalAnswers::savingAs(name, QString::fromLatin1(filter)));
        page_->press("buttonSave");
        QVERIFY(page_->isBusy());
        QTRY_VERIFY(!page_->isBusy());
    }
    // The same, when it goes wrong.
    QString failToSave(const QString &name, const char *filter)
    {
        QString title;
        QString text;
        page_->answers().expect(ModalAnswers::savingAs(name, QString::fromLatin1(filter)));
        page_->answers().expect([&](QWidget *window) {
            busyBehindError_ = page_->isBusy();
            ModalAnswers::reading(&title, &text)(window);
        });
        page_->press("buttonSave");
        [&] { QTRY_COMPARE(page_->answers().left(), 0); }();
        [&] { QTRY_VERIFY(QApplication::activeModalWidget() == nullptr); }();
        return title + QLatin1Char('|') + text;
    }
    static QString asBusy(const QString &text)
    {
        return QStringLiteral("Error|Vask is busy now. Please try again later.\n") + text;
    }

    std::unique_ptr<QTemporaryDir> stick_;
    std::unique_ptr<Page> page_;
    bool busyBehindError_ = false;
};

void TestOnLineWidgetSave::offersNamesAndFilters()
{
    fill(1);
    Settings::instance()->setLastSavedOnLineFile(stick_->path());
    page_->answers().expect([this](QWidget *window) {
        auto *dialog = qobject_cast<QFileDialog *>(window);
        QVERIFY(dialog != nullptr);
        QCOMPARE(dialog->windowTitle(), QStringLiteral("Save on-line table to file"));
        QCOMPARE(dialog->nameFilters(),
                 (QStringList{QStringLiteral("Comma separated values file (*.csv)"),
                              QStringLiteral("Dump file (*.tpp)")}));
        QCOMPARE(dialog->directory().absolutePath(), QDir(stick_->path()).absolutePath());
        ModalAnswers::cancelling()(window);
    });
    page_->press("buttonSave");
    QCOMPARE(page_->answers().given(), 1);
}

void TestOnLineWidgetSave::changesNothingWhenCancelled()
{
    fill(2);
    const QString before = Settings::instance()->lastSavedOnLineFile();
    page_->answers().expect(ModalAnswers::cancelling());
    page_->press("buttonSave");
    QVERIFY(!page_->isBusy());
    QCOMPARE(Settings::instance()->lastSavedOnLineFile(), before);
    QCOMPARE(page_->rows(), 2);
}

void TestOnLineWidgetSave::savesDump_data()
{
    QTest::addColumn<QString>("chosen");
    QTest::addColumn<QStringList>("files");

    const auto row = [](const char *chosen, const char *table, const char *index) {
        QTest::newRow(chosen) << QString::fromLatin1(chosen)
                              << QStringList{QString::fromLatin1(table),
                                             QString::fromLatin1(index)};
    };
    row("table", "table.tpp", "table.tpp.index");
    row("table.tpp", "table.tpp", "table.tpp.index");
    row("table.TPP", "table.TPP.tpp", "table.tpp.index");
    row("may.2026", "may.2026.tpp", "may.tpp.index");
    row("with blank", "with blank.tpp", "with blank.tpp.index");
}

void TestOnLineWidgetSave::savesDump()
{
    QFETCH(QString, chosen);
    QFETCH(QStringList, files);
    fill(5);
    save(onStick(chosen), dump);
    QCOMPARE(Page::content(onStick(files.at(0))), Page::tableOf(Page::records(5)));
    QCOMPARE(Page::content(onStick(files.at(1))),
             Page::indexOf({QStringLiteral("gate")}).repeated(5));
    files.sort();
    QCOMPARE(stickFiles(), files);
    QVERIFY(QFileInfo(onStick(QStringLiteral("jpegdata"))).isDir());
    QCOMPARE(Settings::instance()->lastSavedOnLineFile(),
             QFileInfo(stick_->path()).absoluteFilePath());
    QCOMPARE(page_->rows(), 5);
    QVERIFY(page_->button("buttonSave")->isEnabled());
}

void TestOnLineWidgetSave::replacesDump()
{
    fill(3);
    Page::write(onStick(QStringLiteral("table.tpp")), QByteArray(5000, 'x'));
    Page::write(onStick(QStringLiteral("table.tpp.index")), QByteArray(5000, 'x'));
    save(onStick(QStringLiteral("table")), dump);
    QCOMPARE(Page::content(onStick(QStringLiteral("table.tpp"))), Page::tableOf(Page::records(3)));
    QCOMPARE(Page::content(onStick(QStringLiteral("table.tpp.index"))).size(), 3 * 32);
}

void TestOnLineWidgetSave::replacesDumpAfterQuestion()
{
    fill(3);
    const QString name = onStick(QStringLiteral("table.tpp"));
    Page::write(name, QByteArray(5000, 'x'));
    page_->answers().expect(ModalAnswers::savingAs(name, QString::fromLatin1(dump)));
    page_->answers().expect([](QWidget *window) {
        auto *question = qobject_cast<QMessageBox *>(window);
        QVERIFY(question != nullptr);
        QTest::mouseClick(question->button(QMessageBox::Yes), Qt::LeftButton);
    });
    page_->press("buttonSave");
    QTRY_COMPARE(Page::content(name), Page::tableOf(Page::records(3)));
    QTRY_VERIFY(!page_->isBusy());
}

void TestOnLineWidgetSave::copiesPhotos()
{
    fill(4);
    for (const int n : {0, 2}) {
        Page::write(Page::pictureFile(Page::record(n)), "photo " + QByteArray::number(n));
    }
    Page::write(Page::folder() + QStringLiteral("/jpegdata/stranger.jpeg"), "of no row");
    const QString there = onStick(QStringLiteral("jpegdata/"));
    QVERIFY(QDir().mkpath(there));
    const auto photo = [&there](int n) {
        return there + VaskSettings::picFileName(Page::record(n));
    };
    Page::write(photo(2), "an older one, and longer");
    save(onStick(QStringLiteral("table")), dump);
    QCOMPARE(Page::content(photo(0)), QByteArray("photo 0"));
    QCOMPARE(Page::content(photo(2)), QByteArray("photo 2"));
    QCOMPARE(QDir(there).entryList(QDir::Files).size(), 2);
}

void TestOnLineWidgetSave::savesCsv()
{
    OnLine awkward = Page::record(1);
    awkward.setNumber(QStringLiteral("A?1*;\""));
    awkward.setComment(QStringLiteral("a;b \"c\", d"));
    awkward.setAccessKey(QString());
    awkward.setIncoming(false);
    awkward.setInAccessList(false);
    OnLine denied = Page::record(2);
    denied.setAccessGranted(false);
    page_->tellPassage(awkward, Page::nowhere());
    page_->tellPassage(denied, Page::nowhere());
    Page::write(Page::pictureFile(denied), "photo");
    save(onStick(QStringLiteral("list")), csv);
    const auto date = [](const OnLine &record) {
        return record.dateTime().toString(CSV::dateFormat()).toLatin1();
    };
    QCOMPARE(Page::content(onStick(QStringLiteral("list.csv"))),
             "Date;Number;In access list;Access granted;Vask ID;Comment;Key\n" + date(awkward) +
                 ";A?1*;\";0;0;1;a;b \"c\", d;\n" + date(denied) +
                 ";A002BC77;1;1;0;Novak, flat 12;00012345");
    QCOMPARE(stickFiles(), QStringList(QStringLiteral("list.csv")));
    QVERIFY(!QFile::exists(onStick(QStringLiteral("jpegdata"))));
    QCOMPARE(Settings::instance()->lastSavedOnLineFile(),
             QFileInfo(stick_->path()).absoluteFilePath());
}

void TestOnLineWidgetSave::savesRowsOfTheMoment()
{
    for (int n = 0; n < 10; ++n) {
        page_->tellPassage(Page::record(n), Page::nowhere());
        const QString name = QStringLiteral("table%1").arg(n);
        page_->answers().expect(
            ModalAnswers::savingAs(onStick(name), QString::fromLatin1(n % 2 == 0 ? dump : csv)));
        page_->press("buttonSave");
        // Passages go on coming behind the busy face.
        QVERIFY(page_->isBusy());
        for (int late = 0; late < 20; ++late) {
            page_->tellPassage(Page::record(100 + late), Page::nowhere());
        }
        QTRY_VERIFY(!page_->isBusy());
        const int rows = 21 * n + 1;
        QCOMPARE(page_->rows(), rows + 20);
        if (n % 2 == 0) {
            QCOMPARE(Page::content(onStick(name + QStringLiteral(".tpp"))),
                     Page::tableBytes().left(rows * 116));
            QCOMPARE(Page::content(onStick(name + QStringLiteral(".tpp.index"))).size(), rows * 32);
        } else {
            QCOMPARE(Page::content(onStick(name + QStringLiteral(".csv"))).count('\n'), rows);
        }
    }
}

void TestOnLineWidgetSave::refusesOwnFile()
{
    fill(2);
    const QByteArray table = Page::tableBytes();
    const QByteArray index = Page::indexBytes();
    const QString own = Page::folder() + QStringLiteral("/tmponline");
    const QString refused = asBusy(QStringLiteral("Destination file exists"));
    QCOMPARE(failToSave(own, dump), refused);
    // Another table, but the same index.
    QCOMPARE(failToSave(own + QStringLiteral(".may"), dump), refused);
    // The same file by another way.
    QVERIFY(QFile::link(Page::folder(), onStick(QStringLiteral("link"))));
    QCOMPARE(failToSave(onStick(QStringLiteral("link/tmponline")), dump), refused);
    QCOMPARE(Page::tableBytes(), table);
    QCOMPARE(Page::indexBytes(), index);
    QVERIFY(!QFile::exists(own + QStringLiteral(".may.tpp")));
    QVERIFY(!busyBehindError_);
    page_->tellPassage(Page::record(2), Page::nowhere());
    QCOMPARE(Page::tableBytes(), Page::tableOf(Page::records(3)));
}

void TestOnLineWidgetSave::showsDeviceErrorAsItIs()
{
    fill(1);
    OneText catalogue("Destination file exists", "Error=Not there");
    QVERIFY(QCoreApplication::installTranslator(&catalogue));
    const QString shown = failToSave(Page::folder() + QStringLiteral("/tmponline"), dump);
    QCoreApplication::removeTranslator(&catalogue);
    QCOMPARE(shown, QStringLiteral("Error|Error=Not there"));
}

void TestOnLineWidgetSave::reportsFailure_data()
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

void TestOnLineWidgetSave::reportsFailure()
{
    QFETCH(QString, folder);
    QFETCH(QByteArray, filter);
    fill(2);
    const QString before = Settings::instance()->lastSavedOnLineFile();
    const QString shown = failToSave(folder + QStringLiteral("/table"), filter.constData());
    QVERIFY2(shown.startsWith(asBusy(QString())), qPrintable(shown));
    QVERIFY2(shown.size() > asBusy(QString()).size(), qPrintable(shown));
    QVERIFY2(!shown.contains(QLatin1String("Unknown error")), qPrintable(shown));
    QCOMPARE(Settings::instance()->lastSavedOnLineFile(), before);
    QVERIFY(!page_->isBusy());
    QVERIFY(page_->button("buttonSave")->isEnabled());
}

void TestOnLineWidgetSave::reportsFullStick_data()
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
    QTest::newRow("large csv, in the first piece") << QByteArray(csv) << 800 << 10000;
    QTest::newRow("large csv, in a later piece") << QByteArray(csv) << 800 << 20000;
}

void TestOnLineWidgetSave::reportsFullStick()
{
    QFETCH(QByteArray, filter);
    QFETCH(int, rows);
    QFETCH(int, limit);
    fill(rows);
    QString shown;
    {
        const FileLimit full(static_cast<rlim_t>(limit));
        shown = failToSave(onStick(QStringLiteral("table")), filter.constData());
    }
    QCOMPARE(shown, asBusy(QStringLiteral("File too large")));
    QCOMPARE(stickFiles(), QStringList());
    QVERIFY(!page_->isBusy());
    // With space again it fits.
    save(onStick(QStringLiteral("table")), filter.constData());
    QVERIFY(!stickFiles().isEmpty());
}

void TestOnLineWidgetSave::keepsOldDumpOnFullStick()
{
    fill(5);
    Page::write(onStick(QStringLiteral("table.tpp")), "old table");
    Page::write(onStick(QStringLiteral("table.tpp.index")), "old index");
    {
        const FileLimit full(100);
        failToSave(onStick(QStringLiteral("table")), dump);
    }
    QCOMPARE(Page::content(onStick(QStringLiteral("table.tpp"))), QByteArray("old table"));
    QCOMPARE(Page::content(onStick(QStringLiteral("table.tpp.index"))), QByteArray("old index"));
}

void TestOnLineWidgetSave::reportsPhotosThatDoNotFit()
{
    fill(3);
    Page::write(Page::pictureFile(Page::record(0)), QByteArray(300000, 'p'));
    Page::write(Page::pictureFile(Page::record(1)), "small");
    Page::write(Page::pictureFile(Page::record(2)), QByteArray(300000, 'p'));
    QString shown;
    {
        const FileLimit full(100000);
        shown = failToSave(onStick(QStringLiteral("table")), dump);
    }
    // One line for each.
    QVERIFY2(shown.startsWith(asBusy(QString())), qPrintable(shown));
    QCOMPARE(shown.count(QLatin1Char('\n')), 2);
    QCOMPARE(Page::content(onStick(QStringLiteral("table.tpp"))), Page::tableOf(Page::records(3)));
    QCOMPARE(QDir(onStick(QStringLiteral("jpegdata"))).entryList(QDir::Files | QDir::Hidden),
             QStringList(VaskSettings::picFileName(Page::record(1))));
}

void TestOnLineWidgetSave::reportsPhotoFolderThatCannotBe()
{
    fill(1);
    Page::write(onStick(QStringLiteral("jpegdata")), "in the way");
    QCOMPARE(failToSave(onStick(QStringLiteral("table")), dump),
             asBusy(QStringLiteral("Can't create dir")));
    QCOMPARE(Page::content(onStick(QStringLiteral("table.tpp"))), Page::tableOf(Page::records(1)));
    // One that a photo's name is taken in by a folder is told, and the others are copied.
    QVERIFY(QFile::remove(onStick(QStringLiteral("jpegdata"))));
    page_->tellPassage(Page::record(1), Page::nowhere());
    Page::write(Page::pictureFile(Page::record(0)), "photo");
    Page::write(Page::pictureFile(Page::record(1)), "photo");
    const QString there = onStick(QStringLiteral("jpegdata/"));
    QVERIFY(QDir().mkpath(there + VaskSettings::picFileName(Page::record(0))));
    const QString shown = failToSave(onStick(QStringLiteral("table")), dump);
    QVERIFY2(shown.startsWith(asBusy(QString())), qPrintable(shown));
    QCOMPARE(Page::content(there + VaskSettings::picFileName(Page::record(1))),
             QByteArray("photo"));
}

void TestOnLineWidgetSave::savesInGuiThread()
{
    fill(3);
    OnLineWidget &page = page_->page();
    QCOMPARE(page.saveTableToDatFile(onStick(QStringLiteral("a.tpp"))), QString());
    QCOMPARE(Page::content(onStick(QStringLiteral("a.tpp"))), Page::tableOf(Page::records(3)));
    QCOMPARE(page.saveTableToCSVFile(onStick(QStringLiteral("a.csv"))), QString());
    QCOMPARE(Page::content(onStick(QStringLiteral("a.csv"))).count('\n'), 3);
    QCOMPARE(page.createPhotoDirs(onStick(QStringLiteral("missing"))),
             QStringLiteral("Can't create dir"));
    QCOMPARE(page.copyPhotos(onStick(QStringLiteral("missing"))),
             QStringLiteral("Can't create dir"));
    // A finished notification of no save is nobody's.
    page.threadFinished();
    QVERIFY(!page_->isBusy());
}

STALLO_TEST_MAIN(TestOnLineWidgetSave)
#include "tst_onlinewidgetsave.moc"
