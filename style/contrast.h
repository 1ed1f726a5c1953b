// SPDX-License-Identifier: MIT
#pragma once

#include "style/metrics.h"

#include <QColor>

// Legibility in numbers: the ratio of relative luminances, 1 for equal colours, 21 for black on
// white. Alpha is not looked at.
namespace Contrast
{

double ratio(const QColor &one, const QColor &other);

// The colour nearest to text, of the same hue, that has the wanted contrast against ground: lighter
// on dark grounds, darker on light ones. A colour that has it already comes back unchanged; where
// even white or black does not reach it, the better of these.
QColor readable(const QColor &text, const QColor &ground, double wanted = Metrics::textContrast);

} // namespace Contrast
