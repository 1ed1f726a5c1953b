// SPDX-License-Identifier: MIT
#include "tests/pages/archivefilescase.h"

#include "pages/archiveintervaldialog.h"
#include "tests/support/filelimit.h"

#include <QCheckBox>
#include <QRadioButton>
#include <QSignalSpy>

Q_DECLARE_METATYPE(Scan)

// The table on view and the passage that is chosen in it.
class TestArchiveWidgetView : public ArchiveFilesCase
{
    Q_OBJECT

private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void beginsEmpty();
    void showsDetails_data();
    void showsDetails();
    void showsPlaceholderWithoutPhoto();
    void followsEveryWayOfChoosing();
    void clearsViewWithoutRow();
    void keepsChoiceOverReset();
    void keepsChoiceWhenSameFileIsBound();
    void showsRowAnewAfterReset();
    void forgetsChoiceWhenOtherFileIsBound();
    void forgetsChoiceWhenCsvReplacesArchive();
    void forgetsRowThatIsGone();
    void emptiesTable();

    void asksForNameOfPhoto();
    void savesPhoto();
    void reportsPhotoFailure();
    void refusesPhotoOverItself();

private:
    void loadPassages(const QVector<Scan> &passages)
    {
        const QString name = onStick(QStringLiteral("table.tpp"));
        Page::write(name, tableOf(passages));
        load(name);
    }
    ScanModel *model() const { return page_->page().findChild<ScanModel *>(); }
    QString savePhotoAs(const QString &name)
    {
        page_->answers().expect(ModalAnswers::savingAs(name));
        return errorAfter("buttonSavePhoto");
    }
};

void TestArchiveWidgetView::beginsEmpty()
{
    QCOMPARE(page_->rows(), 0);
    QStringList titles;
    for (int each = 0; each < page_->table()->model()->columnCount(); ++each) {
        titles << page_->table()->model()->headerData(each, Qt::Horizontal).toString();
    }
    QCOMPARE(titles.join(QLatin1Char(';')),
             QStringLiteral("Date;Number;In access list;Access granted;Vask ID;Comment;Key"));
    expectNothingShown();
    QCOMPARE(page_->photo()->emptyText(), QStringLiteral("No Photo"));
    QVERIFY(!page_->isBusy());
    QVERIFY(!page_->find<QPushButton>("buttonSave")->isEnabled());
    for (const char *name : {"buttonNewTable", "buttonLoadFromNetwork", "buttonLoad"}) {
        QVERIFY2(page_->find<QPushButton>(name)->isEnabled(), name);
    }
    QVERIFY(!page_->find<QCheckBox>("checkBoxFilter")->isChecked());
    QVERIFY(!typed()->isEnabled());
    QVERIFY(page_->find<QRadioButton>("radioButtonFull")->isChecked());
    // Nothing to do without a row.
    page_->page().savePhoto();
    page_->page().addToSuffered();
    page_->page().modelDataChanged();
    QCOMPARE(page_->answers().given(), 0);
}

void TestArchiveWidgetView::showsDetails_data()
{
    QTest::addColumn<Scan>("scan");
    QTest::addColumn<QStringList>("lines");

    const auto row = [](const char *name, const Scan &scan, const QStringList &lines) {
        QTest::newRow(name) << scan << lines;
    };
    Scan plain;
    plain.setDateTime(QDateTime(QDate(2026, 1, 2), QTime(3, 4, 5)));
    plain.setNumber(QStringLiteral("A001BC77"));
    plain.setAccessGranted(true);
    plain.setInAccessList(true);
    plain.setAccessKey(QStringLiteral("00012345"));
    plain.setComment(QStringLiteral("Novak; flat 12"));
    QStringList lines = {QStringLiteral("Number: A001BC77"),
                         QStringLiteral("Date: 03:04:05 02.01.2026"),
                         QStringLiteral("The thoroughfare is granted"),
                         QStringLiteral("The number is registered"),
                         QStringLiteral("Access: granted automatically"),
                         QStringLiteral("Access key: 00012345"),
                         QStringLiteral("Comment: Novak; flat 12")};
    row("plain", plain, lines);

    Scan byCard = plain;
    byCard.setNumber(QStringLiteral("O000OO00"));
    byCard.setInAccessList(false);
    lines[0] = QStringLiteral("Number: O000OO00");
    lines[3] = QStringLiteral("The number is not registered");
    lines[4] = QStringLiteral("Access: granted by card");
    row("by card", byCard, lines);

    Scan byHand = byCard;
    byHand.setAccessKey(QString());
    lines[4] = QStringLiteral("Access: granted manually");
    lines[5] = QStringLiteral("Access key: ");
    row("by hand", byHand, lines);

    Scan unreadable = byHand;
    unreadable.setNumber(QStringLiteral("A?1*BC77"));
    unreadable.setAccessGranted(false);
    unreadable.setComment(QString());
    lines[0] = QStringLiteral("Number: A#1#BC77");
    lines[2] = QStringLiteral("The thoroughfare is not granted");
    lines[4] = QStringLiteral("Access: granted automatically");
    lines[6] = QStringLiteral("Comment: ");
    row("not readable", unreadable, lines);
}

