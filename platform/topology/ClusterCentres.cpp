#include "platform/topology/ClusterCentres.h"

#include "platform/geometry/Vectors.h"

namespace qz {

void ClusterCentres::look(XY cell, XY p, std::size_t& best, double& bestSquared) const {
    const auto known = cells_.find(cell);
    for (std::size_t i = known ? lastInCell_[*known] : none; i != none; i = centres_[i].nextInCell) {
        const XY offset = centres_[i].position - p;
        const double squared = dot(offset, offset);
        if (squared < bestSquared || (squared == bestSquared && i < best)) {
            best = i;
            bestSquared = squared;
        }
    }
}

std::optional<XY> ClusterCentres::nearest(XY p) const {
    std::size_t best = none;
    double bestSquared = distance_ * distance_;
    const XY low = cellOf(p - XY{distance_, distance_});
    const XY high = cellOf(p + XY{distance_, distance_});
    for (double x = low.x; x <= high.x; ++x) {
        for (double y = low.y; y <= high.y; ++y) {
            look({x, y}, p, best, bestSquared);
        }
    }
    return best == none ? std::nullopt : std::optional(centres_[best].position);
}

void ClusterCentres::add(XY centre) {
    const std::size_t cell = cells_.add(cellOf(centre));
    if (cell == lastInCell_.size()) {
        lastInCell_.push_back(none);
    }
    centres_.push_back({centre, lastInCell_[cell]});
    lastInCell_[cell] = centres_.size() - 1;
}

} // namespace qz
