// SPDX-License-Identifier: MIT
#pragma once

#include "pages/tableload.h"
#include "records/scan.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <memory>

// A CSV file, list.csv, that is read into a table, table.tpp, in a fresh folder for each test
// function.
class TableLoadCase : public QObject
{
    Q_OBJECT

protected:
    // The line of a passage that has a number and a comment only.
    static QByteArray line(const char *number, const QByteArray &comment = QByteArray())
    {
        return QByteArray("21.11.2026 12:00:00;") + number + ";0;0;0;" + comment + ";";
    }

    QString below(const char *path) const { return root_->filePath(QString::fromLatin1(path)); }
    QByteArray content(const char *path) const
    {
        QFile from(below(path));
        return from.open(QIODevice::ReadOnly) ? from.readAll() : QByteArray("no such file");
    }
    void write(const char *path, const QByteArray &bytes) const
    {
        QFile to(below(path));
        if (!to.open(QIODevice::WriteOnly) || to.write(bytes) != bytes.size()) {
            qFatal("cannot write %s", path);
        }
    }
    QString load(const QString &source)
    {
        return TableLoad::csv(source, below("table.tpp"),
                              [this](int percent) { progress_ << percent; });
    }
    QString load() { return load(below("list.csv")); }
    // The numbers of the passages that are in the record file now, joined by blanks.
    QString numbers() const
    {
        const QByteArray bytes = content("table.tpp");
        QStringList found;
        for (int at = 0; at + int(Scan::size) <= bytes.size(); at += int(Scan::size)) {
            Scan scan;
            std::copy_n(bytes.constData() + at, Scan::size, scan.data());
            found << scan.number();
        }
        return found.join(QLatin1Char(' '));
    }
    std::unique_ptr<QTemporaryDir> root_;
    QVector<int> progress_;

private Q_SLOTS:
    void init()
    {
        root_ = std::make_unique<QTemporaryDir>();
        // Open to all, so that only the rights of the file itself count.
        QVERIFY(QFile::setPermissions(root_->path(), QFile::Permissions(0x7755)));
        write("table.tpp", "the old table");
        write("table.tpp.index", "the old index");
        progress_.clear();
    }
};
