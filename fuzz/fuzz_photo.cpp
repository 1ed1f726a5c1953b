// SPDX-License-Identifier: MIT
// A photo or a camera frame, decoded as the photo view does it.
#include "fuzz/fuzztarget.h"
#include "pages/proportionalsclalewidget.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString file =
        FuzzTarget::write(QStringLiteral("photo.jpeg"), FuzzTarget::bytes(data, size));
    const QPixmap photo = ProportionalSclaleWidget::loadPhoto(file);
    FuzzTarget::require(qint64{photo.width()} * photo.height() <= 64'000'000,
                        "no picture is larger than the limit");
    return 0;
}
