// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

// First, last and largest of the values that one quantity had.
struct Course {
    qint64 first = -1;
    qint64 last = -1;
    qint64 most = -1;

    void add(qint64 value);
    QString text() const; // "first/last/most"
};

// What a process takes of the machine, over a span of time, from the files of /proc. A process that
// has gone adds nothing.
struct ProcessProbe {
    Course rssKb;
    Course pssKb;
    Course threads;
    Course descriptors;

    void look(qint64 processId);
    QString text() const;
};
