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
// A device's list that does not consist of whole entries, or is longer than any, is refused with a
// text of its own, one of which not all has come like a failed transfer; so neither the panel nor
// the device ever holds one. Of the panel's lists the whole entries are sent.
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
    // Why what the device has announced is no list; empty where it may be one.
    static QString unfit(const GetFile &get);
    // A transfer takes an answer that is no size for an empty file, and does not miss what a lost
    // line cuts off at its end.
    static bool isWhole(const GetFile &get);
    QString put(const QString &file) const;

    QString host_;
};
