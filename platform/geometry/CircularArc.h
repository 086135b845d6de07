#pragma once

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

    [[nodiscard]] double length() const noexcept { return radius * std::abs(sweep); }
    // The point at `ratio` of the sweep, 0 at the start, 1 at the end.
    [[nodiscard]] XY at(double ratio) const noexcept;
    // True extent, touching the quadrant points the arc passes.
    [[nodiscard]] Envelope envelope() const noexcept;
    // Area between arc and chord, positive for a counter-clockwise arc.
    [[nodiscard]] double signedSegmentArea() const noexcept;
};

// The arc from `start` through `middle` to `end`; nothing when the three lie on one line (a robust test, not a
// tolerance) or when `start` equals `middle`. Equal ends give the full circle whose diameter is start-middle, run
// through in the given sense.
[[nodiscard]] std::optional<CircularArc> arcThrough(XY start, XY middle, XY end,
                                                    ArcSense fullCircleSense = ArcSense::counterClockwise);

} // namespace qz
