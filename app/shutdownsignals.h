// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

// Ends the event loop as if the window had been closed when the session or the operator's script
// asks the process to end (SIGTERM, SIGINT, SIGHUP): clients stop, the geometry and the settings
// are stored, and the process returns 0. One object, made after the application object; GUI thread.
class ShutdownSignals : public QObject
{
    Q_OBJECT

public:
    explicit ShutdownSignals(QObject *parent);
    ~ShutdownSignals() override;

private:
    // The signal handler may do no more than write into this pair.
    int readEnd_ = -1;
};
