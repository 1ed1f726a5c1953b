// SPDX-License-Identifier: MIT
#include "simulator/simulateddevice.h"

#include "simulator/archive.h"
#include "simulator/faults.h"
#include "simulator/filetree.h"
#include "simulator/journal.h"
#include "simulator/packetdrop.h"
#include "simulator/photopainter.h"
#include "simulator/samplefiles.h"

#include <QHostAddress>

#include <algorithm>
#include <memory>
#include <utility>

namespace
{

// The feed looks at the clock this often at most; more records than one are then sent together.
constexpr double shortestTick = 5;
constexpr double longestTick = 1000;

std::shared_ptr<const FileContent> contentOrNone(const QByteArray &bytes)
{
    return bytes.isNull() ? nullptr : FileTree::contentOf(bytes);
}

} // namespace

SimulatedDevice::SimulatedDevice(const DeviceConfig &config, FileTree *files, Faults *faults,
                                 Journal *journal, QObject *parent)
    : QObject(parent)
    , config_(config)
    , files_(files)
    , faults_(faults)
    , journal_(journal)
    , onLine_(journal, &connectionNumbers_, this)
    , fileService_(files, faults, journal, &connectionNumbers_, config.feed.texts, this)
    , feed_(config.feed)
    , tick_(this)
    , comeBack_(this)
{
    makeFiles();
    activeList_ = storedAccessList();
    feed_.setAccessList(activeList_);
    tick_.setTimerType(Qt::PreciseTimer);
    comeBack_.setSingleShot(true);
    comeBack_.setTimerType(Qt::PreciseTimer);
    connect(&tick_, &QTimer::timeout, this, &SimulatedDevice::onTick);
    connect(&comeBack_, &QTimer::timeout, this, [this] {
        setOnLineListening(true);
        setFileListening(true);
    });
    connect(&onLine_, &OnLineService::opened, this, [this] {
        if (const int records = std::exchange(config_.burstOnConnect, 0)) {
            burst(records);
        }
    });
    connect(&onLine_, &OnLineService::reloadRequested, this, &SimulatedDevice::reload);
}

SimulatedDevice::~SimulatedDevice()
{
    stop();
}

void SimulatedDevice::makeFiles()
{
    const quint32 seed = config_.feed.seed;
    const DeviceTexts &texts = config_.feed.texts;
    const auto bytes = [this](const QString &path, const QByteArray &content) {
        files_->setMaker(path, [content](const QString &) { return FileTree::contentOf(content); });
    };
    bytes(DevicePaths::streams(), SampleFiles::streams(config_.deviceId, texts));
    bytes(DevicePaths::accessList(), LiveFeed::makeAccessList(config_.residents, seed, texts));
    const qint64 end =
        config_.archiveEnd != 0 ? config_.archiveEnd : QDateTime::currentSecsSinceEpoch();
    const auto archive =
        std::make_shared<const Archive>(config_.archive, end, config_.archiveStep, seed,
                                        config_.residents, config_.archiveUnordered, texts);
    files_->setMaker(
        DevicePaths::archive(),
        [archive](const QString &) -> std::shared_ptr<const FileContent> { return archive; });
    const auto painter = std::make_shared<const PhotoPainter>(config_.deviceId, seed);
    files_->setMaker(DevicePaths::photoFolder(), [painter](const QString &path) {
        return contentOrNone(painter->photo(path));
    });
    files_->setMaker(DevicePaths::videoFrame(), [painter](const QString &) {
        return contentOrNone(painter->videoFrame(QDateTime::currentDateTimeUtc()));
    });
}

bool SimulatedDevice::start(QString *error)
{
    if (running_) {
        return true;
    }
    sentFile_.setFileName(config_.sentFile);
    if (!config_.sentFile.isEmpty() && !sentFile_.open(QIODevice::WriteOnly | QIODevice::Append)) {
        *error = config_.sentFile + QStringLiteral(": ") + sentFile_.errorString();
        return false;
    }
    running_ = setOnLineListening(true, error) && setFileListening(true, error);
    if (!running_) {
        onLine_.server().close();
        sentFile_.close();
        return false;
    }
    journal_->add(JournalEntry::Kind::Started, 0, QString(),
                  QStringLiteral("%1 %2 %3")
                      .arg(config_.address)
                      .arg(config_.onLinePort)
                      .arg(config_.filePort));
    setRate(config_.feed.rate, config_.feed.count);
    return true;
}

void SimulatedDevice::stop()
{
    if (!running_) {
        return;
    }
    running_ = false;
    tick_.stop();
    comeBack_.stop();
    onLine_.server().close();
    fileService_.server().close();
    onLine_.drop();
    fileService_.drop();
    // Those that still have something to say to somebody who does not listen.
    onLine_.reset();
    fileService_.reset();
    sentFile_.close();
    journal_->add(JournalEntry::Kind::Stopped, 0, QString(), QString());
}

bool SimulatedDevice::listen(QTcpServer *server, quint16 *port, QString *error)
{
    if (server->isListening()) {
        return true;
    }
    if (!server->listen(QHostAddress(config_.address), *port)) {
        if (error != nullptr) {
            *error = QStringLiteral("Cannot listen on %1 port %2: %3")
                         .arg(config_.address)
                         .arg(*port)
                         .arg(server->errorString());
        }
        return false;
    }
    *port = server->serverPort();
    PacketDrop::set(server->socketDescriptor(), cutOff_);
    return true;
}

