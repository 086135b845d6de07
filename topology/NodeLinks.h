#pragma once

#include <span>
#include <vector>

#include "topology/EdgeNodes.h"

namespace qz {

// The different coordinates at which edges end, by number.
struct EndPlaces {
    std::vector<std::uint32_t> placeOf; // by end; none for an edge without length
    std::size_t count = 0;
};
// The edges joined at their ends into a network whose ends meet bit for bit: where the coordinates of one node differ,
// straight links are added, and so is one for a loose outline, a chain of lines that leaves the closing distance and
// whose two free ends come back within it.
//
// Coordinates of one node that are joined already, by edges that stay in the node and its eight neighbours, need no
// link: edges shorter than a node then bound what they bound. A link that would cross an edge which ends elsewhere is
// left out.
class LinkedNetwork {
public:
    LinkedNetwork(std::span<const Polyline> edges, const NodeIndex& nodes, double closingDistance);

    // The links come after the edges.
    [[nodiscard]] std::size_t edgeCount() const noexcept { return edges_.size() + links_.size(); }
    [[nodiscard]] const Path& edge(std::size_t number) const noexcept {
        return number < edges_.size() ? edges_[number].paths.front() : links_[number - edges_.size()];
    }
    [[nodiscard]] std::size_t placeCount() const noexcept { return places_.count; }
    // The place that a half-edge leaves; none for an edge without length.
    [[nodiscard]] std::uint32_t placeOf(EdgeEnd end) const noexcept { return places_.placeOf[end]; }
    [[nodiscard]] std::span<const std::uint32_t> places() const noexcept { return places_.placeOf; }

private:
    std::span<const Polyline> edges_;
    std::vector<Path> links_;
    EndPlaces places_;
};

} // namespace qz
