// SPDX-License-Identifier: MIT
#include "records/vasksettings.h"

#include <QDateTime>
#include <QObject>

QRegExp VaskSettings::numPattern;
QRegExp VaskSettings::numPatternQ;
QRegExp VaskSettings::numPatternSymbols;
QRegExp VaskSettings::numPatternNumbers;
QString VaskSettings::localSymbols;
QString VaskSettings::latinSymbols;

namespace
{

// Devices mark a character that they could not read with "?" or "*".
QString unreadableAs(QChar mark, QString number)
{
    return number.replace(QLatin1Char('?'), mark).replace(QLatin1Char('*'), mark);
}

} // namespace

void VaskSettings::init()
{
    localSymbols = QObject::tr("__", "VaskSettings");
    latinSymbols = QObject::tr("_", "VaskSettings");
    const auto pattern = [](const QString &text) { return QRegExp(text, Qt::CaseInsensitive); };
    numPattern = pattern(QObject::tr("[a-z]\\d{3,3}[a-z]{2,2}\\d{2,3}", "VaskSettings"));
    numPatternQ = pattern(QObject::tr("[a-z?][\\d?]{3,3}[a-z?]{2,2}[\\d?]{2,3}", "VaskSettings"));
    numPatternSymbols =
        pattern(QObject::tr("[a-z,*]\\d{3,3}[a-z,*]{2,2}\\d{2,3}|[a-z,*]{3,3}", "VaskSettings"));
    numPatternNumbers =
        pattern(QObject::tr("[a-z]\\d{3,3}[a-z]{2,2}\\d{2,3}|\\d{3,3}", "VaskSettings"));
}

QRegExp VaskSettings::numFilter(const QString &text, NumFilterMode mode)
{
    QString filter;
    switch (mode) {
    case NumFilterWhole:
        filter = text;
        break;
    case NumFilterSymbols:
        filter = text;
        filter.remove(QRegExp(QStringLiteral("\\d")));
        if (filter.size() > 1) {
            filter.insert(1, QStringLiteral("[#\\d]{3}"));
        }
        filter.replace(QLatin1Char('*'), QStringLiteral("\\D"));
        break;
    case NumFilterNumbers: {
        QString digits = text;
        digits.remove(QRegExp(QStringLiteral("\\D")));
        filter = QStringLiteral("\\D[#\\d]{,2}%1[#\\d]{,2}\\D{2,2}[#\\d]{2,3}").arg(digits.left(3));
        break;
    }
    }
    return QRegExp(filter, Qt::CaseInsensitive);
}

QString VaskSettings::translateFromLocal(const QString &number)
{
    if (localSymbols.isEmpty() || latinSymbols.isEmpty()) {
        return number;
    }
    QString result = number.toUpper();
    for (QChar &character : result) {
        const int place = localSymbols.indexOf(character);
        if (place >= 0 && place < latinSymbols.size()) {
            character = latinSymbols.at(place);
        }
    }
    return result;
}

QString VaskSettings::inLatinLetters(const QString &text)
{
    const QString translated = translateFromLocal(text);
    return translated == text.toUpper() ? text : translated;
}

QString VaskSettings::readableNumber(const QString &number)
{
    return unreadableAs(QLatin1Char('#'), number);
}

QString VaskSettings::picFileName(const QString &number, const QDateTime &time)
{
    return time.toUTC().toString(dateFormat()) + QLatin1Char('_') +
           unreadableAs(QLatin1Char('-'), number) + QStringLiteral(".jpeg");
}

QString VaskSettings::picFileDir(const QString &host)
{
    return host.isEmpty() ? picFileDirFormat() : host + QLatin1Char('.') + picFileDirFormat();
}

QString VaskSettings::accessbaseSuffix()
{
    return QStringLiteral(".tpa");
}
QString VaskSettings::passbaseSuffix()
{
    return QStringLiteral(".tpp");
}
QString VaskSettings::passbaseIndexSuffix()
{
    return passbaseSuffix() + QStringLiteral(".index");
}
QString VaskSettings::picFileDirFormat()
{
    return QStringLiteral("jpegdata");
}
QString VaskSettings::dateFormat()
{
    return QStringLiteral("yyyy-MM-dd_hh-mm-ss");
}
