// SPDX-License-Identifier: MIT
#include "tests/simulator/devicefixture.h"

#include <QElapsedTimer>

void DeviceFixture::startHost(const DeviceConfig &config)
{
    host_ = std::make_unique<DeviceHost>(config);
    host_->start();
}

QByteArray DeviceFixture::fetch(const QString &path, QByteArray *answer) const
{
    QTcpSocket socket;
    socket.connectToHost(host_->address(), host_->filePort());
    socket.write("GET_IMMEDIATE_FILE:" + path.toLocal8Bit() + "\r\n");
    while (!socket.canReadLine() && socket.waitForReadyRead(patience)) {
    }
    QByteArray line = socket.readLine().trimmed();
    if (answer != nullptr) {
        *answer = line;
    }
    return read(&socket, line.replace("File size=", "").toInt());
}

std::unique_ptr<QTcpSocket> DeviceFixture::connectOnLine() const
{
    const int before = host_->onLineConnections();
    auto socket = std::make_unique<QTcpSocket>();
    socket->connectToHost(host_->address(), host_->onLinePort());
    QElapsedTimer timer;
    timer.start();
    while (socket->waitForConnected(patience) && host_->onLineConnections() == before &&
           timer.elapsed() < patience) {
        QThread::yieldCurrentThread();
    }
    return socket;
}

OnLine DeviceFixture::record(const char *number)
{
    return SampleRecords::plain(QString::fromLatin1(number), now());
}

QByteArray DeviceFixture::read(QTcpSocket *socket, int bytes)
{
    while (socket->bytesAvailable() < bytes && socket->waitForReadyRead(patience)) {
    }
    return socket->read(bytes);
}

QByteArray DeviceFixture::bytesOf(const QVector<OnLine> &records)
{
    QByteArray bytes;
    for (const OnLine &entry : records) {
        bytes += SampleRecords::bytes(entry);
    }
    return bytes;
}
