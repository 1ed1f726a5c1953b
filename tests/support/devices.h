// SPDX-License-Identifier: MIT
#pragma once

#include "simulator/devicehost.h"

#include <memory>

// Simulated devices on the ports that the panel's settings name. The settings hold one pair of
// ports for all devices, so a second device listens on the same ports of another loopback address.
class Devices
{
public:
    // Starts the first device on free ports of 127.0.0.1 and stores them in the settings.
    Devices();
    explicit Devices(const DeviceConfig &first);

    DeviceHost &first() { return *first_; }
    // Started on first use, on 127.0.0.2.
    DeviceHost &second();

    // An address of this machine where nothing listens on those ports.
    static QString refused() { return QStringLiteral("127.0.0.9"); }

private:
    std::unique_ptr<DeviceHost> first_;
    std::unique_ptr<DeviceHost> second_;
};
