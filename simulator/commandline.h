// SPDX-License-Identifier: MIT
#pragma once

#include "simulator/deviceconfig.h"
#include "simulator/faults.h"

#include <QString>
#include <QStringList>
#include <QVector>

class QCommandLineParser;

// The command line of stallo-device. Anything that is not understood or not usable is an error with
// a text that names it; nothing is guessed.
class CommandLine
{
public:
    CommandLine() = default;

    // arguments as of the application object, its name first.
    bool parse(const QStringList &arguments);
    const QString &error() const { return error_; }
    // The help or the version was asked for, and this is it; nothing else was looked at.
    const QString &notice() const { return notice_; }

    const DeviceConfig &config() const { return config_; }
    const QVector<Fault> &faults() const { return faults_; }
    const QString &root() const { return root_; }
    const QString &journal() const { return journal_; }
    bool exitsWithStdin() const { return exitsWithStdin_; }

private:
    bool takeNumbers(const QCommandLineParser &parser);
    bool takeShares(const QCommandLineParser &parser);
    bool takeTexts(const QCommandLineParser &parser);
    template <typename Number>
    bool take(const QCommandLineParser &parser, const char *option, double least, double most,
              Number *value);
    bool fail(const QString &text);

    DeviceConfig config_;
    QVector<Fault> faults_;
    QString root_;
    QString journal_;
    bool exitsWithStdin_ = false;
    QString error_;
    QString notice_;
};
