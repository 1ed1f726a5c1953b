// SPDX-License-Identifier: MIT
#include "style/dialogedge.h"

#include "style/metrics.h"

#include <QEvent>
#include <QPainter>
#include <QWidget>

bool DialogEdge::eventFilter(QObject *dialog, QEvent *event)
{
    if (event->type() == QEvent::Paint) {
        // The background is there already; the dialog itself paints nothing over its edge.
        auto *widget = static_cast<QWidget *>(dialog);
        QPainter painter(widget);
        painter.setPen(Metrics::line);
        painter.drawRect(widget->rect().adjusted(0, 0, -1, -1));
    }
    return QObject::eventFilter(dialog, event);
}
