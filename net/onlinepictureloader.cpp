// SPDX-License-Identifier: MIT
#include "net/onlinepictureloader.h"

#include "net/events.h"
#include "net/getfile.h"
#include "net/socketwait.h"

#include <QElapsedTimer>
#include <QFile>

#include <atomic>
#include <cstdio>

OnlinePictureLoader::OnlinePictureLoader(const OnLine &onLine, const QString &host,
                                         const QString &vaskId)
    : onLine_(onLine)
    , host_(host)
    , vaskId_(vaskId)
{
}

bool OnlinePictureLoader::fetch(GetFile &get, const QString &remoteName, const QString &localPath)
{
    // A name of its own: another try for the same passage may run at the same time.
    static std::atomic<unsigned> tries{0};
    const QString part = localPath + QStringLiteral(".part%1").arg(++tries);
    get.setFileName(part);
    if (get(remoteName) && std::rename(QFile::encodeName(part).constData(),
                                       QFile::encodeName(localPath).constData()) == 0) {
        return true;
    }
    QFile::remove(part);
    return false;
}

OnLineEvent *OnlinePictureLoader::load(QString localPath)
{
    constexpr int patienceMsec = 59999;
    constexpr int pauseMsec = 3000;
    GetFile get(host_, QString(), nullptr);
    QElapsedTimer clock;
    clock.start();
    while (!SocketWait::interrupted() && clock.elapsed() <= patienceMsec) {
        if (fetch(get, onLine_.fileName(), localPath)) {
            return new OnLineEvent(host_, onLine_, localPath, vaskId_, true);
        }
        SocketWait::pause(pauseMsec, SocketWait::interrupted);
    }
    return nullptr;
}
