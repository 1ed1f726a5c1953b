// SPDX-License-Identifier: MIT
// A photo or a camera frame, weighed by its header and decoded as the photo decoder does it.
#include "fuzz/fuzztarget.h"
#include "pages/decodedphoto.h"
#include "pages/jpegheader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString file =
        FuzzTarget::write(QStringLiteral("photo.jpeg"), FuzzTarget::bytes(data, size));
    const QByteArray content = DecodedPhoto::content(file);
    const DecodedPhoto::Place place{QSize(320, 240), 1.0};
    const DecodedPhoto photo = DecodedPhoto::of(content, place, [] { return false; });
    FuzzTarget::require(qint64{photo.size.width()} * photo.size.height() <= JpegHeader::mostPixels,
                        "no picture is larger than the limit");
    FuzzTarget::require(photo.photo.width() <= 640 && photo.photo.height() <= 480,
                        "a picture is scaled to what the view needs");
    FuzzTarget::require(photo.isNull() || JpegHeader(content).isDecodable(),
                        "no picture is decoded that costs too much");
    return 0;
}
