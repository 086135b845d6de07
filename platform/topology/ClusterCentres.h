#pragma once

#include <cmath>
#include <cstddef>
#include <optional>
#include <vector>

#include "platform/geometry/XYHash.h"

namespace qz {

// Places that stand for all within a distance of them. Looked up through square cells.
class ClusterCentres {
public:
    explicit ClusterCentres(double distance) : distance_(distance) {}

    // The centre nearest to p and no farther than the distance; of equally near ones the first given.
    [[nodiscard]] std::optional<XY> nearest(XY p) const;
    void add(XY centre);

private:
    static constexpr std::size_t none = static_cast<std::size_t>(-1);
    // So wide that the surroundings of a place are in one cell as a rule, and that centres, which are farther apart
    // than the distance, are few in a cell.
    static constexpr double distancesPerCell = 8;

    struct Centre {
        XY position;
        std::size_t nextInCell;
    };

    [[nodiscard]] XY cellOf(XY p) const noexcept {
        const double width = distancesPerCell * distance_;
        return {std::floor(p.x / width), std::floor(p.y / width)};
    }
    void look(XY cell, XY p, std::size_t& best, double& bestSquared) const;

    double distance_;
    std::vector<Centre> centres_;
    PlaceNumbers cells_;
    std::vector<std::size_t> lastInCell_;
};

} // namespace qz
