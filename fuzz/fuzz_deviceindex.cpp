// SPDX-License-Identifier: MIT
// The index file beside a table of passages. The input is the index of a table of eight rows: read
// by a table, then written on.
#include "fuzz/fuzztarget.h"
#include "records/deviceindex.h"
#include "records/scanmodel.h"

namespace
{

constexpr int rows = 8;

QString tableFile()
{
    static const QString file =
        FuzzTarget::write(QStringLiteral("table.pass"), QByteArray(rows * Scan::size, '1'));
    return file;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray input = FuzzTarget::bytes(data, size);
    const QString index = ScanModel::indexFileOf(tableFile());
    FuzzTarget::write(index.section(QLatin1Char('/'), -1), input);
    {
        const ScanModel table(tableFile(), nullptr);
        for (int row = 0; row < rows; ++row) {
            const QVariant device = table.index(row, ScanModel::DeviceColumn).data();
            FuzzTarget::require(device.toString().size() < DeviceIndex::entrySize,
                                "no identifier is longer than its entry");
        }
    }
    DeviceIndex writer;
    FuzzTarget::require(writer.open(index, QIODevice::ReadWrite), "the index can be opened");
    FuzzTarget::require(writer.write(rows, QString::fromLocal8Bit(input.left(64))) &&
                            writer.cut(rows),
                        "the index can be written");
    writer.close();
    FuzzTarget::require(FuzzTarget::read(index).size() == rows * DeviceIndex::entrySize,
                        "entries and rows stay in step");
    return 0;
}
