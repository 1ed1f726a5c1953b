// SPDX-License-Identifier: MIT
#include "app/catalogue.h"
#include "records/localtext.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>

#include <cstdio>

// A program that is installed in a folder of a cyrillic name finds the catalogues beside it. This
// one is copied there, and tells which folder it would look in.
class TestInstalledFolder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isFound()
    {
        const QTemporaryDir place;
        const QString bin = place.filePath(QStringLiteral("Стоянка/bin"));
        QVERIFY(QDir().mkpath(bin));
        const QString copy = bin + QStringLiteral("/program");
        QVERIFY(QFile::copy(QStringLiteral("/proc/self/exe"), copy));
        QVERIFY(
            QFile::setPermissions(copy, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        QProcess program;
        program.start(copy, {QStringLiteral("--tell-folder")});
        QVERIFY(program.waitForFinished(30000));
        QCOMPARE(program.readAllStandardOutput(),
                 (bin + QStringLiteral("/../share/stallo")).toLocal8Bit());
    }
};

int main(int argc, char *argv[])
{
    if (argc == 2 && qstrcmp(argv[1], "--tell-folder") == 0) {
        const QApplication application(argc, argv); // looks for plugins beside it
        LocalText::useCodecOfLocale();
        std::fputs(Catalogue::installedFolder().toLocal8Bit().constData(), stdout);
        return 0;
    }
    const TestSurroundings surroundings(argc, argv);
    TestInstalledFolder test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_installedfolder.moc"
