#pragma once

#include <vector>

#include "platform/geometry/Path.h"

namespace qz {

// Joins paths end to end wherever exactly two ends meet. Each result has the direction of the first of its paths, the
// results come in the order of those; a closed path is left as it is unless it was joined from several.
[[nodiscard]] std::vector<Path> mergedPaths(std::vector<Path> paths);

} // namespace qz
