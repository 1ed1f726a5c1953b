// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

// The small text files that the panel's boot scripts read: lines in, lines out. Text is in the
// encoding of the process's locale; lines end with a line feed when they are written, and may end
// with CR LF or not at all when they are read.
//
// Nothing is reported: what cannot be read has no lines, and what cannot be written stays as it
// was. Functions only, callable from any thread.
namespace LineFile
{

QStringList read(const QString &fileName);

// All lines or none: the panel may be switched off at any moment, and must find a whole file at the
// next start. A link stays a link, the file that it names is written.
void write(const QString &fileName, const QStringList &lines);

// Under which key a parser keeps its line number N that is no setting, and by which it knows it
// again. A setting that happens to have this in its name is taken for such a line.
QString commentKey(int number);
bool isCommentKey(const QString &key);

} // namespace LineFile
