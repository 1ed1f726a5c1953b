// SPDX-License-Identifier: MIT
#include "tests/support/devices.h"

#include "app/settings.h"

#include <QTest>

namespace
{

DeviceConfig gate()
{
    DeviceConfig config;
    config.deviceId = QStringLiteral("gate 1");
    return config;
}

} // namespace

Devices::Devices()
    : Devices(gate())
{
}

Devices::Devices(const DeviceConfig &first)
    : first_(std::make_unique<DeviceHost>(first))
{
    QString error;
    if (!first_->start(&error)) {
        qFatal("the simulated device does not start: %s", qPrintable(error));
    }
    Settings::instance()->setVaskParkingPort(first_->onLinePort());
    Settings::instance()->setFileTransferPort(first_->filePort());
}

DeviceHost &Devices::second()
{
    if (!second_) {
        DeviceConfig config;
        config.address = QStringLiteral("127.0.0.2");
        config.onLinePort = first_->onLinePort();
        config.filePort = first_->filePort();
        config.deviceId = QStringLiteral("gate 2");
        second_ = std::make_unique<DeviceHost>(config);
        QString error;
        if (!second_->start(&error)) {
            qFatal("the second simulated device does not start: %s", qPrintable(error));
        }
    }
    return *second_;
}
