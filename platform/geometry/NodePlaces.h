#pragma once

#include <cmath>
#include <cstddef>
#include <vector>

#include "platform/geometry/XYHash.h"

namespace qz {

// One place for all that lie within a distance of each other: the one that was given first. Looked up through square
// cells.
class NodePlaces {
public:
    explicit NodePlaces(double distance) : distance_(distance) {}

    // The number of the first place no farther than the distance from p; p itself becomes a new one when there is none.
    std::size_t add(XY p);
    [[nodiscard]] XY operator[](std::size_t number) const noexcept { return places_[number].position; }
    [[nodiscard]] std::size_t size() const noexcept { return places_.size(); }

private:
    static constexpr std::size_t none = static_cast<std::size_t>(-1);
    // So wide that the four corners around a place are in one cell as a rule.
    static constexpr double distancesPerCell = 64;

    struct Place {
        XY position;
        std::size_t nextInCell;
    };

    [[nodiscard]] XY cellOf(XY p) const noexcept {
        const double width = distancesPerCell * distance_;
        return {std::floor(p.x / width), std::floor(p.y / width)};
    }
    [[nodiscard]] std::size_t firstNear(XY cell, XY p) const;

    double distance_;
    std::vector<Place> places_;
    PlaceNumbers cells_;
    std::vector<std::size_t> lastInCell_;
};

} // namespace qz
