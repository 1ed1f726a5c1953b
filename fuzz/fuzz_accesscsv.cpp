// SPDX-License-Identifier: MIT
// A CSV file of an access list, loaded as the access list page does it.
#include "fuzz/fuzztarget.h"
#include "pages/accessfiles.h"
#include "records/accesscsv.h"
#include "records/accessmodel.h"

#include <algorithm>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    constexpr int shownRows = 20;
    const QString source =
        FuzzTarget::write(QStringLiteral("source.csv"), FuzzTarget::bytes(data, size));
    const QString list = FuzzTarget::scratch(QStringLiteral("loaded.access"));
    if (!AccessFiles::loadCsv(source, list).isEmpty()) {
        return 0;
    }
    FuzzTarget::require(FuzzTarget::read(list).size() % Access::size == 0,
                        "a list has whole entries only");
    AccessModel model(list, nullptr);
    for (int row = 0; row < std::min(model.rowCount(), shownRows); ++row) {
        for (int column = 0; column < AccessModel::columns; ++column) {
            model.index(row, column).data();
            model.index(row, column).data(Qt::EditRole);
        }
        AccessCsv::fields(model.value(row));
    }
    model.append(Access());
    return 0;
}
