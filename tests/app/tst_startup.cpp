// SPDX-License-Identifier: MIT
#include "app/startup.h"

#include "app/mainwindow.h"
#include "app/settings.h"
#include "tests/support/devices.h"
#include "tests/support/modalanswers.h"
#include "tests/support/plainuser.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QLockFile>
#include <QScreen>
#include <QStackedWidget>
#include <QTemporaryDir>

#include <sys/stat.h>
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

    void lockFileHoldsNobodyOffByItself_data()
    {
        QTest::addColumn<QByteArray>("content");
        const QByteArray self = QByteArray::number(QCoreApplication::applicationPid());
        const QByteArray program =
            QFileInfo(QCoreApplication::applicationFilePath()).fileName().toUtf8();
        const QByteArray host = QSysInfo::machineHostName().toUtf8();
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("rubbish") << QByteArray("\0\xFF\n\n\n%1", 7);
        QTest::newRow("long") << QByteArray(1000000, '7');
        QTest::newRow("half a line") << self;
        QTest::newRow("of another host") << QByteArray(self + "\nstallo\nelsewhere\n");
        // After a power cut the same numbers come again.
        QTest::newRow("of this process") << QByteArray(self + '\n' + program + '\n' + host + '\n');
    }
    void lockFileHoldsNobodyOffByItself()
    {
        QFETCH(QByteArray, content);
        Startup::initTempDirectories();
        QFile file(QDir::home().filePath(QStringLiteral("Stallo/stallo.lock")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(content), content.size());
        file.close();
        QVERIFY(file.setPermissions(QFile::Permissions()));
        auto lock = Startup::lockWorkingDirectory();
        QVERIFY(lock && lock->isLocked());
        QVERIFY(!Startup::lockWorkingDirectory());
        lock.reset();
        QVERIFY(!file.exists());
    }

    // Former versions, and programs that look whether a panel runs, use the toolkit's lock.
    void keepsTheToolkitsLockOut()
    {
        Startup::initTempDirectories();
        QLockFile toolkit(QDir::home().filePath(QStringLiteral("Stallo/stallo.lock")));
        toolkit.setStaleLockTime(0);
        QVERIFY(toolkit.tryLock(0));
        QVERIFY(!Startup::lockWorkingDirectory());
        toolkit.unlock();
        const auto lock = Startup::lockWorkingDirectory();
        QVERIFY(lock && lock->isLocked());
        QVERIFY(!toolkit.tryLock(0));
        QCOMPARE(toolkit.error(), QLockFile::LockFailedError);
        qint64 process = 0;
        QString host;
        QString program;
        QVERIFY(toolkit.getLockInfo(&process, &host, &program));
        QCOMPARE(process, QCoreApplication::applicationPid());
    }

    void settlesTheFormerRun()
    {
        const auto leaveTable = [] {
            QFile table(QDir::home().filePath(QStringLiteral("Stallo/OnLineTemp/tmponline.tpp")));
            return table.open(QIODevice::WriteOnly) && table.write(QByteArray(116, 'x')) == 116;
        };
        Startup::initTempDirectories();
        QVERIFY(leaveTable());
        QCOMPARE(Startup::settleFormerRun(), QString()); // which ended, or left no word
        QVERIFY(leaveTable());
        Startup::markCleanEnd();
        QCOMPARE(Startup::settleFormerRun(), QString());
        // This run is killed.
        const QString notice = Startup::settleFormerRun();
        const QStringList kept = QDir(QDir::home().filePath(QStringLiteral("Stallo/Recovered")))
                                     .entryList(QDir::Dirs | QDir::NoDotAndDotDot);
        QCOMPARE(kept.size(), 1);
        QCOMPARE(notice, QStringLiteral("The former table was kept: Recovered/") + kept.first());
        QCOMPARE(Startup::settleFormerRun(), QString()); // and this one had no passage
        QVERIFY(leaveTable());
        QVERIFY(
            QDir(QDir::home().filePath(QStringLiteral("Stallo/Recovered"))).removeRecursively());
        QFile inTheWay(QDir::home().filePath(QStringLiteral("Stallo/Recovered")));
        QVERIFY(inTheWay.open(QIODevice::WriteOnly));
        QCOMPARE(Startup::settleFormerRun(), QStringLiteral("The former table could not be kept."));
    }

    void deletesWhatKilledTransfersLeft()
    {
        Startup::initTempDirectories();
        const QDir working(QDir::home().filePath(QStringLiteral("Stallo")));
        const auto make = [&working](const QString &name) {
            QFile file(working.filePath(name));
            return working.mkpath(QFileInfo(name).path()) && file.open(QIODevice::WriteOnly);
        };
        const QStringList left = {QStringLiteral("ArchiveTemp/stallo-transfer-aB3dEf/archive.tpp"),
                                  QStringLiteral("SufferedTemp/stallo-transfer-000000/list"),
                                  QStringLiteral("VideoTemp/stallo-transfer-zzzzzz"),
                                  QStringLiteral("SufferedTemp/tmpaccessbase.tpa.gHkPqZ")};
        const QStringList others = {QStringLiteral("SufferedTemp/stallo-transfer-of mine"),
                                    QStringLiteral("SufferedTemp/tmpaccessbase.tpa"),
                                    QStringLiteral("VideoTemp/video0.jpeg")};
        for (const QString &name : left + others) {
            QVERIFY2(make(name), qPrintable(name));
        }
        Startup::settleFormerRun();
        for (const QString &name : left) {
            QVERIFY2(!working.exists(name), qPrintable(name));
        }
        for (const QString &name : others) {
            QVERIFY2(working.exists(name), qPrintable(name));
        }
        QVERIFY(!working.exists(QStringLiteral("ArchiveTemp/stallo-transfer-aB3dEf")));
        QVERIFY(!working.exists(QStringLiteral("SufferedTemp/stallo-transfer-000000")));
    }

    void makesDirectoriesForTheUserAlone()
    {
        const auto rights = [](const char *path) {
            struct stat is = {};
            const QByteArray name = QFile::encodeName(
                QDir::home().filePath(QStringLiteral("Stallo") + QString::fromLatin1(path)));
            return stat(name.constData(), &is) == 0 ? is.st_mode & 0777 : 0;
        };
        const char *const made[] = {"",
                                    "/ArchiveTemp",
                                    "/ArchiveTemp/jpegdata",
                                    "/OnLineTemp",
                                    "/OnLineTemp/jpegdata",
                                    "/SufferedTemp",
                                    "/VideoTemp"};
        // Those of a former version are narrowed.
        for (const mode_t before : {mode_t{0777}, mode_t{0755}, mode_t{0770}}) {
            Startup::initTempDirectories();
            for (const char *path : made) {
                QCOMPARE(int(rights(path)), 0700);
            }
            for (const char *path : made) {
                const QString name =
                    QDir::home().filePath(QStringLiteral("Stallo")) + QString::fromLatin1(path);
                QCOMPARE(chmod(QFile::encodeName(name).constData(), before), 0);
            }
        }
    }

    void leavesRightsOfOtherFolders()
    {
        const auto rights = [](const QString &path) {
            struct stat is = {};
            return stat(QFile::encodeName(path).constData(), &is) == 0 ? is.st_mode & 0777 : 0;
        };
        const QString home = QDir::homePath();
        QCOMPARE(chmod(QFile::encodeName(home).constData(), 0755), 0);
        QVERIFY(QDir::home().mkdir(QStringLiteral("other")));
        const QString other = QDir::home().filePath(QStringLiteral("other"));
        QCOMPARE(chmod(QFile::encodeName(other).constData(), 0755), 0);
        const QString link = QDir::home().filePath(QStringLiteral("link"));
        QVERIFY(QFile::link(other, link));
        Settings::instance()->setWorkingDirectory(home);
        Settings::instance()->setVideoTempDirectory(home);
        Settings::instance()->setSufferedTempDirectory(link);
        Startup::initTempDirectories();
        QCOMPARE(int(rights(home)), 0755);
        QCOMPARE(int(rights(other)), 0755);
        QVERIFY(QFile::remove(link));
    }

    void tellsWhatCannotBeUsed_data()
    {
        QTest::addColumn<QString>("inTheWay");
        QTest::addColumn<QString>("told");
        for (const char *path :
             {"Stallo", "Stallo/OnLineTemp", "Stallo/ArchiveTemp/jpegdata", "Stallo/VideoTemp"}) {
            QTest::newRow(path) << QString::fromLatin1(path) << QString::fromLatin1(path);
        }
        QTest::newRow("nothing") << QString() << QString();
    }
    void tellsWhatCannotBeUsed()
    {
        QFETCH(QString, inTheWay);
        QFETCH(QString, told);
        if (!inTheWay.isEmpty()) {
            QVERIFY(QDir::home().mkpath(QFileInfo(inTheWay).path()));
            QFile file(QDir::home().filePath(inTheWay));
            QVERIFY(file.open(QIODevice::WriteOnly));
        }
        Startup::initTempDirectories();
        QWidget frame;
        ModalAnswers answers;
        QString title;
        QString text;
        if (!told.isEmpty()) {
            answers.expect(ModalAnswers::reading(&title, &text));
        }
        Startup::tellUnusableDirectories(&frame);
        QTRY_COMPARE(answers.left(), 0);
        QCOMPARE(title, told.isEmpty() ? QString() : QStringLiteral("Error"));
        QVERIFY2(text.contains(QDir::home().filePath(told)) != told.isEmpty(), qPrintable(text));
        QFile::remove(QDir::home().filePath(inTheWay));
    }

    void tellsWhatCannotBeWritten()
    {
        Startup::initTempDirectories();
        const QString folder = QDir::home().filePath(QStringLiteral("Stallo"));
        QCOMPARE(Startup::unusableDirectories(), QStringList());
        const PlainUser user; // to whom it is not open
        if (!PlainUser::isOne()) {
            QSKIP("root cannot give its rights up here");
        }
        QCOMPARE(Startup::unusableDirectories(), QStringList(folder));
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
        const QSize size(1024, 600); // the smallest width, though the screen may be narrower
        Settings::instance()->setValue(QStringLiteral("LastWindowSize"), size);
        Settings::instance()->setValue(QStringLiteral("LastWindowScreen"),
                                       7); // there is none: the primary one
        QWidget frame(nullptr, Qt::FramelessWindowHint);
        frame.setMinimumSize(1024, 512);
        Startup::restoreGeometry(frame);
        QVERIFY(frame.isVisible());
        QTEST(frame.pos(), "restored");
        QCOMPARE(frame.size(), size);
    }

    void boundsSizeToTheScreens_data()
    {
        const QSize all = QGuiApplication::primaryScreen()->virtualSize();
        QTest::addColumn<QSize>("stored");
        QTest::addColumn<QSize>("restored");
        QTest::newRow("smaller") << all - QSize(10, 20) << all - QSize(10, 20);
        QTest::newRow("as large") << all << all;
        QTest::newRow("wider") << QSize(all.width() + 1, 300) << QSize(all.width(), 300);
        QTest::newRow("huge") << QSize(40000, 40000) << all;
        QTest::newRow("largest number") << QSize(0x7FFFFFFF, 0x7FFFFFFF) << all;
        QTest::newRow("negative") << QSize(-40000, -1) << QSize(100, 50);
    }
    void boundsSizeToTheScreens()
    {
        QFETCH(QSize, stored);
        Settings::instance()->setValue(QStringLiteral("LastWindowSize"), stored);
        QWidget frame(nullptr, Qt::FramelessWindowHint);
        frame.setMinimumSize(100, 50);
        Startup::restoreGeometry(frame);
        QTEST(frame.size(), "restored");
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
