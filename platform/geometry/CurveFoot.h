#pragma once

#include <cstddef>
#include <limits>

#include "platform/geometry/CurvePosition.h"

namespace qz {

// The nearest place of a curve and what follows from it; shared by the walk along a curve and its index.

// Where on which segment a point is nearest; `before` and `after` are the distances along at the segment's ends.
struct Foot {
    double square = std::numeric_limits<double>::infinity();
    std::size_t part = 0;
    std::size_t segment = 0;
    double ratio = 0;
    double before = 0;
    double after = 0;

    [[nodiscard]] double distanceAlong() const noexcept {
        return ratio >= 1 ? after : before + (after - before) * ratio;
    }
};

// Throws PlatformError.
void requireFinite(XY point);

// On a segment or on the only vertex of a path; part, segment and distances along are left to the caller.
[[nodiscard]] Foot footOn(const CurveSegment& segment, XY p);
[[nodiscard]] Foot footOnVertex(const Path& path, XY p);

// `path` is the part that the foot is on, `length` that of the whole curve.
[[nodiscard]] CurvePosition positionAt(const Path& path, const Foot& foot, XY p, double length);

// The position `within` the curve, or the one on an extension that is nearer. Of equal distances the smaller distance
// along.
[[nodiscard]] CurvePosition extended(const CurvePosition& within, const Curve& curve, double length, XY p);

} // namespace qz
