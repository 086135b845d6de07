#include "common/QZSelfIntersection.h"

#include "common/ErrorExit.h"
#include "platform/geometry/CurveIndex.h"
#include "platform/geometry/CurvePosition.h"
#include "platform/geometry/Orientation.h"
#include "platform/geometry/Simplify.h"

namespace qz {

namespace {

// A line runs over itself at the crossings only, so that two places well inside a piece tell its direction.
bool runsAgainst(const Path& piece, const CurveIndex& line) {
    const auto early = line.positionOf(pointAtRatio(piece, 0.2).value().xy());
    const auto late = line.positionOf(pointAtRatio(piece, 0.8).value().xy());
    return early.value().ratioAlong > late.value().ratioAlong;
}

} // namespace

GeometryCollection SelfIntersectFind(const Polyline& polyline) {
    return withErrorExit("SelfIntersectFind", GeometryCollection(), [&] {
        const Polyline broken = simplifiedPlanar(polyline);
        GeometryCollection pieces;
        if (broken.paths.size() <= 2) {
            return pieces;
        }
        pieces.spatialReference = polyline.spatialReference;
        const CurveIndex line{Curve(polyline)};
        for (const Path& path : broken.paths) {
            Polyline piece;
            static_cast<GeometryTraits&>(piece) = polyline;
            piece.paths.push_back(path);
            if (runsAgainst(path, line)) {
                reverseOrientation(piece);
            }
            pieces.geometries.emplace_back(std::move(piece));
        }
        return pieces;
    });
}

} // namespace qz
