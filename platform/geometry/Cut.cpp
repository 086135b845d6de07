#include "platform/geometry/Cut.h"

#include <algorithm>
#include <cmath>
#include <deque>
#include <iterator>

#include <fmt/format.h>

#include "platform/geometry/CoordinateLimits.h"
#include "platform/geometry/Faces.h"
#include "platform/geometry/Measures.h"
#include "platform/geometry/PlanarEdges.h"
#include "platform/geometry/PolygonAssembly.h"
#include "platform/geometry/Simplify.h"
#include "platform/geometry/Vectors.h"

namespace qz {

namespace {

double lengthOf(const DirectedEdge& edge) {
    return distance(edge.from, edge.to);
}

// How often each half-edge comes in the paths, whose edges are added.
std::vector<int> countsIn(std::span<const Path> paths, HalfEdges& edges) {
    std::vector<int> counts;
    forEachEdge(paths, [&](const DirectedEdge& edge) {
        const std::size_t halfEdge = edges.add(edge);
        counts.resize(std::max(counts.size(), edges.size()));
        ++counts[halfEdge];
    });
    return counts;
}

// The planar graph of the rings and of the line, with the sides of each.
class CutGraph {
public:
    CutGraph(std::span<const Path> rings, std::span<const Path> line)
        : ringCounts_(countsIn(rings, edges_)), lineCounts_(countsIn(line, edges_)), graph_(edges_) {
        ringCounts_.resize(edges_.size());
        lineCounts_.resize(edges_.size());
        findInside();
    }

    // Of the faces inside the polygon those left, or those not left of the line.
    [[nodiscard]] std::vector<bool> chosen(bool left) const {
        std::vector<bool> result(graph_.faceCount());
        for (std::size_t face = 0; face < result.size(); ++face) {
            result[face] = isInside_[face] && (leftLength(face) > 0) == left;
        }
        return result;
    }

    [[nodiscard]] std::vector<FaceGraph::Face> unionOf(const std::vector<bool>& faces) const {
        return graph_.unionOf(faces);
    }

private:
    // How many more of the counted edges have the direction of the half-edge than the other.
    static int surplus(const std::vector<int>& counts, std::size_t halfEdge) {
        return counts[halfEdge] - counts[HalfEdges::reversed(halfEdge)];
    }

    [[nodiscard]] bool isOnRing(std::size_t halfEdge) const {
        return ringCounts_[halfEdge] + ringCounts_[HalfEdges::reversed(halfEdge)] > 0;
    }

    // Length of the rings that have the face on the right less that which has it on its left; nothing without any.
    // Where rounding lays two rings together a single edge would not tell.
    [[nodiscard]] std::optional<double> ringLength(std::size_t face) const {
        std::optional<double> sum;
        for (const std::size_t halfEdge : graph_.edgesOf(face)) {
            if (isOnRing(halfEdge)) {
                sum = sum.value_or(0) + lengthOf(edges_[halfEdge]) * surplus(ringCounts_, halfEdge);
            }
        }
        return sum;
    }

    // The interior of a polygon is to the right of its rings; faces that have no edge of a ring are as their
    // neighbours.
    void findInside() {
        const std::size_t count = graph_.faceCount();
        isInside_.resize(count);
        std::vector<bool> isKnown(count);
        std::deque<std::size_t> pending;
        for (std::size_t face = 0; face < count; ++face) {
            if (const auto length = ringLength(face)) {
                isKnown[face] = true;
                isInside_[face] = *length > 0;
                pending.push_back(face);
            }
        }
        for (; !pending.empty(); pending.pop_front()) {
            const std::size_t face = pending.front();
            for (const std::size_t halfEdge : graph_.edgesOf(face)) {
                const auto beyond = graph_.rightOf(HalfEdges::reversed(halfEdge));
                if (beyond && !isKnown[*beyond]) {
                    isKnown[*beyond] = true;
                    isInside_[*beyond] = isInside_[face];
                    pending.push_back(*beyond);
                }
            }
        }
    }

    // Length of the line that has the face on its left less that which has it on its right; stretches along the
    // boundary don't cut.
    [[nodiscard]] double leftLength(std::size_t face) const {
        double sum = 0;
        for (const std::size_t halfEdge : graph_.edgesOf(face)) {
            if (!isOnRing(halfEdge) && surplus(lineCounts_, halfEdge) != 0) {
                sum -= lengthOf(edges_[halfEdge]) * surplus(lineCounts_, halfEdge);
            }
        }
        return sum;
    }

    HalfEdges edges_;
    std::vector<int> ringCounts_; // by half-edge
    std::vector<int> lineCounts_;
    FaceGraph graph_;
    std::vector<bool> isInside_;
};

GeometryTraits traitsOf(const Polygon& polygon, const Polyline& line) {
    GeometryTraits traits = polygon;
    traits.zAware = traits.zAware || line.zAware;
    traits.mAware = traits.mAware || line.mAware;
    return traits;
}

// What slivers of less than the resolution along the outline and both sides of the cut may take away.
double largestLoss(const Polygon& source, const Polyline& line) {
    const double resolution = source.spatialReference.grid().xyResolution;
    return resolution * (perimeter(source) + 2 * length(line)) + 1e-9 * area(source);
}

void requireBalance(const Polygon& source, const Polyline& line, const CutPieces& pieces) {
    const double lost = area(source) - area(pieces.left) - area(pieces.right);
    if (!(std::abs(lost) <= largestLoss(source, line))) {
        throw PlatformError(
            fmt::format("The polygon can't be cut: its pieces have {} less area than its {}.", lost, area(source)));
    }
}

} // namespace

std::optional<CutPieces> cut(const Polygon& polygon, const Polyline& line) {
    requireUsableCoordinates(polygon, "cut");
    requireUsableCoordinates(line.paths, "cut");
    Geometry cutter(line);
    clearTraces(cutter.as<Polyline>().paths, polygon.spatialReference.grid().xyResolution);
    const Geometry source(simplified(polygon));
    if (!source.envelope().intersects(cutter.envelope())) {
        return std::nullopt;
    }
    const Geometry* const operands[] = {&source, &cutter};
    const CurveSources sources(operands);
    std::vector<Path> paths = sources.stroked(0).as<Polygon>().rings;
    const std::size_t ringCount = paths.size();
    std::ranges::copy(sources.stroked(1).as<Polyline>().paths, std::back_inserter(paths));
    paths = fullyNoded(std::move(paths)).paths;
    const std::span<const Path> all(paths);
    const CutGraph graph(all.first(ringCount), all.subspan(ringCount));
    const GeometryTraits traits = traitsOf(polygon, line);
    CutPieces pieces{assemblePolygon(graph.unionOf(graph.chosen(true)), sources, traits),
                     assemblePolygon(graph.unionOf(graph.chosen(false)), sources, traits)};
    if (pieces.left.isEmpty() || pieces.right.isEmpty()) {
        return std::nullopt;
    }
    requireBalance(source.as<Polygon>(), line, pieces);
    return pieces;
}

} // namespace qz