bool SimulatedDevice::setOnLineListening(bool on, QString *error)
{
    control(on ? QStringLiteral("on-line port opens") : QStringLiteral("on-line port closes"));
    if (!on) {
        onLine_.server().close();
        return true;
    }
    return listen(&onLine_.server(), &config_.onLinePort, error);
}

bool SimulatedDevice::setFileListening(bool on, QString *error)
{
    control(on ? QStringLiteral("file port opens") : QStringLiteral("file port closes"));
    if (!on) {
        fileService_.server().close();
        return true;
    }
    return listen(&fileService_.server(), &config_.filePort, error);
}

void SimulatedDevice::goneFor(int msec)
{
    if (!running_) {
        return;
    }
    setOnLineListening(false);
    setFileListening(false);
    onLine_.reset();
    fileService_.drop();
    comeBack_.start(msec);
}

bool SimulatedDevice::setCutOff(bool on)
{
    control(on ? QStringLiteral("gone without a word") : QStringLiteral("heard again"));
    cutOff_ = on;
    bool done = true;
    for (const QTcpServer *server : {&onLine_.server(), &fileService_.server()}) {
        done = (!server->isListening() || PacketDrop::set(server->socketDescriptor(), on)) && done;
    }
    onLine_.setCutOff(on);
    fileService_.setCutOff(on);
    return done;
}

int SimulatedDevice::push(const OnLine &record)
{
    return pushAll({record});
}

int SimulatedDevice::pushAll(const QVector<OnLine> &records)
{
    QByteArray bytes;
    bytes.reserve(static_cast<int>(records.size()) * OnLine::size);
    for (const OnLine &record : records) {
        bytes.append(record.data(), OnLine::size);
    }
    const int reached = onLine_.send(bytes);
    if (reached > 0) {
        std::for_each(records.begin(), records.end(),
                      [this](const OnLine &record) { remember(record); });
    }
    return reached;
}

int SimulatedDevice::pushBytes(const QByteArray &bytes)
{
    const int reached = onLine_.send(bytes);
    if (reached > 0) {
        journal_->add(JournalEntry::Kind::RawSent, 0, QString(), QString(), bytes);
    }
    return reached;
}

int SimulatedDevice::pushPieces(const OnLine &record, const QVector<QByteArray> &pieces, int msec)
{
    return onLine_.sendPieces(pieces, msec, [this, record] { remember(record); });
}

int SimulatedDevice::burst(int records)
{
    return sendFromFeed(records, true);
}

// A record is used up only when somebody gets it, so a panel that comes late misses none.
int SimulatedDevice::sendFromFeed(int records, bool backlog)
{
    if (onLine_.connections() == 0) {
        return 0;
    }
    const QDateTime now = QDateTime::currentDateTimeUtc();
    QVector<OnLine> made;
    made.reserve(records);
    for (int place = 0; place < records; ++place) {
        const QDateTime passed = backlog ? now.addSecs(place + 1 - records) : now;
        lastTime_ = lastTime_.isValid() ? std::max(lastTime_, passed) : passed;
        made.append(feed_.next(lastTime_));
        if (feed_.isPhotoLate()) {
            files_->setLate(config_.feed.texts.text(made.last(), OnLineLayout::fileName),
                            config_.feed.lateMsec);
        }
    }
    return pushAll(made) > 0 ? records : 0;
}

void SimulatedDevice::setRate(double perSecond, int count)
{
    rate_ = perSecond;
    left_ = count;
    ticked_ = 0;
    sinceRate_.start();
    if (!running_ || rate_ <= 0 || left_ == 0) {
        tick_.stop();
        return;
    }
    tick_.start(static_cast<int>(std::clamp(1000 / rate_, shortestTick, longestTick)));
}

void SimulatedDevice::onTick()
{
    const auto due = static_cast<qint64>(static_cast<double>(sinceRate_.elapsed()) * rate_ / 1000);
    qint64 records = due - ticked_;
    ticked_ = due;
    if (left_ >= 0) {
        records = std::min<qint64>(records, left_);
    }
    const int sent = records > 0 ? sendFromFeed(static_cast<int>(records), false) : 0;
    if (left_ >= 0) {
        left_ -= sent;
        if (left_ == 0) {
            tick_.stop();
        }
    }
}

void SimulatedDevice::remember(const OnLine &record)
{
    const QByteArray bytes(record.data(), OnLine::size);
    ++sentCount_;
    sent_.push_back(record);
    while (config_.sentLimit > 0 && sent_.size() > static_cast<std::size_t>(config_.sentLimit)) {
        sent_.pop_front();
    }
    if (sentFile_.isOpen()) {
        sentFile_.write(bytes);
        sentFile_.flush();
    }
    const QString number = config_.feed.texts.text(record, OnLineLayout::number).trimmed();
    journal_->add(JournalEntry::Kind::RecordSent, 0, QString(), number, bytes);
}

QVector<OnLine> SimulatedDevice::sentRecords() const
{
    return QVector<OnLine>(sent_.begin(), sent_.end());
}

void SimulatedDevice::clearSentRecords()
{
    sent_.clear();
}

QByteArray SimulatedDevice::storedAccessList() const
{
    return files_->get(DevicePaths::accessList());
}

// The panel's uploads become effective only now.
void SimulatedDevice::reload()
{
    activeList_ = storedAccessList();
    feed_.setAccessList(activeList_);
    control(QStringLiteral("access list reloaded, %1 bytes").arg(activeList_.size()));
}

void SimulatedDevice::control(const QString &text)
{
    journal_->add(JournalEntry::Kind::Control, 0, QString(), text);
}
