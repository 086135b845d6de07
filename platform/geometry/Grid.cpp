#include "platform/geometry/Grid.h"

#include <cmath>
#include <numbers>

namespace qz {

namespace {

// Beyond this number of cells from the origin the doubles themselves are hardly finer than the grid.
constexpr double farthestCell = 0x1p50;

void snapZM(Vertex& vertex, const CoordinateGrid& grid) {
    vertex.z = snapped(vertex.z, grid.zOrigin, grid.zResolution);
    vertex.m = snapped(vertex.m, grid.mOrigin, grid.mResolution);
}

void snapVertex(Vertex& vertex, const CoordinateGrid& grid) {
    vertex.x = snapped(vertex.x, grid.xOrigin, grid.xyResolution);
    vertex.y = snapped(vertex.y, grid.yOrigin, grid.xyResolution);
    snapZM(vertex, grid);
}

XY movement(XY from, XY to) {
    return {to.x - from.x, to.y - from.y};
}

// The middle control point is no vertex and has no cell. Where the ends stay it stays, bit for bit; where they move it
// moves along, by their movements weighed by its place between them. Rounding it by itself would bend the arc: a middle
// close to one end would carry its own movement enlarged to the other side of the arc.
Vertex movedMiddle(const Vertex& middle, const CircularArc& arc, XY startMovement, XY endMovement) {
    if (startMovement == XY{} && endMovement == XY{}) {
        return middle;
    }
    const double ratio = arc.ratioOf(middle.xy());
    Vertex moved = middle;
    moved.x += (1 - ratio) * startMovement.x + ratio * endMovement.x;
    moved.y += (1 - ratio) * startMovement.y + ratio * endMovement.y;
    return moved;
}

// Continues `result`, which ends at the snapped start of the arc. An arc that is lost within a cell becomes straight.
void appendSnappedArc(Path& result, const Path& path, const ArcSegment& arc, const CoordinateGrid& grid) {
    const CircularArc circle = path.circularArc(arc);
    const XY start = path.xy()[arc.segment];
    const XY newStart = result.back().xy();
    Vertex end = path.vertex(arc.segment + 1);
    const XY oldEnd = end.xy();
    snapVertex(end, grid);
    Vertex middle = movedMiddle(arc.middle, circle, movement(start, newStart), movement(oldEnd, end.xy()));
    snapZM(middle, grid);
    const bool closesUp = newStart == end.xy() && std::abs(circle.sweep) < std::numbers::pi;
    if (closesUp || !arcThrough(newStart, middle.xy(), end.xy())) {
        result.addVertex(end);
    } else {
        result.addArc(middle, end, arc.sense);
    }
}

Path snappedWithArcs(const Path& path, const CoordinateGrid& grid) {
    Path result;
    result.reserve(path.vertexCount());
    for (std::size_t i = 0; i < path.vertexCount(); ++i) {
        const ArcSegment* arc = i == 0 ? nullptr : path.arcAt(i - 1);
        if (arc != nullptr) {
            appendSnappedArc(result, path, *arc, grid);
            continue;
        }
        Vertex vertex = path.vertex(i);
        snapVertex(vertex, grid);
        result.addVertex(vertex);
    }
    return result;
}

void snapPaths(std::vector<Path>& paths, const SpatialReference& reference) {
    if (reference.isNone()) {
        return;
    }
    const CoordinateGrid& grid = reference.grid();
    for (Path& path : paths) {
        if (path.hasArcs()) {
            path = snappedWithArcs(path, grid);
        } else {
            path.transform([&grid](Vertex& vertex) { snapVertex(vertex, grid); });
        }
    }
}

void snapShape(Polyline& polyline) {
    snapPaths(polyline.paths, polyline.spatialReference);
}

void snapShape(Polygon& polygon) {
    snapPaths(polygon.rings, polygon.spatialReference);
}

void snapShape(Point& point) {
    if (!point.spatialReference.isNone()) {
        snapVertex(point.vertex, point.spatialReference.grid());
    }
}

void snapShape(Multipoint& multipoint) {
    if (!multipoint.spatialReference.isNone()) {
        for (Vertex& vertex : multipoint.vertices) {
            snapVertex(vertex, multipoint.spatialReference.grid());
        }
    }
}

} // namespace

void snapToSpatialReference(Geometry& geometry) {
    geometry.visit([](auto& shape) { snapShape(shape); });
}

void snapToSpatialReference(Polyline& polyline) {
    snapShape(polyline);
}

double snapped(double value, double origin, double resolution) noexcept {
    if (!(resolution > 0) || !(std::abs(value) + std::abs(origin) < farthestCell * resolution)) {
        return value;
    }
    const double cellsPerUnit = std::round(1 / resolution);
    if (cellsPerUnit >= 1 && std::abs(cellsPerUnit * resolution - 1) < 1e-12) {
        // Dividing by a whole number gives the double nearest to the decimal, which multiplying by 0.0001 does not.
        return origin + std::round((value - origin) * cellsPerUnit) / cellsPerUnit;
    }
    return origin + std::round((value - origin) / resolution) * resolution;
}

} // namespace qz
