#include "platform/geometry/Simplify.h"

#include <algorithm>
#include <deque>
#include <iterator>
#include <limits>
#include <optional>
#include <unordered_map>
#include <unordered_set>

#include "platform/geometry/CoordinateLimits.h"
#include "platform/geometry/Curve.h"
#include "platform/geometry/Faces.h"
#include "platform/geometry/PathMerging.h"
#include "platform/geometry/PlanarEdges.h"
#include "platform/geometry/PolygonAssembly.h"
#include "platform/geometry/RingNesting.h"

namespace qz {

namespace {

// Edges that are there an odd number of times, in the order of their first one: where an even number of segments runs,
// both sides are inside or both outside.
HalfEdges oddEdges(std::span<const Path> paths) {
    HalfEdges edges;
    std::vector<bool> isOdd;
    forEachEdge(paths, [&](const DirectedEdge& edge) {
        const std::size_t number = edges.add(edge) / 2;
        isOdd.resize(edges.size() / 2);
        isOdd[number] = !isOdd[number];
    });
    HalfEdges odd;
    for (std::size_t i = 0; i < isOdd.size(); ++i) {
        if (isOdd[i]) {
            odd.add(edges[2 * i]);
        }
    }
    return odd;
}

// How many edges have to be crossed at least to come to each face from outside.
std::vector<std::size_t> depthsOf(const FaceGraph& graph) {
    constexpr std::size_t unknown = std::numeric_limits<std::size_t>::max();
    std::vector<std::size_t> depths(graph.faceCount(), unknown);
    std::deque<std::size_t> pending;
    for (std::size_t face = 0; face < depths.size(); ++face) {
        const auto isOuter = [&](std::size_t halfEdge) { return !graph.rightOf(HalfEdges::reversed(halfEdge)); };
        if (std::ranges::any_of(graph.edgesOf(face), isOuter)) {
            depths[face] = 1;
            pending.push_back(face);
        }
    }
    for (; !pending.empty(); pending.pop_front()) {
        const std::size_t face = pending.front();
        for (const std::size_t halfEdge : graph.edgesOf(face)) {
            const auto beyond = graph.rightOf(HalfEdges::reversed(halfEdge));
            if (beyond && depths[*beyond] == unknown) {
                depths[*beyond] = depths[face] + 1;
                pending.push_back(*beyond);
            }
        }
    }
    return depths;
}

std::vector<FaceGraph::Face> enclosedArea(std::span<const Path> paths) {
    const FaceGraph graph(oddEdges(paths));
    const std::vector<std::size_t> depths = depthsOf(graph);
    std::vector<bool> isInside;
    for (const std::size_t depth : depths) {
        isInside.push_back(depth % 2 == 1);
    }
    return graph.unionOf(isInside);
}

// The same for rings that meet nowhere; nothing for others. From outside inward they bound areas and holes in turn.
std::optional<std::vector<FaceGraph::Face>> areaOfRingsApart(std::span<const Path* const> rings) {
    const bool canSweep = std::ranges::all_of(rings, [](const Path* ring) { return canBeSwept(*ring); });
    const auto places = canSweep ? ringPlaces(rings) : std::nullopt;
    if (!places) {
        return std::nullopt;
    }
    const auto isHole = [&places](std::size_t ring) { return (*places)[ring].depth % 2 == 1; };
    std::vector<FaceGraph::Face> parts;
    std::vector<std::size_t> partOf(rings.size());
    for (std::size_t i = 0; i < rings.size(); ++i) {
        if (!isHole(i)) {
            partOf[i] = parts.size();
            parts.push_back({*rings[i]});
        }
    }
    for (std::size_t i = 0; i < rings.size(); ++i) {
        if (isHole(i)) {
            parts[partOf[(*places)[i].surrounding]].push_back(*rings[i]);
        }
    }
    return parts;
}

using Places = std::unordered_set<XY, XYHash>;

Places placesOf(const NodedPaths& noded) {
    Places places;
    for (const std::vector<Node>& nodes : noded.nodes) {
        for (const Node& node : nodes) {
            places.insert(node.position);
        }
    }
    return places;
}

// The path broken at its vertices there, without segments of no length.
std::vector<Path> piecesOf(const Path& path, const Places& places) {
    std::vector<Path> pieces;
    forEachSegment(path, [&](std::size_t index, const CurveSegment& segment) {
        const bool atStart = !pieces.empty() && pieces.back().segmentCount() == 0;
        if (pieces.empty() || (places.contains(segment.start()) && !atStart)) {
            pieces.emplace_back().addVertex(path.vertex(index));
        }
        if (!segment.circle() && segment.start() == segment.end()) {
            return;
        }
        appendStretch(pieces.back(), segment, 0, 1, path.vertex(index + 1));
    });
    std::erase_if(pieces, [](const Path& piece) { return piece.segmentCount() == 0; });
    return pieces;
}

std::vector<Path> piecesOf(const std::vector<Path>& paths, const Places& places) {
    std::vector<Path> pieces;
    for (const Path& path : paths) {
        std::ranges::move(piecesOf(path, places), std::back_inserter(pieces));
    }
    return pieces;
}

// Of single segments with the same ends, in either direction.
bool coverEachOther(const Path& a, const Path& b, double tolerance) {
    const CurveSegment one(a, 0);
    const CurveSegment other(b, 0);
    if (!one.circle() && !other.circle()) {
        return true;
    }
    const XY middle = one.at(0.5);
    return std::sqrt(other.squaredDistance(middle, other.nearestRatio(middle))) <= tolerance;
}

// Of pieces that cover each other the first. They have been cut at each other's vertices, so that they are single
// segments.
std::vector<Path> withoutCopies(std::vector<Path> pieces, double tolerance) {
    std::unordered_map<DirectedEdge, std::vector<std::size_t>, DirectedEdgeHash> known;
    std::vector<Path> kept;
    for (Path& piece : pieces) {
        const DirectedEdge ends{piece.xy().front(), piece.xy().back()};
        std::vector<std::size_t>& sameEnds = known[known.contains(ends.reversed()) ? ends.reversed() : ends];
        const bool isCopy = piece.segmentCount() == 1 && std::ranges::any_of(sameEnds, [&](std::size_t other) {
                                return coverEachOther(kept[other], piece, tolerance);
                            });
        if (isCopy) {
            continue;
        }
        if (piece.segmentCount() == 1) {
            sameEnds.push_back(kept.size());
        }
        kept.push_back(std::move(piece));
    }
    return kept;
}

Polyline withPaths(const Polyline& polyline, std::vector<Path> paths) {
    Polyline result;
    static_cast<GeometryTraits&>(result) = polyline;
    result.paths = std::move(paths);
    return result;
}

bool sameValue(double a, double b) noexcept {
    return a == b || (std::isnan(a) && std::isnan(b));
}

} // namespace

Polygon simplified(const Polygon& polygon) {
    requireUsableCoordinates(polygon.rings, "simplified polygon");
    const double resolution = polygon.spatialReference.grid().xyResolution;
    if (hasTraces(polygon.rings, resolution)) {
        Polygon cleared = polygon;
        clearTraces(cleared.rings, resolution);
        return simplified(cleared);
    }
    if (isSimple(polygon)) {
        return polygon;
    }
    const Geometry original(polygon);
    const Geometry* const operands[] = {&original};
    const CurveSources sources(operands);
    if (auto parts = areaOfRingsApart(pathsOf(sources.stroked(0)))) {
        return assemblePolygon(std::move(*parts), sources, polygon);
    }
    const NodedPaths noded = fullyNoded(sources.stroked(0).as<Polygon>().rings);
    return assemblePolygon(enclosedArea(noded.paths), sources, polygon);
}

Polyline simplifiedPlanar(const Polyline& polyline) {
    requireUsableCoordinates(polyline.paths, "simplified line");
    const double resolution = polyline.spatialReference.grid().xyResolution;
    const NodedPaths noded = fullyNoded(polyline.paths, {0, resolution});
    std::vector<Path> pieces = withoutCopies(piecesOf(noded.paths, placesOf(noded)), resolution);
    return withPaths(polyline, mergedPaths(std::move(pieces)));
}

Polyline simplifiedAlong(const Polyline& polyline) {
    requireUsableCoordinates(polyline.paths, "simplified line");
    return withPaths(polyline, mergedPaths(piecesOf(polyline.paths, {})));
}

Multipoint simplified(const Multipoint& multipoint) {
    Multipoint result = multipoint;
    result.vertices.clear();
    std::unordered_map<XY, std::vector<std::size_t>, XYHash> known;
    for (const Vertex& vertex : multipoint.vertices) {
        std::vector<std::size_t>& here = known[vertex.xy()];
        const bool isCopy = std::ranges::any_of(here, [&](std::size_t index) {
            const Vertex& other = result.vertices[index];
            return (!multipoint.zAware || sameValue(vertex.z, other.z)) &&
                   (!multipoint.mAware || sameValue(vertex.m, other.m));
        });
        if (!isCopy) {
            here.push_back(result.vertices.size());
            result.vertices.push_back(vertex);
        }
    }
    return result;
}

Geometry simplified(const Geometry& geometry) {
    if (const Multipoint* multipoint = geometry.getIf<Multipoint>()) {
        return simplified(*multipoint);
    }
    if (const Polyline* polyline = geometry.getIf<Polyline>()) {
        return polyline->mAware ? simplifiedAlong(*polyline) : simplifiedPlanar(*polyline);
    }
    if (const Polygon* polygon = geometry.getIf<Polygon>()) {
        return simplified(*polygon);
    }
    return geometry;
}

} // namespace qz
