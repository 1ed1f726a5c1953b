// SPDX-License-Identifier: MIT
#include "records/spokencell.h"

QString SpokenCell::text(const QVariant &title, const QVariant &value)
{
    const QString shown = value.toString();
    return shown.isEmpty() ? tr("%1: empty").arg(title.toString())
                           : tr("%1: %2").arg(title.toString(), shown);
}
