// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QVariant>

// A cell of a table as it is read aloud: whoever hears "No" must also hear of what.
class SpokenCell
{
    Q_DECLARE_TR_FUNCTIONS(SpokenCell)

public:
    // The title of the column and what the cell shows. An empty cell says that it is.
    static QString text(const QVariant &title, const QVariant &value);
};
