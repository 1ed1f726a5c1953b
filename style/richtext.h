// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

// Whether a text with tags may be laid out. The toolkit takes twice as long for each table inside
// another, fills every cell that another one spans, draws borders of any width, and calls itself
// for each tag that is not closed: a text of some hundred bytes, which a device can send as its
// error, would keep the window for ever or end the program. Functions only; any thread.
namespace RichText
{

// False for a text that is to be shown as it stands, tags and all: it is long, or has many tags,
// tables or numbers that no message of ours has.
bool isSimple(const QString &text);

} // namespace RichText
