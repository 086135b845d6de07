#include "platform/topology/ClusterCentres.h"

#include "platform/geometry/Vectors.h"

namespace qz {

std::optional<XY> ClusterCentres::nearest(XY p) const {
    std::optional<std::size_t> best;
    double bestSquared = distance_ * distance_;
    const auto see = [&](std::size_t number) {
        const XY offset = centres_[number] - p;
        const double squared = dot(offset, offset);
        if (squared < bestSquared || (squared == bestSquared && (!best || number < *best))) {
            best = number;
            bestSquared = squared;
        }
    };
    const XY low = centres_.cellOf(p - XY{distance_, distance_});
    const XY high = centres_.cellOf(p + XY{distance_, distance_});
    for (double x = low.x; x <= high.x; ++x) {
        for (double y = low.y; y <= high.y; ++y) {
            centres_.forEachIn({x, y}, see);
        }
    }
    return best ? std::optional(centres_[*best]) : std::nullopt;
}

} // namespace qz
