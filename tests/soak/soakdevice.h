// SPDX-License-Identifier: MIT
#pragma once

#include "simulator/devicehost.h"
#include "tests/soak/devicejournal.h"

#include <QByteArray>
#include <QVector>

#include <functional>
#include <memory>

struct SoakOptions;

// One of the two devices of a soak run: a simulated device with a journal file, and with photos and
// camera frames that cost it next to nothing. Each of them is a whole picture with bytes of its
// own: its device and its path stand in it, or the number of the frame.
class SoakDevice
{
public:
    // number is 0 or 1; the second takes the ports of the first. The journal goes into the folder.
    SoakDevice(const SoakOptions &options, int number, const SoakDevice *first,
               const QString &folder);
    ~SoakDevice();

    bool start(QString *error);
    DeviceHost &host() { return *host_; }
    QString address() const { return config_.address; }
    QByteArray id() const { return config_.deviceId.toLatin1(); }
    // In the time of the journal.
    qint64 now() const { return host_->journal().elapsed(); }

    // The passages sent since the last call. False with the reason in error.
    bool readOn(QVector<SentPassage> *sent, QString *error) { return journal_.readOn(sent, error); }
    // The photo that the device serves under this name, sooner or later.
    QByteArray photo(const QString &name) const;

private:
    static DeviceConfig configOf(const SoakOptions &options, int number, const SoakDevice *first);
    void serve();

    DeviceConfig config_;
    QString journalFile_;
    std::unique_ptr<DeviceHost> host_;
    DeviceJournal journal_;
    std::function<QByteArray(const QString &path)> makePhoto_;
};
