// SPDX-License-Identifier: MIT
#include "tests/soak/soak.h"

#include "tests/soak/soakdevice.h"

#include <QDir>
#include <QDirIterator>
#include <QThread>

#include <cstdio>

namespace
{

constexpr int pumpMsec = 100;
constexpr int lookMsec = 1000;
constexpr int minuteMsec = 60000;
// Until a device has noticed that its panel is gone.
constexpr int settleMsec = 500;
constexpr int recoveredMsec = 10000;
constexpr int drainMsec = 60000;
constexpr int latePhotosMsec = 10000;

void print(const QString &line)
{
    std::puts(line.toLocal8Bit().constData());
    std::fflush(stdout);
}

const QString liveFolder = QStringLiteral("OnLineTemp");

} // namespace

void Soak::Wait::add(const Wait &other)
{
    if (other.ping.wait > ping.wait) {
        ping.wait = other.ping.wait;
        doing = other.doing;
    }
    ping.net = qMax(ping.net, other.ping.net);
}

QString Soak::Wait::text() const
{
    return QStringLiteral("%1 ms at \"%2\" (%3 ms without waiting for a processor)")
        .arg(ping.wait)
        .arg(doing)
        .arg(ping.net);
}

Soak::Soak(const SoakOptions &options, const QString &folder)
    : options_(options)
    , folder_(folder)
    , killTimes_(options.seed, 0x4B494C4CU)
{
}

Soak::~Soak() = default;

bool Soak::startDevices(QString *error)
{
    for (int number = 0; number < 2; ++number) {
        const SoakDevice *first = number == 0 ? nullptr : devices_.front();
        owned_.push_back(std::make_unique<SoakDevice>(options_, number, first, folder_));
        if (!owned_.back()->start(error)) {
            return false;
        }
        devices_.push_back(owned_.back().get());
        devices_.back()->host().setRate(options_.rate);
    }
    return true;
}

bool Soak::startPanel(QString *error)
{
    if (!panel_->start(devices_.front()->address())) {
        *error = QStringLiteral("The panel does not start.");
        return false;
    }
    lifeStarted_ = clock_.elapsed();
    killAt_ = nextKill();
    ofLife_ = ProcessProbe();
    operator_->panelStarted();
    ++lives_;
    return true;
}

// From half to one and a half of the average.
qint64 Soak::nextKill()
{
    const double span = options_.killEvery * (0.5 + killTimes_.share());
    return options_.killEvery > 0 ? clock_.elapsed() + static_cast<qint64>(span * 1000) : -1;
}

bool Soak::run(QString *error)
{
    const QString home = folder_ + QStringLiteral("/home");
    if (!QDir().mkpath(home) || !startDevices(error)) {
        return false;
    }
    DeviceHost &first = devices_.front()->host();
    panel_ = std::make_unique<PanelProcess>(
        home, first.onLinePort(), first.filePort(), options_.videoMsec,
        QStringList{devices_[0]->address(), devices_[1]->address()});
    operator_ = std::make_unique<OperatorScript>(panel_.get(), devices_, options_.seed);
    clock_.start();
    const qint64 end = qint64(options_.minutes) * minuteMsec;
    if (!startPanel(error)) {
        return false;
    }
    while (clock_.elapsed() < end) {
        live();
        const bool ended = !panel_->isRunning();
        if (ended || (killAt_ >= 0 && clock_.elapsed() >= killAt_)) {
            panel_->kill();
            ++(ended ? endedByItself_ : killsDone_);
            if (!compareLife(true, error)) {
                return false;
            }
            const LiveTable before(panel_->path(liveFolder));
            operator_->panelKilled();
            if (!startPanel(error)) {
                return false;
            }
            lookForRecovered(before);
        }
    }
    drain();
    endMsec_ = panel_->end();
    if (!compareLife(false, error)) {
        return false;
    }
    summary();
    return true;
}

void Soak::live()
{
    panel_->pump(pumpMsec);
    operator_->tick();
    longestWaitOfMinute_.add({panel_->takeLongestPing(), operator_->doing()});
    const QStringList boxes = panel_->takeBoxes();
    for (const QString &box : boxes) {
        ++boxes_;
        print(QStringLiteral("message: ") + box);
    }
    if (clock_.elapsed() - lookedAt_ >= lookMsec) {
        lookedAt_ = clock_.elapsed();
        look();
    }
    if (clock_.elapsed() >= qint64(minutes_ + 1) * minuteMsec) {
        minute();
    }
}

void Soak::look()
{
    ofMinute_.look(panel_->id());
    ofLife_.look(panel_->id());
}

