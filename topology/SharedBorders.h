#pragma once

#include <vector>

#include "platform/geometry/Geometry.h"

namespace qz {

// Which polygons have a segment that no other one lies against: one that is not walked equally often in both
// directions, bit for bit, by the boundaries of all. The polygons are simple. O(n).
[[nodiscard]] std::vector<bool> freeBorders(const std::vector<Polygon>& polygons);

} // namespace qz
