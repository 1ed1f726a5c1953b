// SPDX-License-Identifier: MIT
#include "records/passagecsv.h"

#include "records/csv.h"

QStringList PassageCsv::fields(const Scan &scan)
{
    const auto flag = [](bool on) { return QString::number(on ? 1 : 0); };
    return {scan.dateTime().toString(CSV::dateFormat()),
            scan.number(),
            flag(scan.isIncoming()),
            flag(scan.isInAccessList()),
            flag(scan.isAccessGranted()),
            scan.comment(),
            scan.accessKey()};
}

Scan PassageCsv::scan(const QStringList &fields)
{
    const auto flag = [&fields](int place) { return fields.value(place).toInt() != 0; };
    Scan scan;
    scan.setDateTime(QDateTime::fromString(fields.value(0), CSV::dateFormat()));
    scan.setNumber(fields.value(1));
    scan.setIncoming(flag(2));
    scan.setInAccessList(flag(3));
    scan.setAccessGranted(flag(4));
    scan.setComment(fields.value(5));
    scan.setAccessKey(fields.value(6));
    return scan;
}
