#include "topology/QZPolylineToPolygon.h"

#include <algorithm>

#include "topology/FaceAssembly.h"

namespace qz {

namespace {

GeometryTraits commonTraits(std::span<const Polyline> edges) {
    GeometryTraits traits;
    if (!edges.empty()) {
        traits.spatialReference = edges.front().spatialReference;
    }
    traits.zAware = std::ranges::any_of(edges, &Polyline::zAware);
    traits.mAware = std::ranges::any_of(edges, &Polyline::mAware);
    return traits;
}

} // namespace

std::vector<Polygon> QZ_PolylineToPolygon(std::span<const Polyline> edges, const NodeIndex& nodes, double dFuzzy,
                                          const FaceProgress& progress) {
    const LinkedNetwork network(edges, nodes, dFuzzy);
    const FaceTrace trace(network, progress.tracing);
    FaceAssembly assembly(network, trace, commonTraits(edges));
    assembly.placeOutlines(progress.cleaning);
    return std::move(assembly).polygons();
}

} // namespace qz
