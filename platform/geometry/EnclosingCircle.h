#pragma once

#include <optional>
#include <vector>

#include "platform/geometry/Coordinates.h"

namespace qz {

struct Circle {
    XY centre;
    double radius = 0;
};

// The smallest circle around all places; nothing for none, without a radius when they are all one. Places are at most
// 1e-12 of the radius outside. O(n log n) whatever their order: it is the circle around the corners of their convex
// hull, which are taken in a shuffled order that is always the same, so that the incremental construction
// (E. Welzl, 1991, as iterated loops) is linear in them.
[[nodiscard]] std::optional<Circle> smallestEnclosingCircle(std::vector<XY> places);

} // namespace qz
