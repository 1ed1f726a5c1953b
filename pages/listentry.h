// SPDX-License-Identifier: MIT
#pragma once

#include "records/access.h"

#include <QCoreApplication>

#include <optional>

class AccessModel;
class QWidget;

// One entry of a list as it is stored, for showing, changing and sending it. An entry that the disk
// does not give must not be taken for an empty one, which would then be shown, stored or sent in
// its place. GUI thread.
class ListEntry
{
    Q_DECLARE_TR_FUNCTIONS(ListEntry)

public:
    // Nothing when it cannot be read, which is told over the page as soon as the event that asked
    // is through: a view may be in the midst of choosing the row. Of row -1 nothing is told.
    static std::optional<Access> read(AccessModel &model, int row, QWidget *page);
    static QString unread();
};
