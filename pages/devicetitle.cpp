// SPDX-License-Identifier: MIT
#include "pages/devicetitle.h"

#include <QStringList>

QString DeviceTitle::plain(const QString &page)
{
    return QStringLiteral("<center><font color='white' size='+2'>%1</font></center>").arg(page);
}

QString DeviceTitle::device(const QString &page, const QString &device)
{
    return QStringLiteral("<center><font color='white' size='+2'>%1 - </font>"
                          "<font color='White' size='+2'><I>%2</I></center>")
        .arg(page, device.toHtmlEscaped());
}

QString DeviceTitle::onLine(const QString &page, const QString &firstHost,
                            const QString &secondHost, bool connected)
{
    QStringList hosts = {firstHost.toHtmlEscaped(), secondHost.toHtmlEscaped()};
    hosts.removeAll(QString());
    if (hosts.isEmpty()) {
        return plain(page);
    }
    const QString colour = connected ? QStringLiteral("White") : QStringLiteral("Grey");
    return QStringLiteral("<center><font color='white' size='+2'>%1 - </font>"
                          "<font color='%2' size='+2'><I>[%3]</I></font></center>")
        .arg(page, colour, hosts.join(QStringLiteral(" / ")));
}
