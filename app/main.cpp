// SPDX-License-Identifier: MIT
#include "app/catalogue.h"
#include "app/closerequests.h"
#include "app/errorbrowser.h"
#include "app/mainwindow.h"
#include "app/screenshots.h"
#include "app/settings.h"
#include "app/shutdownsignals.h"
#include "app/startup.h"
#include "records/localtext.h"
#include "records/vasksettings.h"
#include "resources/resources.h"
#include "style/brelstyle.h"
#include "style/brelwindow.h"

#include <QApplication>
#include <QIcon>

namespace
{

void applyStyle()
{
    auto *style = new BrelStyle;
    QApplication::setStyle(style); // which takes it over
    QApplication::setPalette(style->standardPalette());
}

int refuseSecondStart()
{
    applyStyle();
    ErrorBrowser::error(QCoreApplication::translate("main", "Error"),
                        QCoreApplication::translate("main", "Stallo is already running."), nullptr);
    return 0;
}

} // namespace

int main(int argc, char *argv[])
{
    Startup::keepToItself();
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    Startup::BoundedEnd boundedEnd;
    QApplication application(argc, argv);
    QGuiApplication::setDesktopFileName(QStringLiteral("org.stallo.Stallo"));
    LocalText::useCodecOfLocale();
    initStalloResources();
    const ShutdownSignals shutdownSignals(nullptr);

    new Settings(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("Dorvel Ltd"),
                 QStringLiteral("Stallo"), &application);
    if (Settings *settings = Settings::instance()) {
        settings->init();
    } else {
        QCoreApplication::exit(-1);
    }

    const Catalogue toolkitCatalogue(QStringLiteral("qt_"), {Catalogue::toolkitFolder()});
    const Catalogue ownCatalogue(QStringLiteral("vaskparking_"));
    VaskSettings::init();

    Startup::initTempDirectories();
    const auto lock = Startup::lockWorkingDirectory();
    if (!lock) {
        return refuseSecondStart();
    }
    const QString notice = Startup::settleFormerRun();

    BrelWindow frame;
    topLevelBrelWindow = &frame;
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/icon1.ico")));
    MainWindow window;
    window.showNotice(notice);
    frame.setCentralWidget(&window);
    frame.setWindowTitle(QStringLiteral("<i>") + window.windowTitle() + QStringLiteral(" </i>"));
    applyStyle();
    frame.setMinimumSize(1024, 512);
    Startup::restoreGeometry(frame);
    const CloseRequests closeRequests(&frame);

    Startup::parseCmdLine(argc, argv);
    Startup::tellUnusableDirectories(&frame);
    QObject::connect(&application, &QApplication::lastWindowClosed, &application,
                     &QCoreApplication::quit);
    const Screenshots screenshots(&frame, nullptr);
    if (QApplication::exec() == 0) {
        Startup::storeGeometry(frame);
    }
    Startup::markCleanEnd();
    boundedEnd.arm();
    return 0;
}
