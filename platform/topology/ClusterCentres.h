#pragma once

#include <optional>

#include "platform/geometry/PlaceGrid.h"

namespace qz {

// Places that stand for all within a distance of them.
class ClusterCentres {
public:
    explicit ClusterCentres(double distance) : distance_(distance), centres_(distancesPerCell * distance) {}

    // The centre nearest to p and no farther than the distance; of equally near ones the first given.
    [[nodiscard]] std::optional<XY> nearest(XY p) const;
    void add(XY centre) { centres_.add(centre); }

private:
    // So wide that the surroundings of a place are in one cell as a rule, and that centres, which are farther apart
    // than the distance, are few in a cell.
    static constexpr double distancesPerCell = 8;

    double distance_;
    PlaceGrid centres_;
};

} // namespace qz
