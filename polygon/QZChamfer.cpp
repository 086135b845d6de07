#include "polygon/QZChamfer.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

#include "common/ErrorExit.h"
#include "common/FeatureShapes.h"
#include "common/InReference.h"
#include "common/QZPlane.h"
#include "common/StorableParts.h"
#include "platform/Error.h"
#include "platform/app/Services.h"
#include "platform/geometry/CurvePosition.h"

namespace qz {

namespace {

void requireSize(const CornerCut& cut) {
    if (!std::isfinite(cut.size) || cut.size <= 0) {
        throw PlatformError(fmt::format("The distance or radius of a corner cut must be above 0, not {}.", cut.size));
    }
}

double toleranceOf(const GeometryTraits& traits) {
    return traits.spatialReference.grid().xyTolerance;
}

// The first of several; from 1 on, so that a ring's start counts as its end.
std::size_t nearestVertex(const Path& path, XY place) {
    const auto distance = [place](XY vertex) { return QZ_Distance2D(vertex.x, vertex.y, place.x, place.y); };
    const auto xy = path.xy().subspan(path.isClosed() ? 1 : 0);
    const auto nearest = std::ranges::min_element(xy, {}, distance);
    return static_cast<std::size_t>(&*nearest - path.xy().data());
}

// The ring without a vertex is never nearest.
std::size_t nearestRing(const Polygon& polygon, XY place) {
    std::vector<double> distances;
    for (const Path& ring : polygon.rings) {
        const auto position = positionOf(place, ring);
        distances.push_back(position ? position->distanceFrom : HUGE_VAL);
    }
    return static_cast<std::size_t>(std::ranges::min_element(distances) - distances.begin());
}

void cutCorner(Polygon& polygon, XY place, const CornerCut& cut) {
    const std::size_t ring = nearestRing(polygon, place);
    CornerCutting cutting(polygon.rings[ring], cut, toleranceOf(polygon));
    const std::size_t vertex = nearestVertex(polygon.rings[ring], place);
    const auto piece = cutting.pieceAt(vertex);
    if (piece && !CornerObstacles(polygon).block(ring, vertex, *piece)) {
        cutting.replace(vertex, *piece);
        polygon.rings[ring] = cutting.result();
    }
}

void cutCorner(Polyline& line, XY place, const CornerCut& cut) {
    CornerCutting cutting(line.paths.front(), cut, toleranceOf(line));
    const std::size_t vertex = nearestVertex(line.paths.front(), place);
    if (const auto piece = cutting.pieceAt(vertex)) {
        cutting.replace(vertex, *piece);
        line.paths.front() = cutting.result();
    }
}

template <typename Shape>
std::optional<Shape> withCornerCut(std::string_view label, const Shape& shape, const Point& point,
                                   const CornerCut& cut) {
    return withErrorExit(label, std::optional<Shape>(), [&] {
        requireSize(cut);
        Shape result = shape;
        cutCorner(result, inReference(point, shape.spatialReference).vertex.xy(), cut);
        return std::optional(std::move(result));
    });
}

template <typename IsBlocked>
Path withCornersCut(const Path& path, const CornerCut& cut, double tolerance, IsBlocked isBlocked) {
    CornerCutting cutting(path, cut, tolerance);
    for (std::size_t vertex = 1; vertex < path.vertexCount(); ++vertex) {
        checkInterrupt();
        const auto piece = cutting.pieceAt(vertex);
        if (piece && !isBlocked(vertex, *piece)) {
            cutting.replace(vertex, *piece);
        }
    }
    return cutting.result();
}

Geometry withAllCornersCut(const Polygon& polygon, const CornerCut& cut) {
    const CornerObstacles obstacles(polygon);
    Polygon result = polygon;
    for (std::size_t ring = 0; ring < polygon.rings.size(); ++ring) {
        result.rings[ring] =
            withCornersCut(polygon.rings[ring], cut, toleranceOf(polygon),
                           [&](std::size_t vertex, const Path& piece) { return obstacles.block(ring, vertex, piece); });
    }
    return result;
}

Geometry withAllCornersCut(const Polyline& line, const CornerCut& cut) {
    Polyline result = line;
    result.paths = {
        withCornersCut(line.paths.front(), cut, toleranceOf(line), [](std::size_t, const Path&) { return false; })};
    return result;
}

bool isMultipartLine(const Geometry& shape) {
    const auto* line = shape.getIf<Polyline>();
    if (!line || line->paths.size() < 2) {
        return false;
    }
    showMessage("This polyline is multipart\nExplode and try again!");
    return true;
}

void store(const Geometry& shape, Feature& feature, FeatureCursor& cursor, const FeatureClass& featureClass,
           RefreshArea& refresh) {
    refresh.add(shape);
    feature.setShape(storableParts(shape, featureClass).front());
    cursor.update(feature);
}

std::optional<Geometry> cutAt(const Geometry& shape, const Point& point, const CornerCut& cut) {
    if (const auto* line = shape.getIf<Polyline>()) {
        return QZ_Chamfer(*line, point, cut);
    }
    return QZ_ChamferPg(shape.as<Polygon>(), point, cut);
}

} // namespace

std::optional<Polygon> QZ_ChamferPg(const Polygon& polygon, const Point& point, const CornerCut& cut) {
    return withCornerCut(" QZ_ChamferPg", polygon, point, cut);
}

std::optional<Polyline> QZ_Chamfer(const Polyline& line, const Point& point, const CornerCut& cut) {
    return withCornerCut(" QZ_Chamfer", line, point, cut);
}

bool QZ_ChamferAllRun(FeatureCursor& cursor, FeatureClass& featureClass, Feature* feature, RefreshArea& refresh,
                      const CornerCut& cut) {
    return withErrorExit(" QZ_ChamferAllRun", false, [&] {
        requireSize(cut);
        if (!hasShape(feature) || isMultipartLine(*feature->shape())) {
            return false;
        }
        const Geometry shape = *feature->shape();
        refresh.add(shape);
        const auto* line = shape.getIf<Polyline>();
        store(line ? withAllCornersCut(*line, cut) : withAllCornersCut(shape.as<Polygon>(), cut), *feature, cursor,
              featureClass, refresh);
        return true;
    });
}

bool QZ_ChamferSingleRun(FeatureCursor& cursor, FeatureClass& featureClass, Feature* feature, const Point& point,
                         RefreshArea& refresh, const CornerCut& cut) {
    return withErrorExit(" QZ_ChamferSingleRun", false, [&] {
        if (!hasShape(feature) || isMultipartLine(*feature->shape())) {
            return false;
        }
        const Geometry shape = *feature->shape();
        const auto result = cutAt(shape, point, cut);
        if (result) {
            refresh.add(shape);
            store(*result, *feature, cursor, featureClass, refresh);
        }
        return result.has_value();
    });
}

} // namespace qz
