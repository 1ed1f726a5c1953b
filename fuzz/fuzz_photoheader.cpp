// SPDX-License-Identifier: MIT
// What a JPEG is said to cost before it is decoded, against what the toolkit's reader says of it.
#include "fuzz/fuzztarget.h"
#include "pages/jpegheader.h"

#include <QBuffer>
#include <QImageReader>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    QByteArray input = FuzzTarget::bytes(data, size);
    const JpegHeader header(input);
    FuzzTarget::require(header.scans() >= 0, "no number of scans is negative");
    if (!header.isDecodable()) {
        return 0;
    }
    FuzzTarget::require(qint64{header.size().width()} * header.size().height() * header.scans() <=
                            JpegHeader::mostScannedPixels,
                        "nothing costly is decoded");
    QBuffer buffer(&input);
    const QSize told = QImageReader(&buffer, "jpeg").size();
    FuzzTarget::require(told.isEmpty() || told == header.size(),
                        "the picture that is decoded is the one that was looked at");
    return 0;
}
