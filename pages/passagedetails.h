// SPDX-License-Identifier: MIT
#pragma once

#include "records/scan.h"

#include <QCoreApplication>
#include <QStringList>

// The lines of text that tell of one passage over its photo.
class PassageDetails
{
    Q_DECLARE_TR_FUNCTIONS(PassageDetails)

public:
    // As each page orders them.
    static QStringList onLineLines(const Scan &scan);
    static QStringList archiveLines(const Scan &scan);

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
