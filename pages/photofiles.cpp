// SPDX-License-Identifier: MIT
#include "pages/photofiles.h"

#include "records/photoname.h"
#include "records/vasksettings.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

QString PhotoFiles::path(const QString &folder, const QString &pictureFolder, const Scan &scan,
                         const QString &vaskId)
{
    return PhotoName::path(folder + QLatin1Char('/') + pictureFolder,
                           VaskSettings::picFileName(scan), vaskId);
}

bool PhotoFiles::makeFolder(const QString &folder, const QString &pictureFolder)
{
    return QFileInfo(QDir(folder).filePath(pictureFolder)).isDir() ||
           QDir(folder).mkdir(pictureFolder);
}

QString PhotoFiles::copy(const QString &source, const QString &destination)
{
    if (isSameFile(source, destination)) {
        return QCoreApplication::translate("PhotoFiles", "Destination file exists");
    }
    QFile file(source);
    if (!file.open(QIODevice::ReadOnly)) {
        return file.errorString(); // what stands at the destination stays
    }
    QFile::remove(destination);
    return file.copy(destination) ? QString() : file.errorString();
}

bool PhotoFiles::isSameFile(const QString &one, const QString &other)
{
    const QString real = QFileInfo(one).canonicalFilePath();
    return !real.isEmpty() && real == QFileInfo(other).canonicalFilePath();
}
