// SPDX-License-Identifier: MIT
#include "simulator/carpainter.h"

#include "simulator/mixer.h"
#include "simulator/strokefont.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>

#include <algorithm>

namespace
{

struct Shape {
    qreal roof;
    qreal waist;
    qreal unit;
};

// Saloon, off-roader, van.
constexpr Shape shapes[] = {{1.42, 0.62, 372}, {1.62, 0.70, 350}, {1.92, 0.80, 306}};

constexpr QRgb colours[] = {0xFFB02A2AU, 0xFF2A4F8FU, 0xFFD8D8D4U, 0xFF9AA0A6U, 0xFF33383EU,
                            0xFF2F6B4AU, 0xFF7A5A34U, 0xFFC79A2EU, 0xFF5A2F5FU};

quint32 hashOf(const QString &text)
{
    quint32 hash = 2166136261U;
    for (const QChar &character : text) {
        hash = (hash ^ character.unicode()) * 16777619U;
    }
    return hash;
}

bool isUnreadable(QChar character)
{
    return character == QLatin1Char('-') || character == QLatin1Char('?') ||
           character == QLatin1Char('*');
}

} // namespace

CarPainter::CarPainter(const QString &number, Scenery::Light light)
    : number_(number)
    , night_(light == Scenery::Light::Night)
{
    Mixer mixer(hashOf(number), 0x434152U);
    const Shape &shape = shapes[mixer.below(std::size(shapes))];
    roof_ = shape.roof;
    waist_ = shape.waist;
    unit_ = shape.unit;
    colour_ = QColor(colours[mixer.below(std::size(colours))]);
    if (light != Scenery::Light::Day) {
        colour_ = colour_.darker(night_ ? 190 : 135);
    }
}

void CarPainter::draw(QPainter *painter, const QPointF &ground, qreal scale) const
{
    painter->save();
    painter->translate(ground);
    painter->scale(unit_ * scale, unit_ * scale);
    painter->setPen(Qt::NoPen);
    drawBody(painter);
    drawCabin(painter);
    drawFace(painter);
    drawLights(painter);
    drawPlate(painter);
    painter->restore();
}

// From here on 1 is half the car's width, 0 its middle and the ground; up is negative.

void CarPainter::drawBody(QPainter *painter) const
{
    painter->setBrush(QColor(0, 0, 0, 110));
    painter->drawEllipse(QPointF(0, 0.01), 1.14, 0.10);
    painter->setBrush(QColor(22, 22, 24));
    for (const qreal side : {-0.93, 0.61}) {
        painter->drawRoundedRect(QRectF(side, -0.36, 0.32, 0.38), 0.07, 0.07);
    }
    QPainterPath body(QPointF(-0.96, -0.10));
    body.cubicTo(QPointF(-1.02, -0.3), QPointF(-1.02, -0.6), QPointF(-0.92, -0.82));
    body.quadTo(QPointF(-0.86, -0.92), QPointF(-0.6, -0.95));
    body.lineTo(QPointF(0.6, -0.95));
    body.quadTo(QPointF(0.86, -0.92), QPointF(0.92, -0.82));
    body.cubicTo(QPointF(1.02, -0.6), QPointF(1.02, -0.3), QPointF(0.96, -0.10));
    body.closeSubpath();
    QLinearGradient shine(0, -0.95, 0, -0.1);
    shine.setColorAt(0, colour_.lighter(125));
    shine.setColorAt(0.45, colour_);
    shine.setColorAt(1, colour_.darker(150));
    painter->setBrush(shine);
    painter->drawPath(body);
}

void CarPainter::drawCabin(QPainter *painter) const
{
    painter->setBrush(colour_.darker(112));
    for (const qreal side : {-1.02, 0.82}) {
        painter->drawRoundedRect(QRectF(side, -1.06, 0.20, 0.13), 0.05, 0.05);
    }
    QPainterPath cabin(QPointF(-0.84, -0.90));
    cabin.lineTo(QPointF(-waist_ - 0.04, -roof_ + 0.1));
    cabin.quadTo(QPointF(-waist_, -roof_), QPointF(-waist_ + 0.14, -roof_));
    cabin.lineTo(QPointF(waist_ - 0.14, -roof_));
    cabin.quadTo(QPointF(waist_, -roof_), QPointF(waist_ + 0.04, -roof_ + 0.1));
    cabin.lineTo(QPointF(0.84, -0.90));
    cabin.closeSubpath();
    painter->drawPath(cabin);

    const qreal top = -roof_ + 0.10;
    QPainterPath glass(QPointF(-0.74, -0.94));
    glass.lineTo(QPointF(-waist_ + 0.04, top));
    glass.lineTo(QPointF(waist_ - 0.04, top));
    glass.lineTo(QPointF(0.74, -0.94));
    glass.closeSubpath();
    QLinearGradient sky(0, top, 0, -0.94);
    sky.setColorAt(0, night_ ? QColor(40, 46, 58) : QColor(150, 172, 190));
    sky.setColorAt(1, QColor(26, 32, 40));
    painter->setBrush(sky);
    painter->drawPath(glass);

    painter->save();
    painter->setClipPath(glass);
    painter->setBrush(QColor(18, 20, 24));
    painter->drawEllipse(QPointF(0.36, -1.16), 0.11, 0.13);
    painter->drawEllipse(QPointF(0.36, -0.92), 0.25, 0.14);
    painter->drawEllipse(QPointF(0.36, -0.93), 0.15, 0.06);
    painter->setBrush(QColor(255, 255, 255, 34));
    painter->drawPolygon(QPolygonF({{-0.62, -0.9}, {-0.28, -2.0}, {-0.12, -2.0}, {-0.42, -0.9}}));
    painter->restore();
}

