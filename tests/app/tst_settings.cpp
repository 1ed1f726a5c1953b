// SPDX-License-Identifier: MIT
#include "app/settings.h"

#include "records/scan.h"
#include "tests/support/testmain.h"

#include <QThread>
#include <QTranslator>

#include <memory>

namespace
{

// A key with its getter and setter, the value read while it is missing, and the one that init()
// stores. "~" stands for the home directory.
struct TextKey {
    const char *key;
    QString (Settings::*read)() const;
    void (Settings::*write)(const QString &);
    const char *missing;
    const char *settled;
};

using S = Settings;
constexpr TextKey textKeys[] = {
    {"Global/WorkingDirectory", &S::workingDirectory, &S::setWorkingDirectory, "~/Stallo",
     "~/Stallo"},
    {"Global/ArchiveTempDirectory", &S::archiveTempDirectory, &S::setArchiveTempDirectory,
     "~/Stallo/ArchiveTemp", "~/Stallo/ArchiveTemp"},
    {"Global/ArchiveTempFile", &S::archiveTempFile, &S::setArchiveTempFile,
     "~/Stallo/ArchiveTemp/passbase.tpp", "~/Stallo/ArchiveTemp/tmppassbase.tpp"},
    {"Global/SufferedTempDirectory", &S::sufferedTempDirectory, &S::setSufferedTempDirectory,
     "~/Stallo/SufferedTemp", "~/Stallo/SufferedTemp"},
    {"Global/SufferedTempFile", &S::sufferedTempFile, &S::setSufferedTempFile,
     "~/Stallo/SufferedTemp/tmpaccessbase.tpa", "~/Stallo/SufferedTemp/tmpaccessbase.tpa"},
    {"Global/OnLineTempDirectory", &S::onLineTempDirectory, &S::setOnLineTempDirectory,
     "~/Stallo/OnLineTemp", "~/Stallo/OnLineTemp"},
    {"Global/OnLineTempFile", &S::onLineTempFile, &S::setOnLineTempFile,
     "~/Stallo/OnLineTemp/tmponline.tpp", "~/Stallo/OnLineTemp/tmponline.tpp"},
    {"Global/VideoTempDirectory", &S::videoTempDirectory, &S::setVideoTempDirectory,
     "~/Stallo/VideoTemp", "~/Stallo/VideoTemp"},
    {"Global/VideoTempFileFormat", &S::videoTempFileFormat, &S::setVideoTempFileFormat,
     "video%1.jpeg", "video%1.jpeg"},
    {"Global/VaskDataPath", &S::vaskDataPath, &S::setVaskDataPath, "/mnt/usb", "/mnt/usb"},
    {"Global/VaskArchivePath", &S::vaskArchivePath, &S::setVaskArchivePath, "/mnt/usb/passbase.tpp",
     "/mnt/usb/passbase.tpp"},
    {"Global/VaskSufferedPath", &S::vaskSufferedPath, &S::setVaskSufferedPath,
     "/tmp/accessbase.tpa", "/mnt/usb/accessbase.tpa"},
    {"Global/LastSavedArchiveFile", &S::lastSavedArchiveFile, &S::setLastSavedArchiveFile,
     "~/passbase", "~"},
    {"Global/LastLoadedArchiveFile", &S::lastLoadedArchiveFile, &S::setLastLoadedArchiveFile, "~",
     "~"},
    {"Global/LastSavedOnLineFile", &S::lastSavedOnLineFile, &S::setLastSavedOnLineFile, "~/on-line",
     "~"},
    {"Global/LastSavedSufferedFile", &S::lastSavedSufferedFile, &S::setLastSavedSufferedFile,
     "~/accessbase", "~"},
    {"Global/LastLoadedSufferedFile", &S::lastLoadedSufferedFile, &S::setLastLoadedSufferedFile,
     "~", "~"},
    {"Global/LastSavedPhoto", &S::lastSavedPhoto, &S::setLastSavedPhoto, "~", "~"},
};

struct NumberKey {
    const char *key;
    int (Settings::*read)() const;
    void (Settings::*write)(int);
    int missing;
    int settled;
};

constexpr NumberKey numberKeys[] = {
    {"Global/VaskParkingPort", &S::vaskParkingPort, &S::setVaskParkingPort, 3333, 3333},
    {"Global/FileTransferPort", &S::fileTransferPort, &S::setFileTransferPort, 5058, 5058},
    {"Global/VideoTimeout", &S::videoTimeout, &S::setVideoTimeout, 500, 1000},
    {"Global/VideoDisconnectTimeout", &S::videoDisconnectTimeout, &S::setVideoDisconnectTimeout, 30,
     30},
};

QString inHome(const char *text)
{
    return *text == '~' ? TestSurroundings::home() + QString::fromLatin1(text + 1)
                        : QString::fromLatin1(text);
}

Settings *settings()
{
    return Settings::instance();
}

Settings *instanceInAnotherThread()
{
    Settings *seen = nullptr;
    const std::unique_ptr<QThread> thread(
        QThread::create([&seen] { seen = Settings::instance(); }));
    thread->start();
    thread->wait();
    return seen;
}

// A catalogue that knows the texts of this context and puts an x before them.
class Catalogue : public QTranslator
{
public:
    bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *source, const char *, int) const override
    {
        return qstrcmp(context, "Settings") == 0 ? QLatin1Char('x') + QString::fromLatin1(source)
                                                 : QString();
    }
};

} // namespace

