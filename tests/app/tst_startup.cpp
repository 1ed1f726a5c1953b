// SPDX-License-Identifier: MIT
#include "app/startup.h"

#include "app/mainwindow.h"
#include "app/settings.h"
#include "tests/support/devices.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QLockFile>
#include <QScreen>
#include <QStackedWidget>
#include <QTemporaryDir>

#include <vector>

namespace
{

// The command line as main gets it.
class Arguments
{
public:
    explicit Arguments(const QStringList &words)
    {
        texts_.push_back("stallo");
        for (const QString &word : words) {
            texts_.push_back(word.toLatin1());
        }
        for (QByteArray &text : texts_) {
            pointers_.push_back(text.data());
        }
    }
    int count() const { return static_cast<int>(pointers_.size()); }
    char **values() { return pointers_.data(); }

private:
    std::vector<QByteArray> texts_;
    std::vector<char *> pointers_;
};

} // namespace

class TestStartup : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        TestSurroundings::freshSettings();
        for (const QString &name : QDir::home().entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
            QVERIFY(QDir(QDir::home().filePath(name)).removeRecursively());
        }
    }

    void makesDirectories()
    {
        Startup::initTempDirectories();
        const QDir working(QDir::home().filePath(QStringLiteral("Stallo")));
        QCOMPARE(working.entryList(QDir::AllEntries | QDir::NoDotAndDotDot, QDir::Name),
                 (QStringList{QStringLiteral("ArchiveTemp"), QStringLiteral("OnLineTemp"),
                              QStringLiteral("SufferedTemp"), QStringLiteral("VideoTemp")}));
        QVERIFY(working.exists(QStringLiteral("ArchiveTemp/jpegdata")));
        QVERIFY(working.exists(QStringLiteral("OnLineTemp/jpegdata")));
        QVERIFY(QDir(working.filePath(QStringLiteral("SufferedTemp"))).isEmpty());
        QVERIFY(QDir(working.filePath(QStringLiteral("VideoTemp"))).isEmpty());
    }

    void deletesNothing()
    {
        Startup::initTempDirectories();
        QFile file(QDir::home().filePath(QStringLiteral("Stallo/OnLineTemp/jpegdata/kept")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.close();
        Startup::initTempDirectories();
        QVERIFY(file.exists());
    }

    void resolvesRelativeDirectories()
    {
        const QString before = QDir::currentPath();
        Settings::instance()->setWorkingDirectory(QStringLiteral("panel"));
        Settings::instance()->setArchiveTempDirectory(QStringLiteral("archive"));
        Settings::instance()->setOnLineTempDirectory(QStringLiteral("online"));
        Startup::initTempDirectories();
        QVERIFY(QDir::home().exists(QStringLiteral("panel/archive/jpegdata")));
        QVERIFY(QDir::home().exists(QStringLiteral("panel/online/jpegdata")));
        QCOMPARE(QDir::currentPath(), before);
    }

    void passesOverWhatCannotBeMade()
    {
        // One level only, not a whole path.
        Settings::instance()->setWorkingDirectory(QDir::home().filePath(QStringLiteral("a/b")));
        Startup::initTempDirectories();
        QVERIFY(!QDir::home().exists(QStringLiteral("a")));
        QVERIFY(!QDir::home().exists(QStringLiteral("Stallo")));
    }

    void locksOnce()
    {
        Startup::initTempDirectories();
        auto first = Startup::lockWorkingDirectory();
        QVERIFY(first && first->isLocked());
        QVERIFY(!Startup::lockWorkingDirectory());
        first.reset();
        QVERIFY(Startup::lockWorkingDirectory());
    }

    void ignoresLockOfDeadProcess()
    {
        Startup::initTempDirectories();
        QFile lock(QDir::home().filePath(QStringLiteral("Stallo/stallo.lock")));
        QVERIFY(lock.open(QIODevice::WriteOnly));
        lock.write("4194304\nstallo\n" + QSysInfo::machineHostName().toUtf8() + '\n');
        lock.close();
        QVERIFY(Startup::lockWorkingDirectory());
    }

    void startsWithoutLockWhereNoneCanBe()
    {
        Settings::instance()->setWorkingDirectory(QDir::home().filePath(QStringLiteral("missing")));
        QVERIFY(Startup::lockWorkingDirectory());
    }

    void restoresPosition_data()
    {
        const QRect screen = QGuiApplication::primaryScreen()->geometry();
        QTest::addColumn<QPoint>("stored");
        QTest::addColumn<QPoint>("restored");
        const auto row = [](const char *name, QPoint stored, bool kept) {
            QTest::newRow(name) << stored << (kept ? stored : QPoint(0, 0));
        };
        row("inside", QPoint(20, 30), true);
        row("at the right edge and 100 more", QPoint(screen.right() + 100, 10), true);
        row("one pixel more", QPoint(screen.right() + 101, 10), false);
        row("at the bottom edge and 100 more", QPoint(10, screen.bottom() + 100), true);
        row("one line more", QPoint(10, screen.bottom() + 101), false);
        row("left of the screen", QPoint(-1, 10), false);
        row("above the screen", QPoint(10, -1), false);
    }
    void restoresPosition()
    {
        QFETCH(QPoint, stored);
        Settings::instance()->setValue(QStringLiteral("LastWindowPosition"), stored);
        Settings::instance()->setValue(QStringLiteral("LastWindowSize"), QSize(1100, 600));
        Settings::instance()->setValue(QStringLiteral("LastWindowScreen"),
                                       7); // there is none: the primary one
        QWidget frame(nullptr, Qt::FramelessWindowHint);
        frame.setMinimumSize(1024, 512);
        Startup::restoreGeometry(frame);
        QVERIFY(frame.isVisible());
        QTEST(frame.pos(), "restored");
        QCOMPARE(frame.size(), QSize(1100, 600));
    }

    void startsSmallestWithoutStoredSize()
    {
        QWidget frame(nullptr, Qt::FramelessWindowHint);
        frame.setMinimumSize(1024, 512);
        Startup::restoreGeometry(frame);
        QCOMPARE(frame.geometry(), QRect(0, 0, 1024, 512));
    }

    void restoresMaximized()
    {
        Settings::instance()->setValue(QStringLiteral("WindowMaximized"), true);
        QWidget frame(nullptr, Qt::FramelessWindowHint);
        Startup::restoreGeometry(frame);
        QVERIFY(frame.isMaximized());
    }

    void storesUnderItsOwnSpelling()
    {
        QWidget frame(nullptr, Qt::FramelessWindowHint);
        frame.setGeometry(40, 50, 1200, 700);
        Startup::storeGeometry(frame);
        const Settings *settings = Settings::instance();
        QCOMPARE(settings->value(QStringLiteral("LastWindowsize")).toSize(), QSize(1200, 700));
        QCOMPARE(settings->value(QStringLiteral("LastWindowPosition")).toPoint(), QPoint(40, 50));
        QCOMPARE(settings->value(QStringLiteral("LastWindowScreen")), QVariant(0));
        QCOMPARE(settings->value(QStringLiteral("WindowMaximized")), QVariant(false));
        QVERIFY(!settings->contains(QStringLiteral("LastWindowSize")));
    }

    void readsCommandLine_data()
    {
        QTest::addColumn<QString>("words");
        QTest::addColumn<int>("page");
        QTest::addColumn<QString>("host"); // of the first device slot
        const auto row = [](const char *words, int page, const char *host) {
            QTest::newRow(words) << QString::fromLatin1(words) << page << QString::fromLatin1(host);
        };
        row("", 0, "");
        row("--online", 0, "");
        row("127.0.0.9", 2, "127.0.0.9");
        row("--online 127.0.0.9", 2, "127.0.0.9");
        row("127.0.0.8 127.0.0.9", 2, "127.0.0.9");
        row("--sufferred 127.0.0.9", 1, "");
        row("--suffered 127.0.0.9", 2, "127.0.0.9");
        row("--online=1 --archive 127.0.0.9", 0, "");
        row("127.0.0.9 --archive", 0, "");
        row("--archive 127.0.0.9 --online", 2, "127.0.0.9");
        row("--onlin 127.0.0.9 -x", 2, "127.0.0.9");
    }
    void readsCommandLine()
    {
        QFETCH(QString, words);
        QFETCH(int, page);
        QFETCH(QString, host);
        const Devices ports; // so that no address of a real service is asked
        Startup::initTempDirectories();
        MainWindow window;
        window.show();
        Arguments arguments(words.split(QLatin1Char(' '), Qt::SkipEmptyParts));
        Startup::parseCmdLine(arguments.count(), arguments.values());
        QCOMPARE(window.findChild<QStackedWidget *>(QString(), Qt::FindChildrenRecursively)
                     ->currentIndex(),
                 page);
        const auto *place = window.findChild<QWidget *>(QStringLiteral("labelPhoto0"));
        QVERIFY(place != nullptr);
        QCOMPARE(place->findChild<QWidget *>()->objectName(), host);
    }
};

STALLO_TEST_MAIN(TestStartup)
#include "tst_startup.moc"
