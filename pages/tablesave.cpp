// SPDX-License-Identifier: MIT
#include "pages/tablesave.h"

#include "net/socketwait.h"
#include "pages/photofiles.h"
#include "records/deviceindex.h"
#include "records/passagecsv.h"
#include "records/recordfile.h"
#include "records/scanmodel.h"

#include <QFileInfo>
#include <QSaveFile>
#include <QTextStream>

namespace
{

constexpr qint64 copyStep = 64 * 1024;

QString copyBeginning(const QString &source, const QString &destination, qint64 bytes)
{
    QFile from(source);
    if (!from.open(QIODevice::ReadOnly)) {
        return from.errorString();
    }
    QSaveFile to(destination);
    if (!to.open(QIODevice::WriteOnly)) {
        return to.errorString();
    }
    for (qint64 rest = bytes; rest > 0;) {
        if (SocketWait::interrupted()) {
            return TableSave::tr("Interrupted");
        }
        const QByteArray piece = from.read(qMin(rest, copyStep));
        if (from.error() != QFileDevice::NoError) {
            return from.errorString();
        }
        if (piece.isEmpty()) {
            break; // the index may have fewer entries than the table has rows
        }
        if (to.write(piece) != piece.size()) {
            return to.errorString();
        }
        rest -= piece.size();
    }
    return to.commit() ? QString() : to.errorString();
}

} // namespace

QString TableSave::dump(const TableSnapshot &table, const QString &name)
{
    const QString index = ScanModel::indexFileOf(name);
    for (const QString &written : {name, index}) {
        if (PhotoFiles::isSameFile(written, table.recordFile) ||
            PhotoFiles::isSameFile(written, table.indexFile)) {
            return tr("Destination file exists");
        }
    }
    const QString error = copyBeginning(table.recordFile, name, qint64(table.rows) * Scan::size);
    return error.isEmpty()
               ? copyBeginning(table.indexFile, index, qint64(table.rows) * DeviceIndex::entrySize)
               : error;
}

QString TableSave::plainCsv(const TableSnapshot &table, const QString &name)
{
    if (PhotoFiles::isSameFile(name, table.recordFile) ||
        PhotoFiles::isSameFile(name, table.indexFile)) {
        return tr("Destination file exists");
    }
    QSaveFile file(name);
    if (!file.open(QIODevice::WriteOnly)) {
        return file.errorString();
    }
    const QLatin1Char separator(';');
    QTextStream stream(&file);
    stream << table.titles.join(separator);
    const QString readError = forEachPassage(table, [&](const Scan &scan) {
        stream << '\n' << PassageCsv::fields(scan).join(separator);
        return stream.status() == QTextStream::Ok;
    });
    if (!readError.isEmpty()) {
        return readError;
    }
    stream.flush();
    return file.commit() ? QString() : file.errorString();
}

QString TableSave::photos(const TableSnapshot &table, const QString &pictureFolder,
                          const QString &folder)
{
    const QString from = QFileInfo(table.indexFile).absolutePath();
    QStringList errors;
    errors << forEachPassage(table, [&](const Scan &scan) {
        const QString source = PhotoFiles::path(from, pictureFolder, scan);
        const QString destination = PhotoFiles::path(folder, pictureFolder, scan);
        if (QFileInfo::exists(source) && !PhotoFiles::isSameFile(source, destination)) {
            errors << PhotoFiles::copy(source, destination);
        }
        return true;
    });
    errors.removeAll(QString());
    return errors.join(QLatin1Char('\n'));
}

QString TableSave::forEachPassage(const TableSnapshot &table,
                                  const std::function<bool(const Scan &)> &action)
{
    RecordFile file(table.recordFile, Scan::size);
    if (!file.open(QIODevice::ReadOnly)) {
        return file.errorString();
    }
    Scan scan;
    for (int row = 0; row < table.rows; ++row) {
        if (SocketWait::interrupted()) {
            return tr("Interrupted");
        }
        if (!file.read(row, scan.data())) {
            return file.errorString();
        }
        if (!action(scan)) {
            break;
        }
    }
    return QString();
}
