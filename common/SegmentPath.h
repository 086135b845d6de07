#pragma once

#include <cstddef>

#include "platform/geometry/SubCurve.h"

namespace qz {

// One segment of a path as a path of its own, with its arc, z and m.
[[nodiscard]] inline Path segmentPath(const Path& path, std::size_t segment) {
    return pathBetween(path, {{0, segment, 0}, path.vertex(segment)}, {{0, segment + 1, 0}, path.vertex(segment + 1)});
}

} // namespace qz
