#pragma once

#include <vector>

#include "platform/geometry/Noding.h"

namespace qz {

// Paths with vertices wherever they meet themselves or each other. Rounding a crossing bends the segments
// there, which may make them meet anew, so that this is repeated until nothing is found; after noding by iteration in
// JTS (M. Davis). Where that does not end, which happens to lines that are one but for rounding, the vertices are moved
// to the cells of a grid near the precision of the numbers. When that does not end either, which it should for straight
// segments, a PlatformError says where paths still meet.
struct NodedPaths {
    std::vector<Path> paths;
    std::vector<std::vector<Node>> nodes; // of each path, at its vertices
};
[[nodiscard]] NodedPaths fullyNoded(std::vector<Path> paths, const ContactTolerance& tolerance = {});

} // namespace qz
