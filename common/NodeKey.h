#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/data/FeatureClass.h"
#include "platform/geometry/XYHash.h"

namespace qz {

// Two line ends are one node when their coordinates, written with so many decimals, are equal; no distance counts.
// The key of the node is the place that the written coordinates name, so that
//   nodeKey(p, d) == nodeKey(q, d)   exactly when the texts of p and q with d decimals are equal
// The texts are those of formatUngrouped: 15 significant digits, halves away from zero, no sign at zero; the number
// format of the user's system plays no part. Throws PlatformError with the place for coordinates that are not finite.
[[nodiscard]] XY nodeKey(XY place, std::int16_t decimals);

// Of coordinates that are to count with all their digits.
inline constexpr double finestTolerance = 1e-15;

// The decimals of node keys in a class: those of its tolerance; as many as there can be on platforms before 9.2.
[[nodiscard]] std::int16_t nodeDecimals(const FeatureClass& featureClass);

// The place that the texts of the coordinates name when they are rounded to so many decimals, halves to even, and
// written with at most 15 significant digits: two points repeat each other when theirs are equal. Throws PlatformError
// like nodeKey.
[[nodiscard]] XY duplicateKey(XY place, std::int16_t decimals);

// The extent of the places with one key, each way.
[[nodiscard]] double nodeWidth(std::int16_t decimals);

// Numbers nodes from 0 on, in the order in which they first come.
class NodeNumbers {
public:
    explicit NodeNumbers(std::int16_t decimals) : decimals_(decimals) {}

    std::size_t add(XY place) { return keys_.add(nodeKey(place, decimals_)); }
    [[nodiscard]] std::size_t size() const noexcept { return keys_.size(); }
    // The place that its key names.
    [[nodiscard]] XY operator[](std::size_t node) const noexcept { return keys_[node]; }
    void reserve(std::size_t nodes) { keys_.reserve(nodes); }

private:
    std::int16_t decimals_;
    PlaceNumbers keys_;
};

} // namespace qz
