// SPDX-License-Identifier: MIT
#include "app/settings.h"
#include "pages/archiveintervaldialog.h"
#include "tests/pages/archivecase.h"

using Page = ArchivePage;

// What the page asks the operator before a download, and what it makes of earlier answers.
class TestArchiveWidgetAsking : public ArchiveCase
{
    Q_OBJECT

private Q_SLOTS:
    void keepsFirstInterval();
    void takesIntervalAnewForEmptyTable();
    void presetsLastInterval();
    void centresDialogOverPage();
    void takesHostWithoutAsking();
    void stopsWithoutAnswers();

private:
    // What the dialog of the interval shows, which is then rejected.
    struct Shown {
        QDateTime from;
        QDateTime to;
        bool all = false;
    };
    Shown shownInterval(const std::function<void(ArchiveIntervalDialog *)> &change = nullptr);
};

TestArchiveWidgetAsking::Shown
TestArchiveWidgetAsking::shownInterval(const std::function<void(ArchiveIntervalDialog *)> &change)
{
    Shown shown;
    page_->download(host(), [&](QWidget *window) {
        auto *dialog = qobject_cast<ArchiveIntervalDialog *>(window);
        shown = {dialog->fromTime(), dialog->toTime(), dialog->allArchive()};
        if (change) {
            change(dialog);
        }
        dialog->reject();
    });
    return shown;
}

void TestArchiveWidgetAsking::keepsFirstInterval()
{
    const ArchiveDevice archive(device(), ArchiveDevice::passages(20));
    download(Page::between(archive.time(3), archive.time(7)));
    QCOMPARE(page_->rows(), 5);
    // Another interval is not taken over,
    download(Page::between(archive.time(10), archive.time(12)));
    QCOMPARE(records(), archive.records(3, 7) + archive.records(3, 7));
    // but the choice of the whole archive is,
    download(Page::wholeArchive());
    QCOMPARE(page_->rows(), 30);
    // and that it is left again.
    download(Page::between(archive.time(10), archive.time(12)));
    QCOMPARE(page_->rows(), 35);
    QCOMPARE(records(), archive.records(3, 7) + archive.records(3, 7) + archive.records(0, 19) +
                            archive.records(3, 7));
    // A new table begins with an interval of its own.
    page_->press("buttonNewTable");
    download(Page::between(archive.time(10), archive.time(12)));
    QCOMPARE(records(), archive.records(10, 12));
}

void TestArchiveWidgetAsking::takesIntervalAnewForEmptyTable()
{
    const ArchiveDevice archive(device(), ArchiveDevice::passages(20));
    download(Page::between(archive.time(0).addDays(-9), archive.time(0).addDays(-8)));
    QCOMPARE(page_->rows(), 0);
    download(Page::between(archive.time(10), archive.time(12)));
    QCOMPARE(records(), archive.records(10, 12));
}

void TestArchiveWidgetAsking::presetsLastInterval()
{
    const ArchiveDevice archive(device(), ArchiveDevice::passages(3));
    const QDateTime some = QDateTime(QDate(2026, 3, 4), QTime(5, 6));
    Shown shown = shownInterval([&](ArchiveIntervalDialog *dialog) {
        QVERIFY(qAbs(dialog->toTime().secsTo(QDateTime::currentDateTime())) < 600);
        dialog->setFromTime(some);
        dialog->setToTime(some.addDays(1));
    });
    QVERIFY(shown.all);
    QCOMPARE(shown.from, shown.to.addDays(-1));
    // There is no last interval yet: the dialog stands as he left it.
    shown = shownInterval();
    QCOMPARE(shown.from, some);
    QCOMPARE(shown.to, some.addDays(1));
    download(Page::between(archive.time(0), archive.time(1)));
    for (int times = 0; times < 2; ++times) {
        shown = shownInterval([&](ArchiveIntervalDialog *dialog) { dialog->setFromTime(some); });
        QCOMPARE(shown.from, archive.time(0).toLocalTime());
        QCOMPARE(shown.to, archive.time(1).toLocalTime());
        QVERIFY(!shown.all);
    }
    page_->press("buttonNewTable");
    shown = shownInterval();
    QVERIFY(shown.all);
    QCOMPARE(shown.from, shown.to.addDays(-1));
    QVERIFY(qAbs(shown.to.secsTo(QDateTime::currentDateTime())) < 600);
}

void TestArchiveWidgetAsking::centresDialogOverPage()
{
    page_->page().move(40, 30);
    QRect place;
    shownInterval([&](ArchiveIntervalDialog *dialog) { place = dialog->geometry(); });
    const QPoint off = place.center() - page_->page().geometry().center();
    QVERIFY2(qMax(qAbs(off.x()), qAbs(off.y())) <= 3,
             qPrintable(QStringLiteral("%1, %2").arg(off.x()).arg(off.y())));
}

void TestArchiveWidgetAsking::takesHostWithoutAsking()
{
    const ArchiveDevice archive(device(), ArchiveDevice::passages(8));
    auto *interval = page_->page().findChild<ArchiveIntervalDialog *>();
    download(Page::between(archive.time(1), archive.time(2)));
    QCOMPARE(page_->rows(), 2);
    const int given = page_->answers().given();
    page_->page().loadTableFromNet(host());
    QVERIFY(page_->becomesIdle());
    QCOMPARE(page_->answers().given(), given);
    QCOMPARE(records(), archive.records(1, 2) + archive.records(0, 7));
    QVERIFY(interval->allArchive());
    QCOMPARE(interval->fromTime(), interval->toTime().addDays(-1));
    QVERIFY(qAbs(interval->toTime().secsTo(QDateTime::currentDateTime())) < 600);
}

void TestArchiveWidgetAsking::stopsWithoutAnswers()
{
    const ArchiveDevice archive(device(), ArchiveDevice::passages(3));
    shownInterval();
    page_->answers().expect(ModalAnswers::pressing("buttonCancel"));
    page_->press("buttonLoadFromNetwork");
    QVERIFY(!page_->isBusy());
    QCoreApplication::processEvents();
    QVERIFY(!page_->isBusy());
    QCOMPARE(page_->rows(), 0);
    QCOMPARE(device().journal().countRequests(), 0);
}

STALLO_TEST_MAIN(TestArchiveWidgetAsking)
#include "tst_archivewidgetasking.moc"
