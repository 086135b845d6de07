#include "polygon/QZPolygonCut.h"

#include <algorithm>

#include "common/ApplicationReference.h"
#include "common/ErrorExit.h"
#include "platform/app/Services.h"
#include "platform/geometry/Relations.h"
#include "platform/geometry/Simplify.h"

namespace qz {

namespace {

constexpr Color red{255, 0, 0};

struct LineEnds {
    Point from;
    Point to;
};

LineEnds endsOf(const Polyline& line) {
    return {Point(line.paths.front().front(), line), Point(line.paths.back().back(), line)};
}

bool isInside(const Point& point, const Polygon& polygon) {
    return contains(Geometry(polygon), Geometry(point));
}

void refuseEndInHole(const Polygon& polygon) {
    application().focusMap().activeView().display().drawPolygon(polygon, FillSymbol{.color = red, .outline = {}});
    showMessage("One of the end points of the cutting line falls in a hole within the polygon\n"
                "The polygon can not be cut");
}

} // namespace

bool QZ_PointInHole(const Point& point, const Polygon& polygon) {
    return withSilentExit(false, [&] {
        return polygon.rings.size() > 1 && std::ranges::any_of(polygon.rings, [&](const Path& ring) {
                   Polygon filled;
                   static_cast<GeometryTraits&>(filled) = polygon;
                   filled.rings = {ring};
                   return isInside(point, simplified(filled));
               });
    });
}

std::optional<CutPieces> QZ_CutPolygon(const Polyline& line, Polygon& polygon) {
    return withSilentExit(std::optional<CutPieces>(), [&]() -> std::optional<CutPieces> {
        const LineEnds ends = endsOf(line);
        polygon = simplified(polygon);
        if (isInside(ends.from, polygon) || isInside(ends.to, polygon)) {
            return std::nullopt;
        }
        if (QZ_PointInHole(ends.from, polygon) || QZ_PointInHole(ends.to, polygon)) {
            refuseEndInHole(polygon);
            return std::nullopt;
        }
        return cut(polygon, line);
    });
}

CutVertices::CutVertices(const Polyline& line, double tolerance) : line_(Curve(line)), tolerance_(tolerance) {}

void CutVertices::QZ_GetInsertedVerteces(const Polygon& piece) {
    withSilentExit(false, [&] {
        for (const Path& ring : piece.rings) {
            for (const XY vertex : ring.xy().first(ring.vertexCount() - 1)) { // the last is the first again
                const auto position = line_.positionOf(vertex);
                if (position && position->distanceFrom < tolerance_) {
                    vertices_.push_back(vertex);
                }
            }
        }
        return true;
    });
}

} // namespace qz
