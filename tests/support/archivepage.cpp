// SPDX-License-Identifier: MIT
#include "tests/support/archivepage.h"

#include "app/settings.h"
#include "pages/archiveintervaldialog.h"
#include "pages/proportionalsclalewidget.h"
#include "records/scanmodel.h"
#include "style/brelprogresspie.h"
#include "tests/support/testmain.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QElapsedTimer>
#include <QLabel>
#include <QStackedWidget>

namespace
{

constexpr int refusedPort = 1;
// Longer than the longest job of any test takes on a loaded machine.
constexpr int jobPatience = 60000;

// Chooses in the dialog of the interval and confirms.
void answerInterval(QWidget *window, const char *choice)
{
    window->findChild<QAbstractButton *>(QString::fromLatin1(choice))->click();
    auto *box = window->findChild<QDialogButtonBox *>(QStringLiteral("buttonBox"));
    QTest::mouseClick(box->button(QDialogButtonBox::Ok), Qt::LeftButton);
}

} // namespace

void ArchivePage::prepare()
{
    Settings *settings = TestSurroundings::freshSettings();
    settings->setVaskParkingPort(refusedPort);
    settings->setFileTransferPort(refusedPort);
    QDir(settings->workingDirectory()).removeRecursively();
    if (!QDir().mkpath(folder())) {
        qFatal("cannot make the temporary folder");
    }
}

ArchivePage::ArchivePage()
    : page_(std::make_unique<ArchiveWidget>())
{
    page_->resize(1280, 700);
    page_->show();
    if (!QTest::qWaitForWindowExposed(page_.get())) {
        qFatal("the page does not appear");
    }
}

ArchivePage::~ArchivePage() = default;

qint64 ArchivePage::end()
{
    QElapsedTimer clock;
    clock.start();
    page_.reset();
    return clock.elapsed();
}

void ArchivePage::press(const char *name) const
{
    auto *pressed = find<QAbstractButton>(name);
    if (!pressed->isVisible() || !pressed->isEnabled()) {
        qWarning("the button %s cannot be pressed", name);
    }
    QTest::mouseClick(pressed, Qt::LeftButton);
}

QTableView *ArchivePage::table() const
{
    return find<QTableView>("tableViewArchive");
}

int ArchivePage::rows() const
{
    return table()->model()->rowCount();
}

int ArchivePage::currentRow() const
{
    return table()->currentIndex().row();
}

void ArchivePage::clickRow(int row) const
{
    const QModelIndex index = table()->model()->index(row, ScanModel::NumberColumn);
    table()->scrollTo(index);
    QTest::mouseClick(table()->viewport(), Qt::LeftButton, Qt::NoModifier,
                      table()->visualRect(index).center());
}

QString ArchivePage::cell(int row, int column) const
{
    return table()->model()->index(row, column).data().toString();
}

ProportionalSclaleWidget *ArchivePage::photo() const
{
    return find<QLabel>("labelPhoto")->findChild<ProportionalSclaleWidget *>();
}

bool ArchivePage::isBusy() const
{
    return find<QStackedWidget>("stackedWidget")->currentWidget() == find<QWidget>("busyPage");
}

bool ArchivePage::becomesIdle() const
{
    return QTest::qWaitFor([this] { return !isBusy(); }, jobPatience);
}

void ArchivePage::download(const QString &host, const ModalAnswers::Answer &interval)
{
    Settings::instance()->setAddressList({host});
    answers_.expect(ModalAnswers::pressing("buttonOk"));
    answers_.expect(interval);
    press("buttonLoadFromNetwork");
}

ModalAnswers::Answer ArchivePage::wholeArchive()
{
    return [](QWidget *window) { answerInterval(window, "rbAllArchive"); };
}

ModalAnswers::Answer ArchivePage::between(const QDateTime &from, const QDateTime &to)
{
    return [from, to](QWidget *window) {
        auto *dialog = qobject_cast<ArchiveIntervalDialog *>(window);
        QVERIFY(dialog != nullptr);
        dialog->setFromTime(from.toLocalTime());
        dialog->setToTime(to.toLocalTime());
        answerInterval(window, "rbBySelection");
    };
}

int ArchivePage::progress() const
{
    return find<BrelProgressPie>("progressPie")->progress();
}

QString ArchivePage::folder()
{
    return Settings::instance()->archiveTempDirectory();
}

QString ArchivePage::recordFile()
{
    return Settings::instance()->archiveTempFile();
}

QString ArchivePage::indexFile()
{
    return ScanModel::indexFileOf(recordFile());
}

QString ArchivePage::photoFolder()
{
    return folder() + QStringLiteral("/tmppassbase.jpegdata");
}

QStringList ArchivePage::photoNames()
{
    return QDir(photoFolder()).entryList(QDir::Files | QDir::Hidden, QDir::Name);
}

QByteArray ArchivePage::content(const QString &file)
{
    QFile from(file);
    return from.open(QIODevice::ReadOnly) ? from.readAll() : QByteArray();
}

void ArchivePage::write(const QString &file, const QByteArray &content)
{
    QFile to(file);
    if (!to.open(QIODevice::WriteOnly) || to.write(content) != content.size()) {
        qFatal("cannot write %s", qPrintable(file));
    }
}
