// SPDX-License-Identifier: MIT
#include "app/shellaccess.h"

#include "style/brelwindow.h"
#include "style/brelwindowtitle.h"

#include <QPointer>

namespace
{

QPointer<QObject> mainWindow;

} // namespace

void ShellAccess::setMainWindow(QObject *window)
{
    mainWindow = window;
}

QObject *ShellAccess::accessEntryReceiver()
{
    if (topLevelBrelWindow != nullptr && topLevelBrelWindow->centralWidget() != nullptr) {
        return topLevelBrelWindow->centralWidget();
    }
    return mainWindow;
}

void ShellAccess::showDeviceName(const QString &richText)
{
    if (topLevelBrelWindow != nullptr) {
        topLevelBrelWindow->brelWindowTitle()->setDeviceName(richText);
    }
}
