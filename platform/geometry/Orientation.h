#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "platform/geometry/Geometry.h"

namespace qz {

enum class Turn { right = -1, straight = 0, left = 1 };

// One to the left, the other to the right.
[[nodiscard]] constexpr bool areOpposite(Turn one, Turn other) noexcept {
    return static_cast<int>(one) * static_cast<int>(other) < 0;
}

// On which side of the directed line a -> b the point c lies. Exact for coordinates between 1e-140 and 1e150 or
// zero (adaptive floating-point expansion after J. R. Shewchuk, 1997).
[[nodiscard]] Turn turn(XY a, XY b, XY c) noexcept;

// Clockwise rings are exterior; so is a ring without area, which is no hole in anything.
[[nodiscard]] bool isExterior(const Path& ring);
// Indexes of the exterior rings, ascending.
[[nodiscard]] std::vector<std::size_t> exteriorRings(const Polygon& polygon);
// Indexes of the holes that lie directly in the exterior ring at `exterior`, ascending: those that follow it. An island
// in a hole is an exterior ring of its own.
[[nodiscard]] std::vector<std::size_t> interiorRings(const Polygon& polygon, std::size_t exterior);

// The rings of each part, an exterior ring before its holes. The first ring begins a part whatever its direction; empty
// rings are of the part before them.
[[nodiscard]] std::vector<std::span<const Path>> polygonParts(const Polygon& polygon);

// Reverses every part: the first vertex becomes the last. The parts keep their order.
void reverseOrientation(Polyline& polyline);
// For polygons this turns exterior rings into holes; only for use on the way to a corrected orientation.
void reverseOrientation(Polygon& polygon);

} // namespace qz
