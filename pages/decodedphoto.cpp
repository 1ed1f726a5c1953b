// SPDX-License-Identifier: MIT
#include "pages/decodedphoto.h"

#include "pages/jpegheader.h"

#include <QFile>
#include <QFileInfo>
#include <QImageReader>

#include <algorithm>
#include <cstring>

namespace
{

// A view that was never laid out has no size that means anything, and small ones grow.
constexpr QSize smallestNeed(640, 480);

// A few bytes may hold many scans, so the decoder is given few at a time, to be ended in between.
constexpr qint64 mostAtOnce = 64;

// Bytes that end when the decoder is to end: it takes that for the end of the file and gives up.
class EndingBytes : public QIODevice
{
public:
    EndingBytes(const QByteArray &bytes, const DecodedPhoto::CalledOff &calledOff)
        : bytes_(bytes)
        , calledOff_(calledOff)
    {
        open(ReadOnly | Unbuffered);
    }

    qint64 size() const override { return bytes_.size(); }

protected:
    qint64 readData(char *data, qint64 most) override
    {
        const qint64 left = calledOff_() ? 0 : std::max<qint64>(size() - pos(), 0);
        const qint64 count = std::min({left, most, mostAtOnce});
        std::memcpy(data, bytes_.constData() + pos(), static_cast<std::size_t>(count));
        return count;
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    const QByteArray bytes_;
    const DecodedPhoto::CalledOff &calledOff_;
};

} // namespace

QSize DecodedPhoto::Place::fitted(const QSize &photo) const
{
    return photo.isEmpty() ? QSize() : photo.scaled(size, Qt::KeepAspectRatio);
}

QSize DecodedPhoto::Place::pixels(const QSize &photo) const
{
    return (QSizeF(fitted(photo)) * ratio).toSize();
}

bool DecodedPhoto::Place::operator==(const Place &other) const
{
    return size == other.size && qFuzzyCompare(ratio, other.ratio);
}

QByteArray DecodedPhoto::content(const QString &fileName)
{
    // Anything else than a regular file may block when it is opened.
    const QFileInfo info(fileName);
    QFile file(fileName);
    if (!info.isFile() || info.size() > JpegHeader::mostBytes || !file.open(QIODevice::ReadOnly)) {
        return QByteArray();
    }
    const QByteArray bytes = file.read(JpegHeader::mostBytes + 1); // it may have grown
    return bytes.size() > JpegHeader::mostBytes ? QByteArray() : bytes;
}

DecodedPhoto DecodedPhoto::of(const QByteArray &bytes, const Place &place,
                              const CalledOff &calledOff)
{
    const JpegHeader header(bytes);
    if (!header.isDecodable()) {
        return DecodedPhoto();
    }
    EndingBytes device(bytes, calledOff);
    // Cameras mount upside down: the picture is shown as it was stored. What a device sends is no
    // occasion to try every decoder that is installed.
    QImageReader reader(&device, "jpeg");
    reader.setAutoDetectImageFormat(false);
    reader.setAutoTransform(false);
    const QSize need = place.pixels(header.size()).expandedTo(smallestNeed);
    if (header.size().width() > need.width() || header.size().height() > need.height()) {
        const QSize scaled = header.size().scaled(need, Qt::KeepAspectRatio);
        reader.setScaledSize(scaled.expandedTo(QSize(1, 1)));
    }
    DecodedPhoto photo;
    photo.photo = reader.read();
    if (photo.photo.isNull() || calledOff()) {
        return DecodedPhoto();
    }
    photo.bytes = bytes;
    photo.place = place;
    photo.size = header.size();
    const QSize pixels = place.pixels(photo.size);
    if (!pixels.isEmpty()) {
        photo.shown =
            photo.photo.size() == pixels
                ? photo.photo
                : photo.photo.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    }
    return photo;
}
