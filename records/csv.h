// SPDX-License-Identifier: MIT
#pragma once

#include <QChar>
#include <QString>
#include <QStringList>

// One line of a separated text file and its fields, both ways.
//
// A field is put in double quotes when it holds ';', '"' or ',', whatever the separator of the
// value is: tables that left the panel are opened by spreadsheets that take any of the three for
// their own. A line break inside a field becomes a blank, so a record is always one line; that is
// the one thing that does not come back as it was.
//
// Reading accepts every text: quotes need not enclose a whole field, they only keep the separators
// between them from separating, and one that is never closed runs to the end of the line.
//
// A value without state beyond its two characters; use it from any thread.
class CSV
{
public:
    explicit CSV(QChar separator = QLatin1Char(';'), QChar quote = QLatin1Char('"'));

    // The form of date and time in the tables' files.
    static QString dateFormat();

    // The field as it stands in a line.
    QString encodeField(const QString &text) const;
    // The line without its end.
    QString encodeRecord(const QStringList &fields) const;
    // The fields of a line up to a line end, if it has one; at least one field.
    QStringList decodeRecord(const QString &line) const;

private:
    QChar separator_;
    QChar quote_;
};
