#pragma once

#include "platform/geometry/Geometry.h"

namespace qz {

// Straight segments in the place of long and of curved ones. The vertices stay, bit for bit, and new ones lie on the
// curve with z and m as they run along it; each segment is divided into equal pieces. More than `maximumDensity`
// vertices in all, coordinates and limits that are not numbers throw PlatformError and leave the shape as it is.

inline constexpr double maximumDensity = 1e8;

// Segments no longer than `maximumLength`, along arcs even when measured on the arc, and no farther from the arc than
// `maximumDeviation`. A limit of 0 or below is none; with neither the shape stays as it is. An arc gives three pieces a
// full turn at least.
void densify(Polyline& line, double maximumLength, double maximumDeviation);
void densify(Polygon& polygon, double maximumLength, double maximumDeviation);

// The same with a limit on what an arc turns, in radians, from piece to piece; below 0 it is 10 degrees. Corners
// between straight segments are left as they are.
void densifyByAngle(Polyline& line, double maximumLength, double maximumAngle);
void densifyByAngle(Polygon& polygon, double maximumLength, double maximumAngle);

} // namespace qz
