#pragma once

#include <optional>

#include "platform/geometry/Geometry.h"

namespace qz {

// Squaring of one ring, given as a closed clockwise path that begins with the segment whose direction is kept. Each
// vertex keeps its height and measure. A ring of which no vertex would move by more than the resolution, and a ring
// with arcs, come back as they are.
//
// Nothing, with a notice, for a sequence of several paths, a ring without area or that is left with too few sides, and
// when the result would cross itself or not close; nothing after a failure, which is reported.

// Makes the angles right, straight or 0 that are so within the tolerance, in degrees, above 0 up to 45, or to the whole
// degree; vertices but the first that are straight within the tolerance go. The others take up what those were changed
// by, each the change before it, the last one the rest as well. The first vertex stays, and the sides keep their
// lengths but for two that close the ring: the longest but for the first, and the one that reaches farthest across it.
// These may change by less than their length.
[[nodiscard]] std::optional<Polygon> QZ_SquarePolygonAngles(const Polyline& sequence, double angleTolerance);

// Makes every angle right or straight: each side, a run of segments that go more along the first segment or more across
// it, becomes the line along or across that the squares of the distances of its points are least to. Straight vertices
// stay where they lie in order.
[[nodiscard]] std::optional<Polygon> QZ_SquarePolygonAnglesAll(const Polyline& sequence);

} // namespace qz
