// SPDX-License-Identifier: MIT
#include "tests/soak/panelprocess.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>

#include <algorithm>
#include <csignal>
#include <utility>

namespace
{

constexpr int endPatience = 10000;

} // namespace

PanelProcess::PanelProcess(const QString &home, quint16 onLinePort, quint16 filePort, int videoMsec,
                           const QStringList &addresses)
    : home_(home)
{
    writeSettings(onLinePort, filePort, videoMsec, addresses);
}

PanelProcess::~PanelProcess()
{
    kill();
}

void PanelProcess::writeSettings(quint16 onLinePort, quint16 filePort, int videoMsec,
                                 const QStringList &addresses) const
{
    const QString folder = home_ + QStringLiteral("/.config/Dorvel Ltd");
    QDir().mkpath(folder);
    QFile settings(folder + QStringLiteral("/Stallo.conf"));
    if (settings.open(QIODevice::WriteOnly)) {
        settings.write(
            "[Global]\nVaskParkingPort=" + QByteArray::number(onLinePort) + "\nFileTransferPort=" +
            QByteArray::number(filePort) + "\nVideoTimeout=" + QByteArray::number(videoMsec) +
            "\n[AddressList]\nAddresses=" + addresses.join(QStringLiteral(", ")).toLatin1() + '\n');
    }
}

bool PanelProcess::start(const QString &address)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("HOME"), home_);
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), home_ + QStringLiteral("/.config"));
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C"));
    environment.insert(QStringLiteral("QT_PLUGIN_PATH"), QStringLiteral(STALLO_SOAK_PLUGINS));
    environment.insert(QStringLiteral("QT_QPA_GENERIC_PLUGINS"), QStringLiteral("soakdriver"));
    if (!environment.contains(QStringLiteral("QT_QPA_PLATFORM"))) {
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    }
    process_ = std::make_unique<QProcess>();
    process_->setProcessEnvironment(environment);
    process_->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process_->setWorkingDirectory(home_);
    process_->start(QStringLiteral(STALLO_PROGRAM), {QStringLiteral("--online"), address});
    said_.clear();
    pending_ = false;
    return process_->waitForStarted();
}

void PanelProcess::kill()
{
    if (isRunning()) {
        process_->kill();
        process_->waitForFinished();
    }
    pending_ = false;
}

int PanelProcess::end()
{
    QElapsedTimer clock;
    clock.start();
    ::kill(static_cast<pid_t>(process_->processId()), SIGTERM);
    const bool ended = process_->waitForFinished(endPatience);
    const bool good =
        ended && process_->exitStatus() == QProcess::NormalExit && process_->exitCode() == 0;
    return good ? static_cast<int>(clock.elapsed()) : -1;
}

bool PanelProcess::isRunning() const
{
    return process_ && process_->state() == QProcess::Running;
}

qint64 PanelProcess::id() const
{
    return isRunning() ? process_->processId() : 0;
}

void PanelProcess::command(const QStringList &words)
{
    pending_ = true;
    failure_.clear();
    process_->write(words.join(QLatin1Char('|')).toUtf8() + '\n');
    process_->waitForBytesWritten();
}

void PanelProcess::pump(int msec)
{
    process_->waitForReadyRead(msec);
    said_ += process_->readAllStandardOutput();
    for (int end = said_.indexOf('\n'); end >= 0; end = said_.indexOf('\n')) {
        take(QString::fromUtf8(said_.left(end)));
        said_.remove(0, end + 1);
    }
}

void PanelProcess::take(const QString &line)
{
    const QString word = line.section(QLatin1Char(' '), 0, 0);
    const QString rest = line.section(QLatin1Char(' '), 1);
    if (word == QLatin1String("ping")) {
        longestPing_.wait =
            std::max(longestPing_.wait, rest.section(QLatin1Char(' '), 0, 0).toInt());
        longestPing_.net = std::max(longestPing_.net, rest.section(QLatin1Char(' '), 1, 1).toInt());
    } else if (word == QLatin1String("box")) {
        boxes_.append(rest);
    } else if (word == QLatin1String("ok")) {
        pending_ = false;
    } else if (word == QLatin1String("failed")) {
        pending_ = false;
        failure_ = rest;
    }
}

QString PanelProcess::takeFailure()
{
    return std::exchange(failure_, QString());
}

QStringList PanelProcess::takeBoxes()
{
    return std::exchange(boxes_, QStringList());
}

PanelProcess::Ping PanelProcess::takeLongestPing()
{
    return std::exchange(longestPing_, Ping());
}

QString PanelProcess::path(const QString &name) const
{
    return home_ + QStringLiteral("/Stallo/") + name;
}

QByteArray PanelProcess::content(const QString &name) const
{
    QFile file(path(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
