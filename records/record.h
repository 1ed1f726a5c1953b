// SPDX-License-Identifier: MIT
#pragma once

#include "records/localtext.h"

#include <QDateTime>
#include <QString>
#include <QtEndian>

#include <array>
#include <cstddef>
#include <cstring>

// One field of a record: its name, where it begins and how many bytes it takes.
struct RecordField {
    const char *name;
    std::size_t offset;
    std::size_t size;
};

// True when the fields follow one another without gap or overlap and fill the record. Layout tables
// assert it, so a changed offset or width cannot compile by accident.
template <std::size_t N>
constexpr bool fillsRecord(const RecordField (&fields)[N], std::size_t recordSize)
{
    std::size_t end = 0;
    for (const RecordField &field : fields) {
        if (field.offset != end) {
            return false;
        }
        end += field.size;
    }
    return end == recordSize;
}

// The time word of a record that has no time.
constexpr quint32 noTime = 0xFFFFFFFFU;

// A block of Size bytes exactly as it goes over the wire and into record files: little-endian
// words, zero-terminated texts in the local 8-bit encoding. It starts as zeros, reserved bytes
// included. A plain value: no padding, no alignment, copied byte for byte. Any bytes are valid
// content; a text that fills its field is read without the field's last byte.
template <std::size_t Size>
class Record
{
public:
    static constexpr int size = static_cast<int>(Size);

    const char *data() const { return bytes_.data(); }
    char *data() { return bytes_.data(); }

protected:
    template <typename Word>
    Word word(const RecordField &field) const
    {
        return qFromLittleEndian<Word>(bytes_.data() + field.offset);
    }

    template <typename Word>
    void setWord(const RecordField &field, Word value)
    {
        qToLittleEndian<Word>(value, bytes_.data() + field.offset);
    }

    // The last byte of a text field is never read.
    QString text(const RecordField &field) const
    {
        return LocalText::decoded(bytes_.data() + field.offset, static_cast<int>(field.size));
    }

    // The rest of the field behind the text is zeroed.
    void setText(const RecordField &field, const QString &text)
    {
        setTextBytes(field, LocalText::encoded(text, static_cast<int>(field.size) - 1));
    }

    void setTextBytes(const RecordField &field, const QByteArray &text)
    {
        std::memset(bytes_.data() + field.offset, 0, field.size);
        std::memcpy(bytes_.data() + field.offset, text.constData(),
                    static_cast<std::size_t>(text.size()));
    }

    QByteArray textBytes(const RecordField &field) const
    {
        return LocalText::fieldBytes(bytes_.data() + field.offset, static_cast<int>(field.size));
    }

    // A null time where the word says that there is none.
    QDateTime time(const RecordField &field) const
    {
        const auto seconds = word<quint32>(field);
        return seconds == noTime ? QDateTime() : QDateTime::fromSecsSinceEpoch(seconds);
    }

    // A time that the word cannot hold, before 1970 or after 2106, is stored as none.
    void setTime(const RecordField &field, const QDateTime &time)
    {
        const qint64 seconds = time.isValid() ? time.toSecsSinceEpoch() : -1;
        setWord(field, seconds >= 0 && seconds < noTime ? static_cast<quint32>(seconds) : noTime);
    }

    bool flag(const RecordField &field) const { return word<quint8>(field) != 0; }
    void setFlag(const RecordField &field, bool on) { setWord<quint8>(field, on ? 1 : 0); }

private:
    std::array<char, Size> bytes_{};
};
