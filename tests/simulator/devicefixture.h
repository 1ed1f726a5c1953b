// SPDX-License-Identifier: MIT
#pragma once

#include "simulator/devicehost.h"

#include <QByteArray>
#include <QDateTime>
#include <QTcpSocket>
#include <QVector>

#include <memory>

// How long anything may take in the tests of the simulated device, in milliseconds.
constexpr int patience = 5000;

// A device for tests that look at its ports with the toolkit's own socket. Base of test classes;
// each test starts a fresh host.
class DeviceFixture
{
protected:
    DeviceFixture() = default;
    ~DeviceFixture() = default;

    // In place of the one that ran before; not running when a port cannot be had.
    void startHost(const DeviceConfig &config = DeviceConfig());
    // The content of a remote file, and the device's answer line without its end.
    QByteArray fetch(const QString &path, QByteArray *answer = nullptr) const;
    // A connection that the device has accepted.
    std::unique_ptr<QTcpSocket> connectOnLine() const;

    static QDateTime now() { return QDateTime::currentDateTimeUtc(); }
    // A passage of this moment.
    static OnLine record(const char *number = "A123BC77");
    // What comes until there are so many bytes, or nothing more.
    static QByteArray read(QTcpSocket *socket, int bytes);
    static QByteArray bytesOf(const QVector<OnLine> &records);

    std::unique_ptr<DeviceHost> host_;
};
