// SPDX-License-Identifier: MIT
#include "netsetup/linefile.h"

#include "netsetup/fileset.h"

#include <QFile>
#include <QSaveFile>
#include <QTextStream>

namespace
{

const QLatin1String commentMark("__comment__");

} // namespace

LineFile::LineFile(const QString &name)
    : name_(name)
{
}

QStringList LineFile::read()
{
    QFile file(name_);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        return QStringList();
    }
    const QByteArray bytes = file.readAll();
    isWhole_ = file.error() == QFileDevice::NoError;
    // With the size, or a zero byte would end the text.
    QString text = QString::fromLocal8Bit(bytes.constData(), bytes.size());
    isLocalText_ = !text.contains(QChar::ReplacementCharacter);
    if (!isLocalText_) {
        text = QString::fromLatin1(bytes.constData(), bytes.size());
    }
    QStringList lines;
    QTextStream stream(&text);
    while (!stream.atEnd()) {
        lines.append(stream.readLine());
    }
    return lines;
}

void LineFile::write(const QStringList &lines) const
{
    if (!isWhole_) {
        return; // what could not be read would be lost
    }
    const QByteArray bytes = bytesOf(lines);
    // Unbuffered, so that a full disk is noticed by the write and not after it.
    QSaveFile file(name_);
    if (file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) &&
        file.write(bytes) == bytes.size()) {
        file.commit();
    }
}

bool LineFile::addTo(FileSet *set, const QStringList &lines) const
{
    if (isWhole_) {
        set->add(name_, bytesOf(lines));
    }
    return isWhole_;
}

QByteArray LineFile::bytesOf(const QStringList &lines) const
{
    QByteArray bytes;
    for (const QString &line : lines) {
        bytes += (isLocalText_ ? line.toLocal8Bit() : line.toLatin1()) + '\n';
    }
    return bytes;
}

QString LineFile::commentKey(int number)
{
    return commentMark + QString::number(number);
}

bool LineFile::isCommentKey(const QString &key)
{
    return key.contains(commentMark);
}
