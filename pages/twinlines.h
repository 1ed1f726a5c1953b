// SPDX-License-Identifier: MIT
#pragma once

#include "records/online.h"

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
// GUI thread.
class TwinLines
{
public:
    // Takes note of a passage of line 0 or 1; one of an unknown line, -1, is never repeated. Where
    // the lines are not of one device, all is forgotten.
    bool isRepeated(int line, const OnLine &record, bool ofOneDevice);

private:
    std::array<std::deque<OnLine>, 2> alone_;
};
