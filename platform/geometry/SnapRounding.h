#pragma once

#include <vector>

#include "platform/geometry/Path.h"

namespace qz {

// Paths without arcs, with all their vertices and crossings moved to the centres of the cells of a square grid, whole
// multiples of `cell`, and every segment led through the centres of those of these cells that it passes. Segments then
// meet at vertices only but for rounding of a crossing into a neighbouring cell; nothing moves by more than a cell. z
// and m are kept, and interpolated at new vertices. After J. D. Hobby, Practical segment intersection with finite
// precision output (1999).
[[nodiscard]] std::vector<Path> snapRounded(const std::vector<Path>& paths, double cell);

} // namespace qz
