// SPDX-License-Identifier: MIT
#include "records/accesscsv.h"

#include "records/csv.h"
#include "records/vasksettings.h"

namespace
{

constexpr int columns = 6;

QDateTime timeOf(const QString &text)
{
    const QDateTime time = QDateTime::fromString(text, Qt::TextDate);
    return time.isValid() ? time : QDateTime::fromString(text, CSV::dateFormat());
}

} // namespace

QStringList AccessCsv::fields(const Access &access)
{
    return {QString::number(access.id()),
            access.number(),
            access.dateTimeFrom().toString(CSV::dateFormat()),
            access.dateTimeTill().toString(CSV::dateFormat()),
            access.accessKey(),
            access.comment()};
}

Access AccessCsv::access(const QStringList &fields)
{
    Access access;
    access.setId(fields.value(0).toShort());
    // Translated while it is whole: in some encodings a local number is too long for its field.
    access.setNumber(VaskSettings::translateFromLocal(fields.value(1)));
    access.setDateTimeFrom(timeOf(fields.value(2)));
    access.setDateTimeFrom(timeOf(fields.value(3)));
    access.setAccessKey(fields.value(4));
    access.setComment(fields.value(5));
    return access;
}

bool AccessCsv::hasId(const QStringList &fields)
{
    bool isNumber = false;
    fields.value(0).toShort(&isNumber);
    return isNumber;
}

bool AccessCsv::areTitles(const QStringList &fields)
{
    return fields.size() == columns && !hasId(fields);
}
