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

// The decimals of node keys in a class: those of its tolerance; as many as there can be on platforms before 9.2.
[[nodiscard]] std::int16_t nodeDecimals(const FeatureClass& featureClass);

// The extent of the places with one key, each way.
[[nodiscard]] double nodeWidth(std::int16_t decimals);

// Numbers nodes from 0 on, in the order in which they first come.
class NodeNumbers {
public:
    explicit NodeNumbers(std::int16_t decimals) : decimals_(decimals) {}

    std::size_t add(XY place) { return keys_.add(nodeKey(place, decimals_)); }
    [[nodiscard]] std::size_t size() const noexcept { return keys_.size(); }
    void reserve(std::size_t nodes) { keys_.reserve(nodes); }

private:
    std::int16_t decimals_;
    PlaceNumbers keys_;
};

} // namespace qz
