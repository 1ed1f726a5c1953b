// SPDX-License-Identifier: MIT
#include "app/screenshots.h"

#include "app/mainwindow.h"
#include "style/brelwindow.h"

#include <QCoreApplication>
#include <QDir>
#include <QPixmap>
#include <QTimer>

#include <iterator>

namespace
{

struct Page {
    const char *name;
    void (MainWindow::*show)();
};

// The live page first, while it is still shown as the command line left it.
constexpr Page pages[] = {{"online.png", &MainWindow::showOnLine},
                          {"archive.png", &MainWindow::showArchive},
                          {"suffered.png", &MainWindow::showSuffered}};

constexpr int untilPassagesCame = 12000;
constexpr int untilPageIsPainted = 400;

} // namespace

Screenshots::Screenshots(BrelWindow *frame, QObject *parent)
    : QObject(parent)
    , frame_(frame)
    , folder_(qEnvironmentVariable("STALLO_SCREENSHOTS"))
{
    if (!folder_.isEmpty()) {
        QTimer::singleShot(untilPassagesCame, this, &Screenshots::takeNext);
    }
}

void Screenshots::takeNext()
{
    if (next_ == static_cast<int>(std::size(pages)) || MainWindow::activeWindow() == nullptr) {
        QCoreApplication::quit();
        return;
    }
    const Page &page = pages[next_++];
    (MainWindow::activeWindow()->*page.show)();
    QTimer::singleShot(untilPageIsPainted, this, [this, &page] {
        QDir().mkpath(folder_);
        frame_->grab().save(QDir(folder_).filePath(QLatin1String(page.name)));
        takeNext();
    });
}
