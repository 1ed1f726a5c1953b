// SPDX-License-Identifier: MIT
#include "tests/accessibility/panel.h"

#include "app/addressdialog.h"
#include "app/catalogue.h"
#include "app/errorbrowser.h"
#include "app/mainwindow.h"
#include "app/settings.h"
#include "net/events.h"
#include "netsetup/dlgsetupnetwork.h"
#include "pages/archiveintervaldialog.h"
#include "pages/archivewidget.h"
#include "pages/onlinewidget.h"
#include "pages/sufferednumberswidget.h"
#include "records/scanmodel.h"
#include "style/brelstyle.h"
#include "style/brelwindow.h"
#include "tests/support/archivepage.h"
#include "tests/support/listpage.h"
#include "tests/support/onlinepage.h"
#include "tests/support/testmain.h"

#include <QAbstractSocket>
#include <QDir>
#include <QFileDialog>
#include <QMenu>
#include <QMessageBox>
#include <QScrollBar>
#include <QStackedWidget>
#include <QTest>
#include <QTreeView>

namespace
{

constexpr int passages = 40;
constexpr int patience = 30000;

void load(QTranslator &translator, const QString &name, const QString &folder)
{
    if (translator.load(name, folder)) {
        QCoreApplication::installTranslator(&translator);
    }
}

// More than a dialog shows at once.
QStringList addresses()
{
    QStringList all{QStringLiteral("192.168.0.1"), QStringLiteral("gate-north")};
    for (int n = 2; n < 20; ++n) {
        all.append(QStringLiteral("192.168.0.%1").arg(n));
    }
    return all;
}

// And a folder with more files.
void fillHome()
{
    for (int n = 0; n < 20; ++n) {
        QDir::home().mkdir(QStringLiteral("folder-%1").arg(n));
    }
}

// A file dialog reads its folder in the background.
void waitForFiles(const QWidget *window)
{
    const auto *files = window->findChild<QTreeView *>(QStringLiteral("treeView"));
    if (files != nullptr && !QTest::qWaitFor([files] {
            return files->model()->rowCount(files->rootIndex()) >= 20 &&
                   files->verticalScrollBar()->isVisible();
        })) {
        qFatal("the files do not appear");
    }
}

// The toolkit calls a dialog active already while its parent is.
void waitForFront(const QWidget *window)
{
    if (!QTest::qWaitFor([window] { return QApplication::activeWindow() == window; })) {
        qFatal("the window does not come to the front");
    }
}

} // namespace

Panel::Panel(const QString &language)
{
    auto *style = new BrelStyle;
    QApplication::setStyle(style);
    QApplication::setPalette(style->standardPalette());
    load(toolkitTexts_, QStringLiteral("qt_") + language, Catalogue::toolkitFolder());
    load(texts_, QStringLiteral("vaskparking_") + language, QStringLiteral(STALLO_CATALOGUES));
    // The English catalogue holds letters only.
    const bool hasTexts = !texts_.translate("AddressDialogClass", "Cancel").isEmpty();
    if (texts_.isEmpty() || hasTexts != (language == QLatin1String("ru"))) {
        qFatal("the catalogue of %s is not what it should be", qPrintable(language));
    }
    QLocale::setDefault(QLocale(language));
    ListPage::prepare();
    Settings *settings = Settings::instance();
    QDir().mkpath(settings->archiveTempDirectory());
    QDir().mkpath(settings->onLineTempDirectory() + QStringLiteral("/jpegdata"));
    settings->setAddressList(addresses());
    fillHome();
    ListPage::write(ListPage::ownList(), ListPage::list(passages));

    frame_ = std::make_unique<BrelWindow>();
    topLevelBrelWindow = frame_.get();
    window_ = std::make_unique<MainWindow>(nullptr, Qt::Widget);
    frame_->setCentralWidget(window_.get());
    frame_->setWindowTitle(QStringLiteral("<i>") + window_->windowTitle() + QStringLiteral("</i>"));
    frame_->setMinimumSize(1024, 512);
    frame_->resize(1024, 512);
    frame_->show();
    if (!QTest::qWaitForWindowActive(frame_.get())) {
        qFatal("the frame does not appear");
    }
    fill();
}

Panel::~Panel()
{
    window_.reset();
    topLevelBrelWindow = nullptr;
    QLocale::setDefault(QLocale::c());
}

void Panel::fill()
{
    const QString table = QDir::home().filePath(QStringLiteral("table.tpp"));
    ArchivePage::write(table, OnlinePage::tableOf(OnlinePage::records(passages)));
    ArchivePage::write(ScanModel::indexFileOf(table),
                       OnlinePage::indexOf({QStringLiteral("gate")}));
    window_->findChild<ArchiveWidget *>()->setTable(table);
    auto *onLine = window_->findChild<OnLineWidget *>();
    for (int n = 0; n < passages; ++n) {
        onLine->insertRecord(Scan(OnlinePage::record(n)));
    }
    for (const int channel : {0, 1}) {
        PipeEvent connected;
        connected.state = QAbstractSocket::ConnectedState;
        connected.channel = channel;
        QCoreApplication::sendEvent(onLine, &connected);
    }
    auto *list = window_->findChild<SufferedNumbersWidget *>();
    const auto isOpen = [list] {
        return list->findChild<QStackedWidget *>()->currentWidget()->objectName() ==
                   QLatin1String("basePage") &&
               list->findChild<QTableView *>()->model()->rowCount() == passages;
    };
    if (!QTest::qWaitFor(isOpen, patience)) {
        qFatal("the list does not open");
    }
    // Everything that can be used is enabled.
    for (QWidget *page :
         std::initializer_list<QWidget *>{window_->findChild<ArchiveWidget *>(), onLine, list}) {
        auto *rows = page->findChild<QTableView *>();
        rows->setCurrentIndex(rows->model()->index(1, 0));
        for (QAbstractButton *button : page->findChildren<QAbstractButton *>()) {
            button->setEnabled(true);
            if (button->objectName() == QLatin1String("checkBoxFilter")) {
                button->setChecked(true);
            }
        }
    }
}

