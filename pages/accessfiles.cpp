// SPDX-License-Identifier: MIT
#include "pages/accessfiles.h"

#include "app/settings.h"
#include "net/socketwait.h"
#include "pages/photofiles.h"
#include "pages/sourceguard.h"
#include "pages/tableload.h"
#include "pages/wholefile.h"
#include "records/accesscsv.h"
#include "records/accessmodel.h"
#include "records/csv.h"
#include "records/recordfile.h"
#include "records/regularfile.h"
#include "records/vasksettings.h"

#include <algorithm>

namespace
{

// Enough for the longest titles.
constexpr qint64 titleBytes = 4096;
constexpr qint64 readStep = qint64{64} * 1024;

// Whether the first line, which may end with CR or LF, is the only one. Lines that end with CR
// alone are one line to the loader, and all their entries a part of the titles.
bool isOneLine(QFile &source)
{
    bool isBehind = false;
    QByteArray piece = source.seek(0) ? source.read(readStep) : QByteArray();
    for (; !piece.isEmpty() && !SocketWait::interrupted(); piece = source.read(readStep)) {
        for (const char c : qAsConst(piece)) {
            const bool isLineEnd = c == '\r' || c == '\n';
            if (isBehind && !isLineEnd && c != ' ' && c != '\t') {
                return false;
            }
            isBehind = isBehind || isLineEnd;
        }
    }
    return source.atEnd();
}

} // namespace

QString AccessFiles::ownList()
{
    const Settings *settings = Settings::instance();
    return settings->absolute(settings->sufferedTempFile());
}

QString AccessFiles::transferTemplate()
{
    const Settings *settings = Settings::instance();
    return settings->transferTemplate(settings->sufferedTempDirectory());
}

NumberSource AccessFiles::numbersOf(const AccessModel *model)
{
    return {AccessModel::NumberColumn, Access::size, [model] { return model->fileName(); },
            [](const char *record) {
                Access access;
                std::copy_n(record, Access::size, access.data());
                // A device may write its list in local letters, which stay as they are.
                return VaskSettings::translateFromLocal(access.number());
            }};
}

QString AccessFiles::create(const QString &name)
{
    QFile file(name);
    return file.open(QIODevice::ReadWrite) ? QString() : file.errorString();
}

bool AccessFiles::isTooLong(qint64 bytes)
{
    return bytes / Access::size > mostEntries;
}

QString AccessFiles::tooLong()
{
    return tr("The access list is longer than 100,000 entries");
}

QString AccessFiles::refusal(const QString &name)
{
    const QString error = TableLoad::refusal(name);
    return error.isEmpty() && isTooLong(QFile(name).size()) ? tooLong() : error;
}

QString AccessFiles::copy(const QString &list, const QString &name)
{
    if (PhotoFiles::isSameFile(list, name)) {
        return tr("Destination file exists");
    }
    WholeFile file(name);
    const qint64 bytes = QFile(list).size();
    const QString error = file.copyUnchanged(list, bytes - bytes % Access::size);
    return error.isEmpty() ? file.commit() : error;
}

QString AccessFiles::saveCsv(const QString &list, const QStringList &titles, const QString &name)
{
    if (PhotoFiles::isSameFile(list, name)) {
        return tr("Destination file exists");
    }
    RecordFile entries(list, Access::size);
    if (!entries.open(QIODevice::ReadOnly)) {
        return entries.errorString();
    }
    const CSV codec;
    QByteArray text = titles.join(QLatin1Char(';')).toLocal8Bit();
    Access access;
    const int count = entries.count();
    for (int row = 0; row < count && row < entries.count(); ++row) {
        if (!entries.read(row, access.data())) {
            return entries.errorString();
        }
        text += '\n' + codec.encodeRecord(AccessCsv::fields(access)).toLocal8Bit();
    }
    if (entries.count() != count) {
        return SourceGuard::changed();
    }
    WholeFile file(name);
    QString error = file.open();
    if (error.isEmpty()) {
        error = file.write(text);
    }
    return error.isEmpty() ? file.commit() : error;
}

bool AccessFiles::remove(const QString &list, const QVector<int> &entries)
{
    RecordFile file(list, Access::size);
    return file.open(QIODevice::ReadWrite | QIODevice::ExistingOnly) && file.remove(entries);
}

QString AccessFiles::readCsv(QFile &source, WholeFile *list)
{
    const QStringList titles = CSV().decodeRecord(QString::fromLocal8Bit(source.peek(titleBytes)));
    int entries = 0;
    bool isList = false;
    const QString error = TableLoad::lines(source, [&](const QStringList &fields) {
        isList = isList || AccessCsv::hasId(fields);
        return ++entries > mostEntries
                   ? tooLong()
                   : list->write(QByteArray(AccessCsv::access(fields).data(), Access::size));
    });
    if (!error.isEmpty()) {
        return error;
    }
    const bool isEmptyList = entries == 0 && AccessCsv::areTitles(titles) && isOneLine(source);
    return isList || isEmptyList ? QString() : tr("The file is not an access list");
}

QString AccessFiles::loadCsv(const QString &source, const QString &list,
                             const std::function<bool()> &release)
{
    QFile from(source);
    WholeFile file(list);
    QString error = RegularFile::open(from, QIODevice::ReadOnly);
    if (error.isEmpty()) {
        error = file.open();
    }
    if (error.isEmpty()) {
        error = readCsv(from, &file);
    }
    if (error.isEmpty() && release && !release()) {
        error = tr("Interrupted");
    }
    return error.isEmpty() ? file.commit() : error;
}
