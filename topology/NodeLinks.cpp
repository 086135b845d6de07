#include "topology/NodeLinks.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <tuple>

#include "common/NodeKey.h"
#include "platform/geometry/Curve.h"
#include "platform/geometry/EnvelopeIndex.h"
#include "platform/geometry/SegmentIntersection.h"
#include "platform/geometry/Vectors.h"
#include "topology/EdgeChains.h"

namespace qz {

namespace {

// Two ends to be joined by a straight segment.
struct Link {
    EdgeEnd from;
    EdgeEnd to;
};

class Ends {
public:
    explicit Ends(std::span<const Polyline> edges) : edges_(edges) {}

    [[nodiscard]] const Path& edge(EdgeEnd end) const noexcept { return edges_[edgeOf(end)].paths.front(); }
    [[nodiscard]] XY place(EdgeEnd end) const noexcept { return qz::placeOf(edge(end), end); }
    [[nodiscard]] Vertex vertex(EdgeEnd end) const { return isReversed(end) ? edge(end).back() : edge(end).front(); }
    [[nodiscard]] bool precedes(EdgeEnd a, EdgeEnd b) const noexcept {
        const XY p = place(a);
        const XY q = place(b);
        return std::tie(p.x, p.y, a) < std::tie(q.x, q.y, b);
    }
    [[nodiscard]] bool areAtOnePlace(std::span<const EdgeEnd> ends) const noexcept {
        return std::ranges::all_of(ends, [&](EdgeEnd end) { return place(end) == place(ends.front()); });
    }
    [[nodiscard]] std::vector<EdgeEnd> sorted(std::span<const EdgeEnd> ends) const {
        std::vector<EdgeEnd> result(ends.begin(), ends.end());
        std::ranges::sort(result, [&](EdgeEnd a, EdgeEnd b) { return precedes(a, b); });
        return result;
    }

private:
    std::span<const Polyline> edges_;
};

EndPlaces endPlaces(std::span<const Polyline> edges, const NodeIndex& nodes) {
    const Ends ends(edges);
    EndPlaces places{std::vector(nodes.nodeOf.size(), Groups::none), 0};
    for (std::size_t node = 0; node < nodes.endsAt.size(); ++node) {
        const std::span<const EdgeEnd> members = nodes.endsAt[node];
        if (ends.areAtOnePlace(members)) {
            const auto place = static_cast<std::uint32_t>(places.count++);
            std::ranges::for_each(members, [&](EdgeEnd end) { places.placeOf[end] = place; });
            continue;
        }
        const std::vector<EdgeEnd> sorted = ends.sorted(members);
        for (std::size_t i = 0; i < sorted.size(); ++i) {
            places.count += i == 0 || !(ends.place(sorted[i]) == ends.place(sorted[i - 1])) ? 1 : 0;
            places.placeOf[sorted[i]] = static_cast<std::uint32_t>(places.count - 1);
        }
    }
    return places;
}

// Joins the coordinates of each node.
class NodeLinker {
public:
    NodeLinker(std::span<const Polyline> edges, const NodeIndex& nodes, const EndPlaces& places)
        : ends_(edges), nodes_(nodes), places_(places), endsAt_(places.placeOf, places.count),
          cluster_(places.count, 0) {}

    void link(std::span<const EdgeEnd> endsOfNode, std::vector<Link>& links) {
        const std::vector<EdgeEnd> ends = ends_.sorted(endsOfNode);
        beginClusters();
        std::ranges::for_each(ends, [&](EdgeEnd end) { findCluster(end); });
        // Along ascending x, so that links of one node don't cross each other.
        for (std::size_t i = 1; i < ends.size(); ++i) {
            if (rootOf(ends[i - 1]) != rootOf(ends[i])) {
                parents_[rootOf(ends[i])] = rootOf(ends[i - 1]);
                links.push_back({ends[i - 1], ends[i]});
            }
        }
    }

private:
    // Clusters of nodes done before have smaller numbers.
    void beginClusters() {
        firstCluster_ += parents_.size();
        parents_.clear();
    }

    [[nodiscard]] bool isInCluster(std::uint32_t place) const { return cluster_[place] >= firstCluster_; }

    [[nodiscard]] std::size_t rootOf(EdgeEnd end) const {
        std::size_t root = cluster_[places_.placeOf[end]] - firstCluster_;
        while (parents_[root] != root) {
            root = parents_[root];
        }
        return root;
    }

    [[nodiscard]] Envelope neighbourhoodOf(XY place) const {
        const XY key = nodeKey(place, nodes_.decimals);
        const double reach = 1.5 * nodeWidth(nodes_.decimals);
        return {key.x - reach, key.y - reach, key.x + reach, key.y + reach};
    }

    // All that edges of the neighbourhood join to the end.
    void findCluster(EdgeEnd end) {
        if (isInCluster(places_.placeOf[end])) {
            return;
        }
        const std::size_t cluster = firstCluster_ + parents_.size();
        parents_.push_back(parents_.size());
        const Envelope neighbourhood = neighbourhoodOf(ends_.place(end));
        std::vector<std::uint32_t> pending{places_.placeOf[end]};
        cluster_[pending.front()] = cluster;
        while (!pending.empty()) {
            const std::uint32_t place = pending.back();
            pending.pop_back();
            for (const EdgeEnd leaving : endsAt_[place]) {
                const std::uint32_t next = places_.placeOf[otherEnd(leaving)];
                if (!isInCluster(next) && neighbourhood.contains(ends_.place(otherEnd(leaving))) &&
                    neighbourhood.contains(ends_.edge(leaving).envelope())) {
                    cluster_[next] = cluster;
                    pending.push_back(next);
                }
            }
        }
    }

