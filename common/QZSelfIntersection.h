#pragma once

#include "platform/geometry/Geometry.h"

namespace qz {

// The pieces of a line that crosses itself, between the crossings, each running in the direction of the line. Empty for
// a line that does not, or that crosses itself into fewer than three pieces. A failure is reported, and gives none.
[[nodiscard]] GeometryCollection SelfIntersectFind(const Polyline& polyline);

} // namespace qz
