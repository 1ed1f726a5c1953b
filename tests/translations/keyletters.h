// SPDX-License-Identifier: MIT
#pragma once

#include <QKeySequence>
#include <QString>

// Keys as they lie on a keyboard. Pressed in the Russian layout, a key is also looked for as its
// Latin letter.
namespace KeyLetters
{

// In capitals and the portable form; a Russian letter at its end as the Latin one of its key.
inline QString physical(const QKeySequence &keys)
{
    static const QString russian = QString::fromUtf8("ЙЦУКЕНГШЩЗФЫВАПРОЛДЯЧСМИТЬ");
    static const QString latin = QStringLiteral("QWERTYUIOPASDFGHJKLZXCVBNM");
    QString text = keys.toString(QKeySequence::PortableText).toUpper();
    const int place = text.isEmpty() ? -1 : russian.indexOf(text.back());
    if (place >= 0) {
        text.chop(1);
        text.append(latin.at(place));
    }
    return text;
}

// Whether the letter that is underlined in the text, if any is, lies on a button's key, with
// whatever is held down beside it.
inline bool isLetterOf(const QKeySequence &keys, const QString &text)
{
    const QString letter = physical(QKeySequence::mnemonic(text)).right(1);
    return letter.isEmpty() || letter == physical(keys).right(1);
}

} // namespace KeyLetters
