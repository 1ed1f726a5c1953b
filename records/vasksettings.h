// SPDX-License-Identifier: MIT
#pragma once

#include <QRegExp>
#include <QString>

class QDateTime;

// The rules for plate numbers, and the names of the files that panel and devices share.
//
// A number is one letter, three digits, two letters and a region of two or three digits. The
// patterns and the two letter sets are translatable texts, so init() must run after the program's
// catalogue is installed; from then on everything here only reads and may be called from any
// thread.
class VaskSettings
{
public:
    // How a table is searched by number.
    enum NumFilterMode : int { NumFilterWhole = 0, NumFilterSymbols = 1, NumFilterNumbers = 2 };

    static void init();

    // A complete number; one whose characters may be "?" (not readable); what may be typed for a
    // search by letters and by digits. All case-insensitive.
    static QRegExp numPattern;
    static QRegExp numPatternQ;
    static QRegExp numPatternSymbols;
    static QRegExp numPatternNumbers;

    // Paired by position: a letter of the first set is replaced by that of the second.
    static QString localSymbols;
    static QString latinSymbols;

    // An expression that finds the numbers meant by what the operator typed, to be matched
    // anywhere inside a number as the tables show it ("#" stands for an unreadable character). A
    // mode outside the enumeration matches everything.
    static QRegExp numFilter(const QString &text, NumFilterMode mode);

    // The number in capitals with its local letters replaced by Latin ones. While either letter
    // set is empty the text is returned as it is.
    static QString translateFromLocal(const QString &number);

    // The same for a text with local letters; any other stays as it is, its small letters included.
    static QString inLatinLetters(const QString &text);

    // The number as it is shown: "#" for every character that the device could not read.
    static QString readableNumber(const QString &number);

    // The name of a passage's picture: UTC time and number. UTC keeps the names of a passage the
    // same on panel and device, whatever time zone each is set to.
    template <typename PassageRecord>
    static QString picFileName(const PassageRecord &record)
    {
        return picFileName(record.number(), record.dateTime());
    }

    // The folder of a device's or table's pictures; without a name that of the live table.
    static QString picFileDir(const QString &host = QString());

    static QString accessbaseSuffix();
    static QString passbaseSuffix();
    static QString passbaseIndexSuffix();
    static QString picFileDirFormat();
    // The time in names of files.
    static QString dateFormat();

private:
    static QString picFileName(const QString &number, const QDateTime &time);
};
