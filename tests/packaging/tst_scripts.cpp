// SPDX-License-Identifier: MIT
#include "tests/packaging/toolrun.h"
#include "tests/support/testmain.h"

#include <QDir>

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
    int scripts = 0;
    for (const char *folder : {".", ".ci", "packaging", "debian/tests", "tests/support"}) {
        const QDir directory(sourceFile(folder));
        for (const QString &name : directory.entryList(QDir::Files | QDir::Hidden)) {
            const QString path = directory.filePath(name);
            QFile file(path);
            QVERIFY(file.open(QIODevice::ReadOnly));
            const QByteArray first = file.readLine();
            const bool plain = first == "#!/bin/sh\n" || name == QLatin1String("prepare.sh");
            if (plain || first == "#!/usr/bin/env bash\n") {
                QTest::addRow("%s/%s", folder, qPrintable(name))
                    << (plain ? QStringLiteral("sh") : QStringLiteral("bash")) << path;
                ++scripts;
            }
        }
    }
    QVERIFY(scripts >= 7);
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
