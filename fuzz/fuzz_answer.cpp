// SPDX-License-Identifier: MIT
// The answer line of a device's file service, its line end included.
#include "fuzz/fuzztarget.h"
#include "net/fileprotocol.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray answer = FileProtocol::stripped(FuzzTarget::bytes(data, size));
    FuzzTarget::require(!answer.contains('\r') && !answer.contains('\n'), "an answer is one line");
    const bool refused = FileProtocol::isRefusal(answer);
    FuzzTarget::require(!refused || answer.startsWith("Error"), "refusals begin with \"Error\"");
    FuzzTarget::require(FileProtocol::announcedSize(answer) >= 0, "no size is negative");
    const QString path = QString::fromLocal8Bit(answer);
    FuzzTarget::require(FileProtocol::getRequest(path).endsWith("\r\n") &&
                            FileProtocol::putRequest(path, answer.size()).endsWith("\r\n"),
                        "requests are lines");
    return 0;
}
