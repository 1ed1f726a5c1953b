// SPDX-License-Identifier: MIT
#include "pages/archivefiles.h"

#include "app/settings.h"
#include "records/scanmodel.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QTemporaryDir>

class TestArchiveFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        root_ = std::make_unique<QTemporaryDir>();
        settings_ = TestSurroundings::freshSettings();
        settings_->setWorkingDirectory(below("."));
        settings_->setArchiveTempDirectory(below("archive"));
        settings_->setArchiveTempFile(below("archive/tmppassbase.tpp"));
        for (const char *file :
             {"archive/tmppassbase.tpp", "archive/tmppassbase.tpp.index", "archive/part.tmp",
              "archive/.hidden", "archive/tmppassbase.jpegdata/photo.jpeg",
              "archive/tmppassbase.jpegdata/deep/photo.jpeg", "archive/other/photo.jpeg",
              "archives/photo.jpeg", "dump.tpp"}) {
            write(file);
        }
    }
    void cleanup() { TestSurroundings::freshSettings(); }

    void namesWholePaths_data();
    void namesWholePaths();
    void namesPhotos_data();
    void namesPhotos();
    void removesArchive();
    void removesAll();
    void removesAnArchiveOutsideTheFolder();
    void sparesFoldersThatAreNotItsOwn_data();
    void sparesFoldersThatAreNotItsOwn();
    void doesNothingWithoutSettings();

