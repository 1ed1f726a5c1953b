// SPDX-License-Identifier: MIT
#include "pages/passagedetails.h"

#include "records/vasksettings.h"

namespace
{

// A device's text stays on its line.
QString labelled(const QString &label, QString value)
{
    value.replace(QLatin1Char('\n'), QLatin1Char(' ')).replace(QLatin1Char('\r'), QLatin1Char(' '));
    return label + QStringLiteral(": ") + value;
}

} // namespace

QString PassageDetails::unread()
{
    return tr("Can't read the record");
}

QStringList PassageDetails::onLineLines(const std::optional<Scan> &passage)
{
    if (!passage) {
        return {unread()};
    }
    const Scan &scan = *passage;
    return {number(scan),  date(scan),    accessWay(scan), registration(scan),
            verdict(scan), comment(scan), accessKey(scan)};
}

QStringList PassageDetails::archiveLines(const std::optional<Scan> &passage)
{
    if (!passage) {
        return {unread()};
    }
    const Scan &scan = *passage;
    return {number(scan),    date(scan),      verdict(scan), registration(scan),
            accessWay(scan), accessKey(scan), comment(scan)};
}

QString PassageDetails::number(const Scan &scan)
{
    return labelled(tr("Number"), VaskSettings::readableNumber(scan.number()));
}

QString PassageDetails::date(const Scan &scan)
{
    return labelled(tr("Date"), scan.dateTime().toString(QStringLiteral("hh:mm:ss dd.MM.yyyy")));
}

QString PassageDetails::accessWay(const Scan &scan)
{
    if (VaskSettings::translateFromLocal(scan.number()) != QLatin1String("O000OO00")) {
        return tr("Access: granted automatically");
    }
    return scan.accessKey().isEmpty() ? tr("Access: granted manually")
                                      : tr("Access: granted by card");
}

QString PassageDetails::registration(const Scan &scan)
{
    return scan.isInAccessList() ? tr("The number is registered")
                                 : tr("The number is not registered");
}

QString PassageDetails::verdict(const Scan &scan)
{
    return scan.isAccessGranted() ? tr("The thoroughfare is granted")
                                  : tr("The thoroughfare is not granted");
}

QString PassageDetails::comment(const Scan &scan)
{
    return labelled(tr("Comment"), scan.comment());
}

QString PassageDetails::accessKey(const Scan &scan)
{
    return labelled(tr("Access key"), scan.accessKey());
}
