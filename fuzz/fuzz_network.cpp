// SPDX-License-Identifier: MIT
// The panel's network files, read by both parsers, written back and read again. The dialog's own
// way with them is the same.
#include "fuzz/fuzztarget.h"
#include "netsetup/configparser.h"
#include "netsetup/resolvparser.h"

namespace
{

// What is written back reads as it was written: the same number of lines, once the first writing
// has brought them into order.
template <typename Parser>
void tryParser(const QByteArray &input, const QString &key)
{
    const QString file = FuzzTarget::write(QStringLiteral("network.cfg"), input);
    Parser(file).sync();
    const auto lines = FuzzTarget::read(file).count('\n');
    Parser again(file);
    const QString value = again[key];
    again[key] = value;
    again.sync();
    Parser third(file);
    FuzzTarget::require(third[key] == value, "a value comes back");
    const auto written = FuzzTarget::read(file).count('\n');
    FuzzTarget::require(written == lines || written == lines + 1,
                        "no line is lost, and at most the missing key is added");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray input = FuzzTarget::bytes(data, size);
    tryParser<ConfigParser>(input, QStringLiteral("IPADDR"));
    tryParser<ResolvParser>(input, QStringLiteral("nameserver0"));
    return 0;
}
