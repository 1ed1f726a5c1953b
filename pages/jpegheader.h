// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QSize>

// What decoding a JPEG would cost, learnt from its segments without decoding anything. A
// progressive picture is decoded once over its whole area for each of its scans, and a scan may be
// a few bytes long, so neither the length of the file nor the size of the picture tells.
//
// Walks over the bytes once, as decoders do: lengths that reach beyond the end, and bytes between
// segments, are taken as they take them, so that no scan which would be decoded goes uncounted. Any
// thread; any bytes.
class JpegHeader
{
public:
    static constexpr qint64 mostBytes = 16 * 1024 * 1024;
    static constexpr qint64 mostPixels = 64'000'000;
    // Of all scans together.
    static constexpr qint64 mostScannedPixels = 256'000'000;

    // Of no JPEG: an empty size and no scans.
    explicit JpegHeader(const QByteArray &bytes);

    // As the header claims it.
    QSize size() const { return size_; }
    int scans() const { return scans_; }

    // Whether there is a picture, and decoding it stays within the limits.
    bool isDecodable() const;

private:
    void readFrame(const QByteArray &bytes, qint64 position, qint64 length);
    qint64 areaOfBlocks() const;

    qint64 bytes_ = 0;
    QSize size_;
    // The pixels that are decoded at once; a picture is decoded in whole ones.
    QSize unit_;
    int scans_ = 0;
};
