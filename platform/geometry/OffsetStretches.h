#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "platform/geometry/Curve.h"
#include "platform/geometry/ParallelCurve.h"

namespace qz {

// A stretch of a parallel curve between two nodes of all curves.
struct OffsetStretch {
    std::size_t curve = 0;
    std::size_t segment = 0;
    double from = 0; // ratios along the segment
    double to = 1;
    XY start; // the same bits as the end of the stretch that leads there
    XY end;
};

// The stretches that are not nearer to the source than the distance: the boundary of the area within it, when the
// curves hold both sides of every line and the caps of the open ones. In the order of the curves, each place once in
// one direction. O(n log n) for sources whose parts don't all lie equally near.
[[nodiscard]] std::vector<OffsetStretch> outerStretches(std::span<const ParallelCurve> curves, const Curve& source,
                                                        double distance);

// Of stretches that run over each other, in the same or the opposite direction, the first.
[[nodiscard]] std::vector<OffsetStretch> withoutWaysBack(std::vector<OffsetStretch> stretches,
                                                         std::span<const ParallelCurve> curves);

// Chains of stretches, each beginning where the one before it ends; open ones where no stretch leads to the first.
// Where several go on, the one next in the curve is taken, else the first. Open chains come first, each kind in the
// order of its first stretches.
using StretchChain = std::vector<OffsetStretch>;
[[nodiscard]] std::vector<StretchChain> chained(std::span<const OffsetStretch> stretches);

// The start of a stretch, with the z and m of its curve there.
[[nodiscard]] Vertex startOf(const OffsetStretch& stretch, std::span<const ParallelCurve> curves);
// Continues `target`, which ends at the start of the stretch.
void append(Path& target, const OffsetStretch& stretch, std::span<const ParallelCurve> curves);
[[nodiscard]] Path chainPath(const StretchChain& chain, std::span<const ParallelCurve> curves);

} // namespace qz
