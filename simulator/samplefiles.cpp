// SPDX-License-Identifier: MIT
#include "simulator/samplefiles.h"

QByteArray SampleFiles::streams(const QString &deviceId, const DeviceTexts &texts)
{
    return "[common]\ndeviceid=" + texts.encoded(deviceId) + "\n";
}

QByteArray SampleFiles::streamsWithComma()
{
    return "[common]\ndeviceid=Gate 1, North\n";
}

QByteArray SampleFiles::streamsInCp1251()
{
    // "Въезд" and a number.
    return "[common]\ndeviceid=\xc2\xfa\xe5\xe7\xe4-7\n";
}

QByteArray SampleFiles::streamsWithVariant()
{
    return "[common]\ndeviceid=@Variant(\\0\\0\\0\\x7f\\0\\0\\0\\tQTextLine\\0)\n";
}

QByteArray SampleFiles::streamsWithLongId()
{
    return "[common]\ndeviceid=" + QByteArray("0123456789").repeated(4) + "\n";
}

QByteArray SampleFiles::hugeStreams(const QString &deviceId)
{
    QByteArray result = "[other]\n";
    for (int key = 0; result.size() < 1024 * 1024; ++key) {
        result += "key" + QByteArray::number(key) + "=value of a key that nobody reads\n";
    }
    return result + streams(deviceId);
}
