#pragma once

#include <span>
#include <vector>

#include "platform/geometry/Coordinates.h"

namespace qz {

// The right-angled ring nearest to one, both given by their vertices with the first not repeated. Every segment counts
// as running along the first one or across it, whichever it does more; a run of the same kind becomes one side, on the
// line to which the integral of the squared distances of the run's points is least. Vertices inside a run stay where
// they lie in order along the side. Nothing when fewer than four sides are left. O(n).
//   the direction of the first segment is kept; z and m go along
[[nodiscard]] std::vector<Vertex> rightAngled(std::span<const Vertex> ring);

} // namespace qz