Q_DECLARE_METATYPE(const TextKey *)
Q_DECLARE_METATYPE(const NumberKey *)

class TestSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void texts_data();
    void texts();
    void numbers_data();
    void numbers();
    void reserves_data();
    void reserves();
    void initWritesNoOtherKey();
    void defaultsFollowTheOtherKeys();
    void initSettlesInOrder();
    void afterInitNothingFollows();
    void storedNumbers_data();
    void storedNumbers();
    void emptyTextsAreReplaced();
    void frameFormatIsWrittenElsewhere();
    void keysAreCaseSensitive();
    void translatedNames();
    void derivedPaths();
    void extended_data();
    void extended();
    void addressList_data();
    void addressList();
    void instance();

private:
    // The key as it stands in the store, behind the object's back.
    static QVariant stored(const QString &key)
    {
        return QSettings(QSettings::NativeFormat, QSettings::UserScope,
                         QStringLiteral("Dorvel Ltd"), QStringLiteral("Stallo"))
            .value(key);
    }
};

void TestSettings::init()
{
    TestSurroundings::freshSettings()->clear();
}

void TestSettings::texts_data()
{
    QTest::addColumn<const TextKey *>("row");
    for (const TextKey &row : textKeys) {
        QTest::newRow(row.key) << &row;
    }
}

void TestSettings::texts()
{
    QFETCH(const TextKey *, row);
    const QString key = QString::fromLatin1(row->key);
    const auto read = [row] { return (settings()->*row->read)(); };

    QCOMPARE(read(), inHome(row->missing));
    QVERIFY(!settings()->contains(key));

    settings()->init();
    QCOMPARE(read(), inHome(row->settled));
    QCOMPARE(stored(key).toString(), inHome(row->settled));

    settings()->clear();
    (settings()->*row->write)(QStringLiteral("/x, y"));
    QCOMPARE(stored(key).toString(), QStringLiteral("/x, y"));
    QCOMPARE(settings()->allKeys(), QStringList{key});
    QCOMPARE(read(), QStringLiteral("/x, y"));
    settings()->init();
    QCOMPARE(read(), QStringLiteral("/x, y"));

    (settings()->*row->write)(QString());
    QCOMPARE(read(), QString());
    settings()->init();
    QVERIFY(!read().isEmpty());
}

void TestSettings::numbers_data()
{
    QTest::addColumn<const NumberKey *>("row");
    for (const NumberKey &row : numberKeys) {
        QTest::newRow(row.key) << &row;
    }
}

void TestSettings::numbers()
{
    QFETCH(const NumberKey *, row);
    const QString key = QString::fromLatin1(row->key);
    const auto read = [row] { return (settings()->*row->read)(); };

    QCOMPARE(read(), row->missing);
    QVERIFY(!settings()->contains(key));

    settings()->init();
    QCOMPARE(read(), row->settled);

    settings()->clear();
    (settings()->*row->write)(7);
    QCOMPARE(stored(key).toInt(), 7);
    QCOMPARE(settings()->allKeys(), QStringList{key});
    settings()->init();
    QCOMPARE(read(), 7);
}

// Disks, and so their reserves, are larger than 2 GiB.
void TestSettings::reserves_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<qint64>("bytes");
    const auto row = [](const char *name, const char *text, qint64 bytes) {
        QTest::newRow(name) << QString::fromLatin1(text) << bytes;
    };
    row("missing", "", 2097152);
    row("none", "0", 0);
    row("usual", "209715200", 209715200);
    row("2 GiB less a byte", "2147483647", 2147483647);
    row("2 GiB", "2147483648", Q_INT64_C(2147483648));
    row("4 GiB", "4294967296", Q_INT64_C(4294967296));
    row("a large disk", "8000000000000", Q_INT64_C(8000000000000));
    row("no number", "much", 0);
}

