// SPDX-License-Identifier: MIT
#pragma once

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

// The program itself in a home of its own, for tests of its start and its end. The home outlives
// its runs, of which there is one at a time.
class PanelProgram
{
public:
    static constexpr int patience = 30000;

    explicit PanelProgram(const QString &program)
        : program_(program)
    {
        process_.setProcessChannelMode(QProcess::ForwardedChannels);
        environment_ = QProcessEnvironment::systemEnvironment();
        environment_.insert(QStringLiteral("HOME"), home_.path());
        environment_.insert(QStringLiteral("XDG_CONFIG_HOME"), path(QStringLiteral(".config")));
        // Not the system's, so that it is seen what is left in it.
        makePrivate(QStringLiteral("tmp"));
        environment_.insert(QStringLiteral("TMPDIR"), path(QStringLiteral("tmp")));
        makePrivate(QStringLiteral("run"));
        environment_.insert(QStringLiteral("XDG_RUNTIME_DIR"), path(QStringLiteral("run")));
    }
    ~PanelProgram() { kill(); }
    PanelProgram(const PanelProgram &) = delete;
    PanelProgram &operator=(const PanelProgram &) = delete;

    QString path(const QString &name) const { return home_.filePath(name); }
    QString stallo(const QString &name = QString()) const
    {
        return path(QStringLiteral("Stallo/") + name);
    }
    QProcessEnvironment &environment() { return environment_; }
    QProcess &process() { return process_; }

    // Lines behind those that name the ports, in [Global] first.
    void writeSettings(quint16 onLinePort, quint16 filePort, const QByteArray &further)
    {
        const QString folder = path(QStringLiteral(".config/Dorvel Ltd"));
        QVERIFY(QDir().mkpath(folder));
        QFile settings(folder + QStringLiteral("/Stallo.conf"));
        QVERIFY(settings.open(QIODevice::WriteOnly));
        settings.write("[Global]\nVaskParkingPort=" + QByteArray::number(onLinePort) +
                       "\nFileTransferPort=" + QByteArray::number(filePort) +
                       "\nVideoTimeout=200\n" + further);
    }

    void start(const QStringList &arguments)
    {
        process_.setProcessEnvironment(environment_);
        process_.start(program_, arguments);
        QVERIFY(process_.waitForStarted());
    }
    void kill()
    {
        if (process_.state() != QProcess::NotRunning) {
            process_.kill();
            process_.waitForFinished();
        }
    }
    // By the signal that a service manager sends; within the time that every end may take.
    void end()
    {
        QElapsedTimer clock;
        clock.start();
        ::kill(static_cast<pid_t>(process_.processId()), SIGTERM);
        QVERIFY(process_.waitForFinished(patience));
        const qint64 taken = clock.elapsed();
        QCOMPARE(process_.exitStatus(), QProcess::NormalExit);
        QCOMPARE(process_.exitCode(), 0);
        QVERIFY2(taken < 2000, qPrintable(QStringLiteral("took %1 ms").arg(taken)));
    }

    static bool isShown(const QString &title)
    {
        return QProcess::execute(QStringLiteral("xdotool"),
                                 {QStringLiteral("search"), QStringLiteral("--onlyvisible"),
                                  QStringLiteral("--name"), title}) == 0;
    }
    static QByteArray content(const QString &file)
    {
        QFile from(file);
        return from.open(QIODevice::ReadOnly) ? from.readAll() : QByteArray();
    }

private:
    void makePrivate(const QString &name)
    {
        QDir(home_.path()).mkdir(name);
        QFile::setPermissions(path(name), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    QTemporaryDir home_;
    QProcessEnvironment environment_;
    QString program_;
    QProcess process_;
};
