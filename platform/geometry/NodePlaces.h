#pragma once

#include <optional>

#include "platform/geometry/PlaceGrid.h"

namespace qz {

// One place for all that lie within a distance of each other: the one that was given first.
class NodePlaces {
public:
    explicit NodePlaces(double distance) : distance_(distance), places_(distancesPerCell * distance) {}

    // The number of the first place no farther than the distance from p; p itself becomes a new one when there is none.
    std::size_t add(XY p);
    [[nodiscard]] XY operator[](std::size_t number) const noexcept { return places_[number]; }
    [[nodiscard]] std::size_t size() const noexcept { return places_.size(); }

private:
    // So wide that the four corners around a place are in one cell as a rule.
    static constexpr double distancesPerCell = 64;

    [[nodiscard]] std::optional<std::size_t> firstNear(XY p) const;

    double distance_;
    PlaceGrid places_;
};

} // namespace qz
