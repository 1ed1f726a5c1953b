// SPDX-License-Identifier: MIT
#pragma once

#include "pages/archivewidget.h"

#include <QCoreApplication>
#include <QEvent>

#include <functional>

// Acts when a download's worker asks for the table for the first time (to write its files) or the
// second time (to have it shown).
class AtHandover : public QObject
{
public:
    using Action = std::function<void()>;
    enum Time { BeforeAppending = 1, AfterAppending = 2 };

    // inWorker is done in the worker before it waits, inGui before the table is bound.
    AtHandover(ArchiveWidget *page, Time time, const Action &inWorker, const Action &inGui)
        : inGui_(inGui)
    {
        connect(
            page, &ArchiveWidget::setTableThreaded, this,
            [this, time, inWorker, asked = 0]() mutable {
                if (++asked != time) {
                    return;
                }
                if (inWorker) {
                    inWorker();
                }
                // Overtakes the request.
                QCoreApplication::postEvent(this, new QEvent(QEvent::User), Qt::HighEventPriority);
            },
            Qt::DirectConnection);
    }

protected:
    void customEvent(QEvent *) override
    {
        if (inGui_) {
            inGui_();
        }
    }

private:
    Action inGui_;
};
