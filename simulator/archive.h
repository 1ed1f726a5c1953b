// SPDX-License-Identifier: MIT
#pragma once

#include "records/scan.h"
#include "simulator/devicetexts.h"
#include "simulator/filetree.h"

#include <QByteArray>

// The passages that a simulated device has stored, computed from their place in the archive: a
// million of them take no memory, and the same seed gives the same ones in every run.
//
// Row 0 is the oldest. Times rise strictly, by about the step from row to row, up to the end;
// unordered, neighbours have changed places. Numbers are those of the device's residents, of
// strangers, and a few that were not readable. Immutable: any thread.
class Archive : public FileContent
{
public:
    // rows at least 0, end in Unix seconds, step at least 1.
    Archive(int rows, qint64 end, int step, quint32 seed, int residents, bool unordered,
            const DeviceTexts &texts = DeviceTexts());

    int rows() const { return rows_; }
    Scan scan(int row) const;

    qint64 size() const override;
    QByteArray read(qint64 offset, qint64 length) const override;

private:
    int rows_;
    qint64 end_;
    int step_;
    quint32 seed_;
    int residents_;
    bool unordered_;
    DeviceTexts texts_;
};
