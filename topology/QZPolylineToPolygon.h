#pragma once

#include <span>
#include <vector>

#include "topology/EdgeNodes.h"
#include "topology/FaceProgress.h"

namespace qz {

// Every bounded face of the network that the edges make, once, with the islands in it as holes; none is left out for
// being equal in area to another one. Edges are lines of one part that meet at their ends only, in one node by their
// keys; lines that cross without a node make faces of their own, which may overlap.
//
//   - Lines with a free end bound nothing, nor does what becomes one without them, nor a line with one face on both
//     sides. Only a chain of lines whose own two free ends are less than `dFuzzy` apart is closed.
//   - Where the ends at a node differ, a straight segment joins them; edges and rings smaller than a node count.
//   - A face narrower than the resolution is left out.
//
// Polygons run along the edges, with their arcs, heights and measures, in the order of the smallest edge of their
// exterior rings; at a node the first edge of a ring says the height. Awareness: what any edge has; reference: that of
// the first. O(n log n).
[[nodiscard]] std::vector<Polygon> QZ_PolylineToPolygon(std::span<const Polyline> edges, const NodeIndex& nodes,
                                                        double dFuzzy, const FaceProgress& progress = {});

} // namespace qz
