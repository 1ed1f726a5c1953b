// SPDX-License-Identifier: MIT
#pragma once

#include "records/online.h"

#include <QString>

#include <array>
#include <deque>

// The passages of one device that is watched by both slots. It sends each to both lines, so each
// comes twice, but for those that one of the lines missed. A passage is a repeated one when the
// other line has brought the same bytes and this line has not yet: the n-th of equal records on one
// line is that of the other. So records that are equal on one line all count, and a line that is
// down or behind costs nothing.
//
// Both lines keep the device's order: what the other line brought before the passage found, this
// line has missed and will not bring. At most 32768 passages without their twin are remembered.
//
// A slot that is released or given another device leaves passages behind, on their way from either
// line: what it brought stays noted until it brings one of another device.
//
// GUI thread.
class TwinLines
{
public:
    // Takes note of a passage of line 0 or 1 and its device; one of an unknown line, -1, is never
    // repeated. areTwins tells whether both slots hold the device now.
    bool isRepeated(int line, const OnLine &record, const QString &host, bool areTwins);

private:
    struct Line {
        QString host;
        std::deque<OnLine> alone;
    };
    std::array<Line, 2> lines_;
};
