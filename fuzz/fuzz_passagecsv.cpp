// SPDX-License-Identifier: MIT
// A CSV file of passages, loaded as the Archive page does it.
#include "fuzz/fuzztarget.h"
#include "pages/tableload.h"
#include "records/passagecsv.h"
#include "records/scanmodel.h"

#include <algorithm>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    constexpr int shownRows = 20;
    const QString source =
        FuzzTarget::write(QStringLiteral("source.csv"), FuzzTarget::bytes(data, size));
    const QString table = FuzzTarget::scratch(QStringLiteral("loaded.pass"));
    int shown = 0;
    const QString error = TableLoad::csv(source, table, [&shown](int percent) {
        FuzzTarget::require(percent >= shown && percent <= 100, "progress goes up to 100");
        shown = percent;
    });
    if (!error.isEmpty()) {
        return 0;
    }
    FuzzTarget::require(FuzzTarget::read(table).size() % Scan::size == 0,
                        "a table has whole rows only");
    ScanModel model(table, nullptr);
    for (int row = 0; row < std::min(model.rowCount(), shownRows); ++row) {
        for (int column = 0; column < ScanModel::columns; ++column) {
            model.index(row, column).data();
        }
        PassageCsv::fields(model.value(row));
    }
    return 0;
}
