// SPDX-License-Identifier: MIT
#include "pages/photofiles.h"

#include "net/socketwait.h"
#include "pages/sourceguard.h"
#include "records/filewrite.h"
#include "records/flush.h"
#include "records/photoname.h"
#include "records/regularfile.h"
#include "records/vasksettings.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QTemporaryFile>

#include <cerrno>
#include <cstdio>
#include <functional>

namespace
{

constexpr qint64 copyStep = qint64{64} * 1024;

// A temporary file without a buffer, which would hide a full disk.
class FileBeside : public QTemporaryFile
{
public:
    explicit FileBeside(const QString &name)
        : QTemporaryFile(name + QStringLiteral(".XXXXXX"))
    {
        open(QIODevice::ReadWrite | QIODevice::Unbuffered);
    }
};

QString copyInto(QFile &destination, QFile &source)
{
    const SourceGuard guard(source);
    while (true) {
        const QByteArray piece = source.read(copyStep);
        if (source.error() != QFileDevice::NoError) {
            return source.errorString();
        }
        if (piece.isEmpty()) {
            return guard.error();
        }
        if (SocketWait::interrupted()) {
            return QCoreApplication::translate("WholeFile", "Interrupted");
        }
        if (!FileWrite::all(destination, piece)) {
            return destination.errorString();
        }
    }
}

// settle brings the copy onto the disk before it gets its name.
QString replace(const QString &source, const QString &destination,
                const std::function<QString(const QFile &)> &settle)
{
    if (PhotoFiles::isSameFile(source, destination)) {
        return QCoreApplication::translate("PhotoFiles", "Destination file exists");
    }
    QFile from(source);
    QString error = RegularFile::open(from, QIODevice::ReadOnly);
    if (!error.isEmpty()) {
        return error; // what stands at the destination stays
    }
    FileBeside copy(destination);
    if (!copy.isOpen()) {
        return destination + QStringLiteral(": ") + copy.errorString();
    }
    error = copyInto(copy, from);
    if (error.isEmpty()) {
        copy.setPermissions(from.permissions()); // where the file system has any
        error = settle(copy);
    }
    if (error.isEmpty() && std::rename(QFile::encodeName(copy.fileName()).constData(),
                                       QFile::encodeName(destination).constData()) != 0) {
        error = qt_error_string(errno);
    }
    return error;
}

} // namespace

QString PhotoFiles::path(const QString &folder, const QString &pictureFolder, const Scan &scan,
                         const QString &vaskId)
{
    return PhotoName::path(folder + QLatin1Char('/') + pictureFolder,
                           VaskSettings::picFileName(scan), vaskId);
}

bool PhotoFiles::makeFolder(const QString &folder, const QString &pictureFolder)
{
    return QFileInfo(QDir(folder).filePath(pictureFolder)).isDir() ||
           QDir(folder).mkdir(pictureFolder);
}

QString PhotoFiles::copy(const QString &source, const QString &destination)
{
    return replace(source, destination, [](const QFile &) { return QString(); });
}

QString PhotoFiles::copyFlushed(const QString &source, const QString &destination)
{
    const QString error =
        replace(source, destination, [](const QFile &copy) { return Flush::file(copy.handle()); });
    return error.isEmpty() ? Flush::folderOf(destination) : error;
}

bool PhotoFiles::isSameFile(const QString &one, const QString &other)
{
    const QString real = QFileInfo(one).canonicalFilePath();
    return !real.isEmpty() && real == QFileInfo(other).canonicalFilePath();
}
