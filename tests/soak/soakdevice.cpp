// SPDX-License-Identifier: MIT
#include "tests/soak/soakdevice.h"

#include "simulator/photopainter.h"
#include "tests/soak/soakoptions.h"

#include <QBuffer>
#include <QImage>

#include <atomic>

namespace
{

constexpr int journalLimit = 1000;
constexpr int residents = 200;
constexpr int pictures = 8;

// The picture with the text as its comment, which decoders pass over.
QByteArray marked(const QByteArray &jpeg, const QByteArray &text)
{
    const int size = text.size() + 2;
    QByteArray segment("\xFF\xFE", 2);
    segment += static_cast<char>(size >> 8);
    segment += static_cast<char>(size & 0xFF);
    return jpeg.left(2) + segment + text + jpeg.mid(2);
}

QByteArray small(const QByteArray &jpeg)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImage::fromData(jpeg).scaled(480, 360).save(&buffer, "JPEG", 75);
    return bytes;
}

} // namespace

SoakDevice::SoakDevice(const SoakOptions &options, int number, const SoakDevice *first,
                       const QString &folder)
    : config_(configOf(options, number, first))
    , journalFile_(folder + QStringLiteral("/%1.journal").arg(config_.deviceId))
    , host_(std::make_unique<DeviceHost>(config_))
    , journal_(journalFile_)
{
    serve();
}

SoakDevice::~SoakDevice() = default;

DeviceConfig SoakDevice::configOf(const SoakOptions &options, int number, const SoakDevice *first)
{
    DeviceConfig config;
    config.address = QStringLiteral("127.0.0.%1").arg(number + 1);
    if (first != nullptr) {
        config.onLinePort = first->host_->onLinePort();
        config.filePort = first->host_->filePort();
    }
    config.deviceId = QStringLiteral("lane-%1").arg(number + 1);
    config.residents = residents;
    config.archive = options.archive;
    config.sentLimit = journalLimit;
    config.feed.rate = 0;
    config.feed.unreadable = 0.05;
    config.feed.latePhotos = options.latePhotos;
    // Odd and even ones, so that no two lanes ever have the same cars.
    config.feed.seed = 2 * options.seed + static_cast<quint32>(number);
    return config;
}

bool SoakDevice::start(QString *error)
{
    host_->journal().setLimit(journalLimit);
    return host_->journal().openFile(journalFile_, error) && host_->start(error);
}

void SoakDevice::serve()
{
    const PhotoPainter painter(config_.deviceId, config_.feed.seed);
    const QDateTime start(QDate(2026, 1, 1), QTime(12, 0), Qt::UTC);
    QVector<QByteArray> photos;
    for (int place = 0; place < pictures; ++place) {
        photos.append(small(painter.photo(
            LiveFeed::makeNumber(config_.feed.seed, static_cast<quint32>(place)), start)));
    }
    makePhoto_ = [photos, id = id()](const QString &path) {
        const auto place = static_cast<int>(qHash(path) % pictures);
        return marked(photos.at(place), id + ' ' + path.toLatin1());
    };
    host_->files().setMaker(DevicePaths::photoFolder(), [make = makePhoto_](const QString &path) {
        return FileTree::contentOf(make(path));
    });
    const auto frames = std::make_shared<std::atomic<int>>(0);
    host_->files().setMaker(DevicePaths::videoFrame(), [photos, frames](const QString &) {
        const int frame = ++*frames;
        return FileTree::contentOf(marked(photos.at(frame % pictures), QByteArray::number(frame)));
    });
}

QByteArray SoakDevice::photo(const QString &name) const
{
    return makePhoto_(DevicePaths::photoFolder() + name);
}
