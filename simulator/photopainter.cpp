// SPDX-License-Identifier: MIT
#include "simulator/photopainter.h"

#include "records/vasksettings.h"
#include "simulator/carpainter.h"
#include "simulator/livefeed.h"
#include "simulator/scenery.h"
#include "simulator/strokefont.h"

#include <QBuffer>
#include <QImageWriter>
#include <QPainter>
#include <QRegularExpression>

#include <algorithm>

namespace
{

// Milliseconds of one car in the video: it comes, waits, the barrier opens, it passes, the barrier
// closes.
constexpr qint64 carPeriod = 12000;
constexpr qint64 arrived = 5000;
constexpr qint64 opening = 6000;
constexpr qint64 opened = 7000;
constexpr qint64 passed = 9000;
constexpr qint64 closed = 10500;

QByteArray encoded(const QImage &image, int quality)
{
    QByteArray result;
    QBuffer buffer(&result);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, "jpeg");
    writer.setQuality(quality);
    return writer.write(image) ? result : QByteArray();
}

qreal part(qint64 now, qint64 from, qint64 to)
{
    return std::clamp(static_cast<qreal>(now - from) / static_cast<qreal>(to - from), 0.0, 1.0);
}

void drawText(QPainter *painter, const QString &text, const QRectF &box)
{
    painter->setBrush(Qt::NoBrush);
    painter->setPen(QPen(Qt::white, box.height() / 9, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter->drawPath(StrokeFont::text(text, box));
}

} // namespace

PhotoPainter::PhotoPainter(const QString &deviceId, quint32 seed)
    : deviceId_(deviceId)
    , seed_(seed)
{
}

QByteArray PhotoPainter::photo(const QString &fileName) const
{
    static const QRegularExpression form(
        QStringLiteral("^(?:.*/)?(\\d{4}-\\d\\d-\\d\\d_\\d\\d-\\d\\d-\\d\\d)?_([^_]*)\\.jpeg$"));
    const QRegularExpressionMatch match = form.match(fileName);
    if (!match.hasMatch()) {
        return QByteArray();
    }
    QDateTime time = QDateTime::fromString(match.captured(1), VaskSettings::dateFormat());
    time.setTimeSpec(Qt::UTC);
    return photo(match.captured(2), time);
}

QByteArray PhotoPainter::photo(const QString &number, const QDateTime &time) const
{
    const Scenery::Light light = Scenery::lightAt(time);
    QImage image = Scenery::background(light, seed_);
    const auto shift = static_cast<qreal>(qHash(number, 0) % 41) - 20;
    {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        CarPainter(number, light).draw(&painter, Scenery::stopLine() + QPointF(shift, 0), 1);
        Scenery::drawBarrier(&painter, 1);
        drawStamp(&painter, number,
                  time.isValid()
                      ? time.toLocalTime().toString(QStringLiteral("dd.MM.yyyy  hh:mm:ss"))
                      : QStringLiteral("NO TIME"));
    }
    return encoded(image, 78);
}

QByteArray PhotoPainter::videoFrame(const QDateTime &now) const
{
    const Scenery::Light light = Scenery::lightAt(now);
    QImage image = Scenery::background(light, seed_);
    const qint64 msec = now.toMSecsSinceEpoch() + static_cast<qint64>(seed_) * 3700;
    const qint64 phase = msec % carPeriod;
    {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        if (phase < passed) {
            // A car far away is small and high up in the picture.
            const qreal near = part(phase, 0, arrived) + 1.6 * part(phase, opened, passed);
            const qreal scale = 0.28 + 0.72 * near * near;
            const QPointF ground(Scenery::stopLine().x(), 336 + 320 * near * near);
            const auto cycle = static_cast<quint32>(msec / carPeriod);
            CarPainter(LiveFeed::makeNumber(seed_, cycle % 40), light)
                .draw(&painter, ground, scale);
        }
        Scenery::drawBarrier(&painter, part(phase, opening, opened) - part(phase, passed, closed));
        drawStamp(&painter, QStringLiteral("LIVE"),
                  now.toLocalTime().toString(QStringLiteral("dd.MM.yyyy  hh:mm:ss.zzz")));
    }
    return encoded(image.scaled(640, 360, Qt::IgnoreAspectRatio, Qt::SmoothTransformation), 75);
}

void PhotoPainter::drawStamp(QPainter *painter, const QString &left, const QString &right) const
{
    const QSize size = Scenery::size();
    painter->fillRect(QRect(0, size.height() - 44, size.width(), 44), QColor(0, 0, 0, 190));
    const auto top = static_cast<qreal>(size.height() - 33);
    drawText(painter, deviceId_ + QStringLiteral("  LANE %1").arg(seed_ % 2 + 1),
             QRectF(20, top, 480, 22));
    drawText(painter, left, QRectF(540, top, 220, 22));
    drawText(painter, right, QRectF(820, top, 440, 22));
}

QByteArray PhotoPainter::cut(const QByteArray &jpeg, int percent)
{
    return jpeg.left(static_cast<int>(static_cast<qint64>(jpeg.size()) * percent / 100));
}

QByteArray PhotoPainter::notAPicture()
{
    return QByteArray("This is not a picture, whatever its name says.\r\n").repeated(1000);
}

QByteArray PhotoPainter::giant()
{
    QImage dot(16, 16, QImage::Format_RGB32);
    dot.fill(Qt::gray);
    QByteArray jpeg = encoded(dot, 50);
    // The frame header: marker, length, precision, then height and width.
    const int frame = jpeg.indexOf("\xFF\xC0");
    const QByteArray claim = QByteArray::fromHex("ea60ea60");
    return frame < 0 ? QByteArray() : jpeg.replace(frame + 5, 4, claim);
}
