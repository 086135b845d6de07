#pragma once

#include <optional>

#include "platform/geometry/Geometry.h"

namespace qz {

// The pieces of a polygon on the two sides of a directed line.
struct CutPieces {
    Polygon left;
    Polygon right; // has the pieces too that the line does not touch
};

// Cuts a polygon by a line. Nothing when no interior is crossed from side to side: the line stays outside, follows the
// boundary, or ends inside. Ends on the boundary count as crossing it; what of the line ends inside cuts nothing. Holes
// that are crossed are opened. The line may cross itself and have several paths.
//   area(left) + area(right) == area(polygon), but for rounding
//   the cut has the same vertices in both, bit for bit; z and m there are those of the polygon where it has any
// A piece that has the line on both hands counts by the longer stretch. Arcs, z and m are kept. A polygon that is not
// simple counts as simplified.
// Throws PlatformError for coordinates that are not finite.
[[nodiscard]] std::optional<CutPieces> cut(const Polygon& polygon, const Polyline& line);

} // namespace qz
