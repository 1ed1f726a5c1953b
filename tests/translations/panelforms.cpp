// SPDX-License-Identifier: MIT
#include "tests/translations/panelforms.h"

#include "app/addressdialog.h"
#include "app/catalogue.h"
#include "app/errorbrowser.h"
#include "app/mainwindow.h"
#include "app/settings.h"
#include "app/startup.h"
#include "netsetup/dlgsetupnetwork.h"
#include "pages/archiveintervaldialog.h"
#include "pages/passagedetails.h"
#include "pages/proportionalsclalewidget.h"
#include "records/scan.h"
#include "records/vasksettings.h"
#include "resources/resources.h"
#include "style/brelstyle.h"
#include "style/brelwindow.h"
#include "tests/support/testmain.h"

#include <QCheckBox>
#include <QDateTime>
#include <QDir>
#include <QFileDialog>
#include <QMessageBox>
#include <QRadioButton>
#include <QScreen>
#include <QStackedWidget>
#include <QTemporaryDir>
#include <QTreeView>

#include <algorithm>
#include <iterator>

namespace
{

const QString address = QStringLiteral("192.168.100.100");

struct Page {
    const char *name;
    void (MainWindow::*open)();
};
constexpr Page pages[] = {{"archive", &MainWindow::showArchive},
                          {"access list", &MainWindow::showSuffered},
                          {"on-line", &MainWindow::showOnLine}};
constexpr const char *dialogs[] = {"addresses", "interval", "network", "error", "question", "file"};

// The lines over a photo that are the longest in some language, without what a device gives.
QStringList details(bool registered)
{
    Scan scan;
    scan.setDateTime(QDateTime(QDate(2026, 12, 30), QTime(20, 58, 58)));
    scan.setNumber(registered ? QStringLiteral("M000MM000") : QStringLiteral("O000OO00"));
    scan.setInAccessList(registered);
    scan.setAccessGranted(registered);
    return PassageDetails::onLineLines(scan);
}

std::unique_ptr<QWidget> intervalDialog(QWidget *parent)
{
    auto dialog = std::make_unique<ArchiveIntervalDialog>(parent);
    dialog->findChild<QRadioButton *>(QStringLiteral("rbBySelection"))->setChecked(true);
    return dialog;
}

// A folder and a table of a size and an age that need much room.
constexpr int files = 2;
QString filledFolder()
{
    const QString path = QDir::current().filePath(QStringLiteral("tables"));
    QDir().mkpath(path + QStringLiteral("/folder"));
    QFile table(path + QStringLiteral("/table") + VaskSettings::passbaseSuffix());
    constexpr qint64 large = 999 * 1024 * 1024;
    const QDateTime late(QDate(2026, 12, 30), QTime(20, 58, 58));
    if (!table.open(QIODevice::WriteOnly) || !table.resize(large) ||
        !table.setFileTime(late, QFileDevice::FileModificationTime)) {
        qFatal("no table for the file dialog");
    }
    return path;
}

std::unique_ptr<QWidget> fileDialog(QWidget *parent)
{
    auto dialog = std::make_unique<QFileDialog>(parent, QString(), filledFolder());
    dialog->setOption(QFileDialog::DontUseNativeDialog);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    const auto text = [](const char *source) {
        return QCoreApplication::translate("TableFileDialog", source);
    };
    dialog->setNameFilters({text("Dump file (*%1)").arg(VaskSettings::passbaseSuffix()),
                            text("Comma separated values file (*.csv)"),
                            QCoreApplication::translate("PassageTable", "Image file (*.jpeg)")});
    return dialog;
}

std::unique_ptr<QWidget> questionDialog(QWidget *parent)
{
    return std::make_unique<QMessageBox>(
        QMessageBox::Warning, QString(),
        QCoreApplication::translate("SufferedNumbersWidget", "Do you want to remove this records?"),
        QMessageBox::Ok | QMessageBox::Cancel, parent);
}

} // namespace

PanelForms::PanelForms()
    : folder_(std::make_unique<QTemporaryDir>())
{
    initStalloResources();
    QDir::setCurrent(QStringLiteral(STALLO_CATALOGUES));
    toolkitCatalogue_ =
        std::make_unique<Catalogue>(QStringLiteral("qt_"), QStringList{Catalogue::toolkitFolder()});
    ownCatalogue_ = std::make_unique<Catalogue>(QStringLiteral("vaskparking_"));
    QDir::setCurrent(folder_->path()); // where the network's files would be
    VaskSettings::init();
    TestSurroundings::freshSettings()->setAddressList({address, QStringLiteral("127.0.0.1")});
    Startup::initTempDirectories();

    frame_ = std::make_unique<BrelWindow>();
    topLevelBrelWindow = frame_.get();
    window_ = std::make_unique<MainWindow>();
    window_->showNotice(QCoreApplication::translate("Startup", "The former table was kept:") +
                        QStringLiteral(" Recovered/2026-12-30_20-58-58"));
    frame_->setCentralWidget(window_.get());
    frame_->setWindowTitle(QStringLiteral("<i>%1 </i>").arg(window_->windowTitle()));
    auto *style = new BrelStyle;
    QApplication::setStyle(style);
    QApplication::setPalette(style->standardPalette());
    frame_->setMinimumSize(1024, 512);
    frame_->setGeometry(frame_->screen()->geometry());
    frame_->show();
    awaitPages();
}

