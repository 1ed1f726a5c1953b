// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

class Access;

// The place of the access list page: the numbers that a device lets through. For now an empty page
// with the operations that the main window calls. GUI thread.
class SufferedNumbersWidget : public QWidget
{
    Q_OBJECT

public:
    explicit SufferedNumbersWidget(QWidget *parent = nullptr);

    // Fetches the list of the device.
    void loadTableFromNet(const QString &host);

    // The row of the new entry, negative when there is no table to put it into.
    int insertRecord(const Access &access);

protected:
    void showEvent(QShowEvent *event) override;
};
