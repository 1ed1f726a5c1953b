// SPDX-License-Identifier: MIT
#pragma once

#include "simulator/livefeed.h"

#include <QString>

// What a simulated device is and does, chosen before it starts. A plain value.
struct DeviceConfig {
    QString address = QStringLiteral("127.0.0.1");
    quint16 onLinePort = 0; // 0: any free port
    quint16 filePort = 0;
    QString deviceId = QStringLiteral("VASK-0001");
    int residents = 40;    // entries of its access list, at most 1000
    int archive = 0;       // passages in its archive
    qint64 archiveEnd = 0; // Unix time behind the last passage; 0: the time of the start
    int archiveStep = 120; // seconds between passages, on average
    bool archiveUnordered = false;
    FeedConfig feed;
    int burstOnConnect = 0; // records sent at once to the first that connects
    int sentLimit = 0;      // records remembered as sent; 0: all
    QString sentFile;       // every record sent is appended to it; empty: none
};
