// SPDX-License-Identifier: MIT
#include "netsetup/configparser.h"

namespace
{

bool isComment(const QString &line)
{
    for (const QChar character : line) {
        if (character != QLatin1Char(' ') && character != QLatin1Char('\t')) {
            return character == QLatin1Char('#');
        }
    }
    return false;
}

// Tabs stay: only blanks belong to the sign.
QString nameBefore(const QString &line, int sign)
{
    int end = sign;
    while (end > 0 && line.at(end - 1) == QLatin1Char(' ')) {
        --end;
    }
    return line.left(end);
}

QString valueAfter(const QString &line, int sign)
{
    int begin = sign + 1;
    while (begin < line.size() && line.at(begin) == QLatin1Char(' ')) {
        ++begin;
    }
    return line.mid(begin);
}

} // namespace

ConfigParser::ConfigParser(const QString &fileName)
    : file_(fileName)
{
    int comments = 0;
    const QStringList lines = file_.read();
    for (const QString &line : lines) {
        const int sign = line.indexOf(QLatin1Char('='));
        if (sign < 0 || isComment(line)) {
            values_.insert(LineFile::commentKey(comments++), line);
        } else {
            values_.insert(nameBefore(line, sign), valueAfter(line, sign));
        }
    }
}

QStringList ConfigParser::lines() const
{
    QStringList all;
    for (auto entry = values_.cbegin(); entry != values_.cend(); ++entry) {
        all.append(LineFile::isCommentKey(entry.key())
                       ? entry.value()
                       : entry.key() + QLatin1Char('=') + entry.value());
    }
    return all;
}
