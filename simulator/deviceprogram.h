// SPDX-License-Identifier: MIT
#pragma once

#include "simulator/console.h"
#include "simulator/faults.h"
#include "simulator/filetree.h"
#include "simulator/journal.h"

#include <QByteArray>
#include <QObject>

#include <memory>

class CommandLine;
class QSocketNotifier;
class SimulatedDevice;

// The program around one simulated device: commands on standard input, answers on standard output,
// an orderly end on SIGTERM and SIGINT. Meant to run for weeks, so what is remembered in memory is
// bounded; the files it writes are not.
//
// One object, on the main thread.
class DeviceProgram : public QObject
{
    Q_OBJECT

public:
    DeviceProgram();
    ~DeviceProgram() override;

    // False with the reason in error when the device cannot run.
    bool start(const CommandLine &commandLine, QString *error);

private:
    void watchSignals();
    void onInput();
    void execute(const QByteArray &line);

    FileTree files_;
    Faults faults_;
    Journal journal_;
    std::unique_ptr<SimulatedDevice> device_;
    std::unique_ptr<Console> console_;
    QSocketNotifier *input_ = nullptr; // a child
    QByteArray pending_;               // the beginning of a line
    bool exitsWithStdin_ = false;
};
