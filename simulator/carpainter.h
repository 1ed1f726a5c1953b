// SPDX-License-Identifier: MIT
#pragma once

#include "simulator/scenery.h"

#include <QColor>
#include <QPointF>
#include <QString>

class QPainter;

// Draws a car from the front. What it looks like follows from its number, so a car looks the same
// whenever it comes. Characters of the number that are "-", "?" or "*" are covered with mud; the
// number of an opening by hand gets a car whose plate is empty. Any thread.
class CarPainter
{
public:
    CarPainter(const QString &number, Scenery::Light light);

    // ground is where the middle of the car touches it; scale is 1 for a car at the stop line.
    void draw(QPainter *painter, const QPointF &ground, qreal scale) const;

private:
    void drawBody(QPainter *painter) const;
    void drawCabin(QPainter *painter) const;
    void drawFace(QPainter *painter) const;
    void drawLights(QPainter *painter) const;
    void drawPlate(QPainter *painter) const;

    QString number_;
    bool night_;
    QColor colour_;
    qreal roof_;  // height of the roof, in halves of the car's width
    qreal waist_; // half of the roof's width
    qreal unit_;  // pixels of half the car's width at scale 1
};
