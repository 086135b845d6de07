#pragma once

#include <span>
#include <string_view>

#include "platform/geometry/Geometry.h"

namespace qz {

// Products of coordinates beyond these overflow, or vanish.
inline constexpr double coordinateLimit = 1e150;
inline constexpr double smallestCoordinate = 1e-140; // but for 0

// Throws PlatformError that names the operation ("The union can't be found: …") and the first vertex or control point
// of an arc whose x or y is not finite or beyond the limits. Empty points pass.
void requireUsableCoordinates(const Geometry& geometry, std::string_view operation);
void requireUsableCoordinates(std::span<const Path> paths, std::string_view operation);

// Coordinates nearer to 0 than this many resolutions count as 0 where areas are worked out: beside usual coordinates
// their products are lost or underflow, and tests of sides then contradict each other.
inline constexpr double traceOfResolution = 0x1p-53;

// Whether any vertex or control point of an arc has such a coordinate that isn't 0 itself.
[[nodiscard]] bool hasTraces(std::span<const Path> paths, double resolution);
// Sets them to 0.
void clearTraces(std::span<Path> paths, double resolution);

} // namespace qz
