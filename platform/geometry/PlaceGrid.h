#pragma once

#include <cmath>
#include <cstddef>
#include <vector>

#include "platform/geometry/XYHash.h"

namespace qz {

// Places, numbered as they were added, found by the square cell that they lie in.
class PlaceGrid {
public:
    explicit PlaceGrid(double cellWidth) : cellWidth_(cellWidth) {}

    [[nodiscard]] XY operator[](std::size_t number) const noexcept { return places_[number].position; }
    [[nodiscard]] std::size_t size() const noexcept { return places_.size(); }
    // Column and row.
    [[nodiscard]] XY cellOf(XY p) const noexcept {
        return {std::floor(p.x / cellWidth_), std::floor(p.y / cellWidth_)};
    }

    // The number of the new place; one that is there already is there twice then.
    std::size_t add(XY p) {
        const std::size_t cell = cells_.add(cellOf(p));
        if (cell == lastInCell_.size()) {
            lastInCell_.push_back(none);
        }
        places_.push_back({p, lastInCell_[cell]});
        lastInCell_[cell] = places_.size() - 1;
        return places_.size() - 1;
    }

    // Calls `see(number)` for the places in a cell, the last added first.
    template <typename See> void forEachIn(XY cell, See see) const {
        const auto known = cells_.find(cell);
        for (std::size_t i = known ? lastInCell_[*known] : none; i != none; i = places_[i].nextInCell) {
            see(i);
        }
    }

private:
    static constexpr std::size_t none = static_cast<std::size_t>(-1);

    struct Place {
        XY position;
        std::size_t nextInCell;
    };

    double cellWidth_;
    std::vector<Place> places_;
    PlaceNumbers cells_;
    std::vector<std::size_t> lastInCell_; // by the number of the cell
};

} // namespace qz
