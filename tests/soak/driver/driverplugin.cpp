// SPDX-License-Identifier: MIT
#include "tests/soak/driver/driverplugin.h"

#include "tests/soak/driver/paneldriver.h"

QObject *DriverPlugin::create(const QString &name, const QString &)
{
    // The application object takes it over.
    return name == QLatin1String("soakdriver") ? new PanelDriver : nullptr;
}
