// SPDX-License-Identifier: MIT
#pragma once

#include <QGenericPlugin>

// Brings the operator of a soak run into the panel: the toolkit loads it into any program that is
// started with QT_QPA_GENERIC_PLUGINS=soakdriver and this plugin's folder in QT_PLUGIN_PATH. So the
// panel that is driven is the program itself, built as it is installed.
class DriverPlugin : public QGenericPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "driverplugin.json")

public:
    QObject *create(const QString &name, const QString &argument) override;
};
