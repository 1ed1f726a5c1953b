// SPDX-License-Identifier: MIT
#include "pages/savefiledialog.h"

#include "app/settings.h"

#include <QFileDialog>
#include <QMessageBox>

SaveFileDialog::Choice SaveFileDialog::ask(QWidget *page, const QString &title,
                                           const QString &start, const std::vector<Form> &forms)
{
    QStringList filters;
    for (const Form &form : forms) {
        filters << form.filter;
    }
    QString begin = start;
    for (;;) {
        QString filter;
        const QString typed =
            QFileDialog::getSaveFileName(page, title, begin, filters.join(QStringLiteral(";;")),
                                         &filter, QFileDialog::DontUseNativeDialog);
        if (typed.isEmpty()) {
            return {};
        }
        const int form = qMax(0, filters.indexOf(filter));
        const QString name =
            Settings::extended(typed, forms.at(static_cast<std::size_t>(form)).ending);
        if (name == typed || !QFileInfo::exists(name) || mayReplace(page, name)) {
            return {name, form};
        }
        begin = typed;
    }
}

bool SaveFileDialog::mayReplace(QWidget *page, const QString &name)
{
    return QMessageBox::warning(
               page, tr("Save"),
               tr("%1 already exists.\nDo you want to replace it?").arg(QFileInfo(name).fileName()),
               QMessageBox::Yes | QMessageBox::No, QMessageBox::No) == QMessageBox::Yes;
}
