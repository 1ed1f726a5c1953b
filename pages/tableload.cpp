// SPDX-License-Identifier: MIT
#include "pages/tableload.h"

#include "net/socketwait.h"
#include "pages/indexaside.h"
#include "pages/sourceguard.h"
#include "pages/wholefile.h"
#include "records/csv.h"
#include "records/passagecsv.h"
#include "records/regularfile.h"
#include "records/scanmodel.h"

#include <QFile>

namespace
{

// A passage's line is some 200 bytes; what is longer is no table.
constexpr qint64 longestLine = qint64{64} * 1024;
constexpr int writeStep = 64 * 1024;

// With its end; what a line has beyond the longest is passed over.
QByteArray readLine(QFile &source)
{
    const QByteArray line = source.readLine(longestLine);
    QByteArray rest = line;
    while (!rest.isEmpty() && !rest.endsWith('\n') && !SocketWait::interrupted()) {
        rest = source.readLine(longestLine);
    }
    return line;
}

} // namespace

QString TableLoad::lines(QFile &source, const TakeLine &take, const Progress &progress)
{
    const SourceGuard guard(source);
    const CSV codec;
    int shown = -1;
    readLine(source); // the titles
    while (!source.atEnd()) {
        if (SocketWait::interrupted()) {
            return tr("Interrupted");
        }
        const QByteArray line = readLine(source);
        if (line.isEmpty()) {
            // The stick was pulled out, or the file has become shorter.
            const QString change = guard.error();
            return change.isEmpty() ? tr("The file cannot be read to its end") : change;
        }
        const QStringList fields = codec.decodeRecord(QString::fromLocal8Bit(line));
        if (fields.size() > 1 || !fields.first().isEmpty()) {
            const QString error = take(fields);
            if (!error.isEmpty()) {
                return error;
            }
        }
        const int percent = static_cast<int>(source.pos() * 100 / qMax<qint64>(1, source.size()));
        if (progress && percent != shown) {
            shown = percent;
            progress(shown);
        }
    }
    return guard.error();
}

QString TableLoad::refusal(const QString &name)
{
    QFile file(name);
    return RegularFile::open(file, QIODevice::ReadWrite | QIODevice::ExistingOnly);
}

QString TableLoad::csv(const QString &source, const QString &recordFile, const Progress &progress)
{
    QFile file(source);
    QString error = RegularFile::open(file, QIODevice::ReadOnly);
    if (!error.isEmpty()) {
        return error;
    }
    WholeFile records(recordFile);
    error = records.open();
    QByteArray passages;
    const auto append = [&](const QStringList &fields) {
        passages.append(PassageCsv::scan(fields).data(), Scan::size);
        QString writeError;
        if (passages.size() >= writeStep) {
            writeError = records.write(passages);
            passages.clear();
        }
        return writeError;
    };
    if (error.isEmpty()) {
        error = lines(file, append, progress);
    }
    if (error.isEmpty()) {
        error = records.write(passages);
    }
    if (error.isEmpty()) {
        error = records.flush();
    }
    if (!error.isEmpty()) {
        return error;
    }
    IndexAside former(ScanModel::indexFileOf(recordFile));
    error = former.error().isEmpty() ? records.putInPlace() : former.error();
    if (error.isEmpty()) {
        former.drop();
    }
    return error;
}
