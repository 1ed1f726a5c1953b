// SPDX-License-Identifier: MIT
// A device's "/etc/streams.ini".
#include "fuzz/fuzztarget.h"
#include "net/deviceidentity.h"
#include "records/deviceindex.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString id =
        DeviceIdentity::parse(FuzzTarget::bytes(data, size), QStringLiteral("Not defined"));
    FuzzTarget::require(DeviceIndex::entry(id).size() == DeviceIndex::entrySize,
                        "an identifier fits an entry of the index");
    return 0;
}
