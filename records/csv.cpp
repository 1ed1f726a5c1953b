// SPDX-License-Identifier: MIT
#include "records/csv.h"

namespace
{

bool needsQuotes(const QString &text)
{
    return text.contains(QLatin1Char(';')) || text.contains(QLatin1Char('"')) ||
           text.contains(QLatin1Char(','));
}

} // namespace

CSV::CSV(QChar separator, QChar quote)
    : separator_(separator)
    , quote_(quote)
{
}

QString CSV::dateFormat()
{
    return QStringLiteral("dd.MM.yyyy hh:mm:ss");
}

QString CSV::encodeField(const QString &text) const
{
    QString field = text;
    field.replace(QLatin1Char('"'), QLatin1String("\"\""));
    field.replace(QLatin1String("\r\n"), QLatin1String(" "));
    field.replace(QLatin1Char('\n'), QLatin1Char(' '));
    return needsQuotes(field) ? QLatin1Char('"') + field + QLatin1Char('"') : field;
}

QString CSV::encodeRecord(const QStringList &fields) const
{
    QStringList encoded;
    encoded.reserve(fields.size());
    for (const QString &field : fields) {
        encoded.append(encodeField(field));
    }
    return encoded.join(separator_);
}

QStringList CSV::decodeRecord(const QString &line) const
{
    QStringList fields;
    QString field;
    bool quoted = false;
    for (int i = 0; i < line.size(); ++i) {
        const QChar c = line.at(i);
        if (c == QLatin1Char('\r') || c == QLatin1Char('\n')) {
            break;
        }
        if (c == separator_ && !quoted) {
            fields.append(field);
            field.clear();
        } else if (c != quote_) {
            field.append(c);
        } else {
            quoted = !quoted;
            // Two quotes in a row inside a quoted field stand for one.
            if (quoted && i >= 2 && line.at(i - 1) == quote_) {
                field.append(quote_);
            }
        }
    }
    fields.append(field);
    return fields;
}
