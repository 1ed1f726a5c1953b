// SPDX-License-Identifier: MIT
#include "pages/proportionalsclalewidget.h"
#include "records/scanmodel.h"
#include "style/brelwindow.h"
#include "tests/endtoend/entryreceiver.h"
#include "tests/pages/archivecase.h"
#include "tests/support/onlinepage.h"
#include "tests/support/unreadable.h"

namespace
{

const QString unread = QStringLiteral("Can't read the record");

// A frame whose main window takes access entries.
class Shell
{
public:
    Shell()
    {
        frame_.setCentralWidget(receiver_);
        topLevelBrelWindow = &frame_;
    }
    ~Shell() { topLevelBrelWindow = nullptr; }
    Shell(const Shell &) = delete;
    Shell &operator=(const Shell &) = delete;
    int entries() const
    {
        QCoreApplication::sendPostedEvents(receiver_);
        return receiver_->entries.size();
    }

private:
    BrelWindow frame_;
    EntryReceiver *receiver_ = new EntryReceiver;
};

} // namespace

// Tables of passages on a disk that does not give its rows any more: that is told, and no empty
// passage is shown or handed on in the place of what could not be read.
class TestPassageUnread : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void onLinePage();
    void archivePage();

private:
    // What both pages have in common.
    template <typename Page>
    static void checkPage(Page &page, const Shell &shell)
    {
        auto *save =
            page.page().template findChild<QPushButton *>(QStringLiteral("buttonSavePhoto"));
        page.clickRow(0);
        QCOMPARE(page.currentRow(), 0);
        QCOMPARE(page.photo()->lines(), QStringList(unread));
        QVERIFY(!save->isEnabled());
        for (int column = 0; column < ScanModel::columns; ++column) {
            QCOMPARE(page.cell(1, column), QString());
        }
        QString title;
        QString text;
        page.answers().expect(ModalAnswers::reading(&title, &text));
        page.page().addToSuffered();
        QCOMPARE(title, QStringLiteral("Error"));
        QCOMPARE(text, unread);
        QCOMPARE(shell.entries(), 0);
        text.clear();
        page.answers().expect(ModalAnswers::reading(&title, &text));
        page.page().savePhoto();
        QCOMPARE(text, unread);
        QCOMPARE(page.answers().unexpected(), QStringList());
        QCOMPARE(page.answers().left(), 0);
    }
};

void TestPassageUnread::onLinePage()
{
    OnlinePage::prepare();
    const Shell shell;
    OnlinePage page;
    const QString host = OnlinePage::nowhere();
    page.page().selectDevice(host);
    for (const OnLine &record : OnlinePage::records(3)) {
        OnlinePage::write(OnlinePage::pictureFile(record), "photo");
        page.tellPassage(record, host);
    }
    QVERIFY(page.button("buttonSavePhoto")->isEnabled());
    QVERIFY(Unreadable::make(OnlinePage::folder() + QStringLiteral("/tmponline.tpp")) > 0);
    QCOMPARE(page.rows(), 3);
    checkPage(page, shell);
    // A late picture finds its row though others cannot be read; passages go on being stored.
    page.tellPassage(OnlinePage::record(1), host, QStringLiteral("gate"), true);
    page.tellPassage(OnlinePage::record(3), host);
    QCOMPARE(OnlinePage::tableBytes(), OnlinePage::tableOf(OnlinePage::records(4)));
}

void TestPassageUnread::archivePage()
{
    ArchivePage::prepare();
    Devices devices;
    const ArchiveDevice archive(devices.first(), ArchiveDevice::passages(3));
    const Shell shell;
    ArchivePage page;
    page.download(devices.first().address(), ArchivePage::wholeArchive());
    QVERIFY(page.becomesIdle());
    page.clickRow(1);
    QVERIFY(page.find<QPushButton>("buttonSavePhoto")->isEnabled());
    QVERIFY(Unreadable::make(ArchivePage::recordFile()) > 0);
    QCOMPARE(page.rows(), 3);
    checkPage(page, shell);
    QCOMPARE(ArchivePage::content(ArchivePage::recordFile()), archive.records(0, 2));
}

STALLO_TEST_MAIN(TestPassageUnread)
#include "tst_passageunread.moc"
