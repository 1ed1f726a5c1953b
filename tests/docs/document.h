// SPDX-License-Identifier: MIT
#pragma once

#include <QMultiMap>
#include <QString>
#include <QStringList>
#include <QVector>

// A Markdown document of the tree, or nothing of what is asked where there is no such file. Only
// what the documents here use is understood: headings by "#", tables by "|", pictures and links on
// one line; a link has no ")" in it.
class Document
{
public:
    explicit Document(const QString &path);

    QString text() const { return text_; }
    // With their signs, in their order.
    QStringList headings() const;
    // Paths as they are written, in their order.
    QStringList pictures() const;
    // What links to its headings have behind "#".
    QStringList places() const;
    // The targets of links and pictures as they are written: paths, addresses of the web, places.
    QStringList links() const;
    // The cells of the rows of all tables below a heading of the second level, but the titles.
    QVector<QStringList> rows(const QString &heading) const;
    QStringList firstCells(const QString &heading) const;

private:
    QString text_;
};

// The texts of a translation file: the programs' own by the catalogue's. An unfinished translation
// is empty; & and tags are taken out.
QMultiMap<QString, QString> catalogueTexts(const QString &path, const QStringList &contexts = {});