    Ends ends_;
    const NodeIndex& nodes_;
    const EndPlaces& places_;
    Groups endsAt_;
    std::vector<std::size_t> cluster_; // by place
    std::size_t firstCluster_ = 1;     // of the node at hand
    std::vector<std::size_t> parents_; // of its clusters
};

std::vector<Link> linksOfNodes(std::span<const Polyline> edges, const NodeIndex& nodes, const EndPlaces& places) {
    std::vector<Link> links;
    if (places.count == nodes.endsAt.size()) {
        return links;
    }
    const Ends ends(edges);
    NodeLinker linker(edges, nodes, places);
    for (std::size_t node = 0; node < nodes.endsAt.size(); ++node) {
        if (!ends.areAtOnePlace(nodes.endsAt[node])) {
            linker.link(nodes.endsAt[node], links);
        }
    }
    return links;
}

bool leavesDistance(const Ends& ends, std::span<const EdgeEnd> chain, double limit) {
    const XY start = ends.place(chain.front());
    return std::ranges::any_of(chain, [&](EdgeEnd halfEdge) {
        return std::ranges::any_of(ends.edge(halfEdge).xy(), [&](XY p) { return distance(start, p) >= limit; });
    });
}

void addOutlineLinks(std::span<const Polyline> edges, const NodeIndex& nodes, double closingDistance,
                     std::vector<Link>& links) {
    const Ends ends(edges);
    const Groups chains = QZ_RemovePseudoInDicOutDic(nodes);
    const auto isFree = [&](EdgeEnd end) { return nodes.endsAt[nodes.nodeOf[end]].size() == 1; };
    for (std::size_t i = 0; i < chains.size(); ++i) {
        const std::span<const EdgeEnd> chain = std::as_const(chains)[i];
        const EdgeEnd start = chain.front();
        const EdgeEnd end = otherEnd(chain.back());
        if (isFree(start) && isFree(end) && distance(ends.place(start), ends.place(end)) < closingDistance &&
            leavesDistance(ends, chain, closingDistance)) {
            links.push_back({end, start});
        }
    }
}

NodingSegment segmentOf(const Ends& ends, const Link& link) {
    return {ends.place(link.from), ends.place(link.to)};
}

// Whether they meet elsewhere than at the ends of the link.
bool meetInside(const NodingSegment& link, const NodingSegment& segment, Contacts& contacts) {
    findContacts(link, segment, {}, contacts);
    return !contacts.stretches.empty() ||
           std::ranges::any_of(contacts.points, [](const Contact& c) { return c.ratioA != 0 && c.ratioA != 1; });
}

bool startsOrEndsAt(const NodeIndex& nodes, std::size_t edge, const Link& link) {
    const auto isEnd = [&](std::uint32_t node) {
        return node == nodes.nodeOf[link.from] || node == nodes.nodeOf[link.to];
    };
    return isEnd(nodes.nodeOf[2 * edge]) || isEnd(nodes.nodeOf[2 * edge + 1]);
}

// Calls `see(NodingSegment)` for every segment of the edge that has a length.
template <typename See> void forEachNodingSegment(const Polyline& edge, See see) {
    for (const Path& path : edge.paths) {
        forEachSegment(path, [&](std::size_t, const CurveSegment& segment) {
            if (segment.circle() || !(segment.start() == segment.end())) {
                see(NodingSegment{segment.start(), segment.end(), segment.circle() ? &*segment.circle() : nullptr});
            }
        });
    }
}

// Edges that end where a link does may go beyond it.
void removeCrossingLinks(std::span<const Polyline> edges, const NodeIndex& nodes, std::vector<Link>& links) {
    if (links.empty()) {
        return;
    }
    const Ends ends(edges);
    std::vector<Envelope> extents;
    std::ranges::transform(links, std::back_inserter(extents),
                           [&](const Link& link) { return segmentOf(ends, link).envelope(); });
    const PackedEnvelopeTree tree(extents);
    std::vector<bool> crosses(links.size());
    Contacts contacts;
    for (std::size_t edge = 0; edge < edges.size(); ++edge) {
        forEachNodingSegment(edges[edge], [&](const NodingSegment& segment) {
            tree.query(segment.envelope(), [&](std::size_t i) {
                crosses[i] = crosses[i] || (!startsOrEndsAt(nodes, edge, links[i]) &&
                                            meetInside(segmentOf(ends, links[i]), segment, contacts));
            });
        });
    }
    std::size_t number = 0;
    std::erase_if(links, [&](const Link&) { return crosses[number++]; });
}

} // namespace

LinkedNetwork::LinkedNetwork(std::span<const Polyline> edges, const NodeIndex& nodes, double closingDistance)
    : edges_(edges), places_(endPlaces(edges, nodes)) {
    std::vector<Link> links = linksOfNodes(edges, nodes, places_);
    if (closingDistance > 0) {
        addOutlineLinks(edges, nodes, closingDistance, links);
    }
    removeCrossingLinks(edges, nodes, links);
    const Ends ends(edges);
    for (const Link& link : links) {
        links_.emplace_back(std::vector{ends.vertex(link.from), ends.vertex(link.to)});
        places_.placeOf.push_back(places_.placeOf[link.from]);
        places_.placeOf.push_back(places_.placeOf[link.to]);
    }
}

} // namespace qz
