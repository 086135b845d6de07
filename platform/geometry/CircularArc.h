#pragma once

#include <cmath>
#include <optional>

#include "platform/geometry/Coordinates.h"
#include "platform/geometry/Envelope.h"

namespace qz {

enum class ArcSense { clockwise, counterClockwise };

// A piece of a circle. Angles in radians, counter-clockwise from east.
struct CircularArc {
    XY centre;
    double radius = 0;
    double startAngle = 0;
    double sweep = 0; // positive counter-clockwise, at most a full turn either way
    // The point at `startAngle`, where it is known: the centre of a flat arc is so far away that its rounding is more
    // than the arc rises over its chord.
    XY start{undefined, undefined};

    [[nodiscard]] double length() const noexcept { return radius * std::abs(sweep); }
    // Turns by so little that the rounding of its centre, which is far away, moves the circle by as much as the arc
    // rises over its chord: where it meets others only the chord can tell.
    [[nodiscard]] bool isFlat() const noexcept { return std::abs(sweep) < 4e-7; }
    // The point at `ratio` of the sweep, 0 at the start, 1 at the end.
    [[nodiscard]] XY at(double ratio) const noexcept;
    // The inverse of `at` for points on the circle; others count by their direction from the centre. At least 0; above
    // 1 on the part of the circle that the arc leaves out.
    [[nodiscard]] double ratioOf(XY p) const noexcept;
    // Extent of the quadrant points of the circle that the arc passes; empty when it passes none.
    [[nodiscard]] Envelope quadrantEnvelope() const noexcept;
    // True extent, touching the quadrant points the arc passes.
    [[nodiscard]] Envelope envelope() const noexcept;
    // Area between arc and chord, positive for a counter-clockwise arc.
    [[nodiscard]] double signedSegmentArea() const noexcept;
};

// The arc from `start` through `middle` to `end`; nothing when the three lie on one line (a robust test, not a
// tolerance), when `middle` equals an end, or when the radius is beyond all numbers. Equal ends give the full circle
// whose diameter is start-middle, run through in the given sense.
[[nodiscard]] std::optional<CircularArc> arcThrough(XY start, XY middle, XY end,
                                                    ArcSense fullCircleSense = ArcSense::counterClockwise);

} // namespace qz
