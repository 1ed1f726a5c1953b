// SPDX-License-Identifier: MIT
#pragma once

#include "records/online.h"

#include <QString>

class GetFile;
class OnLineEvent;

// Fetches the picture of one passage that could not be had when the passage came: every 3 s for a
// minute. load() runs on a thread of its own and ends within 100 ms of that thread's interruption.
class OnlinePictureLoader
{
public:
    OnlinePictureLoader(const OnLine &onLine, const QString &host, const QString &vaskId);

    const QString &host() const { return host_; }

    // One try: the local file appears whole or not at all, so that nobody ever sees half a picture
    // and a failed try does not spoil a picture that is there. The transfer writes beside it.
    static bool fetch(GetFile &get, const QString &remoteName, const QString &localPath);

    // The event that announces the picture, for the caller to post or delete; null when it never
    // came.
    OnLineEvent *load(QString localPath);

private:
    OnLine onLine_;
    QString host_;
    QString vaskId_;
};
