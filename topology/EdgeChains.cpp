#include "topology/EdgeChains.h"

#include <algorithm>
#include <optional>

namespace qz {

namespace {

// The half-edge that goes on where the given one arrives, when it arrives at a pseudo node.
std::optional<EdgeEnd> continuation(const NodeIndex& nodes, EdgeEnd halfEdge) {
    const EdgeEnd arrival = otherEnd(halfEdge);
    const std::span<const EdgeEnd> ends = nodes.endsAt[nodes.nodeOf[arrival]];
    if (ends.size() != 2 || edgeOf(ends[0]) == edgeOf(ends[1])) {
        return std::nullopt;
    }
    return ends[0] == arrival ? ends[1] : ends[0];
}

// From the half-edge on, itself included, to the end or, in a ring, once around.
std::vector<EdgeEnd> runFrom(const NodeIndex& nodes, EdgeEnd halfEdge) {
    std::vector<EdgeEnd> run{halfEdge};
    for (auto next = continuation(nodes, halfEdge); next && *next != halfEdge; next = continuation(nodes, *next)) {
        run.push_back(*next);
    }
    return run;
}

std::vector<EdgeEnd> chainThrough(const NodeIndex& nodes, EdgeEnd halfEdge) {
    std::vector<EdgeEnd> ahead = runFrom(nodes, halfEdge);
    if (continuation(nodes, ahead.back()) == halfEdge) {
        return ahead;
    }
    std::vector<EdgeEnd> chain = runFrom(nodes, otherEnd(halfEdge));
    std::ranges::reverse(chain);
    std::ranges::transform(chain, chain.begin(), otherEnd);
    chain.insert(chain.end(), ahead.begin() + 1, ahead.end());
    return chain;
}

} // namespace

Groups QZ_RemovePseudoInDicOutDic(const NodeIndex& nodes) {
    Groups chains;
    std::vector<bool> isJoined(nodes.nodeOf.size() / 2);
    for (std::size_t edge = 0; edge < isJoined.size(); ++edge) {
        const auto start = static_cast<EdgeEnd>(2 * edge);
        if (isJoined[edge] || nodes.nodeOf[start] == Groups::none) {
            continue;
        }
        const std::vector<EdgeEnd> chain = chainThrough(nodes, start);
        std::ranges::for_each(chain, [&](EdgeEnd halfEdge) { isJoined[edgeOf(halfEdge)] = true; });
        chains.append(chain);
    }
    return chains;
}

} // namespace qz
