// SPDX-License-Identifier: MIT
#include "records/csv.h"
#include "records/scan.h"
#include "records/vasksettings.h"

#include <benchmark/benchmark.h>

#include <QStringList>

namespace
{

Scan passage()
{
    Scan scan;
    scan.setDateTime(QDateTime({2011, 3, 5}, {14, 7, 9}, Qt::UTC));
    scan.setNumber(QStringLiteral("A123BC77"));
    scan.setIncoming(true);
    scan.setInAccessList(true);
    scan.setAccessGranted(true);
    scan.setComment(QStringLiteral("Ivanov; 2nd floor, \"west\""));
    scan.setAccessKey(QStringLiteral("K-17"));
    return scan;
}

QStringList fieldsOf(const Scan &scan)
{
    return {scan.dateTime().toString(CSV::dateFormat()),
            scan.number(),
            QString::number(int{scan.isIncoming()}),
            QString::number(int{scan.isInAccessList()}),
            QString::number(int{scan.isAccessGranted()}),
            scan.comment(),
            scan.accessKey()};
}

// What the quoting of a line costs over joining its fields as they are.
void csvEncode(benchmark::State &state)
{
    const CSV csv;
    const QStringList fields = fieldsOf(passage());
    for (auto _ : state) {
        benchmark::DoNotOptimize(csv.encodeRecord(fields));
    }
}
BENCHMARK(csvEncode);

void csvPlainJoin(benchmark::State &state)
{
    const QStringList fields = fieldsOf(passage());
    for (auto _ : state) {
        benchmark::DoNotOptimize(fields.join(QLatin1Char(';')));
    }
}
BENCHMARK(csvPlainJoin);

void csvDecode(benchmark::State &state)
{
    const CSV csv;
    const QString line = csv.encodeRecord(fieldsOf(passage()));
    for (auto _ : state) {
        benchmark::DoNotOptimize(csv.decodeRecord(line));
    }
}
BENCHMARK(csvDecode);

void pictureName(benchmark::State &state)
{
    const Scan scan = passage();
    for (auto _ : state) {
        benchmark::DoNotOptimize(VaskSettings::picFileName(scan));
    }
}
BENCHMARK(pictureName);

// Every field of a passage, as a row of the table is filled.
void recordDecode(benchmark::State &state)
{
    const Scan scan = passage();
    for (auto _ : state) {
        benchmark::DoNotOptimize(scan.dateTime());
        benchmark::DoNotOptimize(scan.number());
        benchmark::DoNotOptimize(scan.isIncoming());
        benchmark::DoNotOptimize(scan.comment());
        benchmark::DoNotOptimize(scan.accessKey());
    }
}
BENCHMARK(recordDecode);

} // namespace
