// SPDX-License-Identifier: MIT
#pragma once

#include "records/online.h"
#include "simulator/deviceconfig.h"
#include "simulator/faults.h"
#include "simulator/filetree.h"
#include "simulator/journal.h"

#include <QByteArray>
#include <QString>
#include <QThread>
#include <QVector>

#include <functional>
#include <memory>

class SimulatedDevice;

// A simulated device in a thread of its own, for tests: the panel's code can block in the test's
// thread while the device goes on answering. Begins stopped.
//
// Every function may be called from any thread but the device's own. Those that act on connections
// return when it is done (a push: when the bytes are handed to the system or wait in the
// connection's buffer), and do nothing while the device is stopped. Files, faults, journal and
// counters live as long as the host, through any number of stops and starts.
class DeviceHost
{
public:
    explicit DeviceHost(const DeviceConfig &config = DeviceConfig());
    ~DeviceHost();
    DeviceHost(const DeviceHost &) = delete;
    DeviceHost &operator=(const DeviceHost &) = delete;

    // False with the reason in error when a port cannot be had. A port given as 0 is chosen at the
    // first start and kept for the later ones.
    bool start(QString *error = nullptr);
    // Closes every connection and both listeners.
    void stop();
    bool isRunning() const;

    QString address() const;
    quint16 onLinePort() const;
    quint16 filePort() const;
    QString deviceId() const;

    FileTree &files();
    Faults &faults();
    Journal &journal();

    // Sends a record to every open on-line connection; the number of connections that it went to.
    // With none open it is not sent and not remembered.
    int push(const OnLine &record);
    // All in one write, so that they arrive together.
    int pushAll(const QVector<OnLine> &records);
    // Bytes as they are; they are not remembered as a record.
    int pushBytes(const QByteArray &bytes);
    // One record in pieces of this size, so many milliseconds apart. Returns at once; the record is
    // remembered when its last piece has gone out.
    int pushInPieces(const OnLine &record, int pieceSize, int msec);
    // The first part at once and the rest after msec, as above.
    int pushSplit(const OnLine &record, int firstBytes, int msec);
    // So many records from the live feed, at once. Returns how many were sent.
    int burst(int records);
    // The live feed by itself: records per second, and after how many it stops (-1: never).
    void setRate(double perSecond, int count = -1);
    // The records sent, oldest first, each once however many connections it went to.
    QVector<OnLine> sentRecords() const;
    void clearSentRecords();

    int onLineConnections() const;
    int fileConnections() const;
    // Commands that came on the on-line port, over all connections.
    int barrierCount() const;   // 0xFD
    int reloadCount() const;    // 0xEF
    int keepAliveCount() const; // 0xFF
    QByteArray unexpectedBytes() const;

    // The access list as uploaded, and the one in force: a reload copies the first to the second.
    QByteArray storedAccessList() const;
    QByteArray activeAccessList() const;

    // No listener: a connection is refused. Open connections stay.
    void setOnLineListening(bool on);
    void setFileListening(bool on);
    // Closes the on-line connections in good order, or with a TCP reset.
    void dropOnLine();
    void resetOnLine();
    void dropFileConnections();
    // Drops everything, listens to nothing, and comes back after msec on the same ports.
    void goneFor(int msec);
    // On: gone without a word, as with a cable pulled. Every packet to the device is thrown away
    // and nothing goes out, so connections stay, are not answered, and none can be made; a stop
    // still ends them. Off: goes on where it was. False where the system cannot do it.
    bool setCutOff(bool on);
    // Off: takes nothing more from the on-line connections, so that the panel's writes pile up.
    void setOnLineReading(bool on);

private:
    // Runs in the device's thread and waits for it.
    void run(const std::function<void(SimulatedDevice &)> &action) const;

    template <typename Answer, typename Question>
    Answer asked(const Question &question) const
    {
        Answer answer{};
        run([&answer, &question](SimulatedDevice &device) { answer = question(device); });
        return answer;
    }

    DeviceConfig config_;
    std::unique_ptr<FileTree> files_;
    std::unique_ptr<Faults> faults_;
    std::unique_ptr<Journal> journal_;
    std::unique_ptr<SimulatedDevice> device_; // lives in thread_
    QThread thread_;                          // runs as long as the host exists
};
