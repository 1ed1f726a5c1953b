// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QDeadlineTimer>
#include <QHash>
#include <QMutex>
#include <QSet>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <utility>
#include <vector>

// Where a device keeps what the panel asks for.
namespace DevicePaths
{
QString streams();     // "/etc/streams.ini"
QString archive();     // "/mnt/usb/passbase.tpp"
QString accessList();  // "/mnt/usb/accessbase.tpa"
QString photoFolder(); // "/mnt/usb/jpegdata/", with the final slash
QString videoFrame();  // "/tmp/video0.jpeg"
} // namespace DevicePaths

// One file as it was when somebody asked for it: a size that does not change and bytes that can be
// read from any place. Lets a transfer read an archive of a hundred megabytes piece by piece
// without the whole of it ever being in memory. Used by one thread at a time.
class FileContent
{
public:
    FileContent() = default;
    virtual ~FileContent() = default;
    FileContent(const FileContent &) = delete;
    FileContent &operator=(const FileContent &) = delete;

    virtual qint64 size() const = 0;
    // At most length bytes from offset; fewer only at the end.
    virtual QByteArray read(qint64 offset, qint64 length) const = 0;
};

// What a simulated device serves, by remote path. A path is looked up in this order: hidden or not
// yet there (no such file); bytes that were set or uploaded; a file below the root folder, if one
// is set; a maker for the path or for the folder it lies in. Paths are compared as they stand.
//
// Every function may be called from any thread. Makers are called without the lock held, in the
// thread that asks, and must be able to run in several at once.
class FileTree
{
public:
    // Makes the content of a path; null when there is no such file.
    using Maker = std::function<std::shared_ptr<const FileContent>(const QString &path)>;

    FileTree();
    ~FileTree();

    // Makes the path exist with this content, also if it was removed or is late.
    void set(const QString &path, const QByteArray &content);
    // The whole content, made on demand if need be; null (not just empty) when there is none.
    QByteArray get(const QString &path) const;
    bool contains(const QString &path) const;
    // No such file from now on, even where a maker would make one.
    void remove(const QString &path);
    // Forgets what set(), remove() and setLate() did to the path.
    void restore(const QString &path);
    // No such file until msec from now.
    void setLate(const QString &path, int msec);
    // The paths that were set or uploaded, sorted.
    QStringList paths() const;

    // Content for one path, or for every path in a folder when the path ends with a slash.
    void setMaker(const QString &path, Maker maker);
    // Serves the files below a local folder too, and writes uploads there. Empty: none.
    void setRoot(const QString &folder);

    // For a transfer; null when there is no such file.
    std::shared_ptr<const FileContent> open(const QString &path) const;
    // An upload: as set(), and written below the root folder if there is one. False when that
    // failed; the content is kept nevertheless.
    bool store(const QString &path, const QByteArray &content);

    // Bytes as content, for makers.
    static std::shared_ptr<const FileContent> contentOf(const QByteArray &bytes);

private:
    Maker makerOf(const QString &path) const;
    QString rootFile(const QString &path) const;
    bool isHidden(const QString &path) const;

    mutable QMutex mutex_;
    QHash<QString, QByteArray> files_;
    QSet<QString> hidden_;
    QHash<QString, QDeadlineTimer> late_; // when they come
    std::vector<std::pair<QString, Maker>> makers_;
    QString root_;
};
