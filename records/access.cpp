// SPDX-License-Identifier: MIT
#include "records/access.h"

#include "records/vasksettings.h"

Access::Access()
{
    setWord<qint16>(AccessLayout::id, -1);
    // The last second that a signed 32-bit time can name: without end, for devices of that kind.
    setWord<quint32>(AccessLayout::dateTimeTill, 0x7FFFFFFFU);
}

qint16 Access::id() const
{
    return word<qint16>(AccessLayout::id);
}
void Access::setId(qint16 id)
{
    setWord(AccessLayout::id, id);
}

QString Access::number() const
{
    return text(AccessLayout::number).trimmed();
}
void Access::setNumber(const QString &number)
{
    setText(AccessLayout::number, number.trimmed());
}

QDateTime Access::dateTimeFrom() const
{
    return QDateTime::fromSecsSinceEpoch(word<quint32>(AccessLayout::dateTimeFrom));
}

void Access::setDateTimeFrom(const QDateTime &time)
{
    setTime(AccessLayout::dateTimeFrom, time);
}

QDateTime Access::dateTimeTill() const
{
    return QDateTime::fromSecsSinceEpoch(word<quint32>(AccessLayout::dateTimeTill));
}

void Access::setDateTimeTill(const QDateTime &time)
{
    setTime(AccessLayout::dateTimeTill, time);
}

QString Access::accessKey() const
{
    return text(AccessLayout::accessKey);
}
void Access::setAccessKey(const QString &key)
{
    setText(AccessLayout::accessKey, key);
}

QString Access::comment() const
{
    return text(AccessLayout::comment);
}
void Access::setComment(const QString &comment)
{
    setText(AccessLayout::comment, comment);
}

bool Access::isValid() const
{
    return id() != -1;
}

void Access::translateFromLocal()
{
    setNumber(VaskSettings::translateFromLocal(number()));
}
