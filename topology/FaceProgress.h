#pragma once

#include <cstddef>
#include <functional>

namespace qz {

// Told before each step of a stage how many of how many are done.
using StageProgress = std::function<void(std::size_t done, std::size_t count)>;

inline const StageProgress unwatched = [](std::size_t, std::size_t) {};

// Of building polygons, by edges and by outlines of separate networks.
struct FaceProgress {
    StageProgress tracing = unwatched;
    StageProgress cleaning = unwatched;
};

} // namespace qz
