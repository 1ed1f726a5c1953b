// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QSize>

class QDateTime;
class QPainter;

// What stands still before a device's camera: sky, the car park, the lane and the gatekeeper's
// booth; and the barrier, which moves.
//
// The pictures are drawn when they are first needed and then kept for the whole process, a few
// megabytes each, since a photo must not take longer than some milliseconds. Any thread.
namespace Scenery
{
enum class Light { Day, Dusk, Night };

// The light at a time of the local day.
Light lightAt(const QDateTime &time);

// The size of every picture.
QSize size();
// Where the middle of a car before the barrier touches the ground.
QPointF stopLine();
// The lane without a car. Devices with an even and an odd variant look at different lanes.
QImage background(Light light, quint32 variant);
// The barrier in front of a car, open from 0 (down) to 1 (up).
void drawBarrier(QPainter *painter, qreal open);
} // namespace Scenery
