#include "platform/geometry/Cut.h"

#include <cmath>
#include <deque>
#include <iterator>

#include "platform/geometry/Faces.h"
#include "platform/geometry/PlanarEdges.h"
#include "platform/geometry/PolygonAssembly.h"
#include "platform/geometry/Simplify.h"

namespace qz {

namespace {

using EdgeCounts = std::unordered_map<DirectedEdge, int, DirectedEdgeHash>;

double lengthOf(const DirectedEdge& edge) {
    return std::hypot(edge.to.x - edge.from.x, edge.to.y - edge.from.y);
}

EdgeCounts countEdges(std::span<const Path> paths) {
    EdgeCounts counts;
    forEachEdge(paths, [&counts](const DirectedEdge& edge) { ++counts[edge]; });
    return counts;
}

// The planar graph of the rings and of the line, with the sides of each.
class CutGraph {
public:
    CutGraph(std::span<const Path> rings, std::span<const Path> line)
        : ringEdges_(countEdges(rings)), lineEdges_(countEdges(line)), graph_(uniqueEdges(rings, line)) {
        findInside();
    }

    // Of the faces inside the polygon those left, or those not left of the line.
    [[nodiscard]] std::vector<bool> chosen(bool left) const {
        std::vector<bool> result(graph_.faces().size());
        for (std::size_t face = 0; face < result.size(); ++face) {
            result[face] = isInside_[face] && (leftLength(face) > 0) == left;
        }
        return result;
    }

    [[nodiscard]] std::vector<FaceGraph::Face> unionOf(const std::vector<bool>& faces) const {
        return graph_.unionOf(faces);
    }

private:
    static int countIn(const EdgeCounts& counts, const DirectedEdge& edge) {
        const auto found = counts.find(edge);
        return found == counts.end() ? 0 : found->second;
    }

    static std::vector<DirectedEdge> uniqueEdges(std::span<const Path> rings, std::span<const Path> line) {
        std::vector<DirectedEdge> edges;
        EdgeCounts known;
        const auto add = [&](const DirectedEdge& edge) {
            if (!(edge.from == edge.to) && !known.contains(edge.reversed()) && known.emplace(edge, 1).second) {
                edges.push_back(edge);
            }
        };
        forEachEdge(rings, add);
        forEachEdge(line, add);
        return edges;
    }

    [[nodiscard]] bool isOnRing(const DirectedEdge& edge) const {
        return ringEdges_.contains(edge) || ringEdges_.contains(edge.reversed());
    }

    // Length of the rings that have the face on the right less that which has it on its left; nothing without any.
    // Where rounding lays two rings together a single edge would not tell.
    [[nodiscard]] std::optional<double> ringLength(std::size_t face) const {
        std::optional<double> sum;
        forEachEdge(graph_.faces()[face], [&](const DirectedEdge& edge) {
            if (isOnRing(edge)) {
                sum = sum.value_or(0) +
                      lengthOf(edge) * (countIn(ringEdges_, edge) - countIn(ringEdges_, edge.reversed()));
            }
        });
        return sum;
    }

    // The interior of a polygon is to the right of its rings; faces that have no edge of a ring are as their
    // neighbours.
    void findInside() {
        const std::size_t count = graph_.faces().size();
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
            forEachEdge(graph_.faces()[face], [&](const DirectedEdge& edge) {
                const auto beyond = graph_.rightOf(edge.reversed());
                if (beyond && !isKnown[*beyond]) {
                    isKnown[*beyond] = true;
                    isInside_[*beyond] = isInside_[face];
                    pending.push_back(*beyond);
                }
            });
        }
    }

    // Length of the line that has the face on its left less that which has it on its right; stretches along the
    // boundary don't cut.
    [[nodiscard]] double leftLength(std::size_t face) const {
        double sum = 0;
        forEachEdge(graph_.faces()[face], [&](const DirectedEdge& edge) {
            if (!isOnRing(edge)) {
                sum += lengthOf(edge) * (countIn(lineEdges_, edge.reversed()) - countIn(lineEdges_, edge));
            }
        });
        return sum;
    }

    EdgeCounts ringEdges_;
    EdgeCounts lineEdges_;
    FaceGraph graph_;
    std::vector<bool> isInside_;
};

void requireFinite(const Geometry& geometry) {
    forEachVertex(geometry, [](const Vertex& vertex) {
        if (!isFinite(vertex.xy())) {
            throw PlatformError("The polygon can't be cut: the coordinate (" + std::to_string(vertex.x) + ", " +
                                std::to_string(vertex.y) + ") is not finite.");
        }
    });
}

GeometryTraits traitsOf(const Polygon& polygon, const Polyline& line) {
    GeometryTraits traits = polygon;
    traits.zAware = traits.zAware || line.zAware;
    traits.mAware = traits.mAware || line.mAware;
    return traits;
}

} // namespace

std::optional<CutPieces> cut(const Polygon& polygon, const Polyline& line) {
    const Geometry cutter(line);
    requireFinite(polygon);
    requireFinite(cutter);
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
    return pieces;
}

} // namespace qz
