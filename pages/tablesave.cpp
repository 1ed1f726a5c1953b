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

namespace
{

constexpr int copyStep = 64 * 1024;

// A file that appears under its name when all of it is written, and not before. Unbuffered, since
// a buffer that fails to empty itself at the end keeps no reason for it.
class WholeFile
{
    Q_DECLARE_TR_FUNCTIONS(TableSave)

public:
    explicit WholeFile(const QString &name)
        : file_(name)
    {
    }

    // Each returns the text of what went wrong.
    QString open()
    {
        return file_.open(QIODevice::WriteOnly | QIODevice::Unbuffered) ? QString() : reason();
    }
    QString write(const QByteArray &bytes)
    {
        // A disk that fills up takes a part first, and only the next call tells why.
        for (int done = 0; done < bytes.size();) {
            const qint64 taken = file_.write(bytes.constData() + done, bytes.size() - done);
            if (taken <= 0) {
                return reason();
            }
            done += static_cast<int>(taken);
        }
        return QString();
    }
    QString commit() { return file_.commit() ? QString() : reason(); }

private:
    // Never empty, which would mean success.
    QString reason() const
    {
        const QString text = file_.errorString();
        return text.isEmpty() ? tr("The file cannot be written") : text;
    }

    QSaveFile file_;
};

QString copyBeginning(const QString &source, WholeFile &destination, qint64 bytes)
{
    QFile from(source);
    if (!from.open(QIODevice::ReadOnly)) {
        return from.errorString();
    }
    QString error = destination.open();
    for (qint64 rest = bytes; rest > 0 && error.isEmpty();) {
        const QByteArray piece = from.read(qMin<qint64>(rest, copyStep));
        if (from.error() != QFileDevice::NoError) {
            return from.errorString();
        }
        if (piece.isEmpty()) {
            break; // the index may have fewer entries than the table has rows
        }
        rest -= piece.size();
        error = SocketWait::interrupted() ? TableSave::tr("Interrupted") : destination.write(piece);
    }
    return error;
}

} // namespace

QString TableSave::dump(const TableSnapshot &table, const QString &name)
{
    const QString indexName = ScanModel::indexFileOf(name);
    for (const QString &written : {name, indexName}) {
        if (PhotoFiles::isSameFile(written, table.recordFile) ||
            PhotoFiles::isSameFile(written, table.indexFile)) {
            return tr("Destination file exists");
        }
    }
    // Both are written before one appears: an older dump keeps its own index.
    WholeFile records(name);
    WholeFile index(indexName);
    QString error = copyBeginning(table.recordFile, records, qint64(table.rows) * Scan::size);
    if (error.isEmpty()) {
        error = copyBeginning(table.indexFile, index, qint64(table.rows) * DeviceIndex::entrySize);
    }
    if (error.isEmpty()) {
        error = records.commit();
    }
    return error.isEmpty() ? index.commit() : error;
}

QString TableSave::plainCsv(const TableSnapshot &table, const QString &name)
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
    const QLatin1Char separator(';');
    QByteArray text = table.titles.join(separator).toLocal8Bit();
    const QString readError = forEachPassage(table, [&](const Scan &scan) {
        text += '\n' + PassageCsv::fields(scan).join(separator).toLocal8Bit();
        if (text.size() >= copyStep) {
            error = file.write(text);
            text.clear();
        }
        return error.isEmpty();
    });
    if (error.isEmpty()) {
        error = readError;
    }
    if (error.isEmpty()) {
        error = file.write(text);
    }
    return error.isEmpty() ? file.commit() : error;
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
