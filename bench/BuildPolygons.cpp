// Building the faces of a noded network beside GEOS polygonizing the same lines. Grows with the number of lines: blocks
// of bent streets between jittered crossings, every eighth with a building in its yard, and a dead end in every tenth;
// and islands in one large lake.

#include <cmath>
#include <numbers>
#include <random>

#include <benchmark/benchmark.h>

#include "platform/geometry/geos/GeosGeometry.h"
#include "topology/QZPolylineToPolygon.h"

namespace {

using namespace qz;

class TownPlan {
public:
    explicit TownPlan(std::int64_t edgeCount)
        : side_(static_cast<int>(std::sqrt(static_cast<double>(edgeCount) / 2.2))) {
        for (int row = 0; row <= side_; ++row) {
            for (int column = 0; column <= side_; ++column) {
                addBlock(row, column);
            }
        }
    }

    [[nodiscard]] const std::vector<Polyline>& edges() const { return edges_; }

private:
    static constexpr double blockLength = 50;

    [[nodiscard]] static XY crossing(int row, int column) {
        std::mt19937 random(static_cast<unsigned>(row) * 65537U + static_cast<unsigned>(column));
        std::uniform_real_distribution<double> shift(-5, 5);
        const double dx = shift(random);
        return {500000 + blockLength * column + dx, 5500000 + blockLength * row + shift(random)};
    }

    void addBlock(int row, int column) {
        const XY corner = crossing(row, column);
        if (column < side_) {
            add({corner, bend(corner, crossing(row, column + 1)), crossing(row, column + 1)});
        }
        if (row < side_) {
            add({corner, bend(corner, crossing(row + 1, column)), crossing(row + 1, column)});
        }
        if (row < side_ && column < side_ && (row + 3 * column) % 8 == 0) {
            addBuilding({corner.x + 15, corner.y + 15});
        }
        if (row < side_ && column < side_ && (row + column) % 10 == 0) {
            add({corner, {corner.x + 9, corner.y + 10}});
        }
    }

    static XY bend(XY a, XY b) { return {(a.x + b.x) / 2 + 1, (a.y + b.y) / 2 - 1}; }

    void addBuilding(XY at) { add({at, {at.x + 12, at.y}, {at.x + 12, at.y + 8}, {at.x, at.y + 8}, at}); }

    void add(std::vector<XY> course) { edges_.emplace_back().paths.emplace_back(std::move(course)); }

    int side_;
    std::vector<Polyline> edges_;
};

// A lake of as many vertices as it has islands.
std::vector<Polyline> lake(std::int64_t islands) {
    std::vector<Polyline> edges;
    const double side = std::sqrt(static_cast<double>(islands));
    std::vector<XY> shore;
    for (std::int64_t i = 0; i < islands; ++i) {
        const double angle = 2 * std::numbers::pi * static_cast<double>(i) / static_cast<double>(islands);
        const double radius = 15 * side * (1 + 0.1 * std::cos(40 * angle));
        shore.push_back({radius * std::cos(angle), radius * std::sin(angle)});
    }
    shore.push_back(shore.front());
    edges.emplace_back().paths.emplace_back(std::move(shore));
    for (std::int64_t i = 0; i < islands; ++i) {
        const double x = 10 * (static_cast<double>(i % static_cast<std::int64_t>(side)) - side / 2);
        const double y = 10 * (static_cast<double>(i) / side - side / 2);
        edges.emplace_back().paths.emplace_back(std::vector<XY>{{x, y}, {x + 2, y + 3}, {x + 4, y}, {x, y}});
    }
    return edges;
}

void build(benchmark::State& state, const std::vector<Polyline>& edges) {
    for (auto _ : state) {
        const std::vector<Polygon> polygons = QZ_PolylineToPolygon(edges, QZ_GetNodesDic(edges, 1), 0.001);
        state.counters["faces"] = static_cast<double>(polygons.size());
    }
    state.counters["edges"] = static_cast<double>(edges.size());
}

void polygonize(benchmark::State& state, const std::vector<Polyline>& edges) {
    std::vector<GeosGeometryPtr> lines;
    std::vector<const GEOSGeometry*> raw;
    for (const Polyline& edge : edges) {
        lines.push_back(toGeos(edge));
        raw.push_back(lines.back().get());
    }
    const GEOSContextHandle_t handle = GeosContext::ofThread().handle();
    for (auto _ : state) {
        const GeosGeometryPtr faces(GEOSPolygonize_r(handle, raw.data(), static_cast<unsigned>(raw.size())));
        state.counters["faces"] = GEOSGetNumGeometries_r(handle, faces.get());
    }
    state.counters["edges"] = static_cast<double>(edges.size());
}

void buildTown(benchmark::State& state) {
    build(state, TownPlan(state.range(0)).edges());
}
void geosTown(benchmark::State& state) {
    polygonize(state, TownPlan(state.range(0)).edges());
}
void buildLake(benchmark::State& state) {
    build(state, lake(state.range(0)));
}
void geosLake(benchmark::State& state) {
    polygonize(state, lake(state.range(0)));
}

BENCHMARK(buildTown)->RangeMultiplier(10)->Range(1'000, 1'000'000)->Unit(benchmark::kMillisecond);
BENCHMARK(geosTown)->RangeMultiplier(10)->Range(1'000, 1'000'000)->Unit(benchmark::kMillisecond);
BENCHMARK(buildLake)->RangeMultiplier(10)->Range(1'000, 100'000)->Unit(benchmark::kMillisecond);
BENCHMARK(geosLake)->RangeMultiplier(10)->Range(1'000, 100'000)->Unit(benchmark::kMillisecond);

} // namespace
