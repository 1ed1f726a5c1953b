// SPDX-License-Identifier: MIT
#include "simulator/strokefont.h"

#include <algorithm>

namespace
{

// Strokes of a character on a grid of 8 by 12: points as two base-36 digits, x and y; a blank goes
// on with the stroke, a bar begins a new one.
struct Glyph {
    char character;
    const char *strokes;
};

constexpr Glyph glyphs[] = {
    {'0', "20 60 82 8a 6c 2c 0a 02 20"},
    {'1', "13 40 4c"},
    {'2', "02 20 60 82 84 0c 8c"},
    {'3', "00 80 45 65 87 8a 6c 2c 0a"},
    {'4', "6c 60 08 88"},
    {'5', "80 00 05 65 87 8a 6c 2c 0a"},
    {'6', "71 60 20 02 0a 2c 6c 8a 87 65 25 07"},
    {'7', "00 80 3c"},
    {'8', "25 03 02 20 60 82 83 65 25 07 0a 2c 6c 8a 87 65"},
    {'9', "1b 2c 6c 8a 82 60 20 02 05 27 67 85"},
    {'A', "0c 40 8c|28 68"},
    {'B', "00 0c 6c 8a 87 65 05|65 83 82 60 00"},
    {'C', "82 60 20 02 0a 2c 6c 8a"},
    {'D', "00 0c 5c 89 83 50 00"},
    {'E', "80 00 0c 8c|06 66"},
    {'F', "80 00 0c|06 66"},
    {'G', "82 60 20 02 0a 2c 6c 8a 87 57"},
    {'H', "00 0c|80 8c|06 86"},
    {'I', "40 4c|20 60|2c 6c"},
    {'J', "80 8a 6c 2c 0a"},
    {'K', "00 0c|80 06|34 8c"},
    {'L', "00 0c 8c"},
    {'M', "0c 00 47 80 8c"},
    {'N', "0c 00 8c 80"},
    {'O', "20 60 82 8a 6c 2c 0a 02 20"},
    {'P', "0c 00 60 82 85 67 07"},
    {'Q', "20 60 82 8a 6c 2c 0a 02 20|59 8c"},
    {'R', "0c 00 60 82 85 67 07|47 8c"},
    {'S', "82 60 20 02 04 26 66 88 8a 6c 2c 0a"},
    {'T', "00 80|40 4c"},
    {'U', "00 0a 2c 6c 8a 80"},
    {'V', "00 4c 80"},
    {'W', "00 2c 45 6c 80"},
    {'X', "00 8c|80 0c"},
    {'Y', "00 46 80|46 4c"},
    {'Z', "00 80 0c 8c"},
    {' ', ""},
    {'-', "16 76"},
    {':', "42 44|49 4b"},
    {'.', "4b 4c"},
    {'/', "80 0c"},
    {'?', "02 20 60 82 84 47 48|4b 4c"},
    {'*', "43 49|14 78|74 18"},
};

constexpr char unknown[] = "00 80 8c 0c 00";

// Width of a character's cell and of its grid, in heights of the text.
constexpr qreal advance = 0.78;
constexpr qreal gridWidth = 0.56;

const char *strokesOf(QChar character)
{
    static const QString cyrillic =
        QString::fromUtf8("\xd0\x90\xd0\x92\xd0\x95\xd0\x9a\xd0\x9c\xd0\x9d\xd0\x9e\xd0\xa0\xd0\xa1"
                          "\xd0\xa2\xd0\xa3\xd0\xa5");
    static const char latin[] = "ABEKMHOPCTYX";
    const QChar upper = character.toUpper();
    const int place = cyrillic.indexOf(upper);
    const char wanted = place >= 0 ? latin[place] : upper.toLatin1();
    const auto *glyph =
        std::find_if(std::begin(glyphs), std::end(glyphs),
                     [wanted](const Glyph &candidate) { return candidate.character == wanted; });
    return glyph == std::end(glyphs) ? unknown : glyph->strokes;
}

int gridDigit(char digit)
{
    return digit <= '9' ? digit - '0' : digit - 'a' + 10;
}

void addStrokes(QPainterPath *path, const char *strokes, const QRectF &cell)
{
    const qreal width = cell.width() * gridWidth / advance;
    const qreal left = cell.left() + (cell.width() - width) / 2;
    bool begin = true;
    for (const char *at = strokes; *at != '\0'; ++at) {
        if (*at == ' ') {
            continue;
        }
        if (*at == '|') {
            begin = true;
            continue;
        }
        const QPointF point(left + width * gridDigit(at[0]) / 8,
                            cell.top() + cell.height() * gridDigit(at[1]) / 12);
        if (begin) {
            path->moveTo(point);
        } else {
            path->lineTo(point);
        }
        begin = false;
        ++at;
    }
}

} // namespace

QRectF StrokeFont::cell(int place, int length, const QRectF &box)
{
    const qreal width = std::min(box.height() * advance, box.width() / std::max(length, 1));
    return QRectF(box.left() + width * place, box.top(), width, box.height());
}

QPainterPath StrokeFont::text(const QString &text, const QRectF &box)
{
    QPainterPath path;
    for (int place = 0; place < text.size(); ++place) {
        addStrokes(&path, strokesOf(text.at(place)), cell(place, text.size(), box));
    }
    return path;
}
