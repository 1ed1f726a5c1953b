// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

class BrelWindow;

// Pictures of every page for the documentation and for a look where there is no display: when the
// environment variable STALLO_SCREENSHOTS names a folder, waits until passages have come in, saves
// the frame with each page as a PNG there, and ends the program. Without the variable it does
// nothing. GUI thread; the frame outlives it.
class Screenshots : public QObject
{
    Q_OBJECT

public:
    Screenshots(BrelWindow *frame, QObject *parent);

private:
    void takeNext();

    BrelWindow *frame_;
    QString folder_;
    int next_ = 0;
};
