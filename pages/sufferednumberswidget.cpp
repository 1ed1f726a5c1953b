// SPDX-License-Identifier: MIT
#include "pages/sufferednumberswidget.h"

#include "app/shellaccess.h"
#include "pages/devicetitle.h"

SufferedNumbersWidget::SufferedNumbersWidget(QWidget *parent)
    : QWidget(parent)
{
}

void SufferedNumbersWidget::loadTableFromNet(const QString &) {}

int SufferedNumbersWidget::insertRecord(const Access &)
{
    return -1;
}

void SufferedNumbersWidget::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    ShellAccess::showDeviceName(DeviceTitle::plain(tr("Suffered numbers")));
}
