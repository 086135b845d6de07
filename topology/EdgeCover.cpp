#include "topology/EdgeCover.h"

#include <algorithm>
#include <iterator>

#include "topology/FaceAssembly.h"

namespace qz {

namespace {

using Cover = std::vector<std::uint32_t>;

std::vector<Polyline> geometryOfEdges(const TopologyGraph& graph) {
    std::vector<Polyline> edges;
    edges.reserve(graph.edgeCount());
    for (std::size_t edge = 0; edge < graph.edgeCount(); ++edge) {
        edges.push_back(graph.geometryOf(edge));
    }
    return edges;
}

std::vector<std::uint32_t> courseOfHalfEdges(const FaceTrace& trace, std::size_t halfEdges) {
    std::vector<std::uint32_t> courseOf(halfEdges, Groups::none);
    for (std::uint32_t course = 0; course < trace.courses().size(); ++course) {
        for (const std::uint32_t ring : trace.courses()[course]) {
            for (const EdgeEnd halfEdge : trace.rings()[ring]) {
                courseOf[halfEdge] = course;
            }
        }
    }
    return courseOf;
}

// Carries covers from face to face. A face is known by the course around it.
class CoverSpread {
public:
    CoverSpread(const TopologyGraph& graph, const FaceTrace& trace, const std::vector<std::uint32_t>& faceOf)
        : graph_(graph), trace_(trace), faceOf_(faceOf), isCovered_(trace.courses().size()),
          covers_(trace.courses().size()), partsIn_(trace.courses().size()) {}

    void spread(const FaceAssembly& assembly) {
        assembly.forEachOutline([this](std::uint32_t outline, std::uint32_t exterior) {
            if (exterior == Groups::none) {
                reach(faceOfRing(outline), {});
            } else {
                partsIn_[faceOfRing(exterior)].push_back(faceOfRing(outline));
            }
        });
        while (!pending_.empty()) {
            const std::uint32_t face = pending_.back();
            pending_.pop_back();
            spreadFrom(face);
        }
    }

    // Every crossing of an edge leads to the cover that the face behind it has.
    [[nodiscard]] bool isConsistent() const {
        for (EdgeEnd halfEdge = 0; halfEdge < faceOf_.size(); ++halfEdge) {
            const std::uint32_t face = faceOf_[halfEdge];
            if (face != Groups::none && coverAcross(halfEdge, covers_[face]) != covers_[faceOf_[otherEnd(halfEdge)]]) {
                return false;
            }
        }
        return true;
    }

    [[nodiscard]] std::vector<Cover> covers() && { return std::move(covers_); }

private:
    [[nodiscard]] std::uint32_t faceOfRing(std::uint32_t ring) const { return faceOf_[trace_.rings()[ring].front()]; }

    void reach(std::uint32_t face, Cover cover) {
        if (!isCovered_[face]) {
            isCovered_[face] = true;
            covers_[face] = std::move(cover);
            pending_.push_back(face);
        }
    }

    void spreadFrom(std::uint32_t face) {
        for (const std::uint32_t part : partsIn_[face]) {
            reach(part, covers_[face]);
        }
        for (const std::uint32_t ring : trace_.courses()[face]) {
            for (const EdgeEnd halfEdge : trace_.rings()[ring]) {
                const std::uint32_t next = faceOf_[otherEnd(halfEdge)];
                if (!isCovered_[next]) {
                    reach(next, coverAcross(halfEdge, covers_[face]));
                }
            }
        }
    }

    // From the right of a half-edge to its left.
    [[nodiscard]] Cover coverAcross(EdgeEnd halfEdge, const Cover& cover) const {
        const std::size_t edge = edgeOf(halfEdge);
        const TopologyGraph::Features left = graph_.leftOf(edge), right = graph_.rightOf(edge);
        const TopologyGraph::Features ahead = isReversed(halfEdge) ? right : left;
        const TopologyGraph::Features behind = isReversed(halfEdge) ? left : right;
        Cover stays, result;
        std::ranges::set_difference(cover, behind, std::back_inserter(stays));
        std::ranges::set_union(stays, ahead, std::back_inserter(result));
        return result;
    }

    const TopologyGraph& graph_;
    const FaceTrace& trace_;
    const std::vector<std::uint32_t>& faceOf_;
    std::vector<bool> isCovered_;
    std::vector<Cover> covers_;
    std::vector<std::vector<std::uint32_t>> partsIn_; // the outsides of parts of the graph that lie in a face
    std::vector<std::uint32_t> pending_;
};

} // namespace

EdgeCover::EdgeCover(const TopologyGraph& graph) : edges_(geometryOfEdges(graph)) {
    const NodeIndex nodes = QZ_GetNodesDic(edges_, graphDecimals);
    const LinkedNetwork network(edges_, nodes, 0);
    const FaceTrace trace(network, unwatched);
    FaceAssembly assembly(network, trace, commonTraits(edges_));
    assembly.placeOutlines(unwatched);
    faceOf_ = courseOfHalfEdges(trace, 2 * network.edgeCount());
    CoverSpread cover(graph, trace, faceOf_);
    cover.spread(assembly);
    isConsistent_ = cover.isConsistent();
    covers_ = std::move(cover).covers();
}

TopologyGraph::Features EdgeCover::coverOf(std::size_t halfEdge) const {
    const std::uint32_t face = faceOf_[halfEdge];
    return face == Groups::none ? TopologyGraph::Features{} : TopologyGraph::Features(covers_[face]);
}

} // namespace qz
