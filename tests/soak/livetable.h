// SPDX-License-Identifier: MIT
#pragma once

#include "tests/soak/tablecomparison.h"

#include <QString>
#include <QStringList>

#include <vector>

class SoakDevice;

// The panel's live table as it lies on the disk, taken when the panel is not running, and compared
// with what the devices sent to it and with the photos that they serve.
class LiveTable
{
public:
    struct Photos {
        int equal = 0;
        int missing = 0;         // the panel had the minute in which it tries
        int missingWithKill = 0; // it had not
        int otherLane = 0;       // the other device's, of the same second and number
        int different = 0;
        QStringList examples;

        void add(const Photos &other);
        QString text() const;
    };

    // Reads record file and index in the folder; the photos are read by comparePhotos().
    explicit LiveTable(const QString &folder);

    bool isEmpty() const { return table_.isEmpty(); }
    bool isSame(const LiveTable &other) const;
    int rows() const;

    // sent[n] is what the device n sent while this table was in use, end[n] the panel's end in that
    // device's time.
    ComparisonCounts compare(const std::vector<SoakDevice *> &devices,
                             const std::vector<QVector<SentPassage>> &sent,
                             const std::vector<qint64> &end, int graceMsec) const;
    Photos comparePhotos(const std::vector<SoakDevice *> &devices,
                         const std::vector<QVector<SentPassage>> &sent,
                         const std::vector<qint64> &end) const;

    // Spoils the files of a table, to see whether a comparison finds it.
    static void tamper(const QString &folder, const QString &how);

private:
    QString folder_;
    QByteArray table_;
    QByteArray index_;
};
