#include "platform/geometry/Buffer.h"

#include <algorithm>
#include <cmath>

#include "platform/geometry/Noding.h"
#include "platform/geometry/OffsetFrame.h"
#include "platform/geometry/OffsetStretches.h"
#include "platform/geometry/Orientation.h"
#include "platform/geometry/Simplify.h"

namespace qz {

namespace {

// The largest number allowed: strokes of a circle that large, a tenth of the tolerance beside it, are some millions.
constexpr double tolerances = 1e12;

Polygon emptyLike(const Geometry& shape) {
    Polygon polygon;
    polygon.spatialReference = shape.spatialReference();
    return polygon;
}

// Points as lines of one vertex.
std::vector<Path> linesOf(const Geometry& shape) {
    std::vector<Path> lines;
    if (const Polyline* polyline = shape.getIf<Polyline>()) {
        std::ranges::copy_if(polyline->paths, std::back_inserter(lines),
                             [](const Path& path) { return !path.isEmpty(); });
        return lines;
    }
    forEachVertex(shape, [&lines](const Vertex& vertex) { lines.emplace_back(std::vector{vertex.xy()}); });
    return lines;
}

// Closed chains, directed as they come.
std::vector<Path> ringsOf(std::span<const ParallelCurve> curves, const Curve& source, double distance) {
    std::vector<Path> rings;
    for (const StretchChain& chain : chained(outerStretches(curves, source, distance))) {
        rings.push_back(chainPath(chain, curves));
    }
    return rings;
}

void reverseAll(std::vector<Path>& rings) {
    std::ranges::for_each(rings, &Path::reverse);
}

std::vector<Path> ringsAround(const std::vector<Path>& lines, double distance) {
    std::vector<Path> rings = ringsOf(curvesAround(lines, distance).curves, Curve(lines), distance);
    reverseAll(rings);
    return rings;
}

std::vector<ParallelCurve> parallelsOnRight(const std::vector<Path>& rings, double distance) {
    std::vector<ParallelCurve> curves;
    for (const Path& ring : rings) {
        curves.push_back(parallelOnRight(ring, distance));
    }
    std::erase_if(curves, [](const ParallelCurve& curve) { return curve.path.isEmpty(); });
    return curves;
}

// The interior of an area is to the right of its rings.
std::vector<Path> ringsInside(const std::vector<Path>& boundary, double distance) {
    return ringsOf(parallelsOnRight(boundary, distance), Curve(boundary), distance);
}

std::vector<Path> ringsOutside(std::vector<Path> boundary, double distance) {
    reverseAll(boundary);
    std::vector<Path> rings = ringsOf(parallelsOnRight(boundary, distance), Curve(boundary), distance);
    reverseAll(rings);
    return rings;
}

std::vector<Path> bufferRings(const Geometry& shape, double distance) {
    if (const Polygon* polygon = shape.getIf<Polygon>()) {
        const std::vector<Path>& boundary = polygon->rings;
        return distance > 0 ? ringsOutside(boundary, distance) : ringsInside(boundary, -distance);
    }
    return ringsAround(linesOf(shape), distance);
}

Geometry withoutValues(Geometry shape) {
    transformVertices(shape, [](Vertex& vertex) { vertex.z = vertex.m = undefined; });
    shape.traits().zAware = shape.traits().mAware = false;
    return shape;
}

} // namespace

Polygon buffer(const Geometry& shape, double distance) {
    const OffsetFrame frame("buffer", shape, distance, tolerances * shape.spatialReference().grid().xyTolerance);
    const bool isArea = shape.kind() == GeometryKind::polygon;
    if (shape.isEmpty() || (distance <= 0 && !isArea)) {
        return emptyLike(shape);
    }
    const Geometry source = isArea ? Geometry(simplified(shape.as<Polygon>())) : shape;
    if (distance == 0) {
        return withoutValues(source).as<Polygon>();
    }
    Polygon result = emptyLike(shape);
    result.rings = bufferRings(frame.toLocal(withoutValues(source)), distance);
    std::ranges::stable_partition(result.rings, isExterior);
    return simplified(frame.fromLocal(result));
}

} // namespace qz
