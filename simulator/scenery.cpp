// SPDX-License-Identifier: MIT
#include "simulator/scenery.h"

#include "simulator/mixer.h"

#include <QDateTime>
#include <QLinearGradient>
#include <QMutex>
#include <QMutexLocker>
#include <QPainter>
#include <QRadialGradient>

#include <algorithm>
#include <array>

namespace
{

constexpr int width = 1280;
constexpr int height = 720;
constexpr int horizon = 300;

struct Colours {
    QColor skyTop;
    QColor skyBottom;
    QColor wall;
    QColor window;
    QColor ground;
    QColor hedge;
};

Colours coloursOf(Scenery::Light light)
{
    switch (light) {
    case Scenery::Light::Day:
        return {{96, 144, 196}, {200, 218, 232}, {168, 160, 150},
                {84, 98, 112},  {112, 114, 118}, {72, 104, 62}};
    case Scenery::Light::Dusk:
        return {{64, 74, 120},   {226, 164, 120}, {116, 104, 104},
                {226, 190, 116}, {82, 82, 90},    {48, 66, 50}};
    case Scenery::Light::Night:
        break;
    }
    return {{10, 14, 26}, {28, 36, 54}, {44, 46, 54}, {198, 172, 104}, {50, 52, 58}, {24, 34, 28}};
}

void drawBuilding(QPainter *painter, const Colours &colours, int shift)
{
    painter->fillRect(QRect(0, 96 + shift, width, horizon - 80 - shift), colours.wall);
    for (int floor = 0; floor < 3; ++floor) {
        const int top = 112 + shift + floor * 54;
        painter->fillRect(QRect(0, top + 36, width, 8), colours.wall.darker(130));
        for (int bay = 0; bay < 16; ++bay) {
            const bool lit = (bay * 7 + floor * 5 + shift) % 4 != 0;
            painter->fillRect(QRect(14 + bay * 80, top, 56, 34),
                              lit ? colours.window : colours.window.darker(170));
        }
    }
    painter->fillRect(QRect(0, horizon - 34, width, 40), colours.hedge);
    for (int bush = 0; bush < 32; ++bush) {
        painter->setBrush(colours.hedge.lighter(90 + bush * 13 % 30));
        painter->drawEllipse(QPoint(bush * 42, horizon - 30 + bush * 5 % 9), 34, 20);
    }
}

void drawGround(QPainter *painter, const Colours &colours)
{
    QLinearGradient asphalt(0, horizon, 0, height);
    asphalt.setColorAt(0, colours.ground.lighter(112));
    asphalt.setColorAt(1, colours.ground.darker(118));
    painter->fillRect(QRect(0, horizon, width, height - horizon), asphalt);
    // Kerbs in yellow and black, running towards the vanishing point.
    for (const int side : {-1, 1}) {
        for (int piece = 0; piece < 12; ++piece) {
            const auto at = [side](int step, int outside) {
                const qreal depth = step / 12.0;
                const qreal reach = 130 + 470 * depth * depth + outside * (0.3 + depth);
                return QPointF(width / 2.0 + side * reach,
                               horizon + (height - horizon) * depth * depth);
            };
            painter->setBrush(piece % 2 == 0 ? colours.ground.darker(260) : QColor(196, 160, 40));
            painter->drawPolygon(
                QPolygonF({at(piece, 0), at(piece + 1, 0), at(piece + 1, 26), at(piece, 26)}));
        }
    }
    painter->setBrush(QColor(206, 206, 200, 150));
    painter->drawPolygon(QPolygonF({{230, 664}, {1050, 664}, {1062, 684}, {218, 684}}));
}

void drawBooth(QPainter *painter, const Colours &colours, bool left)
{
    painter->save();
    if (!left) {
        painter->translate(width, 0);
        painter->scale(-1, 1);
    }
    painter->fillRect(QRect(40, 196, 172, 330), colours.wall.lighter(116));
    painter->fillRect(QRect(24, 178, 204, 26), QColor(150, 52, 40));
    painter->fillRect(QRect(60, 236, 132, 110), colours.window);
    painter->fillRect(QRect(122, 236, 6, 110), colours.wall.darker(140));
    painter->fillRect(QRect(40, 420, 172, 12), QColor(150, 52, 40));
    painter->fillRect(QRect(40, 518, 172, 10), colours.wall.darker(180));
    painter->restore();
}

// The grain of a camera at work; it is also what gives the files a camera's size.
void addGrain(QImage *image, quint32 seed, std::size_t strength)
{
    Mixer mixer(seed, 0x4752414EU);
    for (int y = 0; y < image->height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image->scanLine(y));
        const std::size_t amount = y < horizon ? strength / 2 : strength;
        for (int x = 0; x < image->width(); ++x) {
            const int change =
                static_cast<int>(mixer.below(2 * amount + 1)) - static_cast<int>(amount);
            const auto moved = [change](int value) { return std::clamp(value + change, 0, 255); };
            line[x] = qRgb(moved(qRed(line[x])), moved(qGreen(line[x])), moved(qBlue(line[x])));
        }
    }
}