private:
    // Of the working directory, which lies in a folder that is the test's own too.
    QString below(const char *path) const
    {
        return QDir::cleanPath(root_->filePath(QStringLiteral("work/") + QLatin1String(path)));
    }
    void write(const char *path) const
    {
        QVERIFY(QDir().mkpath(QFileInfo(below(path)).path()));
        QFile file(below(path));
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    QStringList files() const
    {
        QStringList found;
        QDirIterator all(below("."), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (all.hasNext()) {
            found << QDir(below(".")).relativeFilePath(all.next());
        }
        found.sort();
        return found;
    }

    std::unique_ptr<QTemporaryDir> root_;
    Settings *settings_ = nullptr;
};

void TestArchiveFiles::namesWholePaths_data()
{
    QTest::addColumn<QString>("working");
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("wholeFolder");
    QTest::addColumn<QString>("wholeFile");
    const auto row = [](const char *name, const char *working, const char *folder, const char *file,
                        const QString &wholeFolder, const QString &wholeFile) {
        QTest::newRow(name) << QString::fromLatin1(working) << QString::fromLatin1(folder)
                            << QString::fromLatin1(file) << wholeFolder << wholeFile;
    };
    const QString home = QDir::homePath();
    row("whole", "/w", "/a", "/b/c.tpp", QStringLiteral("/a"), QStringLiteral("/b/c.tpp"));
    row("in the working directory", "/w", "a", "a/c.tpp", QStringLiteral("/w/a"),
        QStringLiteral("/w/a/c.tpp"));
    row("in the home directory", "w", "a", "a/c.tpp", home + QStringLiteral("/w/a"),
        home + QStringLiteral("/w/a/c.tpp"));
}

void TestArchiveFiles::namesWholePaths()
{
    QFETCH(QString, working);
    QFETCH(QString, folder);
    QFETCH(QString, file);
    QFETCH(QString, wholeFolder);
    QFETCH(QString, wholeFile);
    settings_->setWorkingDirectory(working);
    settings_->setArchiveTempDirectory(folder);
    settings_->setArchiveTempFile(file);
    QCOMPARE(ArchiveFiles::folder(), wholeFolder);
    QCOMPARE(ArchiveFiles::record(), wholeFile);
}

void TestArchiveFiles::namesPhotos_data()
{
    QTest::addColumn<QString>("table");
    QTest::addColumn<QString>("photos");
    const auto row = [](const char *table, const char *photos) {
        QTest::newRow(table) << QString::fromLatin1(table) << QString::fromLatin1(photos);
    };
    row("/stick/may.tpp", "/stick/may.jpegdata");
    row("/stick/may", "/stick/may.jpegdata");
    row("/stick/may.june.tpp", "/stick/may.jpegdata");
    row("/may.tpp", "//may.jpegdata");
    row("/a b/%1 %2.tpp", "/a b/%1 %2.jpegdata");
    row("/stick/../stick/may.tpp", "/stick/may.jpegdata");
}

void TestArchiveFiles::namesPhotos()
{
    QFETCH(QString, table);
    QFETCH(QString, photos);
    QCOMPARE(QDir::cleanPath(ArchiveFiles::photosOf(table)), QDir::cleanPath(photos));
    Scan scan;
    scan.setNumber(QStringLiteral("A?1"));
    scan.setDateTime(QDateTime(QDate(2026, 11, 21), QTime(12, 0, 5), Qt::UTC));
    QCOMPARE(ArchiveFiles::photo(table, scan, QStringLiteral("gate 1")),
             ArchiveFiles::photosOf(table) + QStringLiteral("/2026-11-21_12-00-05_A-1.jpeg"));
    // Where the photos of the table are downloaded to.
    settings_->setArchiveTempFile(table);
    const QFileInfo download(settings_->archivePhotoPath(Scan(), QFileInfo(table).baseName()));
    QCOMPARE(download.dir().dirName(), QFileInfo(ArchiveFiles::photosOf(table)).fileName());
}

void TestArchiveFiles::removesArchive()
{
    QStringList expected = files();
    expected.removeOne(QStringLiteral("archive/tmppassbase.tpp"));
    expected.removeOne(QStringLiteral("archive/tmppassbase.tpp.index"));
    ArchiveFiles::removeArchive();
    QCOMPARE(files(), expected);
    ArchiveFiles::removeArchive(); // there is none
    QCOMPARE(files(), expected);
}

void TestArchiveFiles::removesAll()
{
    ArchiveFiles::removeAll();
    QCOMPARE(files(),
             (QStringList{QStringLiteral("archive/tmppassbase.jpegdata/deep/photo.jpeg"),
                          QStringLiteral("archives/photo.jpeg"), QStringLiteral("dump.tpp")}));
    for (const char *folder : {"archive", "archive/tmppassbase.jpegdata", "archive/other"}) {
        QVERIFY2(QFileInfo(below(folder)).isDir(), folder);
    }
}

void TestArchiveFiles::removesAnArchiveOutsideTheFolder()
{
    settings_->setArchiveTempFile(below("elsewhere/table.tpp"));
    for (const char *file :
         {"elsewhere/table.tpp", "elsewhere/table.tpp.index", "elsewhere/table.jpegdata/photo.jpeg",
          "elsewhere/other.tpp", "elsewhere/other.jpegdata/photo.jpeg"}) {
        write(file);
    }
    ArchiveFiles::removeAll();
    const QStringList left = files().filter(QStringLiteral("elsewhere"));
    QCOMPARE(left, (QStringList{QStringLiteral("elsewhere/other.jpegdata/photo.jpeg"),
                                QStringLiteral("elsewhere/other.tpp")}));
    QVERIFY(QFileInfo(below("elsewhere/table.jpegdata")).isDir());
    QVERIFY(!QFile::exists(below("archive/tmppassbase.tpp")));
}

void TestArchiveFiles::sparesFoldersThatAreNotItsOwn_data()
{
    QTest::addColumn<QByteArray>("folder");
    QTest::newRow("working directory") << QByteArray(".");
    QTest::newRow("above it") << QByteArray("..");
    QTest::newRow("missing") << QByteArray("missing");
}

void TestArchiveFiles::sparesFoldersThatAreNotItsOwn()
{
    QFETCH(QByteArray, folder);
    settings_->setArchiveTempDirectory(below(folder.constData()));
    ArchiveFiles::removeAll();
    // The archive itself goes, wherever it lies, and what belongs to it.
    for (const char *file : {"archive/part.tmp", "archive/.hidden", "archive/other/photo.jpeg",
                             "archives/photo.jpeg", "dump.tpp"}) {
        QVERIFY2(QFile::exists(below(file)), file);
    }
    for (const char *file : {"archive/tmppassbase.tpp", "archive/tmppassbase.tpp.index",
                             "archive/tmppassbase.jpegdata/photo.jpeg"}) {
        QVERIFY2(!QFile::exists(below(file)), file);
    }
}

void TestArchiveFiles::doesNothingWithoutSettings()
{
    const QStringList before = files();
    delete Settings::instance();
    QVERIFY(Settings::instance() == nullptr);
    ArchiveFiles::removeArchive();
    ArchiveFiles::removeAll();
    QCOMPARE(files(), before);
}

STALLO_TEST_MAIN(TestArchiveFiles)
#include "tst_archivefiles.moc"
