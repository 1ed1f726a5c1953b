// SPDX-License-Identifier: MIT
#pragma once

#include <QDir>
#include <QFile>

// Files in the process's current directory, as bytes.
namespace TextFile
{

inline void write(const QString &name, const QByteArray &content)
{
    QFile file(name);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
        qFatal("cannot write %s", qPrintable(name));
    }
}

// A file that is not there gives a text that no test expects.
inline QByteArray content(const QString &name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no such file)");
}

// All that lies in the directory, files that begin with a dot too.
inline QStringList names()
{
    return QDir().entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
}

} // namespace TextFile