void TestSettings::reserves()
{
    QFETCH(QString, text);
    QFETCH(qint64, bytes);
    const QString key = QStringLiteral("Global/MinReservedFreeSpace");
    if (!text.isEmpty()) {
        settings()->setValue(key, text);
    }
    settings()->init(); // does not touch it
    QCOMPARE(settings()->contains(key), !text.isEmpty());
    QCOMPARE(settings()->minReservedFreeSpace(), bytes);
    settings()->SetMinReservedFreeSpace(bytes);
    QCOMPARE(stored(key).toString(), QString::number(bytes));
    QCOMPARE(settings()->minReservedFreeSpace(), bytes);
}

void TestSettings::initWritesNoOtherKey()
{
    settings()->init();
    QCOMPARE(settings()->allKeys().size(), 23);
    QVERIFY(!settings()->contains(QStringLiteral("Global/MinReservedFreeSpace")));
    QVERIFY(!settings()->contains(QStringLiteral("Global/VaskVideoTempFormat")));
    QVERIFY(!settings()->contains(QStringLiteral("AddressList/Addresses")));
    QCOMPARE(settings()->minReservedFreeSpace(), qint64(2097152));
    QCOMPARE(settings()->addressList(), QStringList());
}

void TestSettings::defaultsFollowTheOtherKeys()
{
    settings()->setWorkingDirectory(QStringLiteral("/w"));
    QCOMPARE(settings()->archiveTempFile(), QStringLiteral("/w/ArchiveTemp/passbase.tpp"));
    QCOMPARE(settings()->sufferedTempFile(), QStringLiteral("/w/SufferedTemp/tmpaccessbase.tpa"));
    QCOMPARE(settings()->onLineTempFile(), QStringLiteral("/w/OnLineTemp/tmponline.tpp"));
    QCOMPARE(settings()->videoTempDirectory(), QStringLiteral("/w/VideoTemp"));
    settings()->setOnLineTempDirectory(QStringLiteral("/o"));
    QCOMPARE(settings()->onLineTempFile(), QStringLiteral("/o/tmponline.tpp"));
    QCOMPARE(settings()->archiveTempDirectory(), QStringLiteral("/w/ArchiveTemp"));
    settings()->setVaskDataPath(QStringLiteral("/d"));
    QCOMPARE(settings()->vaskArchivePath(), QStringLiteral("/d/passbase.tpp"));
    // Until init() has run, the access list lies in a fixed place.
    QCOMPARE(settings()->vaskSufferedPath(), QStringLiteral("/tmp/accessbase.tpa"));
}

void TestSettings::initSettlesInOrder()
{
    settings()->setWorkingDirectory(QStringLiteral("/w"));
    settings()->setSufferedTempDirectory(QStringLiteral("/s"));
    settings()->setVaskDataPath(QStringLiteral("/d"));
    settings()->init();
    QCOMPARE(stored(QStringLiteral("Global/ArchiveTempFile")).toString(),
             QStringLiteral("/w/ArchiveTemp/tmppassbase.tpp"));
    QCOMPARE(stored(QStringLiteral("Global/OnLineTempFile")).toString(),
             QStringLiteral("/w/OnLineTemp/tmponline.tpp"));
    QCOMPARE(stored(QStringLiteral("Global/VideoTempDirectory")).toString(),
             QStringLiteral("/w/VideoTemp"));
    QCOMPARE(stored(QStringLiteral("Global/SufferedTempFile")).toString(),
             QStringLiteral("/s/tmpaccessbase.tpa"));
    QCOMPARE(stored(QStringLiteral("Global/VaskArchivePath")).toString(),
             QStringLiteral("/d/passbase.tpp"));
    QCOMPARE(stored(QStringLiteral("Global/VaskSufferedPath")).toString(),
             QStringLiteral("/d/accessbase.tpa"));
}

void TestSettings::afterInitNothingFollows()
{
    settings()->init();
    settings()->setWorkingDirectory(QStringLiteral("/w"));
    settings()->setVaskDataPath(QStringLiteral("/d"));
    settings()->init();
    QCOMPARE(settings()->archiveTempDirectory(), inHome("~/Stallo/ArchiveTemp"));
    QCOMPARE(settings()->vaskArchivePath(), QStringLiteral("/mnt/usb/passbase.tpp"));
    QCOMPARE(settings()->vaskSufferedPath(), QStringLiteral("/mnt/usb/accessbase.tpa"));
}

