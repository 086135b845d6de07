#pragma once

#include <vector>

#include "platform/geometry/Geometry.h"

namespace qz {

// A place on a directed line and the direction there.
struct DirectionMark {
    XY at;
    double polarAngleDegrees = 0; // counter-clockwise from east
};

// Marks at even distances along each path of a polyline, or each ring of a polygon: as many as fit with `spacing` (in
// units of the coordinates, above 0) between them, at least one, none on an end. Only those inside the window. None on
// a path without length.
[[nodiscard]] std::vector<DirectionMark> directionMarks(const Geometry& geometry, double spacing,
                                                        const Envelope& window);

} // namespace qz
