#pragma once

#include <cstddef>
#include <optional>

#include "platform/geometry/Curve.h"

namespace qz {

// Distances are planar, in the units of the coordinates, along true arcs. Ratios are of the length of the whole curve.
// Everything here throws PlatformError for numbers and coordinates that are not finite.

// The place of a point with respect to a curve.
struct CurvePosition {
    // On the curve, with z and m as they run along it; on an extension z and m are undefined.
    Vertex nearest;
    // From the start of the curve: negative before it and more than the length beyond its end, on the extensions.
    double distanceAlong = 0;
    // The same as a ratio of the length; 0 for a curve without length.
    double ratioAlong = 0;
    double distanceFrom = 0;
    // Looking from the start to the end of the curve. A point on the curve is not on its right. Where a vertex is
    // nearest the side is that of the corner's bisector, so that a point off an outer corner is on the outer side.
    bool onRightSide = false;
    std::size_t part = 0;
    // At a vertex between two segments the first of them, `segmentRatio` being 1.
    std::size_t segment = 0;
    double segmentRatio = 0;
};

// The nearest place of the curve; of several the one with the smallest distance along. Nothing for an empty curve.
// O(n).
[[nodiscard]] std::optional<CurvePosition> positionOf(XY point, const Curve& curve);

// As if the first part began and the last part ended with an infinite straight line along the tangent there. A closed
// part has no end to extend.
[[nodiscard]] std::optional<CurvePosition> positionOnExtended(XY point, const Curve& curve);

// Out of range the ends of the curve; where two parts meet the end of the first. A distance that is a vertex's but for
// rounding gives exactly the vertex. Nothing for an empty curve. O(n).
[[nodiscard]] std::optional<Vertex> pointAtDistance(const Curve& curve, double distance);
[[nodiscard]] std::optional<Vertex> pointAtRatio(const Curve& curve, double ratio);

} // namespace qz
