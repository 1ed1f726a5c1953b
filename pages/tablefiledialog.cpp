// SPDX-License-Identifier: MIT
#include "pages/tablefiledialog.h"

#include "pages/savefiledialog.h"

#include <QFileDialog>

namespace
{

const QString csvSuffix = QStringLiteral(".csv");

} // namespace

TableFileDialog::TableFileDialog(QWidget *page, const QString &title, const QString &folder,
                                 const QString &suffix)
    : page_(page)
    , title_(title)
    , folder_(folder)
    , suffix_(suffix)
    , dumpFilter_(tr("Dump file (*%1)").arg(suffix))
    , csvFilter_(tr("Comma separated values file (*.csv)"))
{
}

TableFileDialog::Choice TableFileDialog::load() const
{
    const QString name = QFileDialog::getOpenFileName(
        page_, title_, folder_, dumpFilter_ + QStringLiteral(";;") + csvFilter_, nullptr,
        QFileDialog::DontUseNativeDialog);
    return {name, name.endsWith(csvSuffix, Qt::CaseInsensitive)};
}

TableFileDialog::Choice TableFileDialog::save(First first) const
{
    const SaveFileDialog::Form dump{dumpFilter_, suffix_};
    const SaveFileDialog::Form csv{csvFilter_, csvSuffix};
    const bool dumpFirst = first == First::Dump;
    const auto [name, form] = dumpFirst ? SaveFileDialog::ask(page_, title_, folder_, {dump, csv})
                                        : SaveFileDialog::ask(page_, title_, folder_, {csv, dump});
    return {name, dumpFirst == (form == 1)};
}
