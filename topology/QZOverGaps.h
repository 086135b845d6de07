#pragma once

#include <memory>
#include <vector>

#include "topology/EdgeCover.h"

namespace qz {

// What can be wrong with ground that polygons should cover once.
enum class CoverFault { overlap, gap };

// The graph of one class, or of two, with the features whose extents meet the envelope; both are in the units of the
// class. Throws PlatformError for classes that can't have one.
[[nodiscard]] TopologyGraph QZ_GetTopoGraph(FeatureClass& featureClass, FeatureClass* second, const Envelope& envelope,
                                            double tolerance);

// The edges that have ground with the fault to a side, ascending.
[[nodiscard]] std::vector<std::size_t> QZ_GetOverGaps(const EdgeCover& cover, CoverFault fault);

// The ground with the fault, bounded by such edges: where more polygons lie over each other it is divided by their
// borders. The outside is no gap.
[[nodiscard]] std::vector<Polygon> faultyGround(const EdgeCover& cover, CoverFault fault);

// The ground that polygons enclose without covering it, one polygon for each connected piece. They are simple, and in
// one spatial reference. Pieces less wide than the resolution are left out. O(n log n): borders that two neighbours
// share are found by their coordinates, and only polygons with another kind of border are looked at closely.
[[nodiscard]] std::vector<Polygon> gapsBetween(const std::vector<Polygon>& polygons);

} // namespace qz
