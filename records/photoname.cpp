// SPDX-License-Identifier: MIT
#include "records/photoname.h"

#include "records/deviceindex.h"
#include "records/localtext.h"

#include <QFile>
#include <QFileInfo>

namespace
{

const QString ending = QStringLiteral(".jpeg");

} // namespace

QString PhotoName::storedId(const QString &vaskId)
{
    const QByteArray entry = DeviceIndex::entry(vaskId);
    return LocalText::decoded(entry.constData(), entry.size()).trimmed();
}

QString PhotoName::ofDevice(const QString &picture, const QString &vaskId)
{
    const QByteArray id = LocalText::encoded(storedId(vaskId), DeviceIndex::entrySize - 1);
    QString name = picture;
    if (name.endsWith(ending)) {
        name.chop(ending.size());
    }
    return name + QLatin1Char('-') + QString::fromLatin1(id.toPercentEncoding(QByteArray(), "~")) +
           ending;
}

QString PhotoName::path(const QString &folder, const QString &picture, const QString &vaskId)
{
    const QString own = folder + QLatin1Char('/') + ofDevice(picture, vaskId);
    return QFileInfo::exists(own) ? own : folder + QLatin1Char('/') + picture;
}

bool PhotoName::isThere(const QString &path)
{
    return QFileInfo(path).size() > 0;
}

void PhotoName::reserve(const QString &path)
{
    QFile(path).open(QIODevice::WriteOnly | QIODevice::NewOnly);
}

bool PhotoName::discard(const QString &folder, const QString &picture, const QString &vaskId)
{
    const QString own = folder + QLatin1Char('/') + ofDevice(picture, vaskId);
    if (QFileInfo::exists(own)) {
        return isThere(own) && QFile::resize(own, 0);
    }
    return QFile::remove(folder + QLatin1Char('/') + picture);
}
