// SPDX-License-Identifier: MIT
#include "pages/wholefile.h"

#include "net/socketwait.h"
#include "pages/sourceguard.h"
#include "records/filewrite.h"
#include "records/flush.h"
#include "records/regularfile.h"

#include <QFile>

namespace
{

constexpr qint64 copyStep = qint64{64} * 1024;

} // namespace

WholeFile::WholeFile(const QString &name)
    : file_(name)
{
}

QString WholeFile::open()
{
    return file_.open(QIODevice::WriteOnly | QIODevice::Unbuffered) ? QString() : reason();
}

QString WholeFile::write(const QByteArray &bytes)
{
    return FileWrite::all(file_, bytes) ? QString() : reason();
}

QString WholeFile::commit()
{
    QString error = flush();
    if (error.isEmpty()) {
        error = putInPlace();
    }
    return error.isEmpty() ? Flush::folderOf(file_.fileName()) : error;
}

QString WholeFile::flush()
{
    return Flush::file(file_.handle());
}

QString WholeFile::putInPlace()
{
    return file_.commit() ? QString() : reason();
}

QString WholeFile::copyBeginning(const QString &source, qint64 bytes)
{
    QFile from(source);
    qint64 missing = 0;
    const QString error = copy(from, bytes, &missing);
    return error.isEmpty() && missing > 0 ? SourceGuard::changed() : error;
}

QString WholeFile::copyUpTo(const QString &source, qint64 bytes)
{
    QFile from(source);
    qint64 missing = 0;
    return copy(from, bytes, &missing);
}

QString WholeFile::copyUnchanged(const QString &source, qint64 bytes)
{
    QFile from(source);
    QString error = RegularFile::open(from, QIODevice::ReadOnly);
    if (!error.isEmpty()) {
        return error;
    }
    const SourceGuard guard(from);
    qint64 missing = 0;
    error = copy(from, bytes, &missing);
    return error.isEmpty() && missing > 0 ? SourceGuard::changed()
           : error.isEmpty()              ? guard.error()
                                          : error;
}

QString WholeFile::copy(QFile &source, qint64 bytes, qint64 *missing)
{
    QString error =
        source.isOpen() ? QString() : RegularFile::open(source, QIODevice::ReadOnly);
    if (error.isEmpty()) {
        error = open();
    }
    *missing = bytes;
    while (*missing > 0 && error.isEmpty()) {
        const QByteArray piece = source.read(qMin(*missing, copyStep));
        if (source.error() != QFileDevice::NoError) {
            return source.errorString();
        }
        if (piece.isEmpty()) {
            break;
        }
        *missing -= piece.size();
        error = SocketWait::interrupted() ? tr("Interrupted") : write(piece);
    }
    return error;
}

// Never empty, which would mean success.
QString WholeFile::reason() const
{
    const QString text = file_.errorString();
    return text.isEmpty() ? tr("The file cannot be written") : text;
}
