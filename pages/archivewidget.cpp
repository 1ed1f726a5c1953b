// SPDX-License-Identifier: MIT
#include "pages/archivewidget.h"

#include "app/shellaccess.h"

ArchiveWidget::ArchiveWidget(QWidget *parent)
    : QWidget(parent)
{
}

void ArchiveWidget::loadTableFromNet(const QString &) {}

void ArchiveWidget::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    ShellAccess::showDeviceName(
        QStringLiteral("<center><font color='white' size='+2'>%1</font></center>")
            .arg(tr("Archive view")));
}
