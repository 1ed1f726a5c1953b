// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

// Text in the 8-bit encoding that the panel shares with its devices: the encoding of the process's
// locale. Every text field of a record, every request line and every CSV file is in it.
//
// Functions only, callable from any thread once useCodecOfLocale() has run.
namespace LocalText
{

// Makes the toolkit's "local 8 bit" mean the character set of the process's locale. Call it right
// after the application object is made (which is what sets the locale). The toolkit's own choice
// rests on a converter library whose default is always UTF-8 on current systems, so under a
// one-byte code page cyrillic plates would be written as two bytes each. The C and POSIX locale
// keep UTF-8.
void useCodecOfLocale();

// The number of leading bytes, at most limit, that hold whole characters: a UTF-8 sequence that
// the limit would cut is left out. In one-byte code pages this is min(size, limit).
int wholeCharacters(const char *bytes, int size, int limit);

// text in the local encoding, up to a zero character if it holds one, cut between characters to at
// most limit bytes.
QByteArray encoded(const QString &text, int limit);

// The text bytes of a field of fieldSize bytes: up to the first zero byte. A full field gives
// neither its last byte, whatever it holds, nor the beginning of a character that would need it.
QByteArray fieldBytes(const char *field, int fieldSize);

// The same, decoded.
QString decoded(const char *field, int fieldSize);

} // namespace LocalText
