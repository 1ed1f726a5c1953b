// SPDX-License-Identifier: MIT
#include "netsetup/linefile.h"

#include <QFile>
#include <QSaveFile>
#include <QTextStream>

namespace
{

constexpr QLatin1String commentMark("__comment__");

} // namespace

QStringList LineFile::read(const QString &fileName)
{
    QStringList lines;
    QFile file(fileName);
    if (file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        QTextStream stream(&file);
        while (!stream.atEnd()) {
            lines.append(stream.readLine());
        }
    }
    return lines;
}

void LineFile::write(const QString &fileName, const QStringList &lines)
{
    QByteArray text;
    for (const QString &line : lines) {
        text += line.toLocal8Bit() + '\n';
    }
    // Unbuffered, so that a full disk is noticed by the write and not after it.
    QSaveFile file(fileName);
    if (file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) &&
        file.write(text) == text.size()) {
        file.commit();
    }
}

QString LineFile::commentKey(int number)
{
    return commentMark + QString::number(number);
}

bool LineFile::isCommentKey(const QString &key)
{
    return key.contains(commentMark);
}
