// Cutting parcels of a layer with a line, attributes by the rules: a line across a thousand of them costs the same in a
// layer of any size, and so does a line across one. Beside GEOS noding the outlines of the same thousand parcels with
// the line and building the faces anew, which finds no parcels in a layer and keeps no attributes.

#include <cmath>
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

void split(benchmark::State& state, std::int64_t crossed) {
    bench::MemoryLayer layer(parcels(state.range(0)));
    Polyline line = lineAcross(crossed);
    line.spatialReference = layer.reference;
    for (auto _ : state) {
        layer.workspace->startEditOperation();
        if (!layer.component.QZ_SplitPolygonRun(*layer.layer, line, layer.refresh, layer.host)) {
            throw std::runtime_error("nothing was cut");
        }
        state.PauseTiming();
        if (layer.featureClass().count() != state.range(0) + crossed) {
            throw std::runtime_error("another number of parcels was cut");
        }
        layer.workspace->abortEditOperation();
        state.ResumeTiming();
    }
}

void splitThousand(benchmark::State& state) {
    split(state, 1000);
}

void splitOne(benchmark::State& state) {
    split(state, 1);
}

void facesOfGeos(benchmark::State& state) {
    const GEOSContextHandle_t handle = GeosContext::ofThread().handle();
    std::vector<GeosGeometryPtr> outlines;
    for (const Geometry& parcel : parcels(1000)) {
        outlines.emplace_back(GEOSBoundary_r(handle, toGeos(parcel).get()));
    }
    outlines.push_back(toGeos(lineAcross(1000)));
    const GeosGeometryPtr all = collect(std::move(outlines), GEOS_GEOMETRYCOLLECTION);
    for (auto _ : state) {
        const GeosGeometryPtr noded(GEOSUnaryUnion_r(handle, all.get()));
        const GEOSGeometry* lines[] = {noded.get()};
        const GeosGeometryPtr faces(GEOSPolygonize_r(handle, lines, 1));
        state.counters["faces"] = GEOSGetNumGeometries_r(handle, faces.get());
    }
}

BENCHMARK(splitThousand)->RangeMultiplier(10)->Range(1'000, 1'000'000)->Unit(benchmark::kMillisecond);
BENCHMARK(facesOfGeos)->Unit(benchmark::kMillisecond);
BENCHMARK(splitOne)->Arg(1'000)->Arg(1'000'000)->Unit(benchmark::kMicrosecond);

} // namespace
