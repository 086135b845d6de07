#pragma once

#include <optional>
#include <string>

#include "platform/geometry/SpatialReference.h"

namespace qz {

// A length to show on a map, and what is written beside it.
struct ScaleBar {
    double length = 0; // in units of the reference
    std::string text;  // "50 m", "2 km", "0.05°", without a unit for a reference that has no known one
};

// The longest of 1, 2, 5, 10, … metres (degrees, units) that is not longer than `longest` units of the reference.
// Nothing when `longest` is not above 0.
[[nodiscard]] std::optional<ScaleBar> scaleBarFor(double longest, const SpatialReference& reference);

} // namespace qz