void TestArchiveWidgetView::showsDetails()
{
    QFETCH(Scan, scan);
    QFETCH(QStringList, lines);
    const QString folder = onStick(QStringLiteral("table.jpegdata/"));
    QVERIFY(QDir().mkpath(folder));
    Page::write(folder + VaskSettings::picFileName(scan), OnlinePage::jpeg(77, 30));
    loadPassages({passage(9), scan});
    page_->clickRow(1);
    QCOMPARE(page_->photo()->lines(), lines);
    QCOMPARE(shownPhoto(), 77);
    QVERIFY(canSavePhoto());
}

void TestArchiveWidgetView::showsPlaceholderWithoutPhoto()
{
    // Not in its folder, but in others.
    const QString name = makeDump(QStringLiteral("table.tpp"), 3, {2});
    makePhotos(onStick(QStringLiteral("other.tpp")), {1});
    makePhotos(Page::recordFile(), {1});
    Page::write(onStick(photoName(1)), photoOf(1));
    load(name);
    page_->clickRow(1);
    expectShown(1, 1, false);
    QCOMPARE(page_->photo()->lines().size(), 7);
    QCOMPARE(page_->photo()->accessibleName(), QStringLiteral("No Photo"));
    // A file that is there, but is no picture, can be saved nevertheless.
    Page::write(onStick(QStringLiteral("table.jpegdata/") + photoName(1)), "no picture");
    page_->clickRow(2);
    expectShown(2, 2, true);
    page_->clickRow(1);
    QCOMPARE(shownPhoto(), 0);
    QVERIFY(canSavePhoto());
}

void TestArchiveWidgetView::followsEveryWayOfChoosing()
{
    load(makeDump(QStringLiteral("table.tpp"), 5, {1, 2}));
    page_->clickRow(1);
    expectShown(1, 1, true);
    QTest::keyClick(page_->table(), Qt::Key_Down);
    expectShown(2, 2, true);
    QTest::keyClick(page_->table(), Qt::Key_Down);
    expectShown(3, 3, false);
    page_->page().showRecord(page_->table()->model()->index(0, ScanModel::KeyColumn));
    expectShown(0, 0, false);
    // Read anew when it is chosen once more.
    makePhotos(onStick(QStringLiteral("table.tpp")), {0});
    page_->clickRow(0);
    expectShown(0, 0, true);
    QVERIFY(QFile::remove(onStick(QStringLiteral("table.jpegdata/") + photoName(0))));
    QTest::keyClick(page_->table(), Qt::Key_Enter);
    expectShown(0, 0, false);
}

void TestArchiveWidgetView::clearsViewWithoutRow()
{
    load(makeDump(QStringLiteral("table.tpp"), 2, {0, 1}));
    page_->clickRow(1);
    expectShown(1, 1, true);
    page_->page().showRecord(QModelIndex());
    expectNothingShown();
    page_->clickRow(1);
    expectShown(1, 1, true);
}

void TestArchiveWidgetView::keepsChoiceOverReset()
{
    const QString name = makeDump(QStringLiteral("table.tpp"), 5, {1, 3});
    load(name);
    page_->clickRow(3);
    QSignalSpy resets(model(), &ScanModel::modelReset);
    model()->setFileName(name);
    QVERIFY(!resets.isEmpty());
    QCOMPARE(page_->currentRow(), 3);
    expectShown(3, 3, true);
    // Also where the filter shows it in another row.
    choose("checkBoxFilter");
    type(QStringLiteral("A003"));
    expectShown(0, 3, true);
    model()->setFileName(name);
    expectShown(0, 3, true);
}

