#pragma once

#include <optional>

#include "platform/geometry/Curve.h"

namespace qz {

// Straight lines along the tangent of a curve, of one segment that starts on the curve. They run level: the far end has
// the z of the curve there; its m is undefined. Nothing for a curve without length. A length that is negative or not
// finite throws PlatformError.

// From the start of the first part outward, against the direction of the curve.
[[nodiscard]] std::optional<Path> tangentBeforeStart(const Curve& curve, double length);
// From the end of the last part outward.
[[nodiscard]] std::optional<Path> tangentBeyondEnd(const Curve& curve, double length);
// From the point at the distance, in the direction of the curve. At a corner the direction is that of the segment
// before it, at the start of the curve (and below) that of the first one.
[[nodiscard]] std::optional<Path> tangentAtDistance(const Curve& curve, double distance, double length);
[[nodiscard]] std::optional<Path> tangentAtRatio(const Curve& curve, double ratio, double length);

} // namespace qz
