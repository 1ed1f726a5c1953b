// SPDX-License-Identifier: MIT
#include "pages/archivefiles.h"

#include "app/settings.h"
#include "pages/temporarydata.h"
#include "records/photoname.h"
#include "records/scanmodel.h"
#include "records/vasksettings.h"

#include <QFile>
#include <QFileInfo>

QString ArchiveFiles::record()
{
    const Settings *settings = Settings::instance();
    return settings->absolute(settings->archiveTempFile());
}

QString ArchiveFiles::folder()
{
    const Settings *settings = Settings::instance();
    return settings->absolute(settings->archiveTempDirectory());
}

QString ArchiveFiles::transferTemplate()
{
    const Settings *settings = Settings::instance();
    return settings->transferTemplate(settings->archiveTempDirectory());
}

QString ArchiveFiles::photosOf(const QString &table)
{
    const QFileInfo file(table);
    return file.absolutePath() + QLatin1Char('/') + VaskSettings::picFileDir(file.baseName());
}

QString ArchiveFiles::photo(const QString &table, const Scan &scan, const QString &vaskId)
{
    return PhotoName::path(photosOf(table), VaskSettings::picFileName(scan), vaskId);
}

void ArchiveFiles::removeArchive()
{
    if (Settings::instance() != nullptr) {
        QFile::remove(record());
        QFile::remove(ScanModel::indexFileOf(record()));
    }
}

void ArchiveFiles::removeAll()
{
    if (Settings::instance() != nullptr) {
        TemporaryData::clear(folder());
        if (QFileInfo(record()).absolutePath() != QFileInfo(folder()).absoluteFilePath()) {
            TemporaryData::clear(photosOf(record())); // the settings have put the archive elsewhere
        }
        removeArchive();
    }
}
