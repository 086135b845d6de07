#include "topology/EdgeNodes.h"

#include <algorithm>

#include "common/NodeKey.h"

namespace qz {

namespace {

bool hasLength(const Polyline& edge) {
    if (edge.isEmpty()) {
        return false;
    }
    const Path& path = edge.paths.front();
    return path.hasArcs() || std::ranges::any_of(path.xy(), [&](XY p) { return !(p == path.xy().front()); });
}

} // namespace

GeometryTraits commonTraits(std::span<const Polyline> edges) {
    GeometryTraits traits;
    if (!edges.empty()) {
        traits.spatialReference = edges.front().spatialReference;
    }
    traits.zAware = std::ranges::any_of(edges, &Polyline::zAware);
    traits.mAware = std::ranges::any_of(edges, &Polyline::mAware);
    return traits;
}

void appendEdge(Path& target, const Path& edge, bool reversed) {
    if (!target.isEmpty() && !(target.xy().back() == placeOf(edge, reversed ? 1 : 0))) {
        target.addVertex(reversed ? edge.back() : edge.front());
    }
    if (!reversed) {
        target.append(edge);
        return;
    }
    Path opposite = edge;
    opposite.reverse();
    target.append(opposite);
}

NodeIndex QZ_GetNodesDic(std::span<const Polyline> edges, std::int16_t decimals) {
    NodeIndex index{.decimals = decimals, .nodeOf = std::vector(2 * edges.size(), Groups::none), .endsAt = {}};
    NodeNumbers nodes(decimals);
    nodes.reserve(edges.size() / 2);
    for (EdgeEnd end = 0; end < index.nodeOf.size(); ++end) {
        const Polyline& edge = edges[edgeOf(end)];
        if (hasLength(edge)) {
            index.nodeOf[end] = static_cast<std::uint32_t>(nodes.add(placeOf(edge.paths.front(), end)));
        }
    }
    index.endsAt = Groups(index.nodeOf, nodes.size());
    return index;
}

} // namespace qz
