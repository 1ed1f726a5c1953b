// SPDX-License-Identifier: MIT
#include "pages/wholefile.h"

#include "net/socketwait.h"
#include "records/filewrite.h"
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
    return file_.commit() ? QString() : reason();
}

QString WholeFile::copyBeginning(const QString &source, qint64 bytes)
{
    QFile from(source);
    if (!from.open(QIODevice::ReadOnly)) {
        return from.errorString();
    }
    QString error = open();
    for (qint64 rest = bytes; rest > 0 && error.isEmpty();) {
        const QByteArray piece = from.read(qMin(rest, copyStep));
        if (from.error() != QFileDevice::NoError) {
            return from.errorString();
        }
        if (piece.isEmpty()) {
            break;
        }
        rest -= piece.size();
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
