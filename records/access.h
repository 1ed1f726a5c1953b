// SPDX-License-Identifier: MIT
#pragma once

#include "records/record.h"

#include <type_traits>

// The layout of an access-list entry in the list's file, on the panel and on a device.
namespace AccessLayout
{
inline constexpr RecordField id{"id", 0, 2};
inline constexpr RecordField number{"number", 2, 10};
inline constexpr RecordField dateTimeFrom{"dateTimeFrom", 12, 4};
inline constexpr RecordField dateTimeTill{"dateTimeTill", 16, 4};
inline constexpr RecordField accessKey{"accessKey", 20, 32};
inline constexpr RecordField comment{"comment", 52, 64};
inline constexpr std::size_t size = 116;
inline constexpr RecordField all[] = {id, number, dateTimeFrom, dateTimeTill, accessKey, comment};
static_assert(fillsRecord(all, size), "the fields of an access entry do not fill its record");
} // namespace AccessLayout

// One number that may pass, with its validity period, key and comment. The id identifies the entry
// within its list; -1 marks an empty record. Unlike a passage, a time word of 0xFFFFFFFF is read as
// the moment that it names, and the key stands before the comment.
class Access : public Record<AccessLayout::size>
{
public:
    Access();

    qint16 id() const;
    void setId(qint16 id);

    QString number() const;
    void setNumber(const QString &number);

    QDateTime dateTimeFrom() const;
    void setDateTimeFrom(const QDateTime &time);

    QDateTime dateTimeTill() const;
    void setDateTimeTill(const QDateTime &time);

    QString accessKey() const;
    void setAccessKey(const QString &key);

    QString comment() const;
    void setComment(const QString &comment);

    bool isValid() const;

    // Turns local letters of the number into the Latin letters that look the same.
    void translateFromLocal();
};

static_assert(sizeof(Access) == AccessLayout::size && std::is_trivially_copyable<Access>::value,
              "an access entry is read and written as it lies in memory");
