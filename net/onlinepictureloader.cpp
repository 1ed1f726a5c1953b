// SPDX-License-Identifier: MIT
#include "net/onlinepictureloader.h"

#include "net/events.h"
#include "net/getfile.h"
#include "net/socketwait.h"

#include <QElapsedTimer>

OnlinePictureLoader::OnlinePictureLoader(const OnLine &onLine, const QString &host,
                                         const QString &vaskId)
    : onLine_(onLine)
    , host_(host)
    , vaskId_(vaskId)
{
}

OnLineEvent *OnlinePictureLoader::load(QString localPath)
{
    constexpr int patienceMsec = 59999;
    constexpr int pauseMsec = 3000;
    GetFile get(host_, localPath, nullptr);
    QElapsedTimer clock;
    clock.start();
    while (!SocketWait::interrupted() && clock.elapsed() <= patienceMsec) {
        if (get(onLine_.fileName())) {
            return new OnLineEvent(host_, onLine_, get.fileName(), vaskId_, true);
        }
        SocketWait::pause(pauseMsec, SocketWait::interrupted);
    }
    return nullptr;
}
