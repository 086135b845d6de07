#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "platform/geometry/Geometry.h"
#include "platform/geometry/Groups.h"

namespace qz {

// The lines of a network by number. End 2 e of an edge is where it starts, end 2 e + 1 where it ends; the half-edge of
// the same number leaves that end.
using EdgeEnd = std::uint32_t;

[[nodiscard]] constexpr std::size_t edgeOf(EdgeEnd end) noexcept {
    return end / 2;
}
[[nodiscard]] constexpr EdgeEnd otherEnd(EdgeEnd end) noexcept {
    return end ^ 1U;
}
[[nodiscard]] constexpr bool isReversed(EdgeEnd halfEdge) noexcept {
    return halfEdge % 2 != 0;
}
[[nodiscard]] inline XY placeOf(const Path& edge, EdgeEnd end) noexcept {
    return isReversed(end) ? edge.xy().back() : edge.xy().front();
}

// The spatial reference of the first edge, and the awareness of all together.
[[nodiscard]] GeometryTraits commonTraits(std::span<const Polyline> edges);

// Continues the path with an edge, from its end when it is reversed. Where the path ends elsewhere within the same
// node, a straight segment leads to the edge.
void appendEdge(Path& target, const Path& edge, bool reversed);

// Which ends are at which node. Nodes are numbered in the order of the first end there.
struct NodeIndex {
    std::int16_t decimals = 0;         // of the node keys
    std::vector<std::uint32_t> nodeOf; // by end; none for an edge without length
    Groups endsAt;                     // by node, ascending
};

// `edges` are lines of one part; empty ones are left out. `decimals`: from 1 to 14, of the node keys. Throws
// PlatformError for an end that is no place. O(n).
[[nodiscard]] NodeIndex QZ_GetNodesDic(std::span<const Polyline> edges, std::int16_t decimals);

} // namespace qz
