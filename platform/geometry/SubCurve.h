#pragma once

#include <span>
#include <vector>

#include "platform/geometry/Curve.h"

namespace qz {

// Pieces of lines and of polygon boundaries. Ratios and distances count along the whole curve, gaps between its parts
// nothing. A piece has the parts, vertices and arcs of the curve; a cut arc gives arcs of the same circle; z and m at a
// cut run linearly between their neighbours. A cut that is at a vertex but for rounding is made at that vertex, and
// where two parts meet between them. Everything here throws PlatformError for numbers and coordinates that are not
// finite.

// The stretch between two ratios, the awareness and reference of the line kept. Exactly the ends of the curve at 0 (and
// below) and 1 (and above). Empty when `from` is not below `to`.
//   end(subCurve(c, a, b)) == start(subCurve(c, b, d)), bit for bit, z and m included
// O(n).
[[nodiscard]] Polyline subCurve(const Polyline& line, double from, double to);
// Of the boundary: the rings one after the other.
[[nodiscard]] Polyline subCurve(const Polygon& polygon, double from, double to);

// Cuts at ratios in any order; duplicates and what rounds to 0 or 1 are ignored.
//   pieces.front() starts, pieces.back() ends where the line does
//   end(pieces[i]) == start(pieces[i + 1]), bit for bit, z and m included, unless the cut is between two parts
// No ratio: one piece equal to the line. Empty line: no pieces. O(n + k log k) for n segments and k ratios.
[[nodiscard]] std::vector<Polyline> splitAtRatios(const Polyline& line, std::span<const double> ratios);
[[nodiscard]] std::vector<Path> splitAtRatios(const Path& path, std::span<const double> ratios);

// A cut that has to land on given coordinates.
struct CurveCut {
    double ratio = 0;
    // Ends the piece before and starts the piece after the cut, bit for bit; it may lie a little off the line.
    Vertex vertex;
};

// Like `splitAtRatios`; of cuts at one place the first given counts. Between two parts both keep their own ends.
[[nodiscard]] std::vector<Polyline> splitAtVertices(const Polyline& line, std::span<const CurveCut> cuts);
[[nodiscard]] std::vector<Path> splitAtVertices(const Path& path, std::span<const CurveCut> cuts);

// A place together with the vertex a cut there makes.
struct CurveEnd {
    CurvePlace place;
    Vertex vertex;
};

// The stretch of one path between two of its places, `from` before `to`. O(segments in between).
[[nodiscard]] Path pathBetween(const Path& path, const CurveEnd& from, const CurveEnd& to);

} // namespace qz
