// SPDX-License-Identifier: MIT
#include "pages/listentry.h"

#include "app/errorbrowser.h"
#include "records/accessmodel.h"

#include <QWidget>

namespace
{

// Of the page: it asks twice when a row is pressed.
constexpr char telling[] = "tellingUnread";

} // namespace

std::optional<Access> ListEntry::read(AccessModel &model, int row, QWidget *page)
{
    const std::optional<Access> entry = model.read(row);
    if (!entry && row >= 0 && !page->property(telling).toBool()) {
        page->setProperty(telling, true);
        const auto tell = [page] {
            page->setProperty(telling, false);
            ErrorBrowser::error(tr("Error"), unread(), page);
        };
        QMetaObject::invokeMethod(page, tell, Qt::QueuedConnection);
    }
    return entry;
}

QString ListEntry::unread()
{
    return tr("Can't read the record");
}
