// SPDX-License-Identifier: MIT
#include "tests/soak/livetable.h"

#include "records/deviceindex.h"
#include "records/scan.h"
#include "records/vasksettings.h"
#include "tests/soak/soakdevice.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cstring>

namespace
{

constexpr int mostExamples = 10;
// A late photo is tried for a minute.
constexpr qint64 photoGrace = 70000;

QString recordFile(const QString &folder)
{
    return folder + QStringLiteral("/tmponline.tpp");
}

QByteArray contentOf(const QString &name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void overwrite(const QString &name, const QByteArray &content)
{
    QFile file(name);
    if (file.open(QIODevice::WriteOnly)) {
        file.write(content);
    }
}

// A recovered table has its photos in a folder of its own name, as a dump has.
QString photoFolder(const QString &folder)
{
    const QString ofDump = folder + QStringLiteral("/tmponline.jpegdata/");
    return QFileInfo::exists(ofDump) ? ofDump : folder + QStringLiteral("/jpegdata/");
}

// Of two devices that report one number in one second, the second has its identifier in the name.
QByteArray photoOf(const QString &folder, const QString &name, const QByteArray &deviceId)
{
    const QString ending = QStringLiteral(".jpeg");
    const QString own = photoFolder(folder) + name.chopped(ending.size()) + QLatin1Char('-') +
                        QString::fromLatin1(deviceId) + ending;
    return contentOf(QFileInfo::exists(own) ? own : photoFolder(folder) + name);
}

QString photoName(const QByteArray &passage)
{
    Scan scan;
    std::memcpy(scan.data(), passage.constData(), Scan::size);
    return VaskSettings::picFileName(scan);
}

bool isOfAnother(const QByteArray &photo, const QString &name,
                 const std::vector<SoakDevice *> &devices)
{
    return std::any_of(devices.begin(), devices.end(),
                       [&](const SoakDevice *device) { return photo == device->photo(name); });
}

} // namespace

void LiveTable::Photos::add(const Photos &other)
{
    equal += other.equal;
    missing += other.missing;
    missingWithKill += other.missingWithKill;
    otherLane += other.otherLane;
    different += other.different;
    examples = (examples + other.examples).mid(0, mostExamples);
}

QString LiveTable::Photos::text() const
{
    return QStringLiteral("equal %1, missing %2, missing with a kill %3, of the other lane %4, "
                          "different %5")
        .arg(equal)
        .arg(missing)
        .arg(missingWithKill)
        .arg(otherLane)
        .arg(different);
}

LiveTable::LiveTable(const QString &folder)
    : folder_(folder)
    , table_(contentOf(recordFile(folder)))
    , index_(contentOf(recordFile(folder) + QStringLiteral(".index")))
{
}

bool LiveTable::isSame(const LiveTable &other) const
{
    return table_ == other.table_ && index_ == other.index_;
}

int LiveTable::rows() const
{
    return table_.size() / static_cast<int>(Scan::size);
}

ComparisonCounts LiveTable::compare(const std::vector<SoakDevice *> &devices,
                                    const std::vector<QVector<SentPassage>> &sent,
                                    const std::vector<qint64> &end, int graceMsec) const
{
    QHash<QByteArray, QVector<QByteArray>> rows = TableComparison::byDevice(table_, index_);
    ComparisonCounts counts;
    for (std::size_t place = 0; place < devices.size(); ++place) {
        counts.add(TableComparison(end[place], graceMsec)
                       .compare(sent[place], rows.take(devices[place]->id())));
    }
    // Rows of no device.
    for (const QVector<QByteArray> &strangers : qAsConst(rows)) {
        counts.add(TableComparison(0, 0).compare({}, strangers));
    }
    return counts;
}

LiveTable::Photos LiveTable::comparePhotos(const std::vector<SoakDevice *> &devices,
                                           const std::vector<QVector<SentPassage>> &sent,
                                           const std::vector<qint64> &end) const
{
    const QHash<QByteArray, QVector<QByteArray>> rows = TableComparison::byDevice(table_, index_);
    Photos photos;
    for (std::size_t place = 0; place < devices.size(); ++place) {
        QHash<QByteArray, qint64> times;
        for (const SentPassage &each : sent[place]) {
            times.insert(each.passage, each.msec);
        }
        for (const QByteArray &row : rows.value(devices[place]->id())) {
            if (row.size() != static_cast<int>(Scan::size)) {
                continue;
            }
            const QString name = photoName(row);
            const QByteArray photo = photoOf(folder_, name, devices[place]->id());
            if (photo == devices[place]->photo(name)) {
                ++photos.equal;
            } else if (isOfAnother(photo, name, devices)) {
                ++photos.otherLane;
                photos.examples.append(name);
            } else if (!photo.isEmpty()) {
                ++photos.different;
                photos.examples.append(name);
            } else if (times.value(row) > end[place] - photoGrace) {
                ++photos.missingWithKill;
            } else {
                ++photos.missing;
                photos.examples.append(name);
            }
        }
    }
    photos.examples = photos.examples.mid(0, mostExamples);
    return photos;
}

void LiveTable::tamper(const QString &folder, const QString &how)
{
    constexpr int size = Scan::size;
    const QString name = recordFile(folder);
    QByteArray table = contentOf(name);
    QByteArray index = contentOf(name + QStringLiteral(".index"));
    const int row = table.size() / size / 2;
    const int entry = row * DeviceIndex::entrySize;
    if (how == QLatin1String("drop")) {
        table.remove(row * size, size);
        index.remove(entry, DeviceIndex::entrySize);
    } else if (how == QLatin1String("double")) {
        table.insert(row * size, table.mid(row * size, size));
        index.insert(entry, index.mid(entry, DeviceIndex::entrySize));
    } else if (how == QLatin1String("change")) {
        table[row * size + size - 1] = '!';
    } else if (how == QLatin1String("photo")) {
        const QDir photos(folder + QStringLiteral("/jpegdata"));
        overwrite(photos.filePath(photos.entryList(QDir::Files).value(0)), "spoiled");
    }
    overwrite(name, table);
    overwrite(name + QStringLiteral(".index"), index);
}
