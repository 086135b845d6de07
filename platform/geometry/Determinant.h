#pragma once

#include "platform/geometry/Coordinates.h"

namespace qz {

// Twice the area of the triangle a, b, c, positive when it runs counter-clockwise. The sign is exact and the relative
// error a few units in the last place, however thin the triangle, for coordinates between 1e-140 and 1e150 or zero.
// After J. R. Shewchuk, "Adaptive precision floating-point arithmetic and fast robust geometric predicates", 1997; of
// his stages only the first filter and the exact sum are used, since few calls get past the filter.
[[nodiscard]] double orientationDeterminant(XY a, XY b, XY c) noexcept;

} // namespace qz