void TestSettings::storedNumbers_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<int>("before");
    QTest::addColumn<int>("after");

    QTest::newRow("number") << QVariant(4000) << 4000 << 4000;
    QTest::newRow("number as text") << QVariant(QStringLiteral("4000")) << 4000 << 4000;
    QTest::newRow("zero") << QVariant(0) << 0 << 3333;
    QTest::newRow("negative") << QVariant(-1) << -1 << -1;
    QTest::newRow("too large for a port") << QVariant(70000) << 70000 << 70000;
    QTest::newRow("no number") << QVariant(QStringLiteral("abc")) << 0 << 3333;
    QTest::newRow("empty") << QVariant(QString()) << 0 << 3333;
}

void TestSettings::storedNumbers()
{
    QFETCH(QVariant, value);
    QFETCH(int, before);
    QFETCH(int, after);
    settings()->setValue(QStringLiteral("Global/VaskParkingPort"), value);
    QCOMPARE(settings()->vaskParkingPort(), before);
    settings()->init();
    QCOMPARE(settings()->vaskParkingPort(), after);
}

void TestSettings::emptyTextsAreReplaced()
{
    settings()->setWorkingDirectory(QString());
    settings()->setVideoTimeout(0);
    QCOMPARE(settings()->workingDirectory(), QString());
    QCOMPARE(settings()->videoTimeout(), 0);
    settings()->init();
    QCOMPARE(settings()->workingDirectory(), inHome("~/Stallo"));
    QCOMPARE(settings()->videoTimeout(), 1000);
}

void TestSettings::frameFormatIsWrittenElsewhere()
{
    QCOMPARE(settings()->vaskVideoTempFileFormat(), QStringLiteral("/tmp/video%1.jpeg"));
    settings()->init();
    QCOMPARE(stored(QStringLiteral("Global/vaskVideoTempFileFormat")).toString(),
             QStringLiteral("/tmp/video%1.jpeg"));
    settings()->setVaskVideoTempFileFormat(QStringLiteral("/other%1.jpeg"));
    QCOMPARE(settings()->vaskVideoTempFileFormat(), QStringLiteral("/tmp/video%1.jpeg"));
    QCOMPARE(settings()->vaskVideoTempFile(0), QStringLiteral("/tmp/video0.jpeg"));
    QCOMPARE(stored(QStringLiteral("Global/VaskVideoTempFormat")).toString(),
             QStringLiteral("/other%1.jpeg"));
    settings()->setValue(QStringLiteral("Global/vaskVideoTempFileFormat"), QStringLiteral("/f%1"));
    QCOMPARE(settings()->vaskVideoTempFile(1), QStringLiteral("/f1"));
}

void TestSettings::keysAreCaseSensitive()
{
    settings()->setValue(QStringLiteral("Global/VaskVideoTempFileFormat"), QStringLiteral("x"));
    settings()->setValue(QStringLiteral("global/VideoTimeout"), 7);
    QCOMPARE(settings()->vaskVideoTempFileFormat(), QStringLiteral("/tmp/video%1.jpeg"));
    QCOMPARE(settings()->videoTimeout(), 500);
}

void TestSettings::translatedNames()
{
    Catalogue catalogue;
    QVERIFY(QCoreApplication::installTranslator(&catalogue));
    settings()->setWorkingDirectory(QStringLiteral("/w"));
    const QStringList names{settings()->archiveTempFile(),     settings()->sufferedTempFile(),
                            settings()->onLineTempFile(),      settings()->lastSavedArchiveFile(),
                            settings()->lastSavedOnLineFile(), settings()->lastSavedSufferedFile(),
                            settings()->vaskArchivePath(),     settings()->archiveTempDirectory()};
    settings()->init();
    const QString stored = settings()->archiveTempFile();
    QVERIFY(QCoreApplication::removeTranslator(&catalogue));
    const QString home = TestSurroundings::home();
    QCOMPARE(
        names,
        (QStringList{QStringLiteral("/w/ArchiveTemp/xpassbase.tpp"),
                     QStringLiteral("/w/SufferedTemp/xtmpaccessbase.tpa"),
                     QStringLiteral("/w/OnLineTemp/xtmponline.tpp"),
                     home + QStringLiteral("/xpassbase"), home + QStringLiteral("/xon-line"),
                     home + QStringLiteral("/xaccessbase"),
                     // What lies on a device, and directories, have one name only.
                     QStringLiteral("/mnt/usb/passbase.tpp"), QStringLiteral("/w/ArchiveTemp")}));
    QCOMPARE(stored, QStringLiteral("/w/ArchiveTemp/xtmppassbase.tpp"));
}

