#pragma once

#include <cstddef>
#include <functional>

namespace qz {

// Told before each step of a stage how many of how many are done.
using StageProgress = std::function<void(std::size_t done, std::size_t count)>;

// Of building polygons, by edges and by outlines of separate networks.
struct FaceProgress {
    StageProgress tracing = [](std::size_t, std::size_t) {};
    StageProgress cleaning = [](std::size_t, std::size_t) {};
};

} // namespace qz
