// SPDX-License-Identifier: MIT
#pragma once

#include "records/record.h"

#include <type_traits>

class OnLine;

// The layout of a passage in an archive file, a dump and the live table's file.
namespace ScanLayout
{
inline constexpr RecordField dateTime{"dateTime", 0, 4};
inline constexpr RecordField number{"number", 4, 10};
inline constexpr RecordField reserved{"reserved", 14, 3};
inline constexpr RecordField direction{"direction", 17, 1};
inline constexpr RecordField inAccessList{"inAccessList", 18, 1};
inline constexpr RecordField accessGranted{"accessGranted", 19, 1};
inline constexpr RecordField comment{"comment", 20, 64};
inline constexpr RecordField accessKey{"accessKey", 84, 32};
inline constexpr std::size_t size = 116;
inline constexpr RecordField all[] = {dateTime,     number,        reserved, direction,
                                      inAccessList, accessGranted, comment,  accessKey};
static_assert(fillsRecord(all, size), "the fields of a passage do not fill its record");
} // namespace ScanLayout

// One passage: when a car came, with which number, in which direction, and the verdict. Times are
// Unix seconds, UTC; numbers are at most 9 bytes. A passage without a time is not valid. Direction
// is 1 for in, 2 for out, 0 when the device did not tell.
class Scan : public Record<ScanLayout::size>
{
public:
    Scan();
    // The passage of a live record; its type and picture name are not carried over.
    explicit Scan(const OnLine &onLine);

    QDateTime dateTime() const;
    void setDateTime(const QDateTime &time);

    QString number() const;
    void setNumber(const QString &number);

    bool isIncoming() const;
    void setIncoming(bool incoming);

    bool isInAccessList() const;
    void setInAccessList(bool inAccessList);

    bool isAccessGranted() const;
    void setAccessGranted(bool granted);

    QString comment() const;
    void setComment(const QString &comment);

    QString accessKey() const;
    void setAccessKey(const QString &key);

    bool isValid() const;

    // Turns local letters of the number into the Latin letters that look the same.
    void translateFromLocal();
};

static_assert(sizeof(Scan) == ScanLayout::size && std::is_trivially_copyable<Scan>::value,
              "a passage is read and written as it lies in memory");