void TestArchiveWidgetView::keepsChoiceWhenSameFileIsBound()
{
    const QString name = makeDump(QStringLiteral("table.tpp"), 5, {1, 3});
    load(name);
    page_->clickRow(3);
    page_->page().setTable(name);
    expectShown(3, 3, true);
    load(name);
    expectShown(3, 3, true);
    // As a job does it around what it changes.
    page_->page().setTable(QString());
    expectNothingShown();
    page_->page().setTable(name);
    expectShown(3, 3, true);
    choose("checkBoxFilter");
    type(QStringLiteral("A003"));
    load(name);
    expectShown(0, 3, true);
}

void TestArchiveWidgetView::showsRowAnewAfterReset()
{
    const QString name = makeDump(QStringLiteral("table.tpp"), 5, {1, 20});
    load(name);
    page_->clickRow(1);
    expectShown(1, 1, true);
    Page::write(name, tableOf(1) + tableOf(4, 20));
    page_->page().modelDataChanged();
    expectShown(1, 20, true);
}

void TestArchiveWidgetView::forgetsChoiceWhenOtherFileIsBound()
{
    load(makeDump(QStringLiteral("table.tpp"), 5, {1, 3}));
    page_->clickRow(3);
    // As long a table, with a photo in the same row.
    const QString other = makeDump(QStringLiteral("other.tpp"), 5, {21, 23}, 20);
    load(other);
    expectNothingShown();
    QCOMPARE(numbers(), numbersOf(5, 20));
    page_->clickRow(3);
    expectShown(3, 23, true);
    load(onStick(QStringLiteral("table.tpp")));
    expectNothingShown();
    page_->clickRow(1);
    page_->page().setTable(other);
    expectNothingShown();
    // Nor does it come back with a passage that is not chosen any more.
    page_->page().setTable(onStick(QStringLiteral("table.tpp")));
    expectNothingShown();
}

void TestArchiveWidgetView::forgetsChoiceWhenCsvReplacesArchive()
{
    Page::write(Page::recordFile(), tableOf(5));
    makePhotos(Page::recordFile(), {3});
    load(Page::recordFile());
    page_->clickRow(3);
    expectShown(3, 3, true);
    Page::write(onStick(QStringLiteral("list.csv")),
                "titles" + QByteArray("\n;B777BB77").repeated(5));
    load(onStick(QStringLiteral("list.csv")));
    QCOMPARE(page_->cell(3, ScanModel::NumberColumn), QStringLiteral("B777BB77"));
    QCOMPARE(shownPhoto(), 0);
    QVERIFY(!canSavePhoto());
    QCOMPARE(page_->currentRow(), -1);
    expectNothingShown();
}

void TestArchiveWidgetView::forgetsRowThatIsGone()
{
    const QString name = makeDump(QStringLiteral("table.tpp"), 5, {4});
    load(name);
    page_->clickRow(4);
    expectShown(4, 4, true);
    Page::write(name, tableOf(3));
    load(name);
    QCOMPARE(page_->rows(), 3);
    expectNothingShown();
}

void TestArchiveWidgetView::emptiesTable()
{
    Page::write(Page::recordFile(), tableOf(4));
    Page::write(Page::indexFile(), indexOf(4));
    makePhotos(Page::recordFile(), {1});
    load(Page::recordFile());
    page_->clickRow(1);
    auto *interval = page_->page().findChild<ArchiveIntervalDialog *>();
    const QDateTime past(QDate(2020, 5, 6), QTime(7, 8));
    interval->setFromTime(past);
    interval->setToTime(past.addDays(1));
    interval->findChild<QRadioButton *>(QStringLiteral("rbBySelection"))->setChecked(true);
    QCOMPARE(interval->fromTime(), past);
    QVERIFY(!interval->allArchive());

    page_->press("buttonNewTable");
    QCOMPARE(page_->rows(), 0);
    expectNothingShown();
    QVERIFY(!page_->isBusy());
    QVERIFY(!page_->find<QPushButton>("buttonSave")->isEnabled());
    QVERIFY(!QFile::exists(Page::recordFile()));
    QVERIFY(!QFile::exists(Page::indexFile()));
    QVERIFY(qAbs(interval->toTime().secsTo(QDateTime::currentDateTime())) < 3600);
    QCOMPARE(interval->fromTime(), interval->toTime().addDays(-1));
    QVERIFY(interval->allArchive());

    // A table from elsewhere stays on its disk, and what was chosen in it is forgotten.
    const QString name = makeDump(QStringLiteral("table.tpp"), 3, {1});
    load(name);
    page_->clickRow(1);
    page_->press("buttonNewTable");
    QCOMPARE(page_->rows(), 0);
    expectNothingShown();
    QCOMPARE(Page::content(name), tableOf(3));
    QCOMPARE(Page::content(ScanModel::indexFileOf(name)), indexOf(3));
    load(name);
    QCOMPARE(page_->rows(), 3);
    expectNothingShown();
}

