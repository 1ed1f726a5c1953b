// SPDX-License-Identifier: MIT
#pragma once

#include "records/record.h"

#include <type_traits>

// The layout of a live record as a device pushes it.
namespace OnLineLayout
{
inline constexpr RecordField type{"type", 0, 4};
inline constexpr RecordField direction{"direction", 4, 4};
inline constexpr RecordField number{"number", 8, 10};
inline constexpr RecordField reserved{"reserved", 18, 6};
inline constexpr RecordField fileName{"fileName", 24, 64};
inline constexpr RecordField dateTime{"dateTime", 88, 4};
inline constexpr RecordField inAccessList{"inAccessList", 92, 1};
inline constexpr RecordField accessGranted{"accessGranted", 93, 1};
inline constexpr RecordField comment{"comment", 94, 64};
inline constexpr RecordField accessKey{"accessKey", 158, 32};
inline constexpr RecordField padding{"padding", 190, 2};
inline constexpr std::size_t size = 192;
inline constexpr RecordField all[] = {type,     direction, number,       reserved,
                                      fileName, dateTime,  inAccessList, accessGranted,
                                      comment,  accessKey, padding};
static_assert(fillsRecord(all, size), "the fields of a live record do not fill it");
} // namespace OnLineLayout

// One recognition as a device sends it: the passage, an event type that the panel only stores, and
// the name of its picture on the device. The direction is a 32-bit word here and a byte in a Scan;
// comment and key stand in the order of a Scan, not of an Access.
class OnLine : public Record<OnLineLayout::size>
{
public:
    OnLine();

    qint32 type() const;
    void setType(qint32 type);

    bool isIncoming() const;
    void setIncoming(bool incoming);

    QString number() const;
    void setNumber(const QString &number);

    // The picture's name on the device.
    QString fileName() const;
    void setFileName(const QString &name);

    QDateTime dateTime() const;
    void setDateTime(const QDateTime &time);

    bool isInAccessList() const;
    void setInAccessList(bool inAccessList);

    bool isAccessGranted() const;
    void setAccessGranted(bool granted);

    QString comment() const;
    void setComment(const QString &comment);

    QString accessKey() const;
    void setAccessKey(const QString &key);

    // Has a time, and a picture name of any form, none included.
    bool isValid() const;

    // Turns local letters of the number into the Latin letters that look the same.
    void translateFromLocal();

private:
    friend class Scan;
};

static_assert(sizeof(OnLine) == OnLineLayout::size && std::is_trivially_copyable<OnLine>::value,
              "a live record is received as it lies in memory");
