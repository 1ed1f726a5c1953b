// SPDX-License-Identifier: MIT
#pragma once

#include "simulator/devicetexts.h"

#include <QByteArray>
#include <QString>

// Contents of a device's "/etc/streams.ini" that a panel must be able to bear. For one that is
// missing, remove it from the tree.
namespace SampleFiles
{
// As a device has it.
QByteArray streams(const QString &deviceId, const DeviceTexts &texts = DeviceTexts());
// An unquoted comma in the identifier, which INI readers take for a list: "Gate 1, North".
QByteArray streamsWithComma();
// A cyrillic identifier in the code page CP1251, whatever the locale.
QByteArray streamsInCp1251();
// A serialised value that would make a reader build an object of the sender's choice.
QByteArray streamsWithVariant();
// An identifier of 40 characters, "0123456789" four times over.
QByteArray streamsWithLongId();
// A good identifier behind one megabyte of other keys.
QByteArray hugeStreams(const QString &deviceId);
} // namespace SampleFiles
