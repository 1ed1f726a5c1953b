// SPDX-License-Identifier: MIT
#include "app/catalogue.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>

Catalogue::Catalogue(const QString &baseName, const QStringList &furtherFolders)
{
    const QString name = baseName + QLocale::system().name();
    bool loaded = translator_.load(name);
    for (const QString &folder : furtherFolders) {
        loaded = loaded || translator_.load(name, folder);
    }
    QCoreApplication::installTranslator(&translator_);
}

QString Catalogue::toolkitFolder()
{
    return QLibraryInfo::location(QLibraryInfo::TranslationsPath);
}

QString Catalogue::installedFolder()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/../share/stallo");
}
