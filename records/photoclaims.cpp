// SPDX-License-Identifier: MIT
#include "records/photoclaims.h"

#include "records/photoname.h"

#include <QFileInfo>
#include <QHash>
#include <QMutex>
#include <QMutexLocker>

#include <deque>

namespace
{

constexpr std::size_t mostClaims = 16384;

struct Claim {
    QString host;
    QString id;
};

struct Claims {
    QMutex mutex;
    QHash<QString, Claim> claims;
    std::deque<QString> order; // the oldest first
};

Claims &all()
{
    static Claims instance;
    return instance;
}

} // namespace

QString PhotoClaims::claim(const QString &path, const QString &host, const QString &vaskId)
{
    const QString id = PhotoName::storedId(vaskId);
    Claim first{host, id};
    {
        Claims &known = all();
        const QMutexLocker lock(&known.mutex);
        const auto found = known.claims.constFind(path);
        if (found != known.claims.constEnd()) {
            first = *found;
        } else {
            known.claims.insert(path, first);
            known.order.push_back(path);
            if (known.order.size() > mostClaims) {
                known.claims.remove(known.order.front());
                known.order.pop_front();
            }
        }
    }
    if (first.host == host) {
        return path;
    }
    const QFileInfo file(path);
    const QString own =
        file.path() + QLatin1Char('/') + PhotoName::ofDevice(file.fileName(), vaskId);
    PhotoName::reserve(own);
    return first.id == id ? QString() : own;
}

void PhotoClaims::forget()
{
    Claims &known = all();
    const QMutexLocker lock(&known.mutex);
    known.claims.clear();
    known.order.clear();
}
