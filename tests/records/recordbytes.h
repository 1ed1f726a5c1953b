// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <algorithm>
#include <functional>

// A record as the bytes that it goes over the wire and into files with.
template <typename T>
QByteArray bytesOf(const T &record)
{
    return QByteArray(record.data(), T::size);
}

// A record that holds these bytes from this offset on; the rest is that of a fresh record.
template <typename T>
T recordWith(int offset, const QByteArray &bytes)
{
    T record;
    std::copy(bytes.cbegin(), bytes.cend(), record.data() + offset);
    return record;
}

// One change of a record, as a column of a test's table.
template <typename T>
using Change = std::function<void(T &)>;
