// SPDX-License-Identifier: MIT
// The text of an error, which may come from a device.
#include "app/errorbrowser.h"
#include "fuzz/fuzztarget.h"

#include <QPixmap>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    ErrorBrowser dialog(QStringLiteral("Error"), QString::fromUtf8(FuzzTarget::bytes(data, size)),
                        nullptr);
    dialog.grab();
    return 0;
}
