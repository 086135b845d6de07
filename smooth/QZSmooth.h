#pragma once

#include <optional>
#include <string>

#include "platform/app/Application.h"

namespace qz {

struct SmoothCurve {
    std::string sCurType;   // "Bezier", "bSpline" or "tSpline", letter case included
    std::int16_t iPar0 = 0; // points made for each vertex
    std::int16_t iPar1 = 0; // order of the B-spline, tension of the spline under tension
};

// Replaces every line and polygon of the update cursor by a smooth curve through or near its vertices, part by part;
// arcs are first stroked by 0.2 radians. Parts of B-splines and of splines under tension are smoothed 100 points at a
// time. A closed line and a ring begin at the middle of their first segment. z and m are smoothed along with x and y. A
// polygon that crosses itself as a curve is simplified.
// False, with a notice and without a change, for a curve that is not known, fewer than one point a vertex, an order
// below 2 and a tension of 0 or below; false after a failure, which is reported.
[[nodiscard]] bool QZ_SmoothRun(Application& application, FeatureCursor& cursor, const SmoothCurve& curve,
                                std::int32_t expected, RefreshArea& refresh, const SpatialReference& data);

// One part as a curve. Points outside the envelope are left out of a Bézier curve, but for rounding. Nothing for a part
// of one point.
[[nodiscard]] std::optional<Path> QZ_SmoothGeometry(const SmoothCurve& curve, const Path& part,
                                                    const Envelope& envelope);

} // namespace qz
