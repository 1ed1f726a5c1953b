// SPDX-License-Identifier: MIT
#include "netsetup/linefile.h"

#include "netsetup/configparser.h"
#include "netsetup/resolvparser.h"
#include "tests/netsetup/textfile.h"
#include "tests/support/filelimit.h"
#include "tests/support/testmain.h"

#include <QFileInfo>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <algorithm>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

// What both parsers do with files that are large, odd or not to be had.
class TestLineFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void noise_data();
    void noise();
    void otherEncodings_data();
    void otherEncodings();
    void manyLines();
    void unreadable_data();
    void unreadable();
    void failedWriteKeepsTheOldFile_data();
    void failedWriteKeepsTheOldFile();
    void fullDiskKeepsTheOldFile_data();
    void fullDiskKeepsTheOldFile();
    void keepsPermissionsAndLinks();

private:
    std::unique_ptr<QTemporaryDir> folder_;
    const QString name_ = QStringLiteral("some.cfg");
};

namespace
{

constexpr int megabyte = 1024 * 1024;

// The superuser may read and write everything. While this lives the process is somebody else's,
// to whom the current directory has been opened.
class OrdinaryUser
{
public:
    OrdinaryUser()
    {
        constexpr uid_t nobody = 65534;
        if (geteuid() == 0) {
            const bool done = chmod(".", 0777) == 0 && setresuid(nobody, nobody, 0) == 0;
            if (!done) {
                qFatal("cannot become an ordinary user");
            }
            changed_ = true;
        }
    }
    ~OrdinaryUser()
    {
        if (changed_ && setresuid(0, 0, 0) != 0) {
            qFatal("cannot become the superuser again");
        }
    }
    OrdinaryUser(const OrdinaryUser &) = delete;
    OrdinaryUser &operator=(const OrdinaryUser &) = delete;

private:
    bool changed_ = false;
};

QByteArray sorted(const QByteArray &text)
{
    QList<QByteArray> lines = text.split('\n');
    std::sort(lines.begin(), lines.end());
    return lines.join('\n');
}

} // namespace

void TestLineFile::init()
{
    QDir::setCurrent(QDir::tempPath());
    folder_ = std::make_unique<QTemporaryDir>();
    QVERIFY(QDir::setCurrent(folder_->path()));
}

void TestLineFile::noise_data()
{
    QTest::addColumn<QByteArray>("file");
    QRandomGenerator random(1);
    QByteArray bytes(megabyte, '\0');
    QByteArray printable(megabyte, '\0');
    for (int place = 0; place < megabyte; ++place) {
        bytes[place] = static_cast<char>(random.bounded(256));
        printable[place] = static_cast<char>(random.bounded(32, 127));
    }
    QTest::newRow("bytes") << bytes;
    QTest::newRow("one long line") << printable;
    QTest::newRow("blanks") << QByteArray(megabyte, ' ');
    QTest::newRow("signs") << QByteArray(megabyte, '=');
    QTest::newRow("line feeds") << QByteArray(megabyte / 8, '\n');
    QTest::newRow("zeros") << QByteArray(megabyte, '\0');
}

// Whatever it is, nothing of it is lost but carriage returns; only the order of lines may change.
void TestLineFile::noise()
{
    QFETCH(const QByteArray, file);
    QByteArray kept = file;
    kept.replace('\r', "");
    if (!kept.endsWith('\n')) {
        kept.append('\n');
    }
    TextFile::write(name_, file);
    ResolvParser(name_).sync();
    QVERIFY(sorted(TextFile::content(name_)) == sorted(kept));

    // Among settings the later one of a name counts, so one time is taken to get there.
    TextFile::write(name_, file);
    ConfigParser(name_).sync();
    const QByteArray once = TextFile::content(name_);
    QVERIFY(once.size() > 1);
    ConfigParser(name_).sync();
    QVERIFY(sorted(TextFile::content(name_)) == sorted(once));
}

void TestLineFile::otherEncodings_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::newRow("cyrillic letters of one byte")
        << QByteArray("# \xCF\xE0\xED\xE5\xEB\xFC\nB=1\n");
    QTest::newRow("a letter that is cut at the end") << QByteArray("# \xD0\n");
    QTest::newRow("one wrong byte among right ones")
        << QByteArray("# \xD0\xAF \xFF \xD0\xAF\nB=1\n");
    QTest::newRow("the sign for a wrong byte") << QByteArray("# \xEF\xBF\xBD\nB=1\n");
    QTest::newRow("zeros") << QByteArray("# a\0b\nB=1\0\n", 11);
}

// The tests' own locale has UTF-8.
void TestLineFile::otherEncodings()
{
    QFETCH(const QByteArray, file);
    TextFile::write(name_, file);
    ConfigParser settings(name_);
    settings[QStringLiteral("A")] = QStringLiteral("2");
    settings.sync();
    QCOMPARE(sorted(TextFile::content(name_)), sorted("A=2\n" + file));
}