PanelForms::~PanelForms()
{
    dialog_.reset();
    window_.reset();
    QDir::setCurrent(QDir::rootPath());
}

// The English catalogue holds the letters only.
QString PanelForms::language()
{
    if (QCoreApplication::translate("AddressDialogClass", "Cancel") ==
        QString::fromUtf8("Отмена")) {
        return QStringLiteral("ru");
    }
    return VaskSettings::localSymbols.size() == 12 ? QStringLiteral("en") : QString();
}

QStringList PanelForms::names()
{
    QStringList all;
    for (const Page &each : pages) {
        for (const char *face : {"", ", busy"}) {
            all.append(QString::fromLatin1(each.name) + QString::fromLatin1(face));
        }
    }
    for (const char *dialog : dialogs) {
        all.append(QString::fromLatin1(dialog));
    }
    return all;
}

QWidget *PanelForms::show(const QString &name)
{
    dialog_ = makeDialog(name);
    if (dialog_) {
        dialog_->show();
        return QTest::qWaitForWindowExposed(dialog_.get()) && awaitFiles() ? dialog_.get()
                                                                           : nullptr;
    }
    showFace(name);
    return QTest::qWaitForWindowExposed(frame_.get()) ? frame_.get() : nullptr;
}

// The access list reads its file in the background and is busy meanwhile.
void PanelForms::awaitPages() const
{
    const auto faces = window_->findChildren<QStackedWidget *>(QStringLiteral("stackedWidget"));
    const bool idle = QTest::qWaitFor([&faces] {
        return std::all_of(faces.begin(), faces.end(), [](const QStackedWidget *face) {
            return face->currentWidget()->objectName() == QLatin1String("basePage");
        });
    });
    if (!idle || faces.size() != int(std::size(pages))) {
        qFatal("the pages do not become idle");
    }
}

// A file dialog reads its folder in the background.
bool PanelForms::awaitFiles() const
{
    const auto *list = dialog_->findChild<QTreeView *>();
    return qobject_cast<QFileDialog *>(dialog_.get()) == nullptr ||
           QTest::qWaitFor([list] { return list->model()->rowCount(list->rootIndex()) == files; });
}

QWidget *PanelForms::page() const
{
    return window_->centralWidget()->findChild<QStackedWidget *>()->currentWidget();
}

void PanelForms::showFace(const QString &name)
{
    for (const Page &each : pages) {
        if (name.section(QLatin1Char(','), 0, 0) == QLatin1String(each.name)) {
            (window_.get()->*each.open)();
        }
    }
    auto *faces = page()->findChild<QStackedWidget *>(QStringLiteral("stackedWidget"));
    const QString face = name.endsWith(QLatin1String("busy")) ? QStringLiteral("busyPage")
                                                              : QStringLiteral("basePage");
    faces->setCurrentWidget(page()->findChild<QWidget *>(face));
    fillPage();
    QCoreApplication::processEvents();
}

void PanelForms::fillPage() const
{
    if (auto *filter = page()->findChild<QCheckBox *>(QStringLiteral("checkBoxFilter"))) {
        filter->setChecked(true);
    }
    const auto views = page()->findChildren<ProportionalSclaleWidget *>();
    for (ProportionalSclaleWidget *view : views) {
        const bool isCamera = view->parentWidget()->objectName() != QLatin1String("labelPhoto");
        view->setStatistics(isCamera ? QStringList{address} : details(false));
    }
}

std::unique_ptr<QWidget> PanelForms::makeDialog(const QString &name) const
{
    QWidget *parent = window_.get();
    if (name == QLatin1String("addresses")) {
        return std::make_unique<AddressDialog>(parent);
    }
    if (name == QLatin1String("interval")) {
        return intervalDialog(parent);
    }
    if (name == QLatin1String("network")) {
        auto dialog = std::make_unique<DlgSetupNetwork>(parent);
        dialog->setHardwareAddress(QStringLiteral("00:DD:AA:BB:CC:DD"));
        return dialog;
    }
    if (name == QLatin1String("error")) {
        return std::make_unique<ErrorBrowser>(QString(), QStringLiteral("-"), parent);
    }
    if (name == QLatin1String("question")) {
        return questionDialog(parent);
    }
    return name == QLatin1String("file") ? fileDialog(parent) : nullptr;
}
