// SPDX-License-Identifier: MIT
#include "pages/temporarydata.h"

#include "app/settings.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <sys/stat.h>

namespace
{

void write(const QString &file)
{
    QFile to(file);
    if (!to.open(QIODevice::WriteOnly) || to.write("x") != 1) {
        qFatal("cannot write %s", qPrintable(file));
    }
}

} // namespace

class TestTemporaryData : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void knowsFoldersOfItsOwn_data();
    void knowsFoldersOfItsOwn();
    void clearsOneLevelDeep();
    void clearsOddNames();
    void followsNoLinks();
    void refusesWorkingDirectoryByAnyName();
    void refusesAllWithoutSettings();
    void removesWhatIsLeftBeside();

private:
    QString below(const char *path) const { return root_->filePath(QString::fromLatin1(path)); }

    std::unique_ptr<QTemporaryDir> root_;
};

void TestTemporaryData::init()
{
    TestSurroundings::freshSettings();
    root_ = std::make_unique<QTemporaryDir>();
    QVERIFY(QDir(root_->path()).mkpath(QStringLiteral("panel/temp/jpegdata/deep")));
    QVERIFY(QDir(root_->path()).mkpath(QStringLiteral("elsewhere/inner")));
    QVERIFY(QFile::link(below("elsewhere"), below("link")));
    write(below("panel/temp/table"));
    write(below("panel/temp/jpegdata/photo"));
    write(below("panel/temp/jpegdata/deep/kept"));
    write(below("panel/kept"));
    write(below("elsewhere/kept"));
    write(below("elsewhere/inner/kept"));
    write(TestSurroundings::home() + QStringLiteral("/kept"));
    Settings::instance()->setWorkingDirectory(below("panel"));
}

void TestTemporaryData::knowsFoldersOfItsOwn_data()
{
    QTest::addColumn<QString>("path"); // %1: the root of the test, %2: the home
    QTest::addColumn<bool>("own");

    const auto row = [](const char *path, bool own) {
        QTest::newRow(path) << QString::fromLatin1(path) << own;
    };
    row("%1/panel/temp", true);
    row("%1/panel/temp/", true);
    row("%1/panel/../panel/temp", true);
    row("%1/elsewhere", true);
    row("%2/.config", true);
    row("", false);
    row("/", false);
    row("//", false);
    row("/.", false);
    row("/tmp/..", false);
    row("%2/..", false); // above the home
    row("%2", false);
    row("%2/", false);
    row("%2/.", false);
    row("%2/.config/..", false);
    row("%1", false); // above the working directory
    row("%1/panel", false);
    row("%1/panel/", false);
    row("%1/panel/temp/..", false);
    row("%1/link", false);
    row("%1/link/", false);
    row("%1/link/.", false);
    row("%1/link//", false);
    row("%1/missing", false);
    row("%1/panel/kept", false); // a file
    row("%1/panel/kept/", false);
}

void TestTemporaryData::knowsFoldersOfItsOwn()
{
    QFETCH(QString, path);
    QFETCH(bool, own);
    if (path.contains(QLatin1String("%2"))) {
        QVERIFY(QDir(TestSurroundings::home()).mkpath(QStringLiteral(".config")));
    }
    path.replace(QLatin1String("%1"), root_->path());
    path.replace(QLatin1String("%2"), TestSurroundings::home());
    QCOMPARE(TemporaryData::isFolderOfItsOwn(path), own);
    if (own) {
        return;
    }
    TemporaryData::clear(path);
    for (const char *kept : {"panel/temp/table", "panel/temp/jpegdata/photo", "panel/kept",
                             "elsewhere/kept", "elsewhere/inner/kept"}) {
        QVERIFY2(QFile::exists(below(kept)), kept);
    }
    QVERIFY(QFile::exists(TestSurroundings::home() + QStringLiteral("/kept")));
}

void TestTemporaryData::clearsOneLevelDeep()
{
    TemporaryData::clear(below("panel/temp"));
    QVERIFY(!QFile::exists(below("panel/temp/table")));
    QVERIFY(!QFile::exists(below("panel/temp/jpegdata/photo")));
    QVERIFY(QFile::exists(below("panel/temp/jpegdata/deep/kept")));
    QVERIFY(QFile::exists(below("panel/kept")));
    QVERIFY(QFile::exists(below("elsewhere/kept")));
    TemporaryData::clear(below("panel/temp"));
    QVERIFY(QDir(below("panel/temp/jpegdata/deep")).exists());
}

