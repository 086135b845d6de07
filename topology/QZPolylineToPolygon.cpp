#include "topology/QZPolylineToPolygon.h"

#include "topology/FaceAssembly.h"

namespace qz {

std::vector<Polygon> QZ_PolylineToPolygon(std::span<const Polyline> edges, const NodeIndex& nodes, double dFuzzy,
                                          const FaceProgress& progress) {
    const LinkedNetwork network(edges, nodes, dFuzzy);
    const FaceTrace trace(network, progress.tracing);
    FaceAssembly assembly(network, trace, commonTraits(edges));
    assembly.placeOutlines(progress.cleaning);
    return std::move(assembly).polygons();
}

} // namespace qz
