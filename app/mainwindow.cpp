// SPDX-License-Identifier: MIT
#include "app/mainwindow.h"

#include "app/settings.h"
#include "app/shellaccess.h"
#include "net/events.h"
#include "pages/archivewidget.h"
#include "pages/onlinewidget.h"
#include "pages/sufferednumberswidget.h"
#include "style/brelwindow.h"
#include "style/brelwindowtitle.h"
#include "ui_mainwindow.h"

#include <QAbstractButton>
#include <QLabel>
#include <QShortcut>
#include <QStackedWidget>
#include <QVBoxLayout>

MainWindow *MainWindow::mainWindow_ = nullptr;

MainWindow::MainWindow(QWidget *parent, Qt::WindowFlags flags)
    : QMainWindow(parent, flags)
    , ui_(std::make_unique<Ui_MainWindowClass>())
{
    ui_->setupUi(this);
    ui_->statusBar->setSizeGripEnabled(false); // the frame resizes by its edges
    createNotice();
    createPages();
    createPageButtons();
    createShortcuts();
    mainWindow_ = this;
    ShellAccess::setMainWindow(this);
}

MainWindow::~MainWindow()
{
    if (Settings *settings = Settings::instance()) {
        settings->store();
    }
    ShellAccess::setMainWindow(nullptr);
    mainWindow_ = nullptr;
}

MainWindow *MainWindow::activeWindow()
{
    return mainWindow_;
}

void MainWindow::selectTab(eTabSelector selector, const QString &address)
{
    switch (selector) {
    case SufferedTab:
        showSuffered();
        suffered_->loadTableFromNet(address);
        break;
    case OnLineTab:
        showOnLine();
        onLine_->selectDevice(address);
        break;
    case ArchiveTab:
        showArchive();
        archive_->loadTableFromNet(address);
        break;
    }
}

void MainWindow::showNotice(const QString &text)
{
    notice_->setText(text);
    notice_->setVisible(!text.isEmpty());
}

void MainWindow::showNext()
{
    stack_->setCurrentIndex((stack_->currentIndex() + 1) % stack_->count());
}

void MainWindow::showPrevious()
{
    stack_->setCurrentIndex((stack_->currentIndex() + stack_->count() - 1) % stack_->count());
}

void MainWindow::showArchive()
{
    showPage(archive_, archiveButton_);
}

void MainWindow::showSuffered()
{
    showPage(suffered_, sufferedButton_);
}

void MainWindow::showOnLine()
{
    showPage(onLine_, onLineButton_);
}

void MainWindow::customEvent(QEvent *event)
{
    if (event->type() == EventNumber::Suffered) {
        suffered_->appendSufferedRecord(static_cast<SufferedEvent *>(event)->access());
    }
}

// Beside the status tips, which come and go.
void MainWindow::createNotice()
{
    notice_ = new QLabel(ui_->statusBar);
    notice_->setObjectName(QStringLiteral("labelNotice"));
    notice_->setTextFormat(Qt::PlainText);
    ui_->statusBar->addPermanentWidget(notice_);
    notice_->hide();
}

void MainWindow::createPages()
{
    archive_ = new ArchiveWidget;
    suffered_ = new SufferedNumbersWidget;
    onLine_ = new OnLineWidget;
    auto *layout = new QVBoxLayout(ui_->centralWidget);
    layout->setContentsMargins(0, 0, 0, 0);
    stack_ = new QStackedWidget(ui_->centralWidget);
    stack_->addWidget(archive_);
    stack_->addWidget(suffered_);
    stack_->addWidget(onLine_);
    layout->addWidget(stack_);
}

void MainWindow::createPageButtons()
{
    if (topLevelBrelWindow == nullptr) {
        return;
    }
    BrelWindowTitle *bar = topLevelBrelWindow->brelWindowTitle();
    archiveButton_ = bar->createButton(tr("Archive view"));
    sufferedButton_ = bar->createButton(tr("Suffered numbers"));
    onLineButton_ = bar->createButton(tr("On-Line"));
    connect(archiveButton_, &QAbstractButton::clicked, this, &MainWindow::showArchive);
    connect(sufferedButton_, &QAbstractButton::clicked, this, &MainWindow::showSuffered);
    connect(onLineButton_, &QAbstractButton::clicked, this, &MainWindow::showOnLine);
    archiveButton_->setChecked(true);
}

void MainWindow::createShortcuts()
{
    const auto shortcut = [this](Qt::Key key, void (MainWindow::*slot)()) {
        const QKeySequence keys(static_cast<int>(Qt::ALT) + key);
        connect(new QShortcut(keys, this), &QShortcut::activated, this, slot);
    };
    shortcut(Qt::Key_1, &MainWindow::showArchive);
    shortcut(Qt::Key_2, &MainWindow::showSuffered);
    shortcut(Qt::Key_3, &MainWindow::showOnLine);
}

void MainWindow::showPage(QWidget *page, QAbstractButton *button)
{
    for (QAbstractButton *each : {archiveButton_, sufferedButton_, onLineButton_}) {
        if (each != nullptr) {
            each->setChecked(each == button);
        }
    }
    stack_->setCurrentWidget(page);
}
