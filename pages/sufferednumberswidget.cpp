// SPDX-License-Identifier: MIT
#include "pages/sufferednumberswidget.h"

#include "app/shellaccess.h"

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
    ShellAccess::showDeviceName(
        QStringLiteral("<center><font color='white' size='+2'>%1</font></center>")
            .arg(tr("Suffered numbers")));
}
