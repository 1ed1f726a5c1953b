// SPDX-License-Identifier: MIT
#include "tests/packaging/toolrun.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QDirIterator>
#include <QRegularExpression>

namespace
{

// Without what is built and what the repository keeps for itself.
QStringList filesOfTheTree()
{
    const QDir root(QStringLiteral(STALLO_SOURCE_DIR));
    QStringList files = root.entryList(QDir::Files | QDir::Hidden);
    const QStringList folders =
        root.entryList(QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot | QDir::NoSymLinks);
    for (const QString &folder : folders) {
        if (folder == QLatin1String("build") || folder == QLatin1String(".git")) {
            continue;
        }
        QDirIterator file(root.filePath(folder), QDir::Files | QDir::Hidden,
                          QDirIterator::Subdirectories);
        while (file.hasNext()) {
            files.append(root.relativeFilePath(file.next()));
        }
    }
    return files;
}

// By the first line; a script that is only sourced has none for a shell.
QString shellOf(const QString &path, const QByteArray &firstLine)
{
    static const QRegularExpression shell(QStringLiteral("^#!.*[ /]((ba)?sh)\n$"));
    const auto match = shell.match(QString::fromLatin1(firstLine));
    if (match.hasMatch()) {
        return match.captured(1);
    }
    return path.endsWith(QLatin1String(".sh")) ? QStringLiteral("sh") : QString();
}

} // namespace

// The scripts of the tree are at least scripts: the shell that they name takes them.
class TestScripts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void parses_data();
    void parses();
};

void TestScripts::parses_data()
{
    QTest::addColumn<QString>("shell");
    QTest::addColumn<QString>("path");
    QStringList found;
    for (const QString &path : filesOfTheTree()) {
        QFile file(QStringLiteral(STALLO_SOURCE_DIR "/") + path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QString shell = shellOf(path, file.readLine());
        if (!shell.isEmpty()) {
            QTest::newRow(qPrintable(path)) << shell << file.fileName();
            found.append(path);
        }
    }
    // Of every kind and at every depth.
    for (const char *path : {"run.sh", "test.sh", ".ci/run", "debian/tests/passage",
                             "docs/makepictures.sh", "fuzz/run.sh", "packaging/prepare.sh",
                             "tests/records/makelocales.sh", "tests/support/withdisplay.sh"}) {
        QVERIFY2(found.contains(QLatin1String(path)), path);
    }
}

void TestScripts::parses()
{
    QFETCH(QString, shell);
    QFETCH(QString, path);
    const ToolRun run = ToolRun::of(shell, {QStringLiteral("-n"), path});
    QCOMPARE(run.errors, QByteArray());
    QCOMPARE(run.code, 0);
}

STALLO_TEST_MAIN(TestScripts)
#include "tst_scripts.moc"