void Soak::minute()
{
    ++minutes_;
    longestWait_.add(longestWaitOfMinute_);
    print(QStringLiteral("minute %1: %2, longest wait %3, rows %4, up %5 s; %6")
              .arg(minutes_)
              .arg(ofMinute_.text())
              .arg(longestWaitOfMinute_.text())
              .arg(LiveTable(panel_->path(liveFolder)).rows())
              .arg((clock_.elapsed() - lifeStarted_) / 1000)
              .arg(operator_->results().text()));
    longestWaitOfMinute_ = Wait();
    ofMinute_ = ProcessProbe();
}

// Nothing more passes; what is under way gets the time that it needs.
void Soak::drain()
{
    for (SoakDevice *device : devices_) {
        device->host().setRate(0);
    }
    QElapsedTimer waited;
    waited.start();
    qint64 size = -1;
    QElapsedTimer unchanged;
    while (waited.elapsed() < drainMsec && !(size >= 0 && unchanged.hasExpired(latePhotosMsec))) {
        live();
        const qint64 now = panel_->content(liveFolder + QStringLiteral("/tmponline.tpp")).size();
        if (now != size) {
            size = now;
            unchanged.start();
        }
    }
    longestWait_.add(longestWaitOfMinute_);
}

bool Soak::compareLife(bool killed, QString *error)
{
    sent_.clear();
    end_.clear();
    for (const SoakDevice *device : devices_) {
        end_.push_back(device->now());
    }
    QThread::msleep(settleMsec);
    for (SoakDevice *device : devices_) {
        sent_.emplace_back();
        if (!device->readOn(&sent_.back(), error)) {
            return false;
        }
    }
    const QString folder = panel_->path(liveFolder);
    if (!options_.tamper.isEmpty() && !tampered_) {
        LiveTable::tamper(folder, options_.tamper);
        tampered_ = true;
    }
    const LiveTable table(folder);
    // Behind an orderly end nothing is excused.
    const ComparisonCounts counts =
        table.compare(devices_, sent_, end_, killed ? options_.grace : -settleMsec);
    const LiveTable::Photos photos = table.comparePhotos(devices_, sent_, end_);
    print(QStringLiteral("%1 after %2 s: %3; photos %4; %5")
              .arg(killed ? QStringLiteral("killed") : QStringLiteral("ended"))
              .arg((clock_.elapsed() - lifeStarted_) / 1000)
              .arg(counts.text(), photos.text(), ofLife_.text()));
    for (const QString &example : counts.examples + photos.examples) {
        print(QStringLiteral("    ") + example);
    }
    counts_.add(counts);
    photos_.add(photos);
    photosStored_ = photos.equal;
    return true;
}

// What the killed panel had on its table, and the photos with it, must have been put aside by the
// next one.
void Soak::lookForRecovered(const LiveTable &before)
{
    if (before.isEmpty()) {
        return;
    }
    int photos = -1;
    QElapsedTimer waited;
    waited.start();
    while (waited.elapsed() < recoveredMsec && panel_->isRunning()) {
        live();
        QDirIterator files(panel_->path(QStringLiteral("Recovered")),
                           {QStringLiteral("tmponline.tpp")}, QDir::Files,
                           QDirIterator::Subdirectories);
        while (files.hasNext()) {
            const LiveTable found(QFileInfo(files.next()).absolutePath());
            if (found.isSame(before)) {
                photos = found.comparePhotos(devices_, sent_, end_).equal;
            }
        }
        if (photos == photosStored_) {
            ++recovered_;
            return;
        }
    }
    ++notRecovered_;
    print(photos < 0 ? QStringLiteral("the table of the killed panel is not under \"Recovered\"")
                     : QStringLiteral("of %1 photos of the killed panel's table %2 are there")
                           .arg(photosStored_)
                           .arg(photos));
}

bool Soak::isGood() const
{
    return counts_.isGood() && photos_.missing + photos_.otherLane + photos_.different == 0 &&
           operator_->results().wrong == 0 && notRecovered_ == 0 && endedByItself_ == 0 &&
           boxes_ == 0 && endMsec_ >= 0;
}

void Soak::summary() const
{
    print(QStringLiteral("passages: ") + counts_.text());
    print(QStringLiteral("photos: ") + photos_.text());
    print(QStringLiteral("operator: ") + operator_->results().text());
    for (const QString &problem : operator_->results().problems) {
        print(QStringLiteral("    ") + problem);
    }
    print(QStringLiteral("panel: %1 lives, %2 kills, ended by itself %8 times, tables recovered "
                         "%3, not recovered %4, "
                         "messages %5, longest wait of the window %6, orderly end in %7 ms")
              .arg(lives_)
              .arg(killsDone_)
              .arg(recovered_)
              .arg(notRecovered_)
              .arg(boxes_)
              .arg(longestWait_.text())
              .arg(endMsec_)
              .arg(endedByItself_));
    print(isGood() ? QStringLiteral("good") : QStringLiteral("NOT GOOD"));
}
