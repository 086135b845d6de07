#pragma once

#include <span>
#include <vector>

#include "platform/geometry/Path.h"

namespace qz {

// Raw material of offsets and buffers: curves beside a line before anything is taken away where they run too near to
// other stretches of it.

enum class ParallelRole {
    parallel, // beside a segment of the line
    corner,   // an arc about a vertex at which the line turns away
    inside    // nearer to the line than the distance: the way across an inner corner, an arc turned inside out
};

struct ParallelCurve {
    Path path;
    std::vector<ParallelRole> roles; // one a segment
};

// The curve at that distance (above 0) to the right of the line, in its direction and closed when it is. Straight
// segments stay straight, arcs keep their centre; an arc with a smaller radius than the distance is turned inside out
// where its centre is to the right. Outer corners are arcs about the vertex; at inner corners neighbours end where they
// cross, or are joined straight when they don't. A vertex has the z and m of the one it is beside. Segments without
// length count for nothing; a line of no others gives an empty curve. O(n).
//   the line is to the left of every segment that is not `inside`, at the distance where nothing else is nearer
[[nodiscard]] ParallelCurve parallelOnRight(const Path& line, double distance);

// All that may bound the area within the distance of lines: both sides of each, in the order of the lines, and half
// circles around their ends, a circle around a line without length.
//   the lines are to the left of every segment that is not `inside`
struct SurroundingCurves {
    std::vector<ParallelCurve> curves;
    std::vector<bool> isOnRight; // of each curve: beside its line, on the right of it
};
[[nodiscard]] SurroundingCurves curvesAround(std::span<const Path> lines, double distance);

} // namespace qz
