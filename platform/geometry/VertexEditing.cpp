#include "platform/geometry/VertexEditing.h"

#include <cmath>
#include <complex>
#include <span>
#include <string>
#include <utility>

#include "platform/geometry/CurvePosition.h"
#include "platform/geometry/SubCurve.h"
#include "platform/geometry/Vectors.h"

namespace qz {

namespace {

void requireTolerance(double tolerance) {
    if (!std::isfinite(tolerance) || tolerance < 0) {
        throw PlatformError("A vertex can't be inserted within a tolerance of " + std::to_string(tolerance) + ".");
    }
}

// Where the vertex goes; nothing at a vertex that is there already.
std::optional<CurvePosition> positionForVertex(std::span<const Path> parts, XY point, double tolerance) {
    requireTolerance(tolerance);
    const auto position = positionOf(point, Curve(parts));
    if (!position || parts[position->part].segmentCount() == 0) {
        return std::nullopt;
    }
    const CurveSegment segment(parts[position->part], position->segment);
    const XY at = position->nearest.xy();
    const bool isAtVertex = distance(at, segment.start()) <= tolerance || distance(at, segment.end()) <= tolerance;
    return isAtVertex ? std::nullopt : position;
}

// The two halves, from the start of the path to the vertex and from there to its end.
std::pair<Path, Path> cutAt(const Path& path, const CurvePosition& position) {
    const CurveEnd cut{{0, position.segment, position.segmentRatio}, position.nearest};
    const CurveEnd start{{0, 0, 0}, path.front()};
    const CurveEnd end{{0, path.segmentCount(), 0}, path.back()};
    return {pathBetween(path, start, cut), pathBetween(path, cut, end)};
}

std::complex<double> number(XY p) {
    return {p.x, p.y};
}

// The similar figure that keeps `fixed` and moves `from` to `to`.
Vertex carried(Vertex vertex, XY fixed, XY from, XY to) {
    const auto arm = number(vertex.xy()) - number(fixed);
    const auto moved = number(fixed) + arm * (number(to) - number(fixed)) / (number(from) - number(fixed));
    vertex.x = moved.real();
    vertex.y = moved.imag();
    return vertex;
}

// The same path with its last segment bent to end at `target`.
Path bentEnd(const Path& path, const Vertex& target) {
    const std::size_t last = path.segmentCount() - 1;
    const CurveEnd start{{0, 0, 0}, path.front()};
    Path result = pathBetween(path, start, {{0, last, 0}, path.vertex(last)});
    if (const ArcSegment* arc = path.arcAt(last)) {
        const XY fixed = path.xy()[last];
        result.addArc(carried(arc->middle, fixed, path.back().xy(), target.xy()), target, arc->sense);
    } else {
        result.addVertex(target);
    }
    return result;
}

Path bentStart(Path path, const Vertex& target) {
    path.reverse();
    Path result = bentEnd(path, target);
    result.reverse();
    return result;
}

using Halves = std::pair<Path, Path>;

template <typename Bend>
std::optional<VertexPlace> insertVertex(std::span<Path> parts, XY point, double tolerance, Bend bend) {
    const auto position = positionForVertex(parts, point, tolerance);
    if (!position) {
        return std::nullopt;
    }
    Path& path = parts[position->part];
    const Halves halves = bend(cutAt(path, *position), position->nearest);
    path = halves.first;
    path.append(halves.second);
    return VertexPlace{position->part, halves.first.segmentCount()};
}

std::optional<VertexPlace> insertOn(std::span<Path> parts, XY point, double tolerance) {
    return insertVertex(parts, point, tolerance, [](Halves halves, const Vertex&) { return halves; });
}

std::optional<VertexPlace> insertThrough(std::span<Path> parts, XY point, double tolerance) {
    return insertVertex(parts, point, tolerance, [point](const Halves& halves, Vertex target) {
        target.x = point.x;
        target.y = point.y;
        return Halves{bentEnd(halves.first, target), bentStart(halves.second, target)};
    });
}

} // namespace

std::optional<VertexPlace> insertVertexOn(Polyline& line, XY point, double tolerance) {
    return insertOn(line.paths, point, tolerance);
}

std::optional<VertexPlace> insertVertexOn(Polygon& polygon, XY point, double tolerance) {
    return insertOn(polygon.rings, point, tolerance);
}

std::optional<VertexPlace> insertVertexThrough(Polyline& line, XY point, double tolerance) {
    return insertThrough(line.paths, point, tolerance);
}

std::optional<VertexPlace> insertVertexThrough(Polygon& polygon, XY point, double tolerance) {
    return insertThrough(polygon.rings, point, tolerance);
}

} // namespace qz
