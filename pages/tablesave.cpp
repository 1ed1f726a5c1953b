// SPDX-License-Identifier: MIT
#include "pages/tablesave.h"

#include "net/socketwait.h"
#include "pages/dumpneighbour.h"
#include "pages/indexaside.h"
#include "pages/photofiles.h"
#include "pages/sourceguard.h"
#include "pages/wholefile.h"
#include "records/csv.h"
#include "records/deviceindex.h"
#include "records/flush.h"
#include "records/localtext.h"
#include "records/passagecsv.h"
#include "records/photoname.h"
#include "records/recordfile.h"
#include "records/scanmodel.h"
#include "records/vasksettings.h"

#include <QFileInfo>

namespace
{

constexpr int copyStep = 64 * 1024;

} // namespace

TableSnapshot TableSnapshot::of(const ScanModel &model)
{
    TableSnapshot table{model.fileName(), model.indexFile(), model.rowCount(), {}};
    for (int column = 0; column < ScanModel::columns; ++column) {
        table.titles << model.headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
    }
    return table;
}

QString TableSave::dump(const TableSnapshot &table, const QString &name)
{
    const QString indexName = ScanModel::indexFileOf(name);
    for (const QString &written : {name, indexName}) {
        if (PhotoFiles::isSameFile(written, table.recordFile) ||
            PhotoFiles::isSameFile(written, table.indexFile)) {
            return tr("Destination file exists");
        }
    }
    const QString refusal = DumpNeighbour::refusal(name);
    if (!refusal.isEmpty()) {
        return refusal;
    }
    // Both are on the disk before one appears: an older dump keeps its own index.
    WholeFile records(name);
    WholeFile index(indexName);
    QString error = records.copyBeginning(table.recordFile, qint64(table.rows) * Scan::size);
    if (error.isEmpty()) {
        // It may have fewer entries than the table has rows.
        error = index.copyUpTo(table.indexFile, qint64(table.rows) * DeviceIndex::entrySize);
    }
    if (error.isEmpty()) {
        error = records.flush();
    }
    if (error.isEmpty()) {
        error = index.flush();
    }
    if (!error.isEmpty()) {
        return error;
    }
    IndexAside former(indexName);
    error = former.error().isEmpty() ? records.putInPlace() : former.error();
    if (!error.isEmpty()) {
        return error;
    }
    former.drop();
    error = index.putInPlace();
    return error.isEmpty() ? Flush::folderOf(name) : error;
}

QString TableSave::plainCsv(const TableSnapshot &table, const QString &name)
{
    const auto plain = [](const QStringList &fields) { return fields.join(QLatin1Char(';')); };
    return lines(table, name, plain, Progress());
}

QString TableSave::csv(const TableSnapshot &table, const QString &name, const Progress &progress)
{
    const CSV codec;
    return lines(
        table, name, [&codec](const QStringList &fields) { return codec.encodeRecord(fields); },
        progress);
}

QString TableSave::lines(const TableSnapshot &table, const QString &name, const Line &line,
                         const Progress &progress)
{
    if (PhotoFiles::isSameFile(name, table.recordFile) ||
        PhotoFiles::isSameFile(name, table.indexFile)) {
        return tr("Destination file exists");
    }
    WholeFile file(name);
    QString error = file.open();
    if (!error.isEmpty()) {
        return error;
    }
    QByteArray text = table.titles.join(QLatin1Char(';')).toLocal8Bit();
    const auto write = [&](const Scan &scan) {
        text += '\n' + line(PassageCsv::fields(scan)).toLocal8Bit();
        if (text.size() >= copyStep) {
            error = file.write(text);
            text.clear();
        }
        return error.isEmpty();
    };
    const QString readError = forEachPassage(table, write, progress);
    if (error.isEmpty()) {
        error = readError;
    }
    if (error.isEmpty()) {
        error = file.write(text);
    }
    return error.isEmpty() ? file.commit() : error;
}

QString TableSave::photos(const TableSnapshot &table, const QString &from, const QString &to,
                          const Progress &progress)
{
    QStringList errors;
    RecordFile index(table.indexFile, DeviceIndex::entrySize);
    index.open(QIODevice::ReadOnly); // without it there are no identifiers
    int row = 0;
    bool copied = false;
    const auto copy = [&](const Scan &scan) {
        char entry[DeviceIndex::entrySize] = {};
        const QString id = index.read(row++, entry)
                               ? LocalText::decoded(entry, DeviceIndex::entrySize)
                               : QString();
        const QString name =
            PhotoName::path(from, VaskSettings::picFileName(scan), id).mid(from.size());
        if (QFileInfo::exists(from + name) && !PhotoFiles::isSameFile(from + name, to + name)) {
            errors << PhotoFiles::copy(from + name, to + name);
            copied = true;
        }
        return true;
    };
    errors << forEachPassage(table, copy, progress);
    if (copied && !SocketWait::interrupted()) {
        errors << Flush::fileSystemOf(to); // all at once: one by one they would take much longer
    }
    errors.removeAll(QString());
    return errors.join(QLatin1Char('\n'));
}

QString TableSave::forEachPassage(const TableSnapshot &table,
                                  const std::function<bool(const Scan &)> &action,
                                  const Progress &progress)
{
    RecordFile file(table.recordFile, Scan::size);
    if (!file.open(QIODevice::ReadOnly)) {
        return file.errorString();
    }
    Scan scan;
    int shown = -1;
    for (int row = 0; row < table.rows; ++row) {
        if (SocketWait::interrupted()) {
            return tr("Interrupted");
        }
        if (!file.read(row, scan.data())) {
            return file.count() <= row ? SourceGuard::changed() : file.errorString();
        }
        if (!action(scan)) {
            break;
        }
        const int percent = static_cast<int>(qint64(row + 1) * 100 / table.rows);
        if (progress && percent != shown) {
            shown = percent;
            progress(shown);
        }
    }
    return QString();
}
