// Building the polygons of real layers from their own boundaries. QZ_REAL_LAYERS names a folder with layers.

#include "common/QZPrecision.h"
#include "platform/data/overlay/OverlayClass.h"
#include "platform/geometry/Measures.h"
#include "platform/geometry/PlanarEdges.h"
#include "tests/support/RealData.h"
#include "tests/topology/FacesOracle.h"

namespace qz::test {
namespace {

// Every segment once, as the layer's polygons have them.
HalfEdges boundariesOf(FeatureClass& featureClass) {
    HalfEdges pieces;
    const CursorPtr cursor = featureClass.search({});
    for (FeaturePtr row = cursor->next(); row; row = cursor->next()) {
        if (row->shape()) {
            forEachEdge(row->shape()->as<Polygon>().rings, [&](const DirectedEdge& edge) { pieces.add(edge); });
        }
    }
    return pieces;
}

// Whether the lines meet at their ends only. Boundaries that overlap don't.
bool areNoded(const std::vector<Polyline>& edges) {
    std::vector<const Path*> paths;
    std::ranges::transform(edges, std::back_inserter(paths), [](const Polyline& edge) { return &edge.paths.front(); });
    const std::vector<std::vector<Node>> nodes = nodesOf(paths);
    for (std::size_t i = 0; i < paths.size(); ++i) {
        const std::size_t last = paths[i]->segmentCount();
        const auto isEnd = [&](const Node& node) {
            return node.ratio == 0 && (node.segment == 0 || node.segment == last);
        };
        if (!std::ranges::all_of(nodes[i], isEnd)) {
            return false;
        }
    }
    return true;
}

HalfEdges noded(const HalfEdges& pieces) {
    std::vector<Path> paths;
    for (const Polyline& edge : joinedEdges(pieces)) {
        paths.push_back(edge.paths.front());
    }
    HalfEdges result;
    forEachEdge(fullyNoded(std::move(paths)).paths, [&](const DirectedEdge& edge) { result.add(edge); });
    return result;
}

std::vector<Polygon> builtFrom(const HalfEdges& pieces, const SpatialReference& reference) {
    std::vector<Polyline> edges = joinedEdges(pieces);
    std::ranges::for_each(edges, [&](Polyline& edge) { edge.spatialReference = reference; });
    const std::int16_t decimals = QZ_DecimalsFromTolerance(reference.grid().xyTolerance);
    return QZ_PolylineToPolygon(edges, QZ_GetNodesDic(edges, decimals), 0);
}

double enclosedArea(const HalfEdges& pieces) {
    const FaceGraph graph(pieces);
    double sum = 0;
    for (const FaceGraph::Face& face : graph.unionOf(std::vector<bool>(graph.faceCount(), true))) {
        std::ranges::for_each(face, [&](const Path& ring) { sum += signedArea(ring); });
    }
    return sum;
}

// Boundaries that cross are noded first. That makes slivers, and places which no node key tells apart: nothing enclosed
// is lost, but a bay whose mouth is only open by rounding is closed.
void expectRebuilt(FeatureClass& featureClass) {
    const HalfEdges pieces = boundariesOf(featureClass);
    if (areNoded(joinedEdges(pieces))) {
        const std::vector<Polygon> polygons = builtFrom(pieces, featureClass.spatialReference());
        expectFaces(polygons, pieces);
        std::printf("%zu faces\n", polygons.size());
        return;
    }
    const HalfEdges nodedPieces = noded(pieces);
    const std::vector<Polygon> polygons = builtFrom(nodedPieces, featureClass.spatialReference());
    double covered = 0;
    std::ranges::for_each(polygons, [&](const Polygon& polygon) { covered += area(polygon); });
    const double enclosed = enclosedArea(nodedPieces);
    EXPECT_GT(covered, (1 - 1e-6) * enclosed);
    EXPECT_LT(covered, (1 + 1e-4) * enclosed);
    std::printf("%zu faces, noded, %g off\n", polygons.size(), covered / enclosed - 1);
}

TEST(RealBoundaries, GiveTheirFaces) {
    if (realDataSets().empty()) {
        GTEST_SKIP() << "QZ_REAL_LAYERS names no folder with layers.";
    }
    forEachRealLayer(GeometryKind::polygon, [](FeatureClass& featureClass) {
        std::printf("%s: ", featureClass.schema().name.c_str());
        expectRebuilt(featureClass);
    });
}

} // namespace
} // namespace qz::test