QWidget &Panel::page() const
{
    return *window_->centralWidget()->findChild<QStackedWidget *>()->currentWidget();
}

void Panel::showArchive()
{
    window_->showArchive();
}

void Panel::showSuffered()
{
    window_->showSuffered();
}

void Panel::showOnLine()
{
    window_->showOnLine();
}

void Panel::showBusy(bool busy)
{
    auto *faces = page().findChild<QStackedWidget *>(QStringLiteral("stackedWidget"));
    faces->setCurrentWidget(page().findChild<QWidget *>(busy ? QStringLiteral("busyPage")
                                                             : QStringLiteral("basePage")));
}

QTableView *Panel::table() const
{
    return page().findChild<QTableView *>();
}

QStringList Panel::windows()
{
    return {QStringLiteral("archive"),   QStringLiteral("archive, busy"),
            QStringLiteral("list"),      QStringLiteral("list, busy"),
            QStringLiteral("online"),    QStringLiteral("online, busy"),
            QStringLiteral("addresses"), QStringLiteral("interval"),
            QStringLiteral("network"),   QStringLiteral("error"),
            QStringLiteral("message"),   QStringLiteral("files"),
            QStringLiteral("calendar"),  QStringLiteral("passage menu"),
            QStringLiteral("list menu"), QStringLiteral("address menu")};
}

void Panel::with(const QString &window, const Action &action)
{
    const QString name = window.section(QLatin1Char(','), 0, 0);
    if (name == QLatin1String("archive") || name == QLatin1String("list") ||
        name == QLatin1String("online")) {
        name == QLatin1String("archive") ? showArchive()
        : name == QLatin1String("list")  ? showSuffered()
                                         : showOnLine();
        showBusy(window != name);
        QCoreApplication::sendPostedEvents();
        frame_->activateWindow();
        waitForFront(frame_.get());
        action(*frame_);
        showBusy(false);
    } else if (name.endsWith(QLatin1String("menu"))) {
        withMenu(name, action);
    } else if (name == QLatin1String("error")) {
        withError(action);
    } else if (name == QLatin1String("calendar")) {
        with(QStringLiteral("interval"), [&action](QWidget &dialog) {
            auto *day = dialog.findChild<QWidget *>(QStringLiteral("deFrom"));
            QTest::mouseClick(day, Qt::LeftButton, {}, {day->width() - 10, day->height() / 2});
            QWidget *popup = QApplication::activePopupWidget();
            if (popup == nullptr) {
                qFatal("the calendar does not open");
            }
            action(*popup);
            popup->close();
        });
    } else {
        const std::unique_ptr<QWidget> dialog = make(name);
        dialog->show();
        dialog->activateWindow();
        waitForFront(dialog.get());
        waitForFiles(dialog.get());
        action(*dialog);
    }
}

std::unique_ptr<QWidget> Panel::make(const QString &dialog) const
{
    if (dialog == QLatin1String("addresses")) {
        return std::make_unique<AddressDialog>(frame_.get());
    }
    if (dialog == QLatin1String("interval")) {
        auto interval = std::make_unique<ArchiveIntervalDialog>(frame_.get());
        interval->findChild<QAbstractButton *>(QStringLiteral("rbBySelection"))->click();
        return interval;
    }
    if (dialog == QLatin1String("network")) {
        auto network = std::make_unique<DlgSetupNetwork>(frame_.get());
        network->setHardwareAddress(QStringLiteral("00:11:22:33:44:55"));
        return network;
    }
    if (dialog == QLatin1String("message")) {
        const auto text = [](const char *source) {
            return QCoreApplication::translate("SufferedNumbersWidget", source);
        };
        return std::make_unique<QMessageBox>(QMessageBox::Warning, QString(),
                                             text("Do you want to remove this records?"),
                                             QMessageBox::Ok | QMessageBox::Cancel, frame_.get());
    }
    auto files = std::make_unique<QFileDialog>(
        frame_.get(), QStringLiteral("Save"), QDir::homePath(),
        QStringLiteral("Dump file (*.tpp);;Comma separated values file (*.csv)"));
    files->setOption(QFileDialog::DontUseNativeDialog);
    files->setAcceptMode(QFileDialog::AcceptSave);
    return files;
}

// Its window is private to the call.
void Panel::withError(const Action &action)
{
    ModalAnswers answers;
    answers.expect([&action](QWidget *dialog) {
        waitForFront(dialog);
        action(*dialog);
        dialog->close();
    });
    ErrorBrowser::error(QStringLiteral("Error"), QStringLiteral("<b>line</b>\n").repeated(50),
                        frame_.get());
}

void Panel::withMenu(const QString &window, const Action &action)
{
    std::unique_ptr<AddressDialog> dialog;
    QMenu *menu = nullptr;
    if (window == QLatin1String("address menu")) {
        dialog = std::make_unique<AddressDialog>(frame_.get());
        dialog->show();
        menu = dialog->findChild<QMenu *>();
    } else {
        window == QLatin1String("list menu") ? showSuffered() : showOnLine();
        menu = table()->findChild<QMenu *>();
    }
    menu->popup(QPoint(50, 50));
    action(*menu);
    menu->close();
}
