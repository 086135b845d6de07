#include "platform/geometry/SetOperations.h"
#include "platform/geometry/CoordinateLimits.h"

#include <algorithm>
#include <deque>
#include <iterator>
#include <unordered_set>

#include <fmt/format.h>

#include "platform/geometry/Curve.h"
#include "platform/geometry/PathMerging.h"
#include "platform/geometry/PolygonAssembly.h"
#include "platform/geometry/Relations.h"
#include "platform/geometry/Simplify.h"
#include "platform/geometry/geos/Overlay.h"

namespace qz {

namespace {

int dimensionOf(const Geometry& geometry) {
    switch (geometry.kind()) {
    case GeometryKind::point:
    case GeometryKind::multipoint:
        return 0;
    case GeometryKind::polyline:
        return 1;
    case GeometryKind::polygon:
        return 2;
    }
    return 0;
}

// Operands with proper rings, and what it takes to carry arcs, z and m through the overlay.
class Operands {
public:
    explicit Operands(std::span<const Geometry* const> given) : all_(simple(given)) {
        for (const Geometry* operand : all_) {
            traits_.zAware = traits_.zAware || operand->traits().zAware;
            traits_.mAware = traits_.mAware || operand->traits().mAware;
        }
        traits_.spatialReference = all_.front()->spatialReference();
    }

    [[nodiscard]] const Geometry& operator[](std::size_t index) const { return *all_[index]; }
    [[nodiscard]] CurveSources& sources() noexcept { return sources_; }
    [[nodiscard]] const GeometryTraits& traits() const noexcept { return traits_; }
    [[nodiscard]] double resolution() const { return traits_.spatialReference.grid().xyResolution; }
    // Strokes of arcs that nearly touch may cross, though the arcs don't.
    [[nodiscard]] GeosGeometryPtr geos(std::size_t index) const {
        const Geometry& stroked = sources_.stroked(index);
        const Polygon* polygon = sources_.hasArcs() ? stroked.getIf<Polygon>() : nullptr;
        if (polygon != nullptr && !isSimple(*polygon)) {
            return toGeos(simplified(*polygon));
        }
        return toGeos(stroked);
    }
    [[nodiscard]] GeosGeometryPtr overlaid(OverlayKind kind) const {
        return overlay(kind, *geos(0), *geos(1), resolution());
    }

private:
    std::vector<const Geometry*> simple(std::span<const Geometry* const> given) {
        std::vector<const Geometry*> operands;
        const double resolution = given.front()->spatialReference().grid().xyResolution;
        for (const Geometry* operand : given) {
            operands.push_back(simple(*operand, resolution));
        }
        return operands;
    }

    const Geometry* simple(const Geometry& operand, double resolution) {
        if (const Polygon* polygon = operand.getIf<Polygon>()) {
            const bool isGood = !hasTraces(polygon->rings, resolution) && isSimple(*polygon);
            return isGood ? &operand : &copies_.emplace_back(simplified(*polygon));
        }
        if (const Polyline* line = operand.getIf<Polyline>(); line != nullptr && hasTraces(line->paths, resolution)) {
            Polyline cleared = *line;
            clearTraces(cleared.paths, resolution);
            return &copies_.emplace_back(std::move(cleared));
        }
        return &operand;
    }

