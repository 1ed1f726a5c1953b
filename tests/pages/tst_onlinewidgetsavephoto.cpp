// SPDX-License-Identifier: MIT
#include "app/settings.h"
#include "records/vasksettings.h"
#include "tests/support/filelimit.h"
#include "tests/support/flushcalls.h"
#include "tests/support/onlinepage.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QFileDialog>
#include <QTemporaryDir>

#include <cstring>

namespace
{

using Page = OnlinePage;

} // namespace

// Saving one photo, through the page's button and the real file dialog.
class TestOnLineWidgetSavePhoto : public QObject
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

    void offersNameAndFilter();
    void savesPhoto();
    void savesPhotoOverItself();
    void reportsPhotoFailure();
    void savesNothingWithoutRow();
    void bringsPhotoOntoTheDisk();

private:
    QString onStick(const QString &name) const { return stick_->filePath(name); }
    QStringList stickFiles() const
    {
        return QDir(stick_->path()).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }
    void tell() { page_->tellPassage(Page::record(0), Page::nowhere()); }

    std::unique_ptr<QTemporaryDir> stick_;
    std::unique_ptr<Page> page_;
};

void TestOnLineWidgetSavePhoto::offersNameAndFilter()
{
    tell();
    Page::write(Page::pictureFile(Page::record(0)), Page::jpeg(40, 30));
    page_->clickRow(0);
    Settings::instance()->setLastSavedPhoto(stick_->path());
    page_->answers().expect([this](QWidget *window) {
        auto *dialog = qobject_cast<QFileDialog *>(window);
        QVERIFY(dialog != nullptr);
        QCOMPARE(dialog->windowTitle(), QStringLiteral("Save photo to file"));
        QCOMPARE(dialog->nameFilters(), QStringList(QStringLiteral("Image file (*.jpeg)")));
        QCOMPARE(dialog->selectedFiles(),
                 QStringList(onStick(VaskSettings::picFileName(Page::record(0)))));
        ModalAnswers::cancelling()(window);
    });
    page_->press("buttonSavePhoto");
    QCOMPARE(page_->answers().given(), 1);
}

void TestOnLineWidgetSavePhoto::savesPhoto()
{
    const OnLine record = Page::record(0);
    Page::write(Page::pictureFile(record), Page::jpeg(40, 30));
    tell();
    const QString before = Settings::instance()->lastSavedPhoto();
    for (const char *name : {"photo", "other.jpeg"}) {
        page_->answers().expect(ModalAnswers::savingAs(onStick(QString::fromLatin1(name))));
        page_->press("buttonSavePhoto");
        QTRY_VERIFY(!page_->isBusy());
    }
    QCOMPARE(stickFiles(),
             (QStringList{QStringLiteral("other.jpeg"), QStringLiteral("photo.jpeg")}));
    QCOMPARE(Page::content(onStick(QStringLiteral("photo.jpeg"))), Page::jpeg(40, 30));
    QCOMPARE(Page::content(onStick(QStringLiteral("other.jpeg"))), Page::jpeg(40, 30));
    QCOMPARE(Settings::instance()->lastSavedPhoto(), before);
    // Over an older one; the operator chose a name that was free before the ending was added.
    Page::write(onStick(QStringLiteral("photo.jpeg")), "old");
    page_->answers().expect(ModalAnswers::savingAs(onStick(QStringLiteral("photo"))));
    page_->press("buttonSavePhoto");
    QTRY_VERIFY(!page_->isBusy());
    QCOMPARE(Page::content(onStick(QStringLiteral("photo.jpeg"))), Page::jpeg(40, 30));
}

void TestOnLineWidgetSavePhoto::savesPhotoOverItself()
{
    const QString own = Page::pictureFile(Page::record(0));
    Page::write(own, Page::jpeg(40, 30));
    tell();
    QString title;
    QString text;
    page_->answers().expect(ModalAnswers::savingAs(own.chopped(5)));
    page_->answers().expect(ModalAnswers::reading(&title, &text));
    page_->press("buttonSavePhoto");
    QTRY_COMPARE(text, QStringLiteral("Destination file exists"));
    QCOMPARE(Page::content(own), Page::jpeg(40, 30));
}

void TestOnLineWidgetSavePhoto::reportsPhotoFailure()
{
    const QString source = Page::pictureFile(Page::record(0));
    Page::write(source, QByteArray(300000, 'p'));
    tell();
    const auto fail = [this](const QString &name) {
        QString title;
        QString text;
        page_->answers().expect(ModalAnswers::savingAs(name));
        page_->answers().expect(ModalAnswers::reading(&title, &text));
        page_->press("buttonSavePhoto");
        [&] { QTRY_COMPARE(page_->answers().left(), 0); }();
        return title + QLatin1Char('|') + text;
    };
    {
        const FileLimit full(100000);
        const QString shown = fail(onStick(QStringLiteral("photo")));
        QVERIFY2(shown.startsWith(QLatin1String("Error|")) && shown.size() > 6, qPrintable(shown));
    }
    QCOMPARE(stickFiles(), QStringList());
    QVERIFY(fail(QStringLiteral("/proc/photo")).startsWith(QLatin1String("Error|")));
    // Gone since its row was shown.
    QVERIFY(QFile::remove(source));
    QVERIFY(fail(onStick(QStringLiteral("photo"))).startsWith(QLatin1String("Error|")));
    QCOMPARE(stickFiles(), QStringList());
    QVERIFY(!page_->isBusy());
}

void TestOnLineWidgetSavePhoto::savesNothingWithoutRow()
{
    Page::write(Page::pictureFile(Page::record(0)), Page::jpeg(40, 30));
    tell();
    page_->page().showRecord(QModelIndex());
    page_->press("buttonSavePhoto");
    QCOMPARE(page_->answers().given(), 0);
    QVERIFY(!page_->isBusy());
}

void TestOnLineWidgetSavePhoto::bringsPhotoOntoTheDisk()
{
    Page::write(Page::pictureFile(Page::record(0)), Page::jpeg(40, 30));
    tell();
    {
        const FlushCalls disk;
        page_->answers().expect(ModalAnswers::savingAs(onStick(QStringLiteral("photo"))));
        page_->press("buttonSavePhoto");
        QTRY_VERIFY(!page_->isBusy());
        QCOMPARE(FlushCalls::names().size(), 2); // the file and its folder
    }
    const FlushCalls disk(FlushCalls::Fail::Folders);
    QString title;
    QString text;
    page_->answers().expect(ModalAnswers::savingAs(onStick(QStringLiteral("other"))));
    page_->answers().expect(ModalAnswers::reading(&title, &text));
    page_->press("buttonSavePhoto");
    QTRY_COMPARE(text, QString::fromLocal8Bit(std::strerror(EIO)));
    QCOMPARE(title, QStringLiteral("Error"));
}

STALLO_TEST_MAIN(TestOnLineWidgetSavePhoto)
#include "tst_onlinewidgetsavephoto.moc"
