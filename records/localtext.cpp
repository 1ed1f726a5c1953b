// SPDX-License-Identifier: MIT
#include "records/localtext.h"

#include <QTextCodec>

#include <langinfo.h>

namespace
{

constexpr int utf8Mib = 106;

bool isUtf8Continuation(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
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
    int end = limit;
    while (end > 0 && isUtf8Continuation(bytes[end])) {
        --end;
    }
    return end;
}

QByteArray LocalText::encoded(const QString &text, int limit)
{
    // No character takes less than a byte, so the rest of a long text need not be encoded.
    const QByteArray bytes = text.left(limit + 1).toLocal8Bit();
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
