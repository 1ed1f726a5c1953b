// SPDX-License-Identifier: MIT
#include "records/oldphotos.h"

#include "records/scan.h"
#include "records/vasksettings.h"

#include <benchmark/benchmark.h>

#include <QDir>
#include <QTemporaryDir>

#include <chrono>
#include <deque>

#include <time.h>

namespace
{

constexpr qint64 photoSize = 100 * 1024;
constexpr qint64 reserve = 2 * 1024 * 1024;
constexpr quint32 begin = 1700000000;

// A live table of rows without photos, on a disk with room for some photos beside the reserve.
class Table
{
public:
    Table(int rows, int room)
        : room_(room)
        , file_(folder_.filePath(QStringLiteral("table.tpp")))
    {
        QDir().mkpath(photos());
        file_.open(QIODevice::WriteOnly | QIODevice::Unbuffered);
        QByteArray bytes;
        for (; rows_ < rows; ++rows_) {
            const Scan scan = passage(rows_);
            bytes.append(scan.data(), Scan::size);
        }
        file_.write(bytes);
    }
    QString name() const { return file_.fileName(); }
    QString photos() const { return folder_.filePath(VaskSettings::picFileDir()); }

    // One more, with its photo.
    void append()
    {
        const Scan scan = passage(rows_++);
        QFile photo(photos() + QLatin1Char('/') + VaskSettings::picFileName(scan));
        photo.open(QIODevice::WriteOnly);
        file_.write(scan.data(), Scan::size);
        left_.push_back(photo.fileName());
    }
    // Asks the disk once, like statfs().
    qint64 available()
    {
        while (!left_.empty() && !QFile::exists(left_.front())) {
            left_.pop_front();
        }
        return reserve + (room_ - qint64(left_.size())) * photoSize;
    }

private:
    static Scan passage(int row)
    {
        Scan scan;
        scan.setDateTime(QDateTime::fromSecsSinceEpoch(begin + static_cast<quint32>(row)));
        scan.setNumber(QStringLiteral("A123BC77"));
        return scan;
    }

    QTemporaryDir folder_;
    int room_;
    QFile file_;
    int rows_ = 0;
    std::deque<QString> left_; // the photos, oldest first
};

// Of this thread, which a busy machine does not lengthen.
double processorSeconds()
{
    timespec time = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

void measure(benchmark::State &state, Table &table, bool withPhotos)
{
    using Clock = std::chrono::steady_clock;
    OldPhotos photos(table.name());
    double worst = 0;
    double worstOfProcessor = 0;
    for (auto _ : state) {
        if (withPhotos) {
            table.append();
        }
        const double before = processorSeconds();
        const auto start = Clock::now();
        photos.free(reserve, [&table] { return table.available(); });
        const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
        state.SetIterationTime(seconds);
        worst = qMax(worst, seconds);
        worstOfProcessor = qMax(worstOfProcessor, processorSeconds() - before);
    }
    state.counters["worst_ms"] = worst * 1000;
    state.counters["worst_cpu_ms"] = worstOfProcessor * 1000;
}

// What a passage waits for while room is made for it: the rows before the first photo are looked at
// by the first ones that need room.
void makingRoom(benchmark::State &state)
{
    Table table(static_cast<int>(state.range(0)), 50);
    measure(state, table, true);
}
BENCHMARK(makingRoom)
    ->Arg(0)
    ->Arg(5000)
    ->Arg(36000)
    ->Arg(100000)
    ->Arg(200000)
    ->Iterations(500)
    ->UseManualTime();

// The disk is full of something else: each passage goes round the whole table for the one photo in
// its folder, which is of no row.
void makingRoomInVain(benchmark::State &state)
{
    Table table(static_cast<int>(state.range(0)), -100);
    QFile stray(table.photos() + QStringLiteral("/2024-01-01_00-00-00_X.jpeg"));
    stray.open(QIODevice::WriteOnly);
    measure(state, table, false);
}
BENCHMARK(makingRoomInVain)->Arg(5000)->Arg(200000)->Iterations(500)->UseManualTime();

} // namespace
