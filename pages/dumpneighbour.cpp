// SPDX-License-Identifier: MIT
#include "pages/dumpneighbour.h"

#include "pages/photofiles.h"
#include "records/vasksettings.h"

#include <QDir>
#include <QFileInfo>

namespace
{

bool isSame(const QString &one, const QString &other)
{
    return one.compare(other, Qt::CaseInsensitive) == 0;
}

} // namespace

QString DumpNeighbour::refusal(const QString &name)
{
    return hasNeighbour(name) ? tr("Another dump in this folder has the same index and photos. "
                                   "Please save as:") +
                                    QLatin1Char('\n') + freeName(name)
                              : QString();
}

bool DumpNeighbour::hasNeighbour(const QString &name)
{
    const QFileInfo own(name);
    const QFileInfoList files = own.absoluteDir().entryInfoList(
        {QLatin1Char('*') + VaskSettings::passbaseSuffix()}, QDir::Files | QDir::Hidden);
    for (const QFileInfo &file : files) {
        const bool isOwnIndex = isSame(file.baseName(), own.baseName());
        if (isOwnIndex && !isSame(file.fileName(), own.fileName()) &&
            !PhotoFiles::isSameFile(file.filePath(), name)) {
            return true;
        }
    }
    return false;
}

QString DumpNeighbour::freeName(const QString &name)
{
    const QFileInfo own(name);
    const QString suffix = VaskSettings::passbaseSuffix();
    QString plain = own.fileName();
    if (plain.endsWith(suffix, Qt::CaseInsensitive)) {
        plain.chop(suffix.size());
    }
    plain.replace(QLatin1Char('.'), QLatin1Char('-'));
    QString found = plain + suffix;
    const auto isTaken = [&own](const QString &file) {
        const QString path = own.absoluteDir().filePath(file);
        return QFileInfo::exists(path) || hasNeighbour(path);
    };
    for (int number = 2; isTaken(found); ++number) {
        found = plain + QLatin1Char('-') + QString::number(number) + suffix;
    }
    return found;
}
