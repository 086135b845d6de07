#pragma once

#include <cmath>
#include <numbers>

#include "polygon/QZCorners.h"

namespace qz::test {

// By how much a ring turns at a vertex of its closed path, in radians, to the left above 0.
inline double turnAt(const Path& ring, std::size_t vertex) {
    const std::size_t n = ring.segmentCount();
    const XY before = ring.xy()[(vertex + n - 1) % n];
    const XY at = ring.xy()[vertex];
    const XY after = ring.xy()[vertex + 1];
    const XY in{at.x - before.x, at.y - before.y};
    const XY out{after.x - at.x, after.y - at.y};
    return std::atan2(in.x * out.y - in.y * out.x, in.x * out.x + in.y * out.y);
}

// What cutting a corner with this turn adds to the area on the right of the ring: a triangle, or two right-angled ones
// without the sector between them.
inline double areaAdded(double turn, const CornerCut& cut) {
    const double angle = std::numbers::pi - std::abs(turn);
    const double cutOff = cut.form == CornerForm::chamfer
                              ? cut.size * cut.size * std::sin(angle) / 2
                              : cut.size * cut.size * (1 / std::tan(angle / 2) - std::abs(turn) / 2);
    return std::copysign(cutOff, turn);
}

} // namespace qz::test
