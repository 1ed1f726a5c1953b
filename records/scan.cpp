// SPDX-License-Identifier: MIT
#include "records/scan.h"

#include "records/online.h"
#include "records/vasksettings.h"

Scan::Scan()
{
    setWord(ScanLayout::dateTime, noTime);
}

Scan::Scan(const OnLine &onLine)
{
    setWord(ScanLayout::dateTime, onLine.word<quint32>(OnLineLayout::dateTime));
    setTextBytes(ScanLayout::number, onLine.textBytes(OnLineLayout::number));
    setWord(ScanLayout::direction,
            static_cast<quint8>(onLine.word<quint32>(OnLineLayout::direction) & 0xFFU));
    setWord(ScanLayout::inAccessList, onLine.word<quint8>(OnLineLayout::inAccessList));
    setWord(ScanLayout::accessGranted, onLine.word<quint8>(OnLineLayout::accessGranted));
    setTextBytes(ScanLayout::comment, onLine.textBytes(OnLineLayout::comment));
    setTextBytes(ScanLayout::accessKey, onLine.textBytes(OnLineLayout::accessKey));
}

QDateTime Scan::dateTime() const
{
    return time(ScanLayout::dateTime);
}

void Scan::setDateTime(const QDateTime &time)
{
    setTime(ScanLayout::dateTime, time);
}

QString Scan::number() const
{
    return text(ScanLayout::number).trimmed();
}
void Scan::setNumber(const QString &number)
{
    setText(ScanLayout::number, number.trimmed());
}

bool Scan::isIncoming() const
{
    return word<quint8>(ScanLayout::direction) == 1;
}
void Scan::setIncoming(bool incoming)
{
    setWord<quint8>(ScanLayout::direction, incoming ? 1 : 2);
}

bool Scan::isInAccessList() const
{
    return flag(ScanLayout::inAccessList);
}
void Scan::setInAccessList(bool inAccessList)
{
    setFlag(ScanLayout::inAccessList, inAccessList);
}

bool Scan::isAccessGranted() const
{
    return flag(ScanLayout::accessGranted);
}
void Scan::setAccessGranted(bool granted)
{
    setFlag(ScanLayout::accessGranted, granted);
}

QString Scan::comment() const
{
    return text(ScanLayout::comment);
}
void Scan::setComment(const QString &comment)
{
    setText(ScanLayout::comment, comment);
}

QString Scan::accessKey() const
{
    return text(ScanLayout::accessKey);
}
void Scan::setAccessKey(const QString &key)
{
    setText(ScanLayout::accessKey, key);
}

bool Scan::isValid() const
{
    return word<quint32>(ScanLayout::dateTime) != noTime;
}

void Scan::translateFromLocal()
{
    setNumber(VaskSettings::translateFromLocal(number()));
}
