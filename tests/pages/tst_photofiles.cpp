// SPDX-License-Identifier: MIT
#include "pages/photofiles.h"

#include "tests/support/bounded.h"
#include "tests/support/filelimit.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <sys/stat.h>

class TestPhotoFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        root_ = std::make_unique<QTemporaryDir>();
        write("photo", "the photo");
    }

    void namesPath_data();
    void namesPath();
    void makesFolder();
    void copies_data();
    void copies();
    void refusesItself_data();
    void refusesItself();
    void takesRegularFilesOnly();
    void leavesNothingOnFullDisk();
    void knowsSameFile();

private:
    QString below(const char *path) const { return root_->filePath(QString::fromLatin1(path)); }
    void write(const char *path, const QByteArray &content) const
    {
        QFile to(below(path));
        if (!to.open(QIODevice::WriteOnly) || to.write(content) != content.size()) {
            qFatal("cannot write %s", path);
        }
    }
    QByteArray content(const char *path) const
    {
        QFile from(below(path));
        return from.open(QIODevice::ReadOnly) ? from.readAll() : QByteArray("no such file");
    }

    std::unique_ptr<QTemporaryDir> root_;
};

void TestPhotoFiles::namesPath_data()
{
    QTest::addColumn<QString>("number");
    QTest::addColumn<QString>("name");

    const auto row = [](const char *number, const char *name) {
        QTest::newRow(number) << QString::fromLatin1(number) << QString::fromLatin1(name);
    };
    row("A001BC77", "2026-11-21_12-00-05_A001BC77.jpeg");
    row("A?1*", "2026-11-21_12-00-05_A-1-.jpeg");
    row("%1%2", "2026-11-21_12-00-05_%1%2.jpeg");
    row("", "2026-11-21_12-00-05_.jpeg");
}

void TestPhotoFiles::namesPath()
{
    QFETCH(QString, number);
    QFETCH(QString, name);
    Scan scan;
    scan.setDateTime(QDateTime(QDate(2026, 11, 21), QTime(12, 0, 5), Qt::UTC));
    scan.setNumber(number);
    QCOMPARE(PhotoFiles::path(QStringLiteral("/a %1"), QStringLiteral("jpegdata"), scan,
                              QStringLiteral("gate")),
             QStringLiteral("/a %1/jpegdata/") + name);
}

void TestPhotoFiles::makesFolder()
{
    QVERIFY(PhotoFiles::makeFolder(root_->path(), QStringLiteral("jpegdata")));
    QVERIFY(QFileInfo(below("jpegdata")).isDir());
    QVERIFY(PhotoFiles::makeFolder(root_->path(), QStringLiteral("jpegdata")));
    QVERIFY(!PhotoFiles::makeFolder(below("missing"), QStringLiteral("jpegdata")));
    QVERIFY(!QFile::exists(below("missing")));
    QVERIFY(!PhotoFiles::makeFolder(root_->path(), QStringLiteral("photo"))); // a file
    QCOMPARE(content("photo"), QByteArray("the photo"));
}

void TestPhotoFiles::copies_data()
{
    QTest::addColumn<QByteArray>("source");
    QTest::addColumn<QByteArray>("destination");
    QTest::addColumn<bool>("copied");

    QTest::newRow("new") << QByteArray("photo") << QByteArray("copy") << true;
    QTest::newRow("over another") << QByteArray("photo") << QByteArray("other") << true;
    QTest::newRow("into a folder") << QByteArray("photo") << QByteArray("folder/copy") << true;
    QTest::newRow("over a link") << QByteArray("photo") << QByteArray("link") << true;
    QTest::newRow("onto a folder") << QByteArray("photo") << QByteArray("folder") << false;
    QTest::newRow("into no folder") << QByteArray("photo") << QByteArray("missing/copy") << false;
    QTest::newRow("no source") << QByteArray("missing") << QByteArray("copy") << false;
}

