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

// For each ring the number of the smallest one that surrounds it, or `noRing`; nothing when a ring meets itself or
// another, even in one point. For rings that `canBeSwept`, in any direction.
//   surrounding ring of i == k: ring i is inside of ring k, and of no ring that is inside of ring k
// O(n log n) for n vertices, however their envelopes overlap: a line sweeps over all of them and compares neighbours
// only, until two of them meet (M. I. Shamos & D. Hoey, "Geometric intersection problems", 1976). Exact.
[[nodiscard]] std::optional<std::vector<std::size_t>> surroundingRings(std::span<const Path* const> rings);

// Closed, without arcs, and no segment without length.
[[nodiscard]] bool canBeSwept(const Path& ring);

} // namespace qz