void TestLineFile::manyLines()
{
    QByteArray settings;
    QByteArray servers;
    for (int line = 10000; line < 70000; ++line) {
        settings += "K" + QByteArray::number(line) + "=" + QByteArray::number(line) + "\n";
        servers += "# " + QByteArray::number(line) + "\nnameserver 10.0.0.1\n";
    }
    TextFile::write(name_, settings);
    ConfigParser(name_).sync();
    QCOMPARE(TextFile::content(name_), settings);
    TextFile::write(name_, servers);
    ResolvParser(name_).sync();
    QCOMPARE(sorted(TextFile::content(name_)), sorted(servers));
}

void TestLineFile::unreadable_data()
{
    QTest::addColumn<QString>("kind");
    for (const char *kind : {"missing", "a folder", "a link to itself", "not allowed"}) {
        QTest::newRow(kind) << QString::fromLatin1(kind);
    }
}

void TestLineFile::unreadable()
{
    QFETCH(const QString, kind);
    if (kind == QLatin1String("a folder")) {
        QVERIFY(QDir().mkdir(name_));
    } else if (kind == QLatin1String("a link to itself")) {
        QVERIFY(QFile::link(name_, name_));
    } else if (kind == QLatin1String("not allowed")) {
        TextFile::write(name_, "A=1\nnameserver 1\n");
        QVERIFY(QFile::setPermissions(name_, QFile::Permissions()));
    }
    const OrdinaryUser user;
    QVERIFY(LineFile(name_).read().isEmpty());
    ConfigParser settings(name_);
    QVERIFY(settings[QStringLiteral("A")].isEmpty());
    QVERIFY(settings[LineFile::commentKey(0)].isEmpty());
    ResolvParser servers(name_);
    QVERIFY(servers[QStringLiteral("nameserver0")].isEmpty());
}

void TestLineFile::failedWriteKeepsTheOldFile_data()
{
    QTest::addColumn<QString>("kind");
    for (const char *kind : {"no such folder", "a folder", "read-only", "in a read-only folder"}) {
        QTest::newRow(kind) << QString::fromLatin1(kind);
    }
}

void TestLineFile::failedWriteKeepsTheOldFile()
{
    QFETCH(const QString, kind);
    const QByteArray before = "B = 1\n";
    QDir folder;
    QVERIFY(folder.mkdir(QStringLiteral("inner")));
    QString name = QStringLiteral("inner/some.cfg");
    if (kind == QLatin1String("no such folder")) {
        name = QStringLiteral("nowhere/some.cfg");
    } else if (kind == QLatin1String("a folder")) {
        QVERIFY(folder.mkdir(name));
    } else {
        TextFile::write(name, before);
        const bool fileOnly = kind == QLatin1String("read-only");
        QCOMPARE(chmod("inner/some.cfg", fileOnly ? 0444 : 0666), 0);
        QCOMPARE(chmod("inner", fileOnly ? 0777 : 0555), 0);
    }
    const QByteArray expected = TextFile::content(name);
    {
        const OrdinaryUser user;
        ConfigParser settings(name);
        settings[QStringLiteral("A")] = QStringLiteral("1");
        settings.sync();
        ResolvParser servers(name);
        servers[QStringLiteral("nameserver0")] = QStringLiteral("1");
        servers.sync();
    }
    QCOMPARE(TextFile::content(name), expected);
    QCOMPARE(TextFile::names(), QStringList{QStringLiteral("inner")});
    QVERIFY(QDir(QStringLiteral("inner")).entryList(QDir::Files | QDir::Hidden).size() <= 1);
}

void TestLineFile::fullDiskKeepsTheOldFile_data()
{
    QTest::addColumn<int>("room");
    QTest::newRow("none") << 0;
    QTest::newRow("for a part") << 10;
    QTest::newRow("for all but the last byte") << 20;
}

void TestLineFile::fullDiskKeepsTheOldFile()
{
    QFETCH(const int, room);
    const QByteArray before = "A = 1\nIPADDR=10.0.0.1\n";
    const QByteArray after = "A=1\nIPADDR=10.0.0.22\n";
    QVERIFY(room < after.size());
    TextFile::write(name_, before);
    ConfigParser settings(name_);
    settings[QStringLiteral("IPADDR")] = QStringLiteral("10.0.0.22");
    {
        const FileLimit limit(static_cast<rlim_t>(room));
        settings.sync();
    }
    QCOMPARE(TextFile::content(name_), before);
    QCOMPARE(TextFile::names(), QStringList{name_});
    // Room again.
    settings.sync();
    QCOMPARE(TextFile::content(name_), after);
}

void TestLineFile::keepsPermissionsAndLinks()
{
    const QString link = QStringLiteral("link.cfg");
    TextFile::write(name_, "A = 1\n");
    const auto permissions = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup;
    QVERIFY(QFile::setPermissions(name_, permissions));
    QVERIFY(QFile::link(name_, link));
    ConfigParser(link).sync();
    QVERIFY(QFileInfo(link).isSymLink());
    QCOMPARE(TextFile::content(name_), QByteArray("A=1\n"));
    const auto rights = QFile::permissions(name_);
    QVERIFY((rights & permissions) == permissions);
    QVERIFY((rights & (QFile::ReadOther | QFile::WriteGroup)) == 0);
}

STALLO_TEST_MAIN(TestLineFile)
#include "tst_linefile.moc"
