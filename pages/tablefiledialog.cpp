// SPDX-License-Identifier: MIT
#include "pages/tablefiledialog.h"

#include "app/settings.h"

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
    const QString between = QStringLiteral(";;");
    const QString filters = first == First::Dump ? dumpFilter_ + between + csvFilter_
                                                 : csvFilter_ + between + dumpFilter_;
    QString filter;
    const QString name = QFileDialog::getSaveFileName(page_, title_, folder_, filters, &filter,
                                                      QFileDialog::DontUseNativeDialog);
    if (name.isEmpty()) {
        return {};
    }
    const bool isCsv = filter == csvFilter_;
    return {Settings::extended(name, isCsv ? csvSuffix : suffix_), isCsv};
}
