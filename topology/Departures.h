#pragma once

#include <span>
#include <vector>

#include "topology/NodeLinks.h"

namespace qz {

// Puts the half-edges that leave one place in counter-clockwise order of their directions there, from east on. Straight
// segments are compared by an exact predicate; arcs, which may start in one direction and part later, by where they
// leave a small circle around the place. Of edges that run along each other at first the one to the right comes first;
// edges that are equal to their ends lie side by side at both ends in the same order seen along one of them.
class DepartureOrder {
public:
    explicit DepartureOrder(const LinkedNetwork& network) : network_(network) {}

    void sort(std::span<EdgeEnd> halfEdges);

private:
    struct Departure {
        XY ahead; // a point in the direction of the half-edge
        EdgeEnd halfEdge;
    };

    [[nodiscard]] double circleAround(std::span<const EdgeEnd> halfEdges) const;
    [[nodiscard]] bool precedes(XY place, const Departure& a, const Departure& b) const;
    [[nodiscard]] bool runsRightOf(EdgeEnd a, EdgeEnd b) const;

    const LinkedNetwork& network_;
    std::vector<Departure> departures_;
};

} // namespace qz
