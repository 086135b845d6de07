// Cutting parcels of a layer with a line, attributes by the rules: a line across a thousand of them costs the same in a
// layer of any size, and so does a line across one. Beside GEOS noding the outlines of the same thousand parcels with
// the line and building the faces anew, which finds no parcels in a layer and keeps no attributes. Then one polygon of
// many vertices.

#include <cmath>
#include <numbers>
#include <random>
#include <stdexcept>

#include <benchmark/benchmark.h>

#include "bench/MemoryLayer.h"
#include "platform/geometry/geos/GeosGeometry.h"

namespace {

using namespace qz;

constexpr double side = 20; // of a parcel
constexpr XY origin{500000, 5500000};

// A corner of the pavement that the parcels are, moved off the straight line.
XY corner(std::int64_t x, std::int64_t y) {
    const auto column = static_cast<double>(x), row = static_cast<double>(y);
    return {origin.x + side * column + std::sin(7 * column + 3 * row), origin.y + side * row + std::cos(5 * row)};
}

// Parcels in rows of a thousand.
std::vector<Geometry> parcels(std::int64_t count) {
    std::vector<Geometry> shapes;
    for (std::int64_t i = 0; i < count; ++i) {
        const std::int64_t x = i % 1000, y = i / 1000;
        Polygon polygon;
        polygon.rings.emplace_back(
            std::vector<XY>{corner(x, y), corner(x, y + 1), corner(x + 1, y + 1), corner(x + 1, y), corner(x, y)});
        shapes.emplace_back(std::move(polygon));
    }
    return shapes;
}

// Through the first parcels of the first row.
Polyline lineAcross(std::int64_t count) {
    Polyline line;
    line.paths.emplace_back(
        std::vector<XY>{{origin.x - side, origin.y + side / 2},
                        {origin.x + side * (static_cast<double>(count) + 0.5), origin.y + side / 2}});
    return line;
}

// One step of editing, taken back outside the time measured.
void split(benchmark::State& state, bench::MemoryLayer& layer, const Polyline& line, std::int64_t more) {
    const std::int64_t before = layer.featureClass().count();
    layer.workspace->startEditOperation();
    if (!layer.component.QZ_SplitPolygonRun(*layer.layer, line, layer.refresh, layer.host)) {
        throw std::runtime_error("nothing was cut");
    }
    state.PauseTiming();
    if (layer.featureClass().count() != before + more) {
        throw std::runtime_error("another number of polygons was cut");
    }
    layer.workspace->abortEditOperation();
    state.ResumeTiming();
}

void splitAcross(benchmark::State& state, std::int64_t crossed) {
    bench::MemoryLayer layer(parcels(state.range(0)));
    Polyline line = lineAcross(crossed);
    line.spatialReference = layer.reference;
    for (auto _ : state) {
        split(state, layer, line, crossed);
    }
}

void splitThousand(benchmark::State& state) {
    splitAcross(state, 1000);
}

void splitOne(benchmark::State& state) {
    splitAcross(state, 1);
}

// The outline of an island of so many vertices, a metre apart.
Polygon island(std::int64_t vertices) {
    std::mt19937 random(3);
    std::uniform_real_distribution<double> noise(-0.4, 0.4);
    const double radius = static_cast<double>(vertices) / (2 * std::numbers::pi);
    std::vector<XY> outline;
    for (std::int64_t i = 0; i < vertices; ++i) {
        const double angle = -static_cast<double>(i) / radius;
        const double r = radius * (1 + 0.1 * std::sin(5 * angle) + 0.02 * std::sin(37 * angle)) + noise(random);
        outline.push_back({origin.x + r * std::cos(angle), origin.y + r * std::sin(angle)});
    }
    outline.push_back(outline.front());
    Polygon polygon;
    polygon.rings.emplace_back(std::move(outline));
    return polygon;
}

Polyline lineThrough(const Polygon& polygon) {
    const Envelope box = polygon.envelope();
    Polyline line;
    line.paths.emplace_back(std::vector<XY>{{box.xMin - 1, origin.y + 3}, {box.xMax + 1, origin.y - 5}});
    return line;
}

void splitIsland(benchmark::State& state) {
    const Polygon polygon = island(state.range(0));
    bench::MemoryLayer layer({Geometry(polygon)});
    Polyline line = lineThrough(polygon);
    line.spatialReference = layer.reference;
    for (auto _ : state) {
        split(state, layer, line, 1);
    }
}

// Nodes outlines and line together and builds the faces.
void buildFaces(benchmark::State& state, std::vector<GeosGeometryPtr> lines) {
    const GEOSContextHandle_t handle = GeosContext::ofThread().handle();
    const GeosGeometryPtr all = collect(std::move(lines), GEOS_GEOMETRYCOLLECTION);
    for (auto _ : state) {
        const GeosGeometryPtr noded(GEOSUnaryUnion_r(handle, all.get()));
        const GEOSGeometry* outlines[] = {noded.get()};
        const GeosGeometryPtr faces(GEOSPolygonize_r(handle, outlines, 1));
        state.counters["faces"] = GEOSGetNumGeometries_r(handle, faces.get());
    }
}

GeosGeometryPtr outlineOf(const Geometry& polygon) {
    return GeosGeometryPtr(GEOSBoundary_r(GeosContext::ofThread().handle(), toGeos(polygon).get()));
}

void thousandOfGeos(benchmark::State& state) {
    std::vector<GeosGeometryPtr> lines;
    for (const Geometry& parcel : parcels(1000)) {
        lines.push_back(outlineOf(parcel));
    }
    lines.push_back(toGeos(lineAcross(1000)));
    buildFaces(state, std::move(lines));
}

void islandOfGeos(benchmark::State& state) {
    const Polygon polygon = island(state.range(0));
    std::vector<GeosGeometryPtr> lines;
    lines.push_back(outlineOf(polygon));
    lines.push_back(toGeos(lineThrough(polygon)));
    buildFaces(state, std::move(lines));
}

BENCHMARK(splitThousand)->RangeMultiplier(10)->Range(1'000, 1'000'000)->Unit(benchmark::kMillisecond);
BENCHMARK(thousandOfGeos)->Unit(benchmark::kMillisecond);
BENCHMARK(splitOne)->Arg(1'000)->Arg(1'000'000)->Unit(benchmark::kMicrosecond);
BENCHMARK(splitIsland)->RangeMultiplier(10)->Range(1'000, 1'000'000)->Unit(benchmark::kMillisecond);
BENCHMARK(islandOfGeos)->RangeMultiplier(10)->Range(1'000, 1'000'000)->Unit(benchmark::kMillisecond);

} // namespace