void TestPhotoFiles::copies()
{
    QFETCH(QByteArray, source);
    QFETCH(QByteArray, destination);
    QFETCH(bool, copied);
    write("other", "something longer than the photo");
    write("linked", "stays");
    QVERIFY(QFile::link(below("linked"), below("link")));
    QVERIFY(QDir(root_->path()).mkdir(QStringLiteral("folder")));
    const QString error =
        PhotoFiles::copy(below(source.constData()), below(destination.constData()));
    QCOMPARE(error.isEmpty(), copied);
    if (copied) {
        QCOMPARE(content(destination.constData()), QByteArray("the photo"));
    }
    QCOMPARE(content("photo"), QByteArray("the photo"));
    QCOMPARE(content("linked"), QByteArray("stays"));
}

void TestPhotoFiles::refusesItself_data()
{
    QTest::addColumn<QByteArray>("destination");
    for (const char *name : {"photo", "./photo", "folder/../photo", "link"}) {
        QTest::newRow(name) << QByteArray(name);
    }
}

void TestPhotoFiles::refusesItself()
{
    QFETCH(QByteArray, destination);
    QVERIFY(QDir(root_->path()).mkdir(QStringLiteral("folder")));
    QVERIFY(QFile::link(below("photo"), below("link")));
    QCOMPARE(PhotoFiles::copy(below("photo"), below(destination.constData())),
             QStringLiteral("Destination file exists"));
    QCOMPARE(content("photo"), QByteArray("the photo"));
    QVERIFY(!QFileInfo(below("photo")).isSymLink());
}

void TestPhotoFiles::takesRegularFilesOnly()
{
    QCOMPARE(mkfifo(QFile::encodeName(below("pipe")).constData(), 0600), 0);
    write("copy", "stays");
    for (const auto &copy : {PhotoFiles::copy, PhotoFiles::copyFlushed}) {
        QCOMPARE(Bounded::text([&] { return copy(below("pipe"), below("copy")); }),
                 QStringLiteral("This is not a regular file"));
        QCOMPARE(content("copy"), QByteArray("stays"));
    }
    // What is copied keeps its rights.
    QVERIFY(QFile::setPermissions(below("photo"), QFile::ReadOwner | QFile::ReadOther));
    QCOMPARE(PhotoFiles::copy(below("photo"), below("copy")), QString());
    QVERIFY(QFile::permissions(below("copy")).testFlag(QFile::ReadOther));
    QVERIFY(!QFile::permissions(below("copy")).testFlag(QFile::WriteOwner));
}

void TestPhotoFiles::leavesNothingOnFullDisk()
{
    const QByteArray large(300000, 'p');
    write("large", large);
    for (const rlim_t bytes : {rlim_t(0), rlim_t(1000), rlim_t(299999)}) {
        const FileLimit full(bytes);
        const QString error = PhotoFiles::copy(below("large"), below("copy"));
        QVERIFY(!error.isEmpty());
        QVERIFY2(!error.contains(QLatin1String("Unknown error")), qPrintable(error));
        QCOMPARE(QDir(root_->path()).entryList(QDir::Files | QDir::Hidden, QDir::Name),
                 (QStringList{QStringLiteral("large"), QStringLiteral("photo")}));
    }
    QCOMPARE(PhotoFiles::copy(below("large"), below("copy")), QString());
    QCOMPARE(content("copy"), large);
}

void TestPhotoFiles::knowsSameFile()
{
    QVERIFY(QFile::link(below("photo"), below("link")));
    write("other", "the photo");
    QVERIFY(PhotoFiles::isSameFile(below("photo"), below("photo")));
    QVERIFY(PhotoFiles::isSameFile(below("photo"), below("link")));
    QVERIFY(!PhotoFiles::isSameFile(below("photo"), below("other")));
    QVERIFY(!PhotoFiles::isSameFile(below("missing"), below("missing")));
    QVERIFY(!PhotoFiles::isSameFile(QString(), QString()));
}

STALLO_TEST_MAIN(TestPhotoFiles)
#include "tst_photofiles.moc"