    std::deque<Geometry> copies_;
    std::vector<const Geometry*> all_;
    CurveSources sources_{all_};
    GeometryTraits traits_;
};

template <typename Shape> Shape emptyLike(const GeometryTraits& traits) {
    Shape shape;
    static_cast<GeometryTraits&>(shape) = traits;
    return shape;
}

Multipoint pointsOf(const GEOSGeometry& result, Operands& operands) {
    Multipoint points = emptyLike<Multipoint>(operands.traits());
    for (const XY place : pointsIn(result)) {
        points.vertices.push_back(operands.sources().restored(place));
    }
    return points;
}

Polyline linesOf(const GEOSGeometry& result, Operands& operands) {
    Polyline lines = emptyLike<Polyline>(operands.traits());
    std::vector<Path> pieces = linesIn(result);
    if (pieces.empty()) {
        return lines;
    }
    CurveSources& sources = operands.sources();
    sources.indexStrokes();
    for (Path& piece : pieces) {
        piece = sources.directed(std::move(piece));
    }
    for (const Path& line : mergedPaths(std::move(pieces))) {
        lines.paths.push_back(sources.restored(line));
    }
    return lines;
}

Geometry shapeOf(const GEOSGeometry& result, int dimension, Operands& operands) {
    if (dimension == 0) {
        return pointsOf(result, operands);
    }
    if (dimension == 1) {
        return linesOf(result, operands);
    }
    return assemblePolygon(polygonsIn(result), operands.sources(), operands.traits());
}

std::vector<Vertex> verticesOf(const Geometry& points) {
    std::vector<Vertex> vertices;
    forEachVertex(points, [&vertices](const Vertex& vertex) { vertices.push_back(vertex); });
    return vertices;
}

Multipoint asMultipoint(const Geometry& points) {
    Multipoint result = emptyLike<Multipoint>(points.traits());
    if (!points.isEmpty()) {
        result.vertices = verticesOf(points);
    }
    return result;
}

// The points that lie on, or don't lie on, the other geometry.
Multipoint pointsBy(bool meeting, const Geometry& points, const Geometry& other) {
    const PreparedRelation relation(other, SpatialRelation::intersects);
    Multipoint result = asMultipoint(points);
    std::erase_if(result.vertices,
                  [&](const Vertex& vertex) { return relation.holdsFor(Point(vertex, points.traits())) != meeting; });
    return simplified(result);
}

using Places = std::unordered_set<XY, XYHash>;

bool isOverlap(const Node& node) {
    return node.kind == NodeKind::overlapBegin || node.kind == NodeKind::overlapEnd;
}

// The nodes of the first `own` paths with those after.
template <typename See>
void forEachMutualNode(const std::vector<std::vector<Node>>& nodes, std::size_t own, const See& see) {
    for (std::size_t path = 0; path < own; ++path) {
        for (const Node& node : nodes[path]) {
            if (node.otherPath >= own) {
                see(path, node);
            }
        }
    }
}

Vertex vertexOf(const Path& path, std::size_t segment, double ratio, const GeometryTraits& traits) {
    Vertex vertex = ratio > 0 ? CurveSegment(path, segment).vertexAt(ratio) : path.vertex(segment);
    vertex.z = traits.zAware ? vertex.z : undefined;
    vertex.m = traits.mAware ? vertex.m : undefined;
    return vertex;
}

Multipoint meetingPoints(const Geometry& a, const Geometry& b) {
    std::vector<const Path*> paths = pathsOf(a);
    const std::size_t own = paths.size();
    std::ranges::copy(pathsOf(b), std::back_inserter(paths));
    const CoordinateGrid& grid = a.spatialReference().grid();
    const auto nodes = nodesOf(paths, {grid.xyTolerance, grid.xyResolution});
    Places taken;
    forEachMutualNode(nodes, own, [&](std::size_t, const Node& node) {
        if (isOverlap(node)) {
            taken.insert(node.position);
        }
    });
    Multipoint points = emptyLike<Multipoint>(a.traits());
    points.zAware = a.traits().zAware || b.traits().zAware;
    points.mAware = a.traits().mAware || b.traits().mAware;
    forEachMutualNode(nodes, own, [&](std::size_t path, const Node& node) {
        if (!taken.insert(node.position).second) {
            return;
        }
        const Vertex first = vertexOf(*paths[path], node.segment, node.ratio, a.traits());
        const Vertex second = vertexOf(*paths[node.otherPath], node.otherSegment, node.otherRatio, b.traits());
        points.vertices.push_back({node.position.x, node.position.y, std::isnan(first.z) ? second.z : first.z,
                                   std::isnan(first.m) ? second.m : first.m});
    });
    return points;
}

void requireSharedDimension(const Geometry& a, const Geometry& b, ResultDimension dimension) {
    const int wanted = static_cast<int>(dimension);
    for (const Geometry* operand : {&a, &b}) {
        if (dimensionOf(*operand) < wanted) {
            throw PlatformError(fmt::format("The intersection can't have {}: an operand is a {}.",
                                            wanted == 1 ? "lines" : "areas", nameOf(operand->kind())));
        }
    }
}

Geometry intersectionPoints(const Geometry& a, const Geometry& b) {
    if (dimensionOf(a) == 0) {
        return pointsBy(true, a, b);
    }
    if (dimensionOf(b) == 0) {
        return pointsBy(true, b, a);
    }
    if (dimensionOf(a) == 1 && dimensionOf(b) == 1) {
        return meetingPoints(a, b);
    }
    const Geometry* const given[] = {&a, &b};
    Operands operands(given);
    return pointsOf(*operands.overlaid(OverlayKind::intersection), operands);
}

Multipoint unionOfPoints(std::span<const Geometry* const> operands) {
    Multipoint result = asMultipoint(*operands.front());
    for (const Geometry* operand : operands.subspan(1)) {
        result.zAware = result.zAware || operand->traits().zAware;
        result.mAware = result.mAware || operand->traits().mAware;
        std::ranges::copy(asMultipoint(*operand).vertices, std::back_inserter(result.vertices));
    }
    return simplified(result);
}

void requireOneDimension(std::span<const Geometry* const> operands) {
    for (const Geometry* operand : operands) {
        if (dimensionOf(*operand) != dimensionOf(*operands.front())) {
            throw PlatformError(fmt::format("A {} and a {} can't be united.", nameOf(operands.front()->kind()),
                                            nameOf(operand->kind())));
        }
    }
}

GeosGeometryPtr united(const Operands& operands, std::size_t count) {
    if (count == 2) {
        return operands.overlaid(OverlayKind::unite);
    }
    std::vector<GeosGeometryPtr> parts;
    for (std::size_t i = 0; i < count; ++i) {
        parts.push_back(operands.geos(i));
    }
    return unionOfAll(*collect(std::move(parts), GEOS_GEOMETRYCOLLECTION), operands.resolution());
}

Geometry unionOf(std::span<const Geometry* const> given) {
    for (const Geometry* operand : given) {
        requireUsableCoordinates(*operand, "union");
    }
    requireOneDimension(given);
    if (dimensionOf(*given.front()) == 0) {
        return unionOfPoints(given);
    }
    Operands operands(given);
    return shapeOf(*united(operands, given.size()), dimensionOf(*given.front()), operands);
}

} // namespace

Geometry intersection(const Geometry& a, const Geometry& b, ResultDimension dimension) {
    requireUsableCoordinates(a, "intersection");
    requireUsableCoordinates(b, "intersection");
    requireSharedDimension(a, b, dimension);
    if (dimension == ResultDimension::points) {
        return intersectionPoints(a, b);
    }
    const Geometry* const given[] = {&a, &b};
    Operands operands(given);
    return shapeOf(*operands.overlaid(OverlayKind::intersection), static_cast<int>(dimension), operands);
}

Geometry unionOf(const Geometry& a, const Geometry& b) {
    const Geometry* const given[] = {&a, &b};
    return unionOf(given);
}

Geometry unionOf(std::span<const Geometry> operands) {
    if (operands.empty()) {
        throw PlatformError("The union of no geometry can't be found; at least one is needed.");
    }
    std::vector<const Geometry*> given;
    std::ranges::transform(operands, std::back_inserter(given), [](const Geometry& one) { return &one; });
    return unionOf(given);
}

Geometry difference(const Geometry& a, const Geometry& b) {
    requireUsableCoordinates(a, "difference");
    requireUsableCoordinates(b, "difference");
    if (dimensionOf(a) == 0) {
        return pointsBy(false, a, b);
    }
    if (dimensionOf(b) < dimensionOf(a)) {
        return simplified(a);
    }
    const Geometry* const given[] = {&a, &b};
    Operands operands(given);
    return shapeOf(*operands.overlaid(OverlayKind::difference), dimensionOf(a), operands);
}

} // namespace qz
