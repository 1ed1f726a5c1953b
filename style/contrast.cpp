// SPDX-License-Identifier: MIT
#include "style/contrast.h"

#include <cmath>

namespace
{

double linear(double channel)
{
    return channel <= 0.03928 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor &color)
{
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

} // namespace

double Contrast::ratio(const QColor &one, const QColor &other)
{
    const double a = luminance(one);
    const double b = luminance(other);
    return (qMax(a, b) + 0.05) / (qMin(a, b) + 0.05);
}

QColor Contrast::readable(const QColor &text, const QColor &ground, double wanted)
{
    if (!text.isValid() || ratio(text, ground) >= wanted) {
        return text;
    }
    const bool lighten = ratio(Qt::white, ground) >= ratio(Qt::black, ground);
    const QColor from = text.toHsl();
    constexpr int steps = 255;
    for (int step = 1; step <= steps; ++step) {
        const double share = static_cast<double>(step) / steps;
        const double end = lighten ? 1.0 : 0.0;
        const double lightness = from.lightnessF() + (end - from.lightnessF()) * share;
        // Judged as the screen will show it, in eight bits a channel.
        const QColor candidate =
            QColor::fromRgba(QColor::fromHslF(qMax(0.0, from.hslHueF()), from.hslSaturationF(),
                                              lightness, text.alphaF())
                                 .rgba());
        if (ratio(candidate, ground) >= wanted) {
            return candidate;
        }
    }
    return lighten ? QColor(Qt::white) : QColor(Qt::black);
}
