// SPDX-License-Identifier: MIT
// Rich text in the window's title bar: a device's identifier and the panel's own title.
#include "fuzz/fuzztarget.h"
#include "style/richline.h"

#include <QPixmap>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    RichLine line(nullptr);
    line.resize(300, 48);
    line.setText(QString::fromUtf8(FuzzTarget::bytes(data, size)));
    line.grab();
    line.resize(40, 48);
    line.grab();
    line.plainText();
    return 0;
}
