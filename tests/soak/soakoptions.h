// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

// What a soak run is to be. A plain value.
struct SoakOptions {
    int minutes = 20;
    quint32 seed = 1;
    double rate = 20;    // records per second and device
    int killEvery = 120; // seconds between kills on average; 0 for none
    int grace = 5000;    // see TableComparison
    int archive = 300;   // passages in each device's archive
    int videoMsec = 200; // between camera frames
    double latePhotos = 0.05;
    QString folder; // for everything that is written; empty: a temporary one
    QString tamper; // spoils the first table that is compared: drop, double, change, photo

    // False with the reason, or the help when that was asked for, in text.
    bool parse(const QStringList &arguments, QString *text);
};
