#pragma once

#include <vector>

#include "platform/geometry/Groups.h"
#include "platform/topology/TopologyGraph.h"

namespace qz {

// Edges of a graph meet bit for bit: of the keys of their nodes.
inline constexpr std::int16_t graphDecimals = 14;

// The polygons that cover the ground on either side of each edge of a graph: those that the edge bounds, and those it
// lies inside of. The graph must outlive it.
//
// Whatever crosses an edge leaves the polygons that it bounds on the one hand and enters those on the other, so that
// the cover of one face tells that of the next; it spreads from the outside, which nothing covers, and from the face
// around each separate part of the graph. O(n log n), and the sum of the covers of the faces.
class EdgeCover {
public:
    explicit EdgeCover(const TopologyGraph& graph);

    // Whether every edge tells the same of its two sides. Where curves meet so flatly that the order of the edges
    // around a node can't be told from coordinates, faces may be traced wrongly, which shows in this.
    [[nodiscard]] bool isConsistent() const noexcept { return isConsistent_; }
    // Whether it has one face to its left and another to its right. Edges along which a polygon doubles back have not.
    [[nodiscard]] bool dividesFaces(std::size_t edge) const noexcept { return faceOf_[2 * edge] != Groups::none; }
    // Ascending.
    [[nodiscard]] TopologyGraph::Features leftOf(std::size_t edge) const { return coverOf(2 * edge + 1); }
    [[nodiscard]] TopologyGraph::Features rightOf(std::size_t edge) const { return coverOf(2 * edge); }
    // The edges' own geometry, by number.
    [[nodiscard]] const std::vector<Polyline>& edges() const noexcept { return edges_; }

private:
    [[nodiscard]] TopologyGraph::Features coverOf(std::size_t halfEdge) const;

    std::vector<Polyline> edges_;
    std::vector<std::uint32_t> faceOf_;              // to the right of each half-edge; none for one of no face
    std::vector<std::vector<std::uint32_t>> covers_; // by face
    bool isConsistent_ = true;
};

} // namespace qz
