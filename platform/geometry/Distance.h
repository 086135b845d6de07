#pragma once

#include "platform/geometry/Geometry.h"

namespace qz {

// The smallest distance between places of the two, in the units of their coordinates; 0 when they have one in common,
// so also inside an area. Arcs are taken as strokes that depart from them by no more than a tenth of the tolerance.
// O((n + m) log(n + m)) for all but pathological shapes. Throws PlatformError for an empty geometry and for coordinates
// that are not finite.
[[nodiscard]] double distance(const Geometry& a, const Geometry& b);

} // namespace qz
