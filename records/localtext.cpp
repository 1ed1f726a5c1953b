// SPDX-License-Identifier: MIT
#include "records/localtext.h"

#include <QTextCodec>

#include <langinfo.h>

namespace
{

constexpr int utf8Mib = 106;
constexpr int longestUtf8 = 4;

bool isUtf8Continuation(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

// How many bytes the sequence takes that begins with this byte; 1 for a byte that begins none.
int utf8Length(char lead)
{
    const auto byte = static_cast<unsigned char>(lead);
    if (byte >= 0xF0U) {
        return 4;
    }
    if (byte >= 0xE0U) {
        return 3;
    }
    return byte >= 0xC0U ? 2 : 1;
}

bool localEncodingIsUtf8()
{
    const QTextCodec *codec = QTextCodec::codecForLocale();
    return codec != nullptr && codec->mibEnum() == utf8Mib;
}

} // namespace

void LocalText::useCodecOfLocale()
{
    // What the C library calls plain ASCII: nothing is known of the locale, UTF-8 stays.
    const QByteArray charset = nl_langinfo(CODESET);
    if (charset == "ANSI_X3.4-1968") {
        return;
    }
    if (QTextCodec *codec = QTextCodec::codecForName(charset)) {
        QTextCodec::setCodecForLocale(codec);
    }
}

int LocalText::wholeCharacters(const char *bytes, int size, int limit)
{
    if (size <= limit) {
        return size;
    }
    if (!localEncodingIsUtf8()) {
        return limit;
    }
    // Decided by the bytes before the limit alone, and no further back than a character can reach,
    // so that a row of bytes that are no UTF-8 at all (a device with another code page) is not
    // lost.
    int start = limit - 1;
    while (start > 0 && limit - start < longestUtf8 && isUtf8Continuation(bytes[start])) {
        --start;
    }
    const bool isCut = start >= 0 && start + utf8Length(bytes[start]) > limit;
    return isCut ? start : limit;
}

QByteArray LocalText::encoded(const QString &text, int limit)
{
    // No character takes less than a byte, so the rest of a long text need not be encoded.
    QByteArray bytes = text.left(limit + 1).toLocal8Bit();
    // A zero character would end the text for every reader.
    bytes.truncate(static_cast<int>(qstrnlen(bytes.constData(), static_cast<uint>(bytes.size()))));
    return bytes.left(wholeCharacters(bytes.constData(), bytes.size(), limit));
}

QByteArray LocalText::fieldBytes(const char *field, int fieldSize)
{
    const int stored = static_cast<int>(qstrnlen(field, static_cast<uint>(fieldSize)));
    return QByteArray(field, wholeCharacters(field, stored, fieldSize - 1));
}

QString LocalText::decoded(const char *field, int fieldSize)
{
    return QString::fromLocal8Bit(fieldBytes(field, fieldSize));
}
