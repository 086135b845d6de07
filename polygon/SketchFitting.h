#pragma once

#include <vector>

#include "platform/geometry/Geometry.h"

namespace qz {

// A sketched polygon and the polygons of a layer that it meets.
struct FittedSketch {
    Polygon sketch;
    std::vector<Polygon> met; // in the order given
};

// Gives the boundary of the sketch and those of the polygons the same vertices, bit for bit, wherever they meet, so
// that whatever is cut out of them fits together without gaps and overlaps.
//
// The polygons only gain vertices, within the resolution of their boundary, with z and m as they run along it. The
// sketch gives way within the tolerance: its vertices come onto vertices of the polygons, else onto their sides (within
// the resolution they stay, and the side gets the vertex), and its sides are bent through vertices beside them. It is
// then simplified; it may become empty. All are in one spatial reference.
[[nodiscard]] FittedSketch fittedInto(const Polygon& sketch, std::vector<Polygon> met);

// The polygons with common vertices wherever boundaries of two of them meet. They only gain vertices, as above.
[[nodiscard]] std::vector<Polygon> withCommonVertices(std::vector<Polygon> polygons);

} // namespace qz
