// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

class FileSet;

// A small text file that the panel's boot scripts read: lines in, lines out. Lines end with a line
// feed when they are written, and may end with CR LF or not at all when they are read. Text is in
// the encoding of the process's locale; a file that is not is taken byte by byte, so that nothing
// in it is lost but carriage returns and a mark of the byte order at its beginning.
//
// Nothing is reported: what cannot be opened has no lines, and what cannot be written stays as it
// was. So does a file of which only a part could be read. Any thread, one at a time.
class LineFile
{
public:
    explicit LineFile(const QString &name);

    // Before write(), which uses the encoding that was found.
    QStringList read();

    // All lines or none: the panel may be switched off at any moment, and must find a whole file at
    // the next start. A link stays a link, the file that it names is written.
    void write(const QStringList &lines) const;
    // The same for a set of files that are replaced together; false when only a part of the file
    // could be read, which would be lost.
    bool addTo(FileSet *set, const QStringList &lines) const;

    // Under which key a parser keeps its line number N that is no setting, and by which it knows it
    // again. A setting that happens to have this in its name is taken for such a line.
    static QString commentKey(int number);
    static bool isCommentKey(const QString &key);

private:
    QByteArray bytesOf(const QStringList &lines) const;

    QString name_;
    bool isLocalText_ = true;
    bool isWhole_ = true;
};
