// SPDX-License-Identifier: MIT
#include "records/online.h"

#include "records/vasksettings.h"

#include <QRegExp>

OnLine::OnLine()
{
    setWord(OnLineLayout::dateTime, noTime);
}

qint32 OnLine::type() const
{
    return word<qint32>(OnLineLayout::type);
}
void OnLine::setType(qint32 type)
{
    setWord(OnLineLayout::type, type);
}

bool OnLine::isIncoming() const
{
    return word<qint32>(OnLineLayout::direction) == 1;
}
void OnLine::setIncoming(bool incoming)
{
    setWord<qint32>(OnLineLayout::direction, incoming ? 1 : 2);
}

QString OnLine::number() const
{
    return text(OnLineLayout::number).trimmed();
}
void OnLine::setNumber(const QString &number)
{
    setText(OnLineLayout::number, number.trimmed());
}

QString OnLine::fileName() const
{
    return text(OnLineLayout::fileName);
}
void OnLine::setFileName(const QString &name)
{
    setText(OnLineLayout::fileName, name);
}

QDateTime OnLine::dateTime() const
{
    return time(OnLineLayout::dateTime);
}

void OnLine::setDateTime(const QDateTime &time)
{
    setTime(OnLineLayout::dateTime, time);
}

bool OnLine::isInAccessList() const
{
    return flag(OnLineLayout::inAccessList);
}
void OnLine::setInAccessList(bool inAccessList)
{
    setFlag(OnLineLayout::inAccessList, inAccessList);
}

bool OnLine::isAccessGranted() const
{
    return flag(OnLineLayout::accessGranted);
}
void OnLine::setAccessGranted(bool granted)
{
    setFlag(OnLineLayout::accessGranted, granted);
}

QString OnLine::comment() const
{
    return text(OnLineLayout::comment);
}
void OnLine::setComment(const QString &comment)
{
    setText(OnLineLayout::comment, comment);
}

QString OnLine::accessKey() const
{
    return text(OnLineLayout::accessKey);
}
void OnLine::setAccessKey(const QString &key)
{
    setText(OnLineLayout::accessKey, key);
}

bool OnLine::isValid() const
{
    // The pattern accepts every name. It is the place to refuse records whose picture names do not
    // follow a device's convention.
    return QRegExp(QStringLiteral(".*")).exactMatch(fileName()) &&
           word<quint32>(OnLineLayout::dateTime) != noTime;
}

void OnLine::translateFromLocal()
{
    setNumber(VaskSettings::translateFromLocal(number()));
}
