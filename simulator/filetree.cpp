// SPDX-License-Identifier: MIT
#include "simulator/filetree.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMutexLocker>
#include <QSaveFile>

#include <algorithm>

QString DevicePaths::streams()
{
    return QStringLiteral("/etc/streams.ini");
}
QString DevicePaths::archive()
{
    return QStringLiteral("/mnt/usb/passbase.tpp");
}
QString DevicePaths::accessList()
{
    return QStringLiteral("/mnt/usb/accessbase.tpa");
}
QString DevicePaths::photoFolder()
{
    return QStringLiteral("/mnt/usb/jpegdata/");
}
QString DevicePaths::videoFrame()
{
    return QStringLiteral("/tmp/video0.jpeg");
}

namespace
{

class Bytes : public FileContent
{
public:
    explicit Bytes(const QByteArray &bytes)
        : bytes_(bytes)
    {
    }
    qint64 size() const override { return bytes_.size(); }
    QByteArray read(qint64 offset, qint64 length) const override
    {
        return bytes_.mid(static_cast<int>(offset), static_cast<int>(length));
    }

private:
    QByteArray bytes_;
};

class LocalFile : public FileContent
{
public:
    explicit LocalFile(const QString &path)
        : file_(path)
    {
        if (file_.open(QIODevice::ReadOnly)) {
            size_ = file_.size();
        }
    }
    bool isOpen() const { return file_.isOpen(); }
    qint64 size() const override { return size_; }
    QByteArray read(qint64 offset, qint64 length) const override
    {
        return file_.seek(offset) ? file_.read(length) : QByteArray();
    }

private:
    mutable QFile file_;
    qint64 size_ = 0;
};

std::shared_ptr<const FileContent> localContent(const QString &path)
{
    if (path.isEmpty() || !QFileInfo(path).isFile()) {
        return nullptr;
    }
    auto content = std::make_shared<LocalFile>(path);
    return content->isOpen() ? content : nullptr;
}

} // namespace

FileTree::FileTree() = default;
FileTree::~FileTree() = default;

std::shared_ptr<const FileContent> FileTree::contentOf(const QByteArray &bytes)
{
    return std::make_shared<Bytes>(bytes);
}

void FileTree::set(const QString &path, const QByteArray &content)
{
    const QMutexLocker lock(&mutex_);
    files_.insert(path, content);
    hidden_.remove(path);
    late_.remove(path);
}

QByteArray FileTree::get(const QString &path) const
{
    const std::shared_ptr<const FileContent> content = open(path);
    if (!content) {
        return QByteArray();
    }
    const QByteArray bytes = content->read(0, content->size());
    return bytes.isNull() ? QByteArray("") : bytes;
}

bool FileTree::contains(const QString &path) const
{
    return open(path) != nullptr;
}

void FileTree::remove(const QString &path)
{
    const QMutexLocker lock(&mutex_);
    files_.remove(path);
    hidden_.insert(path);
}

void FileTree::restore(const QString &path)
{
    const QMutexLocker lock(&mutex_);
    files_.remove(path);
    hidden_.remove(path);
    late_.remove(path);
}

void FileTree::setLate(const QString &path, int msec)
{
    const QMutexLocker lock(&mutex_);
    for (auto late = late_.begin(); late != late_.end();) {
        late = late->hasExpired() ? late_.erase(late) : std::next(late);
    }
    late_.insert(path, QDeadlineTimer(msec));
}

QStringList FileTree::paths() const
{
    const QMutexLocker lock(&mutex_);
    QStringList result = files_.keys();
    result.sort();
    return result;
}

void FileTree::setMaker(const QString &path, Maker maker)
{
    const QMutexLocker lock(&mutex_);
    const auto same = std::find_if(makers_.begin(), makers_.end(),
                                   [&path](const auto &entry) { return entry.first == path; });
    if (same != makers_.end()) {
        same->second = std::move(maker);
    } else {
        makers_.emplace_back(path, std::move(maker));
    }
}

void FileTree::setRoot(const QString &folder)
{
    const QMutexLocker lock(&mutex_);
    root_ = folder;
}

std::shared_ptr<const FileContent> FileTree::open(const QString &path) const
{
    Maker maker;
    QString local;
    {
        const QMutexLocker lock(&mutex_);
        if (isHidden(path)) {
            return nullptr;
        }
        const auto file = files_.constFind(path);
        if (file != files_.constEnd()) {
            return contentOf(*file);
        }
        local = rootFile(path);
        maker = makerOf(path);
    }
    if (std::shared_ptr<const FileContent> content = localContent(local)) {
        return content;
    }
    return maker ? maker(path) : nullptr;
}

bool FileTree::store(const QString &path, const QByteArray &content)
{
    set(path, content);
    QString local;
    {
        const QMutexLocker lock(&mutex_);
        if (root_.isEmpty()) {
            return true;
        }
        local = rootFile(path);
    }
    if (local.isEmpty() || !QDir().mkpath(QFileInfo(local).path())) {
        return false;
    }
    QSaveFile file(local);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() &&
           file.commit();
}

FileTree::Maker FileTree::makerOf(const QString &path) const
{
    for (const auto &[made, maker] : makers_) {
        if (made.endsWith(QLatin1Char('/')) ? path.startsWith(made) : path == made) {
            return maker;
        }
    }
    return Maker();
}

// The local path of a remote one; empty when there is no root folder or the path leads out of it.
QString FileTree::rootFile(const QString &path) const
{
    if (root_.isEmpty()) {
        return QString();
    }
    const QString root = QDir::cleanPath(QDir(root_).absolutePath());
    const QString local = QDir::cleanPath(root + QLatin1Char('/') + path);
    return local.startsWith(root + QLatin1Char('/')) ? local : QString();
}

bool FileTree::isHidden(const QString &path) const
{
    const auto late = late_.constFind(path);
    return hidden_.contains(path) || (late != late_.constEnd() && !late->hasExpired());
}
