// SPDX-License-Identifier: MIT
#pragma once

#include "net/events.h"
#include "records/access.h"

#include <QVector>
#include <QWidget>

// Takes access entries, as the main window does.
class EntryReceiver : public QWidget
{
public:
    QVector<Access> entries;

protected:
    void customEvent(QEvent *event) override
    {
        if (static_cast<int>(event->type()) == EventNumber::Suffered) {
            entries.append(static_cast<SufferedEvent *>(event)->access());
        }
    }
};