void CarPainter::drawFace(QPainter *painter) const
{
    painter->setBrush(colour_.darker(135));
    painter->drawRect(QRectF(-0.58, -0.80, 1.16, 0.012));
    painter->setBrush(QColor(20, 22, 24));
    painter->drawRoundedRect(QRectF(-0.44, -0.72, 0.88, 0.19), 0.05, 0.05);
    painter->setBrush(QColor(120, 124, 128));
    for (const qreal bar : {-0.675, -0.63, -0.585}) {
        painter->drawRect(QRectF(-0.41, bar, 0.82, 0.014));
    }
    painter->drawEllipse(QPointF(0, -0.625), 0.065, 0.065);
    painter->setBrush(colour_.darker(170));
    painter->drawRoundedRect(QRectF(-0.97, -0.20, 1.94, 0.12), 0.05, 0.05);
    painter->setBrush(QColor(26, 28, 30));
    painter->drawRoundedRect(QRectF(-0.56, -0.19, 1.12, 0.08), 0.03, 0.03);
}

void CarPainter::drawLights(QPainter *painter) const
{
    for (const qreal side : {-1.0, 1.0}) {
        const QPointF middle(side * 0.70, -0.635);
        painter->setBrush(QColor(30, 32, 36));
        painter->drawRoundedRect(QRectF(middle.x() - 0.19, middle.y() - 0.09, 0.38, 0.18), 0.08,
                                 0.08);
        QRadialGradient lamp(middle, 0.17);
        lamp.setColorAt(0, QColor(255, 255, 246));
        lamp.setColorAt(0.55, night_ ? QColor(255, 246, 214) : QColor(214, 220, 222));
        lamp.setColorAt(1, QColor(120, 126, 130));
        painter->setBrush(lamp);
        painter->drawEllipse(middle, 0.15, 0.075);
        painter->setBrush(QColor(228, 140, 40));
        painter->drawRect(QRectF(side * 0.905 - 0.03, -0.68, 0.06, 0.08));
        if (night_) {
            QRadialGradient glow(middle, 0.62);
            glow.setColorAt(0, QColor(255, 246, 214, 170));
            glow.setColorAt(0.25, QColor(255, 246, 214, 60));
            glow.setColorAt(1, QColor(255, 246, 214, 0));
            painter->setBrush(glow);
            painter->drawEllipse(middle, 0.62, 0.62);
        }
    }
}

void CarPainter::drawPlate(QPainter *painter) const
{
    const QRectF plate(-0.46, -0.475, 0.92, 0.21);
    painter->setBrush(QColor(24, 24, 26));
    painter->drawRoundedRect(plate.adjusted(-0.02, -0.02, 0.02, 0.02), 0.03, 0.03);
    painter->setBrush(QColor(240, 240, 236));
    painter->drawRoundedRect(plate, 0.02, 0.02);
    if (number_.isEmpty() || number_ == QLatin1String("O000OO00")) {
        return;
    }
    // The region, behind the first six characters, has a field of its own.
    const qreal middle = plate.right() - 0.25;
    painter->setBrush(QColor(24, 24, 26));
    painter->drawRect(QRectF(middle, plate.top(), 0.008, plate.height()));
    const QRectF boxes[] = {
        QRectF(plate.left() + 0.025, plate.top() + 0.04, middle - plate.left() - 0.04, 0.13),
        QRectF(middle + 0.025, plate.top() + 0.05, 0.205, 0.11)};
    const QString parts[] = {number_.left(6), number_.mid(6)};
    for (int part = 0; part < 2; ++part) {
        painter->setBrush(Qt::NoBrush);
        painter->setPen(
            QPen(QColor(20, 20, 24), 0.022, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        QString shown = parts[part];
        std::replace_if(shown.begin(), shown.end(), isUnreadable, QLatin1Char(' '));
        painter->drawPath(StrokeFont::text(shown, boxes[part]));
        painter->setPen(Qt::NoPen);
        painter->setBrush(QColor(96, 78, 56, 245));
        for (int place = 0; place < shown.size(); ++place) {
            if (isUnreadable(parts[part].at(place))) {
                const QRectF cell = StrokeFont::cell(place, shown.size(), boxes[part]);
                painter->drawEllipse(cell.center(), cell.width() * 0.56, cell.height() * 0.58);
                painter->drawEllipse(cell.center() + QPointF(0.03, 0.05), 0.04, 0.03);
            }
        }
    }
}
