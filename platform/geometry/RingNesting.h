#pragma once

#include <cstddef>
#include <limits>
#include <optional>
#include <span>
#include <vector>

#include "platform/geometry/Path.h"

namespace qz {

// In the place of the number of a surrounding ring where there is none.
constexpr std::size_t noRing = std::numeric_limits<std::size_t>::max();

struct RingPlace {
    std::size_t surrounding = noRing; // the number of the smallest ring around
    std::size_t depth = 0;            // how many are around
};

// The place of each ring in the others; nothing when a ring meets itself or another, even in one point. For rings that
// `canBeSwept`, in any direction.
// O(n log n) for n vertices, however their envelopes overlap: a line sweeps over all of them and compares neighbours
// only, until two of them meet (M. I. Shamos & D. Hoey, "Geometric intersection problems", 1976). Exact.
[[nodiscard]] std::optional<std::vector<RingPlace>> ringPlaces(std::span<const Path* const> rings);

// Closed, without arcs, and no segment without length.
[[nodiscard]] bool canBeSwept(const Path& ring);

} // namespace qz
