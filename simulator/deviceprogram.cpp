// SPDX-License-Identifier: MIT
#include "simulator/deviceprogram.h"

#include "simulator/commandline.h"
#include "simulator/simulateddevice.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace
{

constexpr int journalLimit = 10000;
constexpr int lineLimit = 1 << 20;

int signalPipe[2] = {-1, -1};

void onSignal(int)
{
    const int before = errno;
    const char byte = 0;
    // A full pipe has woken the loop already.
    [[maybe_unused]] const ssize_t written = write(signalPipe[1], &byte, 1);
    errno = before;
}

void print(const QString &line)
{
    const QByteArray bytes = line.toLocal8Bit() + '\n';
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stdout);
    std::fflush(stdout);
}

} // namespace

DeviceProgram::DeviceProgram() = default;
DeviceProgram::~DeviceProgram() = default;

bool DeviceProgram::start(const CommandLine &commandLine, QString *error)
{
    journal_.setLimit(journalLimit);
    if (!commandLine.journal().isEmpty() && !journal_.openFile(commandLine.journal(), error)) {
        return false;
    }
    files_.setRoot(commandLine.root());
    std::for_each(commandLine.faults().begin(), commandLine.faults().end(),
                  [this](const Fault &fault) { faults_.add(fault); });
    const DeviceConfig &config = commandLine.config();
    device_ = std::make_unique<SimulatedDevice>(config, &files_, &faults_, &journal_);
    if (!device_->start(error)) {
        return false;
    }
    console_ = std::make_unique<Console>(device_.get(), &files_, &faults_, &journal_);
    exitsWithStdin_ = commandLine.exitsWithStdin();
    watchSignals();
    input_ = new QSocketNotifier(STDIN_FILENO, QSocketNotifier::Read, this);
    connect(input_, &QSocketNotifier::activated, this, &DeviceProgram::onInput);
    print(QStringLiteral("ready %1 %2 %3")
              .arg(config.address)
              .arg(device_->onLinePort())
              .arg(device_->filePort()));
    return true;
}

// A handler may do next to nothing, so it only wakes the event loop.
void DeviceProgram::watchSignals()
{
    std::signal(SIGPIPE, SIG_IGN); // who reads our answers may go away
    if (pipe2(signalPipe, O_CLOEXEC | O_NONBLOCK) != 0) {
        return;
    }
    auto *notifier = new QSocketNotifier(signalPipe[0], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [] { QCoreApplication::exit(0); });
    std::signal(SIGTERM, onSignal);
    std::signal(SIGINT, onSignal);
}

void DeviceProgram::onInput()
{
    char bytes[4096];
    const ssize_t size = read(STDIN_FILENO, bytes, sizeof bytes);
    if (size < 0 && (errno == EINTR || errno == EAGAIN)) {
        return;
    }
    if (size <= 0) {
        input_->setEnabled(false);
        if (exitsWithStdin_) {
            QCoreApplication::exit(0);
        }
        return;
    }
    pending_.append(bytes, static_cast<int>(size));
    for (int end = pending_.indexOf('\n'); end >= 0 && !console_->isQuit();
         end = pending_.indexOf('\n')) {
        const QByteArray line = pending_.left(end);
        pending_.remove(0, end + 1);
        execute(line);
    }
    if (pending_.size() > lineLimit) {
        pending_.clear();
    }
}

void DeviceProgram::execute(const QByteArray &line)
{
    print(console_->execute(QString::fromLocal8Bit(line)));
    if (console_->isQuit()) {
        QCoreApplication::exit(0);
    }
}
