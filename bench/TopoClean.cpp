// Noding with a cluster tolerance beside GEOS snap-rounding the same lines on a grid of that width, and cleaning a
// whole layer of parcels that were each digitised on their own. Grows with the number of parcels, of 12 segments each.

#include <cmath>
#include <stdexcept>

#include <benchmark/benchmark.h>

#include "bench/MemoryLayer.h"
#include "platform/geometry/geos/GeosGeometry.h"
#include "platform/topology/ClusterNoding.h"
#include "tests/topology/DirtyPavement.h"

namespace {

using namespace qz;

constexpr double tolerance = 0.02;
constexpr double jitter = 0.006;

std::vector<Path> rings(const benchmark::State& state) {
    return test::dirtyRings(static_cast<int>(std::sqrt(static_cast<double>(state.range(0)))), jitter, 1);
}

void clusterNoding(benchmark::State& state) {
    const std::vector<Path> dirty = rings(state);
    for (auto _ : state) {
        benchmark::DoNotOptimize(clusterNoded(dirty, tolerance));
    }
    state.counters["segments"] = static_cast<double>(12 * dirty.size());
}

void snapRoundingOfGeos(benchmark::State& state) {
    const GEOSContextHandle_t handle = GeosContext::ofThread().handle();
    std::vector<GeosGeometryPtr> lines;
    for (Path& ring : rings(state)) {
        Polyline line;
        line.paths.push_back(std::move(ring));
        lines.push_back(toGeos(line));
    }
    const GeosGeometryPtr all = collect(std::move(lines), GEOS_MULTILINESTRING);
    for (auto _ : state) {
        const GeosGeometryPtr noded(GEOSUnaryUnionPrec_r(handle, all.get(), tolerance));
        state.counters["edges"] = GEOSGetNumGeometries_r(handle, noded.get());
    }
}

void cleanLayer(benchmark::State& state) {
    std::vector<Geometry> shapes;
    for (Path& ring : rings(state)) {
        Polygon polygon;
        polygon.rings.push_back(std::move(ring));
        shapes.emplace_back(std::move(polygon));
    }
    bench::MemoryLayer layer(std::move(shapes));
    layer.workspace->stopEditing(false); // the editor starts the session that it can undo in
    layer.host.editor().startEditing(*layer.workspace);
    for (auto _ : state) {
        if (!layer.component.QZ_TopoCleanPg(layer.featureClass(), tolerance, 0, layer.host)) {
            throw std::runtime_error("the layer was not cleaned");
        }
        state.PauseTiming();
        layer.host.editor().undo();
        state.ResumeTiming();
    }
}

BENCHMARK(clusterNoding)->RangeMultiplier(10)->Range(1'000, 100'000)->Unit(benchmark::kMillisecond);
BENCHMARK(snapRoundingOfGeos)->RangeMultiplier(10)->Range(1'000, 100'000)->Unit(benchmark::kMillisecond);
BENCHMARK(cleanLayer)->RangeMultiplier(10)->Range(1'000, 100'000)->Unit(benchmark::kMillisecond);

} // namespace
