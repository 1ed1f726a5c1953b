// SPDX-License-Identifier: MIT
#include "records/passagecsv.h"

#include "records/csv.h"
#include "records/vasksettings.h"

QStringList PassageCsv::fields(const Scan &scan)
{
    const auto flag = [](bool on) { return QString::number(on ? 1 : 0); };
    return {scan.dateTime().toString(CSV::dateFormat()),
            VaskSettings::inLatinLetters(scan.number()), // local letters as the table shows them
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
    // Translated while it is whole: in some encodings a local number is too long for its field.
    scan.setNumber(VaskSettings::inLatinLetters(fields.value(1)));
    scan.setIncoming(flag(2));
    scan.setInAccessList(flag(3));
    scan.setAccessGranted(flag(4));
    scan.setComment(fields.value(5));
    scan.setAccessKey(fields.value(6));
    return scan;
}
