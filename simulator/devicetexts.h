// SPDX-License-Identifier: MIT
#pragma once

#include "records/record.h"

#include <QByteArray>
#include <QString>

#include <cstring>

// How a simulated device writes: in which code page its texts are, and whether its plates, comments
// and keys are in cyrillic letters. By default it writes in the encoding of the locale, as a panel
// of the same process does, and in Latin letters.
//
// A plain value for any thread. What the code page does not have becomes "?".
struct DeviceTexts {
    QByteArray codePage; // as the toolkit calls it; empty: that of the locale
    bool cyrillic = false;

    // Whether the toolkit has it and lines in it are still lines: one in which ASCII is not ASCII
    // cannot be used.
    static bool isCodePage(const QByteArray &name);

    QByteArray encoded(const QString &text) const;
    QString decoded(const QByteArray &bytes) const;
    // As many whole characters as fit; a zero character ends the text.
    QByteArray fitting(QString text, int limit) const;

    // A complete number in Latin letters, on a plate of this device.
    QString plate(QString latin) const;
    // Who lives in a flat; of an archived passage; a key of eight digits.
    static constexpr std::size_t families = 18;
    QString resident(quint32 family, quint32 flat) const;
    QString passage(int row) const;
    QString key(quint32 number) const;

    // The text of a record's field, and the field without its last byte set to a text.
    template <typename AnyRecord>
    static QByteArray fieldBytes(const AnyRecord &record, const RecordField &field)
    {
        const auto limit = static_cast<uint>(field.size - 1);
        const char *bytes = record.data() + field.offset;
        return QByteArray(bytes, static_cast<int>(qstrnlen(bytes, limit)));
    }
    template <typename AnyRecord>
    QString text(const AnyRecord &record, const RecordField &field) const
    {
        return decoded(fieldBytes(record, field));
    }
    template <typename AnyRecord>
    void put(AnyRecord *record, const RecordField &field, const QString &text) const
    {
        putBytes(record, field, fitting(text, static_cast<int>(field.size) - 1));
    }
    // Cut to the field, which they may fill.
    template <typename AnyRecord>
    static void putBytes(AnyRecord *record, const RecordField &field, const QByteArray &bytes)
    {
        const QByteArray cut = bytes.left(static_cast<int>(field.size));
        std::memset(record->data() + field.offset, 0, field.size);
        std::memcpy(record->data() + field.offset, cut.constData(),
                    static_cast<std::size_t>(cut.size()));
    }
};
