// SPDX-License-Identifier: MIT
#include "tests/soak/processprobe.h"

#include <QDir>
#include <QFile>

#include <algorithm>

namespace
{

// The number behind the word at the beginning of a line; -1 where there is none.
qint64 numberOf(const QString &file, const QByteArray &word)
{
    QFile status(file);
    if (!status.open(QIODevice::ReadOnly)) {
        return -1;
    }
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith(word)) {
            return line.mid(word.size()).simplified().split(' ').first().toLongLong();
        }
    }
    return -1;
}

} // namespace

void Course::add(qint64 value)
{
    if (value < 0) {
        return;
    }
    first = first < 0 ? value : first;
    last = value;
    most = std::max(most, value);
}

QString Course::text() const
{
    return QStringLiteral("%1/%2/%3").arg(first).arg(last).arg(most);
}

void ProcessProbe::look(qint64 processId)
{
    const QString folder = QStringLiteral("/proc/%1/").arg(processId);
    rssKb.add(numberOf(folder + QStringLiteral("status"), "VmRSS:"));
    threads.add(numberOf(folder + QStringLiteral("status"), "Threads:"));
    pssKb.add(numberOf(folder + QStringLiteral("smaps_rollup"), "Pss:"));
    const QDir open(folder + QStringLiteral("fd"));
    if (open.exists()) {
        descriptors.add(
            open.entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System | QDir::Hidden)
                .size());
    }
}

QString ProcessProbe::text() const
{
    return QStringLiteral("RSS %1 kB, PSS %2 kB, threads %3, descriptors %4")
        .arg(rssKb.text(), pssKb.text(), threads.text(), descriptors.text());
}
