// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

// A source file as the checks of the tree see it; the path is relative to the root, with "/".
struct SourceFile {
    QString path;
    QString text;
};

namespace SourceTree
{

// All files below root/folder for each folder whose names match one of the patterns ("*.h"), in
// order of their paths. A file that cannot be read ends the program: a check must not pass because
// it saw nothing.
QVector<SourceFile> read(const QString &root, const QStringList &folders,
                         const QStringList &patterns);

// The folders of the root that directly hold a C++ file.
QStringList foldersWithSources(const QString &root);

} // namespace SourceTree
