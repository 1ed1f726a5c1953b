// SPDX-License-Identifier: MIT
#include "simulator/devicehost.h"

#include "simulator/simulateddevice.h"

#include <QMetaObject>

#include <algorithm>

DeviceHost::DeviceHost(const DeviceConfig &config)
    : config_(config)
    , files_(std::make_unique<FileTree>())
    , faults_(std::make_unique<Faults>())
    , journal_(std::make_unique<Journal>())
    , device_(
          std::make_unique<SimulatedDevice>(config, files_.get(), faults_.get(), journal_.get()))
{
    thread_.setObjectName(QStringLiteral("device ") + config.deviceId);
    device_->moveToThread(&thread_);
    thread_.start();
}

DeviceHost::~DeviceHost()
{
    // Sockets and timers must end in the thread they live in.
    run([](SimulatedDevice &device) { device.stop(); });
    device_.release()->deleteLater();
    thread_.quit();
    thread_.wait();
}

void DeviceHost::run(const std::function<void(SimulatedDevice &)> &action) const
{
    SimulatedDevice *device = device_.get();
    QMetaObject::invokeMethod(
        device, [device, &action] { action(*device); }, Qt::BlockingQueuedConnection);
}

bool DeviceHost::start(QString *error)
{
    bool started = false;
    QString reason;
    run([&started, &reason](SimulatedDevice &device) { started = device.start(&reason); });
    if (error != nullptr) {
        *error = reason;
    }
    return started;
}

void DeviceHost::stop()
{
    run([](SimulatedDevice &device) { device.stop(); });
}

bool DeviceHost::isRunning() const
{
    return asked<bool>([](SimulatedDevice &device) { return device.isRunning(); });
}

QString DeviceHost::address() const
{
    return config_.address;
}

quint16 DeviceHost::onLinePort() const
{
    return asked<quint16>([](SimulatedDevice &device) { return device.onLinePort(); });
}

quint16 DeviceHost::filePort() const
{
    return asked<quint16>([](SimulatedDevice &device) { return device.filePort(); });
}

QString DeviceHost::deviceId() const
{
    return config_.deviceId;
}

FileTree &DeviceHost::files()
{
    return *files_;
}

Faults &DeviceHost::faults()
{
    return *faults_;
}

Journal &DeviceHost::journal()
{
    return *journal_;
}

int DeviceHost::push(const OnLine &record)
{
    return pushAll({record});
}

int DeviceHost::pushAll(const QVector<OnLine> &records)
{
    return asked<int>([&records](SimulatedDevice &device) { return device.pushAll(records); });
}

int DeviceHost::pushBytes(const QByteArray &bytes)
{
    return asked<int>([&bytes](SimulatedDevice &device) { return device.pushBytes(bytes); });
}

int DeviceHost::pushInPieces(const OnLine &record, int pieceSize, int msec)
{
    const QByteArray bytes(record.data(), OnLine::size);
    QVector<QByteArray> pieces;
    for (int place = 0; place < bytes.size(); place += std::max(pieceSize, 1)) {
        pieces.append(bytes.mid(place, std::max(pieceSize, 1)));
    }
    return asked<int>(
        [&](SimulatedDevice &device) { return device.pushPieces(record, pieces, msec); });
}

int DeviceHost::pushSplit(const OnLine &record, int firstBytes, int msec)
{
    const QByteArray bytes(record.data(), OnLine::size);
    const QVector<QByteArray> pieces{bytes.left(firstBytes), bytes.mid(firstBytes)};
    return asked<int>(
        [&](SimulatedDevice &device) { return device.pushPieces(record, pieces, msec); });
}

int DeviceHost::burst(int records)
{
    return asked<int>([records](SimulatedDevice &device) { return device.burst(records); });
}

void DeviceHost::setRate(double perSecond, int count)
{
    run([perSecond, count](SimulatedDevice &device) { device.setRate(perSecond, count); });
}

QVector<OnLine> DeviceHost::sentRecords() const
{
    return asked<QVector<OnLine>>([](SimulatedDevice &device) { return device.sentRecords(); });
}

void DeviceHost::clearSentRecords()
{
    run([](SimulatedDevice &device) { device.clearSentRecords(); });
}

int DeviceHost::onLineConnections() const
{
    return asked<int>([](SimulatedDevice &device) { return device.onLine().connections(); });
}

int DeviceHost::fileConnections() const
{
    return asked<int>([](SimulatedDevice &device) { return device.fileService().connections(); });
}

int DeviceHost::barrierCount() const
{
    return asked<int>([](SimulatedDevice &device) { return device.onLine().barrierCount(); });
}

int DeviceHost::reloadCount() const
{
    return asked<int>([](SimulatedDevice &device) { return device.onLine().reloadCount(); });
}

int DeviceHost::keepAliveCount() const
{
    return asked<int>([](SimulatedDevice &device) { return device.onLine().keepAliveCount(); });
}

QByteArray DeviceHost::unexpectedBytes() const
{
    return asked<QByteArray>(
        [](SimulatedDevice &device) { return device.onLine().unexpectedBytes(); });
}

QByteArray DeviceHost::storedAccessList() const
{
    return asked<QByteArray>([](SimulatedDevice &device) { return device.storedAccessList(); });
}

QByteArray DeviceHost::activeAccessList() const
{
    return asked<QByteArray>([](SimulatedDevice &device) { return device.activeAccessList(); });
}

void DeviceHost::setOnLineListening(bool on)
{
    run([on](SimulatedDevice &device) { device.setOnLineListening(on); });
}

void DeviceHost::setFileListening(bool on)
{
    run([on](SimulatedDevice &device) { device.setFileListening(on); });
}

void DeviceHost::dropOnLine()
{
    run([](SimulatedDevice &device) { device.onLine().drop(); });
}

void DeviceHost::resetOnLine()
{
    run([](SimulatedDevice &device) { device.onLine().reset(); });
}

void DeviceHost::dropFileConnections()
{
    run([](SimulatedDevice &device) { device.fileService().drop(); });
}

void DeviceHost::goneFor(int msec)
{
    run([msec](SimulatedDevice &device) { device.goneFor(msec); });
}

bool DeviceHost::setCutOff(bool on)
{
    return asked<bool>([on](SimulatedDevice &device) { return device.setCutOff(on); });
}

void DeviceHost::setOnLineReading(bool on)
{
    run([on](SimulatedDevice &device) { device.onLine().setReading(on); });
}
