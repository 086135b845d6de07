#pragma once

#include <vector>

#include "platform/geometry/Noding.h"

namespace qz {

// Paths with vertices wherever they meet themselves or each other. Rounding a crossing bends the segments
// there, which may make them meet anew, so that this is repeated until nothing is found; after noding by iteration in
// JTS (M. Davis).
struct NodedPaths {
    std::vector<Path> paths;
    std::vector<std::vector<Node>> nodes; // of each path, at its vertices
};
[[nodiscard]] NodedPaths fullyNoded(std::vector<Path> paths, const ContactTolerance& tolerance = {});

} // namespace qz
