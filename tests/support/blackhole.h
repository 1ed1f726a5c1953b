// SPDX-License-Identifier: MIT
#pragma once

#include <QTcpServer>
#include <QTcpSocket>

#include <memory>
#include <vector>

// An address of this machine to which connecting never ends: a listener that accepts nothing and
// whose queue in the system is full.
class BlackHole
{
public:
    explicit BlackHole(const QHostAddress &address)
    {
        constexpr int mostInQueue = 300;
        constexpr int completedWithin = 200;
        if (!server_.listen(address)) {
            qFatal("the black hole cannot listen");
        }
        server_.pauseAccepting();
        for (int tries = 0; tries < mostInQueue; ++tries) {
            queue_.push_back(std::make_unique<QTcpSocket>());
            queue_.back()->connectToHost(address, server_.serverPort());
            if (!queue_.back()->waitForConnected(completedWithin)) {
                return;
            }
        }
        qFatal("the queue does not fill");
    }

    quint16 port() const { return server_.serverPort(); }

private:
    QTcpServer server_;
    std::vector<std::unique_ptr<QTcpSocket>> queue_;
};
