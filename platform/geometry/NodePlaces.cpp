#include "platform/geometry/NodePlaces.h"

#include "platform/geometry/Vectors.h"

namespace qz {

std::optional<std::size_t> NodePlaces::firstNear(XY p) const {
    std::optional<std::size_t> first;
    const auto see = [&](std::size_t number) {
        if ((!first || number < *first) && distance(places_[number], p) <= distance_) {
            first = number;
        }
    };
    const XY cell = places_.cellOf(p);
    places_.forEachIn(cell, see);
    for (const double dx : {-distance_, distance_}) {
        for (const double dy : {-distance_, distance_}) {
            if (const XY corner = places_.cellOf(p + XY{dx, dy}); !(corner == cell)) {
                places_.forEachIn(corner, see);
            }
        }
    }
    return first;
}

std::size_t NodePlaces::add(XY p) {
    const auto found = firstNear(p);
    return found ? *found : places_.add(p);
}

} // namespace qz
