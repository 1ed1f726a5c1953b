// SPDX-License-Identifier: MIT
// A line of a separated text file. The input is the line in UTF-8.
#include "fuzz/fuzztarget.h"
#include "records/csv.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const CSV codec;
    const QStringList fields = codec.decodeRecord(QString::fromUtf8(FuzzTarget::bytes(data, size)));
    FuzzTarget::require(!fields.isEmpty(), "a line has at least one field");
    FuzzTarget::require(codec.decodeRecord(codec.encodeRecord(fields)) == fields,
                        "fields come back as they were");
    return 0;
}
