// SPDX-License-Identifier: MIT
#include "style/richtext.h"

namespace
{

constexpr int mostCharacters = 4096;
constexpr int mostTags = 200;
constexpr int mostTables = 3;
constexpr int mostDigits = 4;

bool belongsToValue(QChar character)
{
    return character.isSpace() || character == QLatin1Char('"') || character == QLatin1Char('\'') ||
           character == QLatin1Char('+') || character == QLatin1Char('-');
}

// Whether the number at this place is the value of an attribute.
bool isValue(const QString &text, int place)
{
    int before = place - 1;
    while (before >= 0 && belongsToValue(text.at(before))) {
        --before;
    }
    return before >= 0 && text.at(before) == QLatin1Char('=');
}

// Numbers in names of devices and files may be of any length, and so may colours. A style has its
// numbers at any place.
bool hasLongValue(const QString &text)
{
    const bool styled = text.contains(QLatin1String("style"), Qt::CaseInsensitive);
    for (int begin = 0; begin < text.size();) {
        int end = begin;
        while (end < text.size() && text.at(end).isDigit()) {
            ++end;
        }
        const bool isColour = begin > 0 && text.at(begin - 1) == QLatin1Char('#');
        if (end - begin > mostDigits && !isColour && (styled || isValue(text, begin))) {
            return true;
        }
        begin = end + 1;
    }
    return false;
}

} // namespace

bool RichText::isSimple(const QString &text)
{
    const auto has = [&text](const char *word) {
        return text.contains(QLatin1String(word), Qt::CaseInsensitive);
    };
    // Digits may be written as what stands for a character.
    const bool hidesNumbers = has("=") && has("&#");
    return text.size() <= mostCharacters && text.count(QLatin1Char('<')) <= mostTags &&
           text.count(QLatin1String("table"), Qt::CaseInsensitive) <= 2 * mostTables &&
           !has("rowspan") && !has("colspan") && !hidesNumbers && !hasLongValue(text);
}
