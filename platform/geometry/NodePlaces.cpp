#include "platform/geometry/NodePlaces.h"

#include <algorithm>

#include "platform/geometry/Vectors.h"

namespace qz {

std::size_t NodePlaces::firstNear(XY cell, XY p) const {
    const auto known = cells_.find(cell);
    std::size_t first = none;
    for (std::size_t i = known ? lastInCell_[*known] : none; i != none; i = places_[i].nextInCell) {
        const XY offset = places_[i].position - p;
        if (std::hypot(offset.x, offset.y) <= distance_) {
            first = i;
        }
    }
    return first;
}

std::size_t NodePlaces::add(XY p) {
    const XY cell = cellOf(p);
    std::size_t found = firstNear(cell, p);
    for (const double dx : {-distance_, distance_}) {
        for (const double dy : {-distance_, distance_}) {
            const XY corner = cellOf(p + XY{dx, dy});
            found = corner == cell ? found : std::min(found, firstNear(corner, p));
        }
    }
    if (found != none) {
        return found;
    }
    const std::size_t number = cells_.add(cell);
    if (number == lastInCell_.size()) {
        lastInCell_.push_back(none);
    }
    places_.push_back({p, lastInCell_[number]});
    lastInCell_[number] = places_.size() - 1;
    return places_.size() - 1;
}

} // namespace qz