void TestArchiveWidgetView::asksForNameOfPhoto()
{
    load(makeDump(QStringLiteral("table.tpp"), 2, {1}));
    page_->clickRow(1);
    Settings::instance()->setLastSavedPhoto(Page::folder());
    page_->answers().expect([](QWidget *window) {
        auto *dialog = qobject_cast<QFileDialog *>(window);
        QVERIFY(dialog != nullptr);
        QCOMPARE(dialog->acceptMode(), QFileDialog::AcceptSave);
        QCOMPARE(dialog->windowTitle(), QStringLiteral("Save photo to file"));
        QCOMPARE(dialog->nameFilters(), QStringList(QStringLiteral("Image file (*.jpeg)")));
        QCOMPARE(dialog->selectedFiles(),
                 QStringList(Page::folder() + QLatin1Char('/') + photoName(1)));
        ModalAnswers::cancelling()(window);
    });
    page_->press("buttonSavePhoto");
    QCOMPARE(page_->answers().left(), 0);
    QCOMPARE(filesIn(Page::folder()), QStringList());
}

void TestArchiveWidgetView::savesPhoto()
{
    load(makeDump(QStringLiteral("table.tpp"), 2, {1}));
    page_->clickRow(1);
    const QString folder = Page::folder();
    for (const char *name : {"photo", "other.jpeg", "third.jpg"}) {
        page_->answers().expect(
            ModalAnswers::savingAs(folder + QLatin1Char('/') + QLatin1String(name)));
        page_->press("buttonSavePhoto");
        QTRY_VERIFY(!page_->isBusy());
    }
    QCOMPARE(filesIn(folder),
             (QStringList{QStringLiteral("other.jpeg"), QStringLiteral("photo.jpeg"),
                          QStringLiteral("third.jpg.jpeg")}));
    QCOMPARE(Page::content(folder + QStringLiteral("/photo.jpeg")), photoOf(1));
    QCOMPARE(Page::content(folder + QStringLiteral("/other.jpeg")), photoOf(1));
    // Over an older one.
    Page::write(folder + QStringLiteral("/photo.jpeg"), QByteArray(9000, 'x'));
    page_->answers().expect(ModalAnswers::savingAs(folder + QStringLiteral("/photo")));
    page_->press("buttonSavePhoto");
    QTRY_VERIFY(!page_->isBusy());
    QCOMPARE(Page::content(folder + QStringLiteral("/photo.jpeg")), photoOf(1));
    expectShown(1, 1, true);
}

void TestArchiveWidgetView::reportsPhotoFailure()
{
    const QString name = makeDump(QStringLiteral("table.tpp"), 2, {1});
    const QString photo = onStick(QStringLiteral("table.jpegdata/") + photoName(1));
    Page::write(photo, QByteArray(300000, 'p'));
    load(name);
    page_->clickRow(1);
    const auto verify = [](const QString &shown) {
        QVERIFY2(shown.startsWith(QLatin1String("Error|")) && shown.size() > 6, qPrintable(shown));
        QVERIFY2(!shown.contains(QLatin1String("Unknown error")), qPrintable(shown));
    };
    {
        const FileLimit full(100000);
        verify(savePhotoAs(Page::folder() + QStringLiteral("/photo")));
    }
    QCOMPARE(filesIn(Page::folder()), QStringList());
    verify(savePhotoAs(QStringLiteral("/proc/photo")));
    // Gone since its row was shown.
    QVERIFY(QFile::remove(photo));
    verify(savePhotoAs(Page::folder() + QStringLiteral("/photo")));
    QCOMPARE(filesIn(Page::folder()), QStringList());
    QVERIFY(!page_->isBusy());
}

void TestArchiveWidgetView::refusesPhotoOverItself()
{
    load(makeDump(QStringLiteral("table.tpp"), 2, {1}));
    page_->clickRow(1);
    const QString photo = onStick(QStringLiteral("table.jpegdata/") + photoName(1));
    QCOMPARE(savePhotoAs(photo.chopped(5)), QStringLiteral("Error|Destination file exists"));
    QCOMPARE(Page::content(photo), photoOf(1));
}

STALLO_TEST_MAIN(TestArchiveWidgetView)
#include "tst_archivewidgetview.moc"
