// SPDX-License-Identifier: MIT
#include "tests/layers/sourcetree.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>

#include <algorithm>

QVector<SourceFile> SourceTree::read(const QString &root, const QStringList &folders,
                                     const QStringList &patterns)
{
    const QDir top(root);
    QVector<SourceFile> files;
    for (const QString &folder : folders) {
        QDirIterator entries(top.filePath(folder), patterns, QDir::Files,
                             QDirIterator::Subdirectories);
        while (entries.hasNext()) {
            QFile file(entries.next());
            if (!file.open(QIODevice::ReadOnly)) {
                qFatal("cannot read %s", qPrintable(file.fileName()));
            }
            files.append(
                {top.relativeFilePath(file.fileName()), QString::fromUtf8(file.readAll())});
        }
    }
    std::sort(files.begin(), files.end(),
              [](const SourceFile &a, const SourceFile &b) { return a.path < b.path; });
    return files;
}

QStringList SourceTree::foldersWithSources(const QString &root)
{
    QStringList found;
    const QDir top(root);
    const QStringList folders = top.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    for (const QString &folder : folders) {
        const QStringList patterns{QStringLiteral("*.h"), QStringLiteral("*.cpp")};
        if (!QDir(top.filePath(folder)).entryList(patterns, QDir::Files).isEmpty()) {
            found.append(folder);
        }
    }
    return found;
}
