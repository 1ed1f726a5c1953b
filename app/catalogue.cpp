// SPDX-License-Identifier: MIT
#include "app/catalogue.h"

#include "app/cataloguefile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLibraryInfo>
#include <QLocale>

Catalogue::Catalogue(const QString &baseName, const QStringList &furtherFolders)
{
    const QString name = baseName + QLocale::system().name();
    const auto load = [this, &name](const QString &folder) {
        const QString file = CatalogueFile::find(name, folder);
        return !file.isEmpty() && CatalogueFile::isSound(file) && translator_.load(file);
    };
    bool loaded = load(QDir::currentPath());
    for (const QString &folder : furtherFolders) {
        loaded = loaded || load(folder);
    }
    QCoreApplication::installTranslator(&translator_);
}

QString Catalogue::toolkitFolder()
{
    return QLibraryInfo::location(QLibraryInfo::TranslationsPath);
}

QString Catalogue::installedFolder()
{
    // The application object has read its own path before it was told the codec of the locale, and
    // keeps what it read: a folder with local letters would not be found.
    const QString program = QFile::symLinkTarget(QStringLiteral("/proc/self/exe"));
    const QString folder = program.isEmpty() ? QCoreApplication::applicationDirPath()
                                             : QFileInfo(program).absolutePath();
    return folder + QStringLiteral("/../share/stallo");
}
