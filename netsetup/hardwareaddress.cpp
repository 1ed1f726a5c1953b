// SPDX-License-Identifier: MIT
#include "netsetup/hardwareaddress.h"

#include <QNetworkInterface>

QString HardwareAddress::ofFirstInterface()
{
    const QList<QNetworkInterface> interfaces = QNetworkInterface::allInterfaces();
    for (const QNetworkInterface &each : interfaces) {
        if ((each.flags() & QNetworkInterface::IsLoopBack) == 0) {
            return each.hardwareAddress();
        }
    }
    return QString();
}