void drawLamps(QPainter *painter)
{
    for (const int x : {250, 1030}) {
        QRadialGradient glow(QPointF(x, 120), 420);
        glow.setColorAt(0, QColor(255, 220, 150, 120));
        glow.setColorAt(1, QColor(255, 220, 150, 0));
        painter->fillRect(QRect(0, 0, width, height), glow);
        painter->fillRect(QRect(x - 3, 120, 6, 200), QColor(60, 60, 66));
        painter->setBrush(QColor(255, 236, 190));
        painter->drawEllipse(QPoint(x, 118), 12, 7);
    }
}

QImage drawBackground(Scenery::Light light, bool even)
{
    QImage image(width, height, QImage::Format_RGB32);
    const Colours colours = coloursOf(light);
    {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        QLinearGradient sky(0, 0, 0, horizon);
        sky.setColorAt(0, colours.skyTop);
        sky.setColorAt(1, colours.skyBottom);
        painter.fillRect(image.rect(), sky);
        drawBuilding(&painter, colours, even ? 0 : 34);
        drawGround(&painter, colours);
        drawBooth(&painter, colours, even);
        if (light == Scenery::Light::Night) {
            drawLamps(&painter);
        }
    }
    addGrain(&image, even ? 1 : 2, 7);
    return image;
}

} // namespace

Scenery::Light Scenery::lightAt(const QDateTime &time)
{
    const int hour = time.toLocalTime().time().hour();
    if (hour >= 7 && hour < 18) {
        return Light::Day;
    }
    return hour == 6 || (hour >= 18 && hour < 21) ? Light::Dusk : Light::Night;
}

QSize Scenery::size()
{
    return QSize(width, height);
}

QPointF Scenery::stopLine()
{
    return QPointF(width / 2.0, 656);
}

QImage Scenery::background(Light light, quint32 variant)
{
    static QMutex mutex;
    static std::array<QImage, 6> images;
    const QMutexLocker lock(&mutex);
    QImage &image = images.at(static_cast<std::size_t>(light) * 2 + variant % 2);
    if (image.isNull()) {
        image = drawBackground(light, variant % 2 == 0);
    }
    return image;
}

void Scenery::drawBarrier(QPainter *painter, qreal open)
{
    painter->save();
    painter->setPen(Qt::NoPen);
    painter->fillRect(QRectF(1068, 392, 52, 254), QColor(214, 132, 28));
    painter->fillRect(QRectF(1068, 430, 52, 14), QColor(60, 48, 30));
    painter->fillRect(QRectF(1058, 640, 72, 16), QColor(70, 70, 74));
    painter->translate(1094, 412);
    painter->rotate(open * 72);
    for (int piece = 0; piece < 9; ++piece) {
        painter->fillRect(QRectF(-20 - 92 * (piece + 1), -9, 92, 18),
                          piece % 2 == 0 ? QColor(236, 236, 232) : QColor(196, 30, 32));
    }
    painter->setBrush(QColor(50, 50, 54));
    painter->drawEllipse(QPointF(0, 0), 22, 22);
    painter->restore();
}