void TestSettings::derivedPaths()
{
    settings()->setWorkingDirectory(QStringLiteral("/w"));
    QCOMPARE(settings()->videoTempFile(1), QStringLiteral("/w/VideoTemp/video1.jpeg"));
    QCOMPARE(settings()->videoTempFile(12), QStringLiteral("/w/VideoTemp/video12.jpeg"));
    QCOMPARE(settings()->vaskVideoTempFile(0), QStringLiteral("/tmp/video0.jpeg"));
    settings()->setVideoTempFileFormat(QStringLiteral("frame-%1.jpg"));
    QCOMPARE(settings()->videoTempFile(0), QStringLiteral("/w/VideoTemp/frame-0.jpg"));

    Scan scan;
    scan.setNumber(QStringLiteral("A?23BC77"));
    scan.setDateTime(QDateTime({2011, 3, 5}, {14, 7, 9}, Qt::UTC));
    const QString name = QStringLiteral("/2011-03-05_14-07-09_A-23BC77.jpeg");
    QCOMPARE(settings()->archivePhotoPath(scan, QStringLiteral("10.0.0.5")),
             QStringLiteral("/w/ArchiveTemp/10.0.0.5.jpegdata") + name);
    QCOMPARE(settings()->archivePhotoPath(scan, QString()),
             QStringLiteral("/w/ArchiveTemp/jpegdata") + name);
    QCOMPARE(settings()->vaskArchivePhotoPath(scan), QStringLiteral("/mnt/usb/jpegdata") + name);
}

void TestSettings::extended_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("ending");
    QTest::addColumn<QString>("result");
    const QString csv = QStringLiteral(".csv");

    QTest::newRow("without") << QStringLiteral("list") << csv << QStringLiteral("list.csv");
    QTest::newRow("with") << QStringLiteral("list.csv") << csv << QStringLiteral("list.csv");
    QTest::newRow("in capitals") << QStringLiteral("list.CSV") << csv
                                 << QStringLiteral("list.CSV.csv");
    QTest::newRow("empty") << QString() << csv << csv;
    QTest::newRow("nothing to add")
        << QStringLiteral("list") << QString() << QStringLiteral("list");
    QTest::newRow("the ending alone") << csv << csv << csv;
}

void TestSettings::extended()
{
    QFETCH(QString, name);
    QFETCH(QString, ending);
    QFETCH(QString, result);
    QCOMPARE(Settings::extended(name, ending), result);
}

void TestSettings::addressList_data()
{
    QTest::addColumn<QStringList>("addresses");

    QTest::newRow("none") << QStringList();
    QTest::newRow("one") << QStringList{QStringLiteral("10.0.0.5")};
    QTest::newRow("one with a comma") << QStringList{QStringLiteral("a, b")};
    QTest::newRow("an empty one") << QStringList{QString::fromLatin1("")};
    QTest::newRow("several") << QStringList{QStringLiteral("10.0.0.5"), QStringLiteral("gate"),
                                            QStringLiteral("10.0.0.5"), QString::fromLatin1("")};
}

void TestSettings::addressList()
{
    QFETCH(QStringList, addresses);
    settings()->setAddressList(addresses);
    QCOMPARE(settings()->addressList(), addresses);
    // As another start of the program reads them from the file.
    settings()->sync();
    const QSettings file(settings()->fileName(), QSettings::IniFormat);
    QCOMPARE(file.value(QStringLiteral("AddressList/Addresses")).toStringList(), addresses);
}

void TestSettings::instance()
{
    Settings *first = Settings::instance();
    QVERIFY(first != nullptr);
    QCOMPARE(instanceInAnotherThread(), first);

    delete first;
    QCOMPARE(Settings::instance(), nullptr);
    QCOMPARE(instanceInAnotherThread(), nullptr);

    // Found below a child of the application object as well.
    QObject parent(QCoreApplication::instance());
    auto *second = new Settings(QSettings::NativeFormat, QSettings::UserScope,
                                QStringLiteral("Dorvel Ltd"), QStringLiteral("Stallo"), &parent);
    QCOMPARE(Settings::instance(), second);
    QCOMPARE(instanceInAnotherThread(), second);
}

STALLO_TEST_MAIN(TestSettings)
#include "tst_settings.moc"
