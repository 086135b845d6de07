#pragma once

#include <cstdint>
#include <vector>

#include "platform/geometry/Coordinates.h"

namespace qz {

// Smooth curves through or near control points, as `count` + 1 points in equal steps of their parameter; the first and
// last are the first and last control points. All four coordinates follow the same formula, so that z and m are
// smoothed along with x and y, and are undefined where those of a control point that counts are. There are at least two
// control points and one step.

// The Bézier curve of degree n over all n + 1 points: the sum of C(n, j) t^j (1 - t)^(n - j) P[j]. The weights are
// worked out from the largest outward, so that none overflows and all that count are there, however many points there
// are.
[[nodiscard]] std::vector<Vertex> QZ_SmoothBZ(const std::vector<Vertex>& control, std::int32_t count);

// The uniform open B-spline of an order from 2 to the number of points (Cox-de Boor recursion), with the knots
// 0 (order times), 1, 2, ..., n - order + 2 (order times).
[[nodiscard]] std::vector<Vertex> QZ_SmoothBS(const std::vector<Vertex>& control, std::int32_t order,
                                              std::int32_t count);

// The interpolating spline under a tension above 0, with knots in equal steps and without curvature at its ends (D. G.
// Schweikert, 1966). It goes towards the line through the points as the tension grows; hyperbolic functions come as
// quotients that don't overflow.
[[nodiscard]] std::vector<Vertex> QZ_SmoothTS(const std::vector<Vertex>& control, double tension, std::int32_t count);

} // namespace qz
