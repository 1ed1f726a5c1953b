// SPDX-License-Identifier: MIT
#pragma once

#include "records/scan.h"

#include <QCoreApplication>
#include <QStringList>

#include <optional>

// The lines of text that tell of one passage over its photo.
class PassageDetails
{
    Q_DECLARE_TR_FUNCTIONS(PassageDetails)

public:
    // As each page orders them; of a passage that could not be read, that.
    static QStringList onLineLines(const std::optional<Scan> &passage);
    static QStringList archiveLines(const std::optional<Scan> &passage);
    static QString unread();

    static QString number(const Scan &scan);
    static QString date(const Scan &scan);
    // How the barrier was opened. A passage that no camera saw, opened by a button or a card,
    // carries the number "O000OO00".
    static QString accessWay(const Scan &scan);
    static QString registration(const Scan &scan);
    static QString verdict(const Scan &scan);
    static QString comment(const Scan &scan);
    static QString accessKey(const Scan &scan);
};
