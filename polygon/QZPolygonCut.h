#pragma once

#include <optional>
#include <vector>

#include "platform/geometry/CurveIndex.h"
#include "platform/geometry/Cut.h"

namespace qz {

// Cuts a polygon, which is simplified in place, into the pieces on the two sides of a line. Nothing when the line
// starts or ends inside the polygon or leaves it whole, and after a failure, which isn't reported. An end of the line
// in a hole cuts nothing either: the polygon is drawn in red and the user is told.
[[nodiscard]] std::optional<CutPieces> QZ_CutPolygon(const Polyline& line, Polygon& polygon);

// Whether a point that isn't inside the polygon lies in one of its holes. The boundary of a hole belongs to it.
[[nodiscard]] bool QZ_PointInHole(const Point& point, const Polygon& polygon);

// The vertices that a line made in the polygons it cut.
class CutVertices {
public:
    // Vertices nearer than `tolerance` to the line are counted as made by it.
    CutVertices(const Polyline& line, double tolerance);

    // Adds those of a piece, in the order of its rings. A piece whose vertices are no numbers adds nothing.
    void QZ_GetInsertedVerteces(const Polygon& piece);
    [[nodiscard]] const std::vector<XY>& all() const noexcept { return vertices_; }

private:
    CurveIndex line_;
    double tolerance_;
    std::vector<XY> vertices_;
};

} // namespace qz
