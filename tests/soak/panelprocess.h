// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QStringList>

#include <memory>

// The panel's program with its operator inside (PanelDriver), in a home of its own. Commands go out
// one at a time. No event loop is needed: pump() reads what the panel has said.
class PanelProcess
{
public:
    // The home must exist; its settings are written here, once.
    PanelProcess(const QString &home, quint16 onLinePort, quint16 filePort, int videoMsec,
                 const QStringList &addresses);
    ~PanelProcess();

    bool start(const QString &address);
    void kill();
    // As a service manager ends it; how long that took, -1 when it did not end within 10 s or not
    // with 0.
    int end();
    bool isRunning() const;
    qint64 id() const;

    // Sends a command; it is pending until the panel has answered it.
    void command(const QStringList &words);
    bool isPending() const { return pending_; }
    // Waits at most so long for the panel to say something, and takes it.
    void pump(int msec);
    // The answer to the last command when it was none but "ok".
    QString takeFailure();
    // Messages that the panel showed.
    QStringList takeBoxes();
    // The longest wait of the GUI thread since it was asked last, in ms, and the longest without the
    // time in which it had no processor.
    struct Ping {
        int wait = 0;
        int net = 0;
    };
    Ping takeLongestPing();

    // A file below the panel's working directory.
    QString path(const QString &name) const;
    QByteArray content(const QString &name) const;

private:
    void writeSettings(quint16 onLinePort, quint16 filePort, int videoMsec,
                       const QStringList &addresses) const;
    void take(const QString &line);

    QString home_;
    std::unique_ptr<QProcess> process_;
    QByteArray said_; // the beginning of a line
    bool pending_ = false;
    QString failure_;
    QStringList boxes_;
    Ping longestPing_;
};
