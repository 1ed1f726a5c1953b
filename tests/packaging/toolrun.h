// SPDX-License-Identifier: MIT
#pragma once

#include <QFile>
#include <QProcess>
#include <QTest>

// What a program said and how it ended. A program that cannot be started or does not end by itself
// within a minute has the code -1. For any thread, without an event loop.
struct ToolRun {
    int code = -1;
    QByteArray output;
    QByteArray errors;

    static ToolRun of(const QString &program, const QStringList &arguments,
                      const QStringList &environment = {})
    {
        QProcess process;
        QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
        variables.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
        for (const QString &each : environment) {
            variables.insert(each.section(QLatin1Char('='), 0, 0),
                             each.section(QLatin1Char('='), 1));
        }
        process.setProcessEnvironment(variables);
        process.start(program, arguments);
        ToolRun result;
        if (!process.waitForFinished(60000)) {
            result.errors = process.errorString().toLocal8Bit();
            return result;
        }
        result.output = process.readAllStandardOutput();
        result.errors = process.readAllStandardError();
        if (process.exitStatus() == QProcess::NormalExit) {
            result.code = process.exitCode();
        }
        return result;
    }
};

// A file of the tree. Fails the test when it cannot be read or is empty: a check must not pass
// because it saw nothing.
inline QString textOf(const QString &path)
{
    QFile file(path);
    const bool good = file.open(QIODevice::ReadOnly);
    const QString text = QString::fromUtf8(file.readAll());
    if (!good || text.isEmpty()) {
        QTest::qFail(qPrintable(path + QStringLiteral(": nothing to read")), __FILE__, __LINE__);
    }
    return text;
}

inline QString sourceFile(const char *path)
{
    return QStringLiteral(STALLO_SOURCE_DIR "/") + QString::fromLatin1(path);
}
