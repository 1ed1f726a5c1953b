// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

// The place of the Archive page: passages downloaded from a device or loaded from a file. For now
// an empty page with the operations that the main window calls. GUI thread.
class ArchiveWidget : public QWidget
{
    Q_OBJECT

public:
    explicit ArchiveWidget(QWidget *parent = nullptr);

    // Downloads the archive of the device.
    void loadTableFromNet(const QString &host);

protected:
    void showEvent(QShowEvent *event) override;
};
