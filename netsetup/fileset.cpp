// SPDX-License-Identifier: MIT
#include "netsetup/fileset.h"

#include "records/filewrite.h"
#include "records/flush.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>

namespace
{

// Links that go on to links end somewhere.
constexpr int mostLinks = 32;

// Over what stands there.
QString move(const QString &from, const QString &to)
{
    return std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0
               ? QString()
               : qt_error_string(errno);
}

} // namespace

FileSet::FileSet(const QString &mark)
    : mark_(mark)
{
}

void FileSet::add(const QString &name, const QByteArray &bytes)
{
    QFile file(target(name));
    const bool isThere = file.exists();
    const QByteArray former = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    members_.append({file.fileName(), bytes, isThere, former});
}

QString FileSet::commit()
{
    QString error = dropFormerMark();
    if (error.isEmpty()) {
        error = prepare();
    }
    QFile mark(mark_);
    if (error.isEmpty() && !mark.open(QIODevice::WriteOnly)) {
        error = mark.errorString();
    }
    mark.close();
    if (error.isEmpty()) {
        error = Flush::folderOf(mark_);
    }
    if (error.isEmpty()) {
        error = replaceAll();
    }
    if (error.isEmpty()) {
        error = flushFolders();
    }
    clear();
    return error;
}

void FileSet::repair(const QString &mark, const QStringList &names)
{
    const bool counts = QFile::exists(mark);
    bool isWhole = true;
    for (const QString &name : names) {
        const QString file = target(name);
        if (!QFile::exists(beside(file))) {
            continue;
        }
        if (counts) {
            isWhole = move(beside(file), file).isEmpty() && isWhole;
        } else {
            QFile::remove(beside(file));
        }
    }
    if (counts) {
        for (const QString &name : names) {
            Flush::folderOf(target(name));
        }
        if (isWhole) {
            QFile::remove(mark);
        }
    }
}

QString FileSet::target(const QString &name)
{
    QString file = name;
    for (int links = 0; links < mostLinks && QFileInfo(file).isSymLink(); ++links) {
        file = QFileInfo(file).symLinkTarget();
    }
    return file;
}

QString FileSet::beside(const QString &target)
{
    return target + QStringLiteral(".new");
}

QString FileSet::write(const Member &member)
{
    QFile file(beside(member.name));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered)) {
        return file.errorString();
    }
    if (member.wasThere) {
        file.setPermissions(QFile::permissions(member.name));
    }
    return FileWrite::all(file, member.bytes) ? Flush::file(file.handle()) : file.errorString();
}

// One that a repair has left would make a set count that is not written whole yet.
QString FileSet::dropFormerMark() const
{
    QFile mark(mark_);
    if (!mark.exists()) {
        return QString();
    }
    return mark.remove() ? Flush::folderOf(mark_) : mark.errorString();
}

QString FileSet::prepare()
{
    for (const Member &member : qAsConst(members_)) {
        const QFileInfo file(member.name);
        if (member.wasThere && (!file.isFile() || !file.isWritable())) {
            return qt_error_string(file.isFile() ? EACCES : EISDIR);
        }
        const QString error = write(member);
        if (!error.isEmpty()) {
            return error;
        }
    }
    return flushFolders();
}

QString FileSet::replaceAll()
{
    for (int done = 0; done < members_.size(); ++done) {
        const QString &name = members_.at(done).name;
        const QString error = move(beside(name), name);
        if (!error.isEmpty()) {
            putBack(done);
            return error;
        }
    }
    return QString();
}

// The first ones, which were replaced already.
void FileSet::putBack(int count) const
{
    for (int place = 0; place < count; ++place) {
        Member member = members_.at(place);
        if (!member.wasThere) {
            QFile::remove(member.name);
            continue;
        }
        member.bytes = member.former;
        if (write(member).isEmpty()) {
            move(beside(member.name), member.name);
        }
    }
}

void FileSet::clear() const
{
    // The mark first: without it nothing that is left counts.
    QFile::remove(mark_);
    for (const Member &member : members_) {
        QFile::remove(beside(member.name));
    }
}

QString FileSet::flushFolders() const
{
    for (const Member &member : members_) {
        const QString error = Flush::folderOf(member.name);
        if (!error.isEmpty()) {
            return error;
        }
    }
    return QString();
}
