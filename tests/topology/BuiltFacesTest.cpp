// The faces of random networks beside what polygonizing finds.

#include <algorithm>
#include <numbers>
#include <random>

#include "platform/geometry/Measures.h"
#include "platform/geometry/PlanarEdges.h"
#include "tests/topology/FacesOracle.h"

namespace qz::test {
namespace {

class RandomNetwork {
public:
    explicit RandomNetwork(unsigned seed) : random_(seed) {}

    // Lines across each other, whose loose ends stay, closed rings, some in one another, and rings that touch.
    [[nodiscard]] HalfEdges noded() {
        std::vector<Path> paths;
        const int lines = 3 + static_cast<int>(random_() % 15);
        for (int i = 0; i < lines; ++i) {
            paths.emplace_back(std::vector{place(), place()});
        }
        for (int i = 0; i < 4; ++i) {
            const double radius = 1 + coordinate() / 8;
            const Path outer = ring(place(), radius, 5);
            paths.push_back(outer);
            paths.push_back(ring({outer.xy().front().x + radius / 2, outer.xy().front().y}, radius / 2, 4));
            paths.push_back(ring(outer.xy()[5], radius, 4));
        }
        const NodedPaths noded = fullyNoded(std::move(paths));
        HalfEdges pieces;
        forEachEdge(noded.paths, [&](const DirectedEdge& edge) { pieces.add(edge); });
        return pieces;
    }

    void shuffle(std::vector<Polyline>& edges) {
        std::shuffle(edges.begin(), edges.end(), random_);
        for (Polyline& edge : edges) {
            if (random_() % 2 == 0) {
                edge.paths.front().reverse();
            }
        }
    }

private:
    double coordinate() { return std::uniform_real_distribution<double>(0, 100)(random_); }
    XY place() { return {coordinate(), coordinate()}; }

    // From its westernmost vertex on; the easternmost is the one at `half`.
    static Path ring(XY west, double radius, int half) {
        Path path;
        for (int i = 0; i <= 2 * half; ++i) {
            const double angle = std::numbers::pi * (i % (2 * half)) / half;
            path.addVertex({west.x + radius * (1 - std::cos(angle)), west.y + radius * std::sin(angle)});
        }
        return path;
    }

    std::mt19937 random_;
};

constexpr std::int16_t fine = 9; // decimals that tell all places of a random network apart

TEST(BuiltFaces, AreThoseOfPolygonizing) {
    std::size_t faces = 0;
    for (unsigned seed = 0; seed < 300; ++seed) {
        SCOPED_TRACE(seed);
        RandomNetwork network(seed);
        const HalfEdges pieces = network.noded();
        for (std::vector<Polyline> edges : {edgesOf(pieces), joinedEdges(pieces)}) {
            network.shuffle(edges);
            const std::vector<Polygon> polygons = QZ_PolylineToPolygon(edges, QZ_GetNodesDic(edges, fine), 0);
            expectFaces(polygons, pieces);
            faces += polygons.size();
        }
        if (HasFailure()) {
            return;
        }
    }
    EXPECT_GT(faces, 15000U);
}

double areaOf(const std::vector<Polygon>& polygons) {
    double sum = 0;
    std::ranges::for_each(polygons, [&](const Polygon& polygon) { sum += area(polygon); });
    return sum;
}

// Nodes wide enough to take in several places join some faces' corners, but no face is lost.
TEST(BuiltFaces, CoverTheSameGroundWithCoarseNodes) {
    for (unsigned seed = 0; seed < 300; ++seed) {
        SCOPED_TRACE(seed);
        const std::vector<Polyline> edges = joinedEdges(RandomNetwork(seed).noded());
        const std::vector<Polygon> exact = QZ_PolylineToPolygon(edges, QZ_GetNodesDic(edges, fine), 0);
        const std::vector<Polygon> coarse = QZ_PolylineToPolygon(edges, QZ_GetNodesDic(edges, 1), 0);
        EXPECT_GE(coarse.size(), exact.size());
        EXPECT_GT(areaOf(coarse), areaOf(exact) - 1e-3);
        EXPECT_LT(areaOf(coarse), 1.001 * areaOf(exact) + 1);
    }
}

} // namespace
} // namespace qz::test
