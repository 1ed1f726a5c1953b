// SPDX-License-Identifier: MIT
#include "pages/archivewidget.h"

#include "app/shellaccess.h"
#include "pages/devicetitle.h"

ArchiveWidget::ArchiveWidget(QWidget *parent)
    : QWidget(parent)
{
}

void ArchiveWidget::loadTableFromNet(const QString &) {}

void ArchiveWidget::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    ShellAccess::showDeviceName(DeviceTitle::plain(tr("Archive view")));
}