void TestTemporaryData::clearsOddNames()
{
    for (const char *name : {".hidden", "with blank", "-rf", "*", "new\nline", "ends.tpp.index"}) {
        write(below("panel/temp/") + QString::fromLatin1(name));
        write(below("panel/temp/jpegdata/") + QString::fromLatin1(name));
    }
    QVERIFY(QDir(below("panel/temp")).mkdir(QStringLiteral(".hidden folder")));
    write(below("panel/temp/.hidden folder/file"));
    QFile::setPermissions(below("panel/temp/table"), QFile::ReadOwner);
    TemporaryData::clear(below("panel/temp"));
    const auto all = QDir::Files | QDir::Hidden | QDir::System;
    QCOMPARE(QDir(below("panel/temp")).entryList(all), QStringList());
    QCOMPARE(QDir(below("panel/temp/jpegdata")).entryList(all), QStringList());
    QCOMPARE(QDir(below("panel/temp/.hidden folder")).entryList(all), QStringList());
}

void TestTemporaryData::followsNoLinks()
{
    QVERIFY(QFile::link(below("elsewhere"), below("panel/temp/folder link")));
    QVERIFY(QFile::link(below("elsewhere/kept"), below("panel/temp/file link")));
    QVERIFY(QFile::link(below("nowhere"), below("panel/temp/broken link")));
    TemporaryData::clear(below("panel/temp"));
    QVERIFY(QFile::exists(below("elsewhere/kept")));
    QVERIFY(QFile::exists(below("elsewhere/inner/kept")));
    // A link to a file is a file of the folder, and goes.
    QVERIFY(!QFileInfo(below("panel/temp/file link")).isSymLink());
    QVERIFY(!QFileInfo(below("panel/temp/broken link")).isSymLink());
}

void TestTemporaryData::refusesWorkingDirectoryByAnyName()
{
    QVERIFY(QFile::link(below("panel"), below("work link")));
    Settings::instance()->setWorkingDirectory(below("work link"));
    QVERIFY(!TemporaryData::isFolderOfItsOwn(below("panel")));
    QVERIFY(TemporaryData::isFolderOfItsOwn(below("panel/temp")));
    // One that begins like it is another one.
    QVERIFY(QDir(root_->path()).mkdir(QStringLiteral("pan")));
    QVERIFY(TemporaryData::isFolderOfItsOwn(below("pan")));
    // A missing working directory protects nothing and stands in nobody's way.
    Settings::instance()->setWorkingDirectory(below("missing"));
    QVERIFY(TemporaryData::isFolderOfItsOwn(below("panel/temp")));
}

void TestTemporaryData::refusesAllWithoutSettings()
{
    delete Settings::instance();
    QVERIFY(!TemporaryData::isFolderOfItsOwn(QStringLiteral("/")));
    QVERIFY(!TemporaryData::isFolderOfItsOwn(TestSurroundings::home()));
    // Nothing is known of what must be kept.
    QVERIFY(!TemporaryData::isFolderOfItsOwn(below("panel/temp")));
}

void TestTemporaryData::removesWhatIsLeftBeside()
{
    const QStringList left = {QStringLiteral("my+list.tpa.aBcDeF"),
                              QStringLiteral("my+list.tpa.ZZZZZz")};
    const QStringList others = {QStringLiteral("my+list.tpa"),
                                QStringLiteral("my+list.tpa.backup"),
                                QStringLiteral("my+list.tpa.BACKUP"),
                                QStringLiteral("my+list.tpa.221126"),
                                QStringLiteral("my+list.tpa.aBcDe"),
                                QStringLiteral("my+list.tpa.aBcDeFg"),
                                QStringLiteral("my+list.tpa.aBcDe-"),
                                QStringLiteral("my+list.tpaxaBcDeF"),
                                QStringLiteral("another.my+list.tpa.aBcDeF"),
                                QStringLiteral("myylist.tpa.aBcDeF"),
                                QStringLiteral("my+list.tpa.aBcDeF\n")};
    for (const QString &file : left + others) {
        write(below("panel/temp/") + file);
        write(below("panel/") + file);
    }
    QVERIFY(QDir(below("panel/temp")).mkdir(QStringLiteral("my+list.tpa.aFoLdr")));
    QVERIFY(QFile::link(below("elsewhere/kept"), below("panel/temp/my+list.tpa.aLinkk")));
    QCOMPARE(mkfifo(QFile::encodeName(below("panel/temp/my+list.tpa.aPipee")).constData(), 0600),
             0);
    TemporaryData::removeLeftBeside(below("panel/temp/my+list.tpa"));
    TemporaryData::removeLeftBeside(below("panel/my+list.tpa")); // the working directory
    for (const QString &file : left) {
        QVERIFY2(!QFile::exists(below("panel/temp/") + file), qPrintable(file));
        QVERIFY2(QFile::exists(below("panel/") + file), qPrintable(file));
    }
    for (const QString &file : others) {
        QVERIFY2(QFile::exists(below("panel/temp/") + file), qPrintable(file));
    }
    for (const char *kept : {"aFoLdr", "aLinkk", "aPipee"}) {
        QVERIFY2(QFile::exists(below("panel/temp/my+list.tpa.") + QLatin1String(kept)), kept);
    }
}

STALLO_TEST_MAIN(TestTemporaryData)
#include "tst_temporarydata.moc"
