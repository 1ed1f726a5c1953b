// SPDX-License-Identifier: MIT
#include "net/commandsender.h"

#include "net/devicecommand.h"

#include <utility>

CommandSender::CommandSender(QString host, char command, QObject *parent)
    : QThread(parent)
    , host_(std::move(host))
    , command_(command)
{
}

CommandSender::~CommandSender()
{
    requestInterruption();
    wait();
}

void CommandSender::run()
{
    error_ = DeviceCommand::send(host_, command_);
}
