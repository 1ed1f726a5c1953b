// SPDX-License-Identifier: MIT
#include "pages/dumpfolder.h"

#include "app/settings.h"

#include <QDir>
#include <QFileInfo>

QString DumpFolder::make(const QString &name, QString *dump)
{
    const QString plainName = QFileInfo(name).fileName();
    const QDir folder(Settings::instance()->absoluteWorkingDirectory());
    if (QFileInfo(folder.filePath(plainName)).isDir()) {
        return tr("The dump has already been created");
    }
    if (!folder.mkdir(plainName)) {
        return tr("Can't create dump directory");
    }
    *dump = folder.filePath(plainName + QLatin1Char('/') + plainName);
    return QString();
}
