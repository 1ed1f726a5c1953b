// SPDX-License-Identifier: MIT
// The program stallo-netsetup: the dialog for the panel's own network settings, over the files of
// the directory that it is started in. It ends with the dialog, with 0 however that is closed.
#include "app/catalogue.h"
#include "app/shutdownsignals.h"
#include "netsetup/dlgsetupnetwork.h"
#include "netsetup/hardwareaddress.h"
#include "records/localtext.h"
#include "resources/resources.h"
#include "style/brelstyle.h"
#include "style/focuskeeper.h"

#include <QApplication>
#include <QIcon>

int main(int argc, char *argv[])
{
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QApplication application(argc, argv);
    LocalText::useCodecOfLocale();
    initStalloResources();
    const ShutdownSignals shutdownSignals(nullptr);

    const Catalogue toolkitCatalogue(QStringLiteral("qt_"), {Catalogue::toolkitFolder()});
    const Catalogue ownCatalogue(QStringLiteral("vaskparking_"), {Catalogue::installedFolder()});

    auto *style = new BrelStyle;
    QApplication::setStyle(style); // which takes it over
    QApplication::setPalette(style->standardPalette());
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/icon1.ico")));

    DlgSetupNetwork dialog(nullptr);
    dialog.setHardwareAddress(HardwareAddress::ofFirstInterface());
    new FocusKeeper(&dialog); // which owns it
    dialog.exec();
    return 0;
}
