// SPDX-License-Identifier: MIT
#include "pages/jpegheader.h"

#include <algorithm>

namespace
{

enum Marker : uchar {
    TemporaryMarker = 0x01,
    FirstFrame = 0xC0,
    HuffmanTables = 0xC4,
    Extension = 0xC8,
    ArithmeticConditioning = 0xCC,
    LastFrame = 0xCF,
    FirstRestart = 0xD0,
    StartOfImage = 0xD8,
    EndOfImage = 0xD9,
    StartOfScan = 0xDA,
};

// Pictures with a strange shape decode far more than their pixels, and a scan costs something
// however small the picture is. Nothing that a camera makes comes near.
constexpr qint64 mostWork = 2 * JpegHeader::mostScannedPixels;
constexpr qint64 leastWorkOfScan = 4096;

int byteAt(const QByteArray &bytes, qint64 position)
{
    return static_cast<uchar>(bytes.at(static_cast<int>(position)));
}

int wordAt(const QByteArray &bytes, qint64 position)
{
    return byteAt(bytes, position) << 8 | byteAt(bytes, position + 1);
}

bool isFrame(int marker)
{
    return marker >= FirstFrame && marker <= LastFrame && marker != HuffmanTables &&
           marker != Extension && marker != ArithmeticConditioning;
}

// Markers that no length follows, among them the byte that is stuffed behind a data byte of 0xFF.
bool standsAlone(int marker)
{
    return marker <= TemporaryMarker || (marker >= FirstRestart && marker <= StartOfImage);
}

} // namespace

JpegHeader::JpegHeader(const QByteArray &bytes)
    : bytes_(bytes.size())
{
    if (bytes_ > mostBytes || !bytes.startsWith("\xFF\xD8")) {
        return;
    }
    qint64 position = 2;
    for (;;) {
        position = bytes.indexOf('\xFF', static_cast<int>(position));
        while (position >= 0 && position < bytes_ && byteAt(bytes, position) == 0xFF) {
            ++position;
        }
        if (position < 0 || position >= bytes_) {
            return;
        }
        const int marker = byteAt(bytes, position++);
        if (standsAlone(marker)) {
            continue;
        }
        if (marker == EndOfImage || position + 2 > bytes_) {
            return;
        }
        const int length = wordAt(bytes, position);
        if (marker == StartOfScan) {
            ++scans_;
        } else if (isFrame(marker) && size_.isEmpty()) {
            readFrame(bytes, position + 2, length - 2);
        }
        position = std::min(position + std::max(length, 2), bytes_);
    }
}

// Precision, height and width of two bytes each, the number of components, and of each its number,
// its two sampling factors in one byte, and a table.
void JpegHeader::readFrame(const QByteArray &bytes, qint64 position, qint64 length)
{
    constexpr qint64 head = 6;
    constexpr qint64 component = 3;
    if (length < head || position + length > bytes_) {
        return;
    }
    size_ = QSize(wordAt(bytes, position + 3), wordAt(bytes, position + 1));
    unit_ = QSize(8, 8);
    const int components = byteAt(bytes, position + 5);
    for (int i = 0; i < components && head + (i + 1) * component <= length; ++i) {
        const int sampling = byteAt(bytes, position + head + i * component + 1);
        unit_ = unit_.expandedTo(QSize(8 * (sampling >> 4), 8 * (sampling & 0xF)));
    }
}

qint64 JpegHeader::areaOfBlocks() const
{
    const auto whole = [](int length, int unit) { return qint64(length + unit - 1) / unit * unit; };
    return whole(size_.width(), unit_.width()) * whole(size_.height(), unit_.height());
}

bool JpegHeader::isDecodable() const
{
    if (size_.isEmpty() || scans_ == 0) {
        return false;
    }
    const qint64 pixels = qint64(size_.width()) * size_.height();
    return pixels <= mostPixels && pixels * scans_ <= mostScannedPixels &&
           std::max(areaOfBlocks(), leastWorkOfScan) * scans_ <= mostWork;
}
