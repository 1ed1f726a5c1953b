// SPDX-License-Identifier: MIT
#pragma once

#include "records/access.h"

#include <QCoreApplication>
#include <QString>

class GetFile;

// The access list of a device: fetched, replaced, added to. Each step is for a worker thread, ends
// within 200 ms of its interruption (reload() within a second), and returns the text to show, empty
// when nothing went wrong.
//
// A device stores what it is sent, and uses it when it is told to: reload() follows a good upload.
// Lists that do not consist of whole entries, or of which not all has come, are refused like a
// failed transfer, so that neither the panel nor the device ever holds one.
class AccessTransfer
{
    Q_DECLARE_TR_FUNCTIONS(AccessTransfer)

public:
    explicit AccessTransfer(const QString &host);

    // The device's list into the file.
    QString fetch(const QString &file) const;
    // The file as the device's list.
    QString send(const QString &file) const;
    // One entry more on the device's list.
    QString append(const Access &access) const;

    // Tells the device to use the list that it was sent. Waits 3 s at the most; a device that
    // cannot be reached goes on with its old one.
    static void reload(const QString &host);

private:
    static QString busyText();
    // A transfer takes an answer that is no size for an empty file, and does not miss what a lost
    // line cuts off at its end.
    static bool isWhole(const GetFile &get);

    QString host_;
};
