// SPDX-License-Identifier: MIT
#pragma once

#include <QSettings>
#include <QStringList>

class Scan;

// Every key of the configuration, its default, and the paths derived from it.
//
// Stored per user as "Dorvel Ltd" / "Stallo"; all keys but the address list stand in the group
// "Global". Nothing is cached: a getter reads its key each time and computes the default from the
// other settings as they are then. init() writes defaults once at start, after which the derived
// paths are stored and no longer follow the working directory. Values of the wrong form read as 0
// or as the text that they are; init() replaces 0 and empty texts, nothing else.
//
// One object, a child of the application object and made before anything reads configuration.
// instance() may be called from any thread; workers only read ports, paths and time-outs, and store
// the folder last used.
class Settings : public QSettings
{
    Q_OBJECT

public:
    Settings(QSettings::Format format, QSettings::Scope scope, const QString &organization,
             const QString &application, QObject *parent);
    ~Settings() override;

    // Null before the object exists and after the application object is gone.
    static Settings *instance();

    void init();

    // Writes what has changed to the disk at once. Does not wait for a lock that nobody holds.
    void store();

    // TCP ports of a device: live records and one-byte commands; files.
    int vaskParkingPort() const;
    void setVaskParkingPort(int port);
    int fileTransferPort() const;
    void setFileTransferPort(int port);

    // Camera refresh period in ms. The getter's default and the one that init() stores differ.
    int videoTimeout() const;
    void setVideoTimeout(int msec);
    // Stored for the sake of existing configurations; nothing reads it.
    int videoDisconnectTimeout() const;
    void setVideoDisconnectTimeout(int seconds);

    // Bytes that must stay free on the disk of the temporary files.
    qint64 minReservedFreeSpace() const;
    void SetMinReservedFreeSpace(qint64 bytes);

    QString workingDirectory() const;
    void setWorkingDirectory(const QString &path);
    QString archiveTempDirectory() const;
    void setArchiveTempDirectory(const QString &path);
    QString archiveTempFile() const;
    void setArchiveTempFile(const QString &path);
    QString sufferedTempDirectory() const;
    void setSufferedTempDirectory(const QString &path);
    QString sufferedTempFile() const;
    void setSufferedTempFile(const QString &path);
    QString onLineTempDirectory() const;
    void setOnLineTempDirectory(const QString &path);
    QString onLineTempFile() const;
    void setOnLineTempFile(const QString &path);
    QString videoTempDirectory() const;
    void setVideoTempDirectory(const QString &path);
    QString videoTempFileFormat() const;
    void setVideoTempFileFormat(const QString &format);

    // Paths on a device.
    QString vaskDataPath() const;
    void setVaskDataPath(const QString &path);
    QString vaskArchivePath() const;
    void setVaskArchivePath(const QString &path);
    QString vaskSufferedPath() const;
    void setVaskSufferedPath(const QString &path);
    QString vaskVideoTempFileFormat() const;
    // Writes another key than the getter reads, so it has no effect on the frame that is fetched.
    void setVaskVideoTempFileFormat(const QString &format);

    // Where the file dialogs begin.
    QString lastSavedArchiveFile() const;
    void setLastSavedArchiveFile(const QString &path);
    QString lastLoadedArchiveFile() const;
    void setLastLoadedArchiveFile(const QString &path);
    QString lastSavedOnLineFile() const;
    void setLastSavedOnLineFile(const QString &path);
    QString lastSavedSufferedFile() const;
    void setLastSavedSufferedFile(const QString &path);
    QString lastLoadedSufferedFile() const;
    void setLastLoadedSufferedFile(const QString &path);
    QString lastSavedPhoto() const;
    void setLastSavedPhoto(const QString &path);

    QStringList addressList() const;
    // False when it is not in the settings' file: no room, no right. It counts until the program
    // ends.
    bool setAddressList(const QStringList &addresses);

    // Camera frame of channel n, here and on the device.
    QString videoTempFile(int n) const;
    QString vaskVideoTempFile(int n) const;
    // The photo of a passage of the table called number, here; and on the device.
    QString archivePhotoPath(const Scan &scan, const QString &number) const;
    QString vaskArchivePhotoPath(const Scan &scan) const;

    // Where a path of these settings lies: a relative working directory in the home directory, any
    // other relative path in the working directory. The getters give paths as they are stored.
    QString absoluteWorkingDirectory() const;
    QString absolute(const QString &path) const;

    // What the toolkit's temporary files and folders in this directory are called. Those that a
    // killed program has left are known by the name, see TemporaryData.
    QString transferTemplate(const QString &directory) const;

    // name with ending behind it, unless it ends so already (case-sensitive).
    static QString extended(const QString &name, const QString &ending);

protected:
    // The toolkit stores in it what was changed since.
    bool event(QEvent *event) override;

private:
    void removeAbandonedLocks() const;
    QString text(const char *key, const QString &fallback) const;
    int number(const char *key, int fallback) const;
    void put(const char *key, const QVariant &value);
    void settleNumber(const char *key, int fallback);
    void settleText(const char *key, const QString &fallback);
};
