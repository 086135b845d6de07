#pragma once

#include <cmath>

#include "platform/geometry/Coordinates.h"

namespace qz {

// Coordinates as vectors of the plane.

[[nodiscard]] constexpr XY operator+(XY a, XY b) noexcept {
    return {a.x + b.x, a.y + b.y};
}
[[nodiscard]] constexpr XY operator-(XY a, XY b) noexcept {
    return {a.x - b.x, a.y - b.y};
}
[[nodiscard]] constexpr XY operator*(XY a, double factor) noexcept {
    return {a.x * factor, a.y * factor};
}
[[nodiscard]] constexpr double dot(XY a, XY b) noexcept {
    return a.x * b.x + a.y * b.y;
}
// Positive when b points to the left of a.
[[nodiscard]] constexpr double cross(XY a, XY b) noexcept {
    return a.x * b.y - a.y * b.x;
}
[[nodiscard]] inline double distance(XY a, XY b) noexcept {
    return std::hypot(b.x - a.x, b.y - a.y);
}
// By x, then by y.
[[nodiscard]] constexpr bool precedes(XY a, XY b) noexcept {
    return a.x < b.x || (a.x == b.x && a.y < b.y);
}

} // namespace qz
